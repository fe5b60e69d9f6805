#include "Scenario.h"

#include <algorithm>
#include <fstream>
#include <stdexcept>
#include <string_view>

namespace vardo {
namespace {

constexpr std::string_view kExpected = "#=";
constexpr std::string_view kSettings = "#@";

std::string Where(const std::string& file, int line) { return file + ":" + std::to_string(line) + ": "; }

void Replace(std::string& text, const std::string& placeholder, const std::string& with) {
  for (size_t at = 0; (at = text.find(placeholder, at)) != std::string::npos; at += with.size())
    text.replace(at, placeholder.size(), with);
}

// The name under which an expectation speaks of an array's item.
std::string NameOf(const ScenarioJson& item) {
  if (item.is_string()) return item.get<std::string>();
  for (const char* member : {"name", "caption", "menu"})
    if (item.is_object() && item.contains(member) && item[member].is_string()) return item[member].get<std::string>();
  return "";
}

bool HasNamed(const ScenarioJson& array, const std::string& name, const ScenarioJson& expected) {
  const auto found = std::find_if(array.begin(), array.end(), [&](const ScenarioJson& item) { return NameOf(item) == name; });
  if (found == array.end()) return expected.is_null();
  return expected == true || (!expected.is_null() && Matches(expected, *found));
}

bool ObjectMatches(const ScenarioJson& expected, const ScenarioJson& came) {
  for (const auto& [name, value] : expected.items()) {
    if (came.is_array() ? !HasNamed(came, name, value) : !came.contains(name) || !Matches(value, came[name])) return false;
  }
  return true;
}

bool ArrayMatches(const ScenarioJson& expected, const ScenarioJson& came) {
  return came.is_array() && std::equal(expected.begin(), expected.end(), came.begin(), came.end(), Matches);
}

class Reader {
 public:
  explicit Reader(const std::filesystem::path& file) { scenario_.file = file.generic_string(); }

  void Read(const std::string& text) {
    ++line_;
    const std::string_view view = text;
    if (view.starts_with(kExpected)) return Expect(Json(view.substr(kExpected.size())));
    if (view.starts_with(kSettings)) return Set(Json(view.substr(kSettings.size())));
    if (!view.empty() && !view.starts_with('#')) scenario_.requests.push_back({line_, text, {}});
  }

  Scenario Take() { return std::move(scenario_); }

 private:
  ScenarioJson Json(std::string_view text) const {
    ScenarioJson value = ScenarioJson::parse(text, nullptr, false);
    if (!value.is_object()) throw std::runtime_error(Where(scenario_.file, line_) + "this is no JSON object");
    return value;
  }

  void Expect(ScenarioJson value) {
    if (value.contains("exit")) {
      scenario_.exit = {line_, value};
    } else if (scenario_.requests.empty()) {
      throw std::runtime_error(Where(scenario_.file, line_) + "there is no request before this");
    } else {
      scenario_.requests.back().expected.push_back({line_, std::move(value)});
    }
  }

  void Set(const ScenarioJson& settings) {
    scenario_.withAddin = settings.value("addin", true);
    const ScenarioJson registry = settings.value("registry", ScenarioJson::object());
    for (const auto& [key, values] : registry.items())
      for (const auto& [name, text] : values.items()) scenario_.registry[{key, name}] = text.get<std::string>();
    scenario_.addOns = settings.value("addons", std::vector<std::string>());
  }

  Scenario scenario_;
  int line_ = 0;
};

}  // namespace

Scenario ReadScenario(const std::filesystem::path& file, const std::map<std::string, std::string>& placeholders) {
  std::ifstream input(file);
  if (!input) throw std::runtime_error(file.generic_string() + ": this file cannot be read");
  Reader reader(file);
  for (std::string line; std::getline(input, line);) {
    if (line.ends_with('\r')) line.pop_back();
    for (const auto& [placeholder, text] : placeholders) Replace(line, placeholder, text);
    reader.Read(line);
  }
  return reader.Take();
}

bool Matches(const ScenarioJson& expected, const ScenarioJson& came) {
  if (expected.is_object()) return (came.is_object() || came.is_array()) && ObjectMatches(expected, came);
  if (expected.is_array()) return ArrayMatches(expected, came);
  return expected == came;
}

std::vector<std::string> Mismatches(const Scenario& scenario, const ScenarioRequest& request,
                                    const std::vector<std::string>& came) {
  std::vector<Expectation> expected = request.expected;
  if (expected.empty()) expected.push_back({request.line, {{"ok", true}}});
  std::vector<std::string> wrong;
  for (size_t i = 0; i < std::max(expected.size(), came.size()); ++i) {
    const int line = i < expected.size() ? expected[i].line : request.line;
    const std::string wanted = i < expected.size() ? expected[i].value.dump() : "nothing more";
    const bool matches =
        i < expected.size() && i < came.size() && Matches(expected[i].value, ScenarioJson::parse(came[i], nullptr, false));
    if (!matches)
      wrong.push_back(Where(scenario.file, line) + "expected " + wanted + "\n  but there came " +
                      (i < came.size() ? came[i] : "nothing"));
  }
  return wrong;
}

}  // namespace vardo
