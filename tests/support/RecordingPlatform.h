// Keeps what would have been shown or started instead of doing it; everything else is answered by the platform behind it.
#pragma once

#include "platform/Platform.h"

#include <functional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace vardo {

class RecordingPlatform : public ForwardingPlatform {
 public:
  struct Message {
    std::string text;
    std::string title;
    int style;
    bool operator==(const Message&) const = default;
  };
  struct HelpCall {
    std::string file;
    std::string topic;
    bool operator==(const HelpCall&) const = default;
  };

  using ForwardingPlatform::ForwardingPlatform;

  void ShowMessage(std::string_view text, std::string_view title, int style) override {
    messages.push_back({std::string(text), std::string(title), style});
  }
  void ShowHelp(std::string_view file, std::string_view topic) override {
    helpCalls.push_back({std::string(file), std::string(topic)});
  }
  bool RunAddOn(std::string_view name) override {
    addOnCalls.emplace_back(name);
    return installedAddOns.contains(name);
  }

  // In the order of the calls; whoever watches may clear them.
  std::vector<Message> messages;
  std::vector<HelpCall> helpCalls;
  std::vector<std::string> addOnCalls;

  std::set<std::string, std::less<>> installedAddOns;
};

}  // namespace vardo
