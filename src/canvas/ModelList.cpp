#include "canvas/ModelList.h"

#include "addin/host/HostConstants.h"
#include "canvas/ShapeFacts.h"
#include "document/Drawing.h"
#include "modules/ModuleKinds.h"

#include <algorithm>

namespace vardo {
namespace {

std::string ValuesOf(const DrawingShape& shape) {
  const SectionInfo& section = *FindSection(kSectionProp);
  std::string values;
  for (const Sheet::Row& row : shape.Rows(section)) {
    const CellValue value = shape.Value({&section, row.key, Symbol("Value")});
    if (const auto* const text = std::get_if<std::string>(&value); text && !text->empty()) values += *text + '\n';
  }
  return values;
}

}  // namespace

std::vector<ListedModule> ModulesOf(Drawing& drawing) {
  std::vector<ListedModule> modules;
  for (int i = 1; i <= drawing.PageCount(); ++i) {
    DrawingPage& page = drawing.PageAt(i);
    for (const DrawingShape* shape : page.TopLevel()) {
      std::string kind = shape->IsOneDimensional() ? "" : KindOf(*shape);
      if (!kind.empty())
        modules.push_back({page.id(), shape->id(), std::move(kind), shape->Text(), page.Name(), ValuesOf(*shape)});
    }
  }
  const auto rank = [](const ListedModule& module) {
    return std::find(kModuleKinds.begin(), kModuleKinds.end(), module.kind) - kModuleKinds.begin();
  };
  std::stable_sort(modules.begin(), modules.end(),
                   [&](const ListedModule& a, const ListedModule& b) { return rank(a) < rank(b); });
  return modules;
}

}  // namespace vardo
