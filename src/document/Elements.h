// What is asked of elements all over the trees. Sources only: the XML library is seen here.
#pragma once

#include <pugixml.hpp>

#include <string>
#include <string_view>

namespace vardo {

inline bool IsNamed(pugi::xml_node node, std::string_view name) { return name == node.name(); }
inline bool IsText(pugi::xml_node node) { return node.type() == pugi::node_pcdata || node.type() == pugi::node_cdata; }

// Of a shape, section, row or cell that the master has and this sheet has not.
inline bool IsDeleted(pugi::xml_node element) { return std::string_view(element.attribute("Del").value()) == "1"; }

// Of an element that is not in a drawing yet, or whose change is being recorded; a new attribute goes behind the others.
void SetAttribute(pugi::xml_node element, const char* name, std::string_view value);

// Line ends within an element are line feeds to us whatever they are in the file.
void AppendLines(std::string& text, std::string_view raw);

}  // namespace vardo
