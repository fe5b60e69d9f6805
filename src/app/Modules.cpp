#include "app/Modules.h"

#include "props/PropertyCells.h"
#include "props/ShapeKinds.h"
#include "props/StringFunctions.h"

namespace vardo {

std::string ModuleKindOf(const Sheet& shape) {
  const auto address = shape.Find(kClassNameCell);
  return address ? UnquoteFormula(shape.Formula(*address)) : "";
}

std::vector<std::pair<std::string, std::string>> PropertiesOfShape(const Sheet& shape) {
  std::vector<std::pair<std::string, std::string>> properties;
  const SectionInfo& section = *FindSectionByElement("Property");
  for (const Sheet::Row& row : shape.Rows(section))
    properties.emplace_back(shape.RowText(section, row.key),
                            UnquoteFormula(shape.Formula({&section, row.key, Symbol(section.shortName)})));
  return properties;
}

}  // namespace vardo
