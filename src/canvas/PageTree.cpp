#include "canvas/PageTree.h"

#include "document/Drawing.h"

#include <algorithm>
#include <string>

namespace vardo {

std::optional<int> ParentPageOf(Drawing& drawing, DrawingPage& page) {
  const auto cell = page.PageSheet().Find("Prop.VardoParentPage");
  if (!cell) return std::nullopt;
  const CellValue value = page.PageSheet().Value(*cell);
  const auto* const name = std::get_if<std::string>(&value);
  const DrawingPage* const parent = name && !name->empty() ? drawing.FindPage(*name) : nullptr;
  return parent && parent != &page ? std::optional(parent->id()) : std::nullopt;
}

std::vector<int> PathTo(Drawing& drawing, DrawingPage& page) {
  std::vector<int> path{page.id()};
  for (auto parent = ParentPageOf(drawing, page); parent && std::find(path.begin(), path.end(), *parent) == path.end();
       parent = ParentPageOf(drawing, *drawing.FindPage(*parent)))
    path.push_back(*parent);
  std::reverse(path.begin(), path.end());
  return path;
}

}  // namespace vardo
