// The drawing's modules, wherever they are.
#pragma once

#include <string>
#include <vector>

namespace vardo {

class Drawing;

struct ListedModule {
  int page = 0, shape = 0;
  std::string kind, name, pageName;
  std::string values;  // of all its properties, to search in
};

// By kind in the stencil's order, page and place on the page.
std::vector<ListedModule> ModulesOf(Drawing& drawing);

}  // namespace vardo
