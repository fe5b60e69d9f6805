#include "stencil/LookPath.h"

#include <locale>
#include <sstream>
#include <string>

namespace vardo {

std::vector<PathStep> StepsOf(std::string_view path) {
  std::istringstream text{std::string(path)};
  text.imbue(std::locale::classic());
  const auto next = [&text] {
    Place place{};
    text >> place.x >> place.y;
    return place;
  };
  std::vector<PathStep> steps;
  Place start{};
  for (char letter; text >> letter;) {
    if (letter == 'M') steps.push_back({PathStep::Kind::Move, start = next()});
    if (letter == 'L') steps.push_back({PathStep::Kind::Line, next()});
    if (letter == 'Z') steps.push_back({PathStep::Kind::Line, start});
    if (letter == 'C') {
      const Place control1 = next(), control2 = next();
      steps.push_back({PathStep::Kind::Curve, next(), control1, control2});
    }
  }
  return steps;
}

}  // namespace vardo
