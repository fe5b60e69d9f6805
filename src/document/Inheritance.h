// Shapes that outlive the master they were made from.
#pragma once

#include "document/XmlNode.h"

namespace vardo {

class TreeEditor;
class XmlPart;

// Writes into a shape's element all that it inherits from another and does not say itself: cells, rows, text. Shapes inside it
// are left alone.
void CopyInherited(TreeEditor& editor, XmlPart& part, pugi::xml_node shape, pugi::xml_node inherited);

}  // namespace vardo
