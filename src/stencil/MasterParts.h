// The masters of the stencil as parts of a drawing's file.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace vardo {

struct MasterPart {
  std::string_view name, prompt, keywords;
  double width, height;   // inches
  std::string_view type;  // the host's mark: a shape or a connector
  std::string icon;       // as the list of masters holds it
  std::string contents;   // the XML of its own part
};

// The fourteen modules, then the five connectors.
const std::vector<MasterPart>& MasterParts();

// The XML of the list of masters: the n-th, counted from 1, has the number n and is reached by the relationship "rId" and n.
std::string MasterListPart();

}  // namespace vardo
