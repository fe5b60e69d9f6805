// What the Process dialog and that of its rows say of a resource.
#pragma once

#include "dialogs/DialogField.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <string_view>

namespace vardo {

// A row seizes one resource, or one of a set.
inline constexpr std::string_view kResourceRow = "Resource", kSetRow = "Set";

// How one of a set is selected.
inline constexpr CodeRow kSelectionRules[] = {
    {"CYC", "Cyclical"},
    {"RAN", "Random"},
    {"POR", "Preferred Order"},
    {"SM", "Specific Member"},
    {"LRC", "Largest Remaining Capacity"},
    {"SNB", "Smallest Number Busy"},
};
inline constexpr CodeRow kSpecificMember = kSelectionRules[3];

inline constexpr auto kSelectionRuleTexts = [] {
  std::array<std::string_view, std::size(kSelectionRules)> texts;
  std::ranges::transform(kSelectionRules, texts.begin(), &CodeRow::text);
  return texts;
}();

}  // namespace vardo
