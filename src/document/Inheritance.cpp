#include "document/Inheritance.h"

#include "base/Text.h"
#include "document/CellText.h"
#include "document/Elements.h"
#include "document/TreeEditor.h"
#include "formula/CellNames.h"

#include <pugixml.hpp>

#include <string_view>

namespace vardo {
namespace {

// The entry of parent that stands for the same cell, row or section.
pugi::xml_node TwinIn(pugi::xml_node parent, pugi::xml_node entry) {
  for (const pugi::xml_node child : parent.children(entry.name())) {
    const bool sameName = EqualAsciiIgnoringCase(child.attribute("N").value(), entry.attribute("N").value());
    if (sameName && std::string_view(child.attribute("IX").value()) == entry.attribute("IX").value()) return child;
  }
  return {};
}

void KeepInheritedFormula(TreeEditor& editor, XmlPart& part, pugi::xml_node cell, pugi::xml_node inherited) {
  if (!FormulaIsInherited(cell)) return;
  if (const pugi::xml_attribute formula = inherited.attribute("F"))
    editor.SetAttribute(part, cell, "F", formula.value());
  else
    editor.RemoveAttribute(part, cell, "F");
}

// Rows are in the order of their IX; all else goes to the end.
pugi::xml_node PlaceFor(pugi::xml_node parent, pugi::xml_node entry) {
  for (const pugi::xml_node child : parent.children("Row"))
    if (IsNamed(entry, "Cell") || (entry.attribute("IX") && child.attribute("IX").as_int() > entry.attribute("IX").as_int()))
      return child;
  return {};
}

// Brings what a section or row says of its own into a copy of the inherited one.
void Overlay(TreeEditor& editor, XmlPart& part, pugi::xml_node copy, pugi::xml_node own) {
  for (const pugi::xml_attribute attribute : own.attributes())
    editor.SetAttribute(part, copy, attribute.name(), attribute.value());
  for (const pugi::xml_node entry : own.children()) {
    const pugi::xml_node twin = TwinIn(copy, entry);
    if (twin && !IsDeleted(entry) && !IsNamed(entry, "Cell")) {
      Overlay(editor, part, twin, entry);
      continue;
    }
    if (!IsDeleted(entry)) {
      const pugi::xml_node added = editor.InsertCopy(part, copy, entry, twin ? twin : PlaceFor(copy, entry));
      KeepInheritedFormula(editor, part, added, twin);
    }
    if (twin) editor.Remove(part, twin);
  }
}

// A shape's element holds its cells, then its sections, the geometry last, then the rest, and the shapes inside it at the end.
int Rank(pugi::xml_node child) {
  constexpr std::string_view kOrder[] = {"Cell",  "Trigger", "Section", "Geometry",    "Text",
                                         "Data1", "Data2",   "Data3",   "ForeignData", "Shapes"};
  const bool isGeometry = IsNamed(child, "Section") && std::string_view(child.attribute("N").value()) == "Geometry";
  const std::string_view name = isGeometry ? "Geometry" : child.name();
  int rank = 0;
  for (const std::string_view known : kOrder) {
    if (known == name) return rank;
    ++rank;
  }
  return rank;
}

void CopyInto(TreeEditor& editor, XmlPart& part, pugi::xml_node shape, pugi::xml_node inherited) {
  pugi::xml_node before = shape.first_child();
  while (before && Rank(before) <= Rank(inherited)) before = before.next_sibling();
  editor.InsertCopy(part, shape, inherited, before);
}

void CopyInheritedSection(TreeEditor& editor, XmlPart& part, pugi::xml_node shape, pugi::xml_node own, pugi::xml_node inherited) {
  if (!IsDeleted(own)) Overlay(editor, part, editor.InsertCopy(part, shape, inherited, own), own);
  editor.Remove(part, own);
}

}  // namespace

void CopyInherited(TreeEditor& editor, XmlPart& part, pugi::xml_node shape, pugi::xml_node inherited) {
  for (const char* style : {"LineStyle", "FillStyle", "TextStyle"})
    if (inherited.attribute(style) && !shape.attribute(style))
      editor.SetAttribute(part, shape, style, inherited.attribute(style).value());
  for (const pugi::xml_node child : inherited.children()) {
    if (child.type() != pugi::node_element || IsNamed(child, "Shapes")) continue;
    const pugi::xml_node own = TwinIn(shape, child);
    if (!own)
      CopyInto(editor, part, shape, child);
    else if (IsNamed(child, "Cell"))
      KeepInheritedFormula(editor, part, own, child);
    else if (IsNamed(child, "Section"))
      CopyInheritedSection(editor, part, shape, own, child);
  }
}

}  // namespace vardo
