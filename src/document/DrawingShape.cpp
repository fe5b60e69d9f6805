#include "addin/host/HostConstants.h"
#include "document/Drawing.h"

#include <algorithm>

namespace vardo {
namespace {

bool IsFormatMarker(pugi::xml_node node) {
  const std::string_view name = node.name();
  return name == "cp" || name == "pp" || name == "tp";
}

// Line ends are CR LF in a file and LF in the program.
void AppendLines(std::string& text, std::string_view raw) {
  for (size_t i = 0; i < raw.size(); ++i) {
    if (raw[i] != '\r')
      text += raw[i];
    else if (i + 1 >= raw.size() || raw[i + 1] != '\n')
      text += '\n';
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

short DrawingShape::Type() const {
  for (const auto& type : kTypes)
    if (type.name == element().attribute("Type").value()) return type.type;
  return kShapeTypeShape;
}

int DrawingShape::MasterId() const { return element().attribute("Master").as_int(-1); }

std::string DrawingShape::Text() const {
  std::string text;
  for (const pugi::xml_node child : FindChild("Text").children())
    AppendLines(text, child.type() == pugi::node_element ? child.child_value() : child.value());
  if (!text.empty() && text.back() == '\n') text.pop_back();
  return text;
}

void DrawingShape::SetText(TreeEditor& editor, std::string_view text) {
  pugi::xml_node block = element().child("Text");
  if (!block) block = editor.InsertElement(part(), element(), "Text", FirstBehindText(element()));
  // The first run's format is the whole new text's.
  bool leading = !text.empty();
  for (pugi::xml_node child = block.first_child(); child;) {
    const pugi::xml_node next = child.next_sibling();
    leading = leading && IsFormatMarker(child);
    if (!leading) editor.Remove(part(), child);
    child = next;
  }
  if (!text.empty()) editor.AppendText(part(), block, std::string(text) + "\n");
}

}  // namespace vardo
