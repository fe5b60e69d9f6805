// The paths of a module's look, step by step.
#pragma once

#include "modules/ModuleLook.h"

#include <string_view>
#include <vector>

namespace vardo {

struct PathStep {
  enum class Kind { Move, Line, Curve };
  Kind kind;
  Place to;
  Place control1{}, control2{};  // of a curve
};

// path is written as ModuleLook.h says. A "Z" comes as a line to where its part began.
std::vector<PathStep> StepsOf(std::string_view path);

}  // namespace vardo
