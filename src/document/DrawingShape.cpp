#include "document/DrawingShape.h"

#include "addin/host/HostConstants.h"
#include "document/Elements.h"
#include "document/TreeEditor.h"

#include <pugixml.hpp>

namespace vardo {
namespace {

bool IsFormatMarker(pugi::xml_node node) {
  const std::string_view name = node.name();
  return name == "cp" || name == "pp" || name == "tp";
}

// Comments and instructions are no text; an element shows what it stands for.
void AppendTextOf(std::string& text, pugi::xml_node block) {
  for (const pugi::xml_node child : block.children()) {
    if (IsText(child)) AppendLines(text, child.value());
    if (child.type() == pugi::node_element) AppendTextOf(text, child);
  }
}

// What stands behind the text in a shape's element.
pugi::xml_node FirstBehindText(pugi::xml_node shape) {
  for (const pugi::xml_node child : shape.children()) {
    const std::string_view name = child.name();
    if (child.type() == pugi::node_element && name != "Cell" && name != "Section" && name != "Trigger") return child;
  }
  return {};
}

constexpr struct {
  std::string_view name;
  short type;
} kTypes[] = {{"Group", kShapeTypeGroup}, {"Foreign", kShapeTypeForeign}, {"Guide", kShapeTypeGuide}};

}  // namespace

DrawingShape::DrawingShape(XmlPart& part, pugi::xml_node element, const Sheet* base, DrawingShape* parent)
    : Sheet(part, element.internal_object(), base), id_(element.attribute("ID").as_int()), parent_(parent) {}

short DrawingShape::Type() const {
  for (const auto& type : kTypes)
    if (type.name == pugi::xml_node(element()).attribute("Type").value()) return type.type;
  return kShapeTypeShape;
}

int DrawingShape::MasterId() const { return pugi::xml_node(element()).attribute("Master").as_int(-1); }

std::string DrawingShape::StoredName() const {
  const pugi::xml_attribute name = pugi::xml_node(element()).attribute("Name");
  return name ? name.value() : pugi::xml_node(element()).attribute("NameU").value();
}

std::string DrawingShape::Text() const {
  std::string text;
  AppendTextOf(text, pugi::xml_node(FindChild("Text")));
  if (!text.empty() && text.back() == '\n') text.pop_back();
  return text;
}

// The first run's format is the whole new text's.
void DrawingShape::SetText(TreeEditor& editor, std::string_view text) {
  const pugi::xml_node shape(element());
  pugi::xml_node block = shape.child("Text");
  if (!block) block = editor.Insert(part(), shape, "Text", {}, FirstBehindText(shape));
  const std::string whole = text.empty() ? "" : std::string(text) + "\n";
  pugi::xml_node run;
  bool leading = !text.empty();
  for (pugi::xml_node child = block.first_child(); child;) {
    const pugi::xml_node next = child.next_sibling();
    leading = leading && !IsText(child) && (child.type() != pugi::node_element || IsFormatMarker(child));
    if (!run && !whole.empty() && child.type() == pugi::node_pcdata)
      run = child;
    else if (!leading && (IsText(child) || child.type() == pugi::node_element))
      editor.Remove(part(), child);
    child = next;
  }
  if (run)
    editor.SetText(part(), run, whole);
  else if (!whole.empty())
    editor.AppendText(part(), block, whole);
}

}  // namespace vardo
