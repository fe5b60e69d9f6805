#include "document/Elements.h"

namespace vardo {

void SetAttribute(pugi::xml_node element, const char* name, std::string_view value) {
  pugi::xml_attribute attribute = element.attribute(name);
  if (!attribute) attribute = element.append_attribute(name);
  attribute.set_value(std::string(value).c_str());
}

void AppendLines(std::string& text, std::string_view raw) {
  if (raw.find('\r') == std::string_view::npos) {
    text += raw;
    return;
  }
  for (size_t i = 0; i < raw.size(); ++i) {
    if (raw[i] != '\r')
      text += raw[i];
    else if (i + 1 >= raw.size() || raw[i + 1] != '\n')
      text += '\n';
  }
}

}  // namespace vardo
