#include "picture/FontSubstitutes.h"

#include "base/Text.h"

namespace vardo::picture {
namespace {

constexpr struct {
  std::string_view part;  // of the family's name, in lower case
  std::string_view substitutes[3];
} kSubstitutes[] = {
    {"calibri", {"Carlito", "sans-serif"}},
    {"segoe ui", {"Noto Sans", "DejaVu Sans Condensed", "sans-serif"}},
    {"courier", {"Liberation Mono", "DejaVu Sans Mono", "monospace"}},
    {"consolas", {"Liberation Mono", "DejaVu Sans Mono", "monospace"}},
    {"mono", {"Liberation Mono", "DejaVu Sans Mono", "monospace"}},
    {"times", {"Liberation Serif", "Nimbus Roman", "serif"}},
    {"roman", {"Liberation Serif", "Nimbus Roman", "serif"}},
    {"cambria", {"Caladea", "Liberation Serif", "serif"}},
    {"georgia", {"Gelasio", "Liberation Serif", "serif"}},
    {"garamond", {"Liberation Serif", "Nimbus Roman", "serif"}},
    {"narrow", {"Liberation Sans Narrow", "Nimbus Sans Narrow", "sans-serif"}},
    {"verdana", {"DejaVu Sans", "sans-serif"}},
    {"", {"Liberation Sans", "Nimbus Sans", "sans-serif"}},
};

}  // namespace

std::vector<std::string> FontsFor(std::string_view family) {
  std::vector<std::string> fonts{std::string(family)};
  const std::string name = LowerAscii(family);
  for (const auto& known : kSubstitutes) {
    if (name.find(known.part) == std::string::npos) continue;
    for (const std::string_view substitute : known.substitutes)
      if (!substitute.empty()) fonts.emplace_back(substitute);
    break;
  }
  return fonts;
}

}  // namespace vardo::picture
