// What the looks of several kinds have in common.
#pragma once

#include "modules/ModuleLook.h"

#include <string_view>

namespace vardo {

inline constexpr Colours kEndColours{"#e2f0d9", "#548235"};
inline constexpr Colours kWorkColours{"#deebf7", "#2e75b6"};
inline constexpr Colours kRoutingColours{"#fff2cc", "#bf9000"};
inline constexpr Colours kDataColours{"#ece7f4", "#6a5194"};

inline constexpr std::string_view kBoxOutline = "M0 0 L1 0 L1 1 L0 1 Z";
// Where the text of a data module ends.
inline constexpr Place kBelowHeader{1, 0.7};

inline constexpr Place kExitAndEntry[] = {{1, 0.5}, {0, 0.5}};

}  // namespace vardo
