// Whether a page's or a master's part can be told apart into its shapes.
#pragma once

#include "document/XmlNode.h"

#include <string>

namespace vardo {

class XmlPart;

// Throws FileError when a section of the sheet has more rows than a drawing may have.
void CheckRows(const std::string& file, const std::string& part, pugi::xml_node sheet);

// Throws FileError when a shape has no number or a negative one, when a number that two shapes have is referred to, when a sheet
// has two lists of shapes, or when elements of the drawing are written with a namespace prefix. Of two shapes whose number nobody
// refers to, the later gets one of its own in the tree; the part still counts as unchanged.
void CheckShapes(const std::string& file, XmlPart& part);

}  // namespace vardo
