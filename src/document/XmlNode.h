// A node of a part's tree, for headers: what lies above the document sees no XML library. Sources get at it with
// pugi::xml_node(node) and node.internal_object().
#pragma once

namespace pugi {
class xml_node;
struct xml_node_struct;
}  // namespace pugi

namespace vardo {

using XmlNode = pugi::xml_node_struct*;

}  // namespace vardo
