// What the formulas of a connector's ends say.
#pragma once

#include <string>
#include <string_view>

namespace vardo {

// How the formula of a glued coordinate begins, and that of a trigger, which an end glued to a shape as a whole has.
inline constexpr std::string_view kGluedBeginning = "PAR(PNT(";
inline constexpr std::string_view kTriggerBeginning = "_XFTRIGGER(";

// The shape that a formula refers to, by its name; none when it does not begin so, or refers to nothing outside its own sheet.
std::string ShapeReferredTo(std::string_view formula, std::string_view beginning);
// The number of the connection point whose coordinate a glued end follows, from 1; 0 when it follows none of a number.
int PointReferredTo(std::string_view formula);

}  // namespace vardo
