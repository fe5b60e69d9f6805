#include "script/Request.h"

#include "base/Errors.h"
#include "base/Text.h"

#include <set>
#include <string_view>
#include <vector>

namespace vardo {
namespace {

constexpr size_t kDeepest = 64;
// The library looks through all members of an object for each one that it adds.
constexpr size_t kMostMembers = 256;

[[noreturn]] void Refuse(const std::string& why) { throw RuntimeError(5, why); }

void RefuseNul(std::string_view text) {
  if (text.find('\0') != std::string_view::npos) Refuse("it holds a NUL");
}

// Looks at what is read while it is read.
class Inspection {
 public:
  bool operator()(size_t depth, Json::parse_event_t event, const Json& read) {
    switch (event) {
      case Json::parse_event_t::object_start:
        members_.emplace_back();
        [[fallthrough]];
      case Json::parse_event_t::array_start:
        if (depth >= kDeepest) Refuse("it is nested deeper than " + std::to_string(kDeepest));
        break;
      case Json::parse_event_t::key:
        AddMember(read.get_ref<const std::string&>());
        break;
      case Json::parse_event_t::object_end:
        members_.pop_back();
        break;
      case Json::parse_event_t::value:
        if (read.is_string()) RefuseNul(read.get_ref<const std::string&>());
        break;
      case Json::parse_event_t::array_end:
        break;
    }
    return true;
  }

 private:
  void AddMember(const std::string& name) {
    RefuseNul(name);
    std::set<std::string>& members = members_.back();
    if (!members.insert(name).second) Refuse("it has the member \"" + InWords(name) + "\" twice");
    if (members.size() > kMostMembers) Refuse("it has an object of more than " + std::to_string(kMostMembers) + " members");
  }

  std::vector<std::set<std::string>> members_;  // of the objects that are open, the outermost first
};

}  // namespace

Json ParseRequest(const std::string& line) {
  if (line.size() > kLongestRequest) Refuse("it is longer than " + std::to_string(kLongestRequest >> 20) + " MiB");
  RefuseNul(line);
  Inspection inspection;
  const auto inspect = [&](int depth, Json::parse_event_t event, Json& read) {
    return inspection(static_cast<size_t>(depth), event, read);
  };
  Json request = Json::parse(line, inspect, false);
  if (!request.is_object()) Refuse("it is no JSON object in UTF-8");
  return request;
}

}  // namespace vardo
