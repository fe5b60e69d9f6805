// What the masters and documents have the host do: lines of its macro language that call the add-in.
#pragma once

#include "base/Text.h"

#include <string>
#include <string_view>

namespace vardo {

// call: the method's name and its arguments, "ShowEditor Application,...".
inline std::string AddinCall(std::string_view call) {
  return R"(Set t=CreateObject("VardoBasic.Application"):t.)" + std::string(call);
}

// The formula of a cell that runs such a line.
inline std::string RunFormula(std::string_view line) { return "RUNADDON(" + QuoteText(line) + ")"; }

}  // namespace vardo
