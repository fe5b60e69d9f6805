// Edits of the drawing's trees. Every change of a part goes through here, so that it can be undone and the part is saved anew.
//   Removed nodes are kept aside in their tree: handles to them stay good, and undo puts the same nodes back.
#pragma once

#include "document/Journal.h"
#include "package/Package.h"

#include <pugixml.hpp>

#include <optional>
#include <string>
#include <string_view>

namespace vardo {

class TreeEditor {
 public:
  explicit TreeEditor(Journal& journal) : journal_(journal) {}

  // Sets an attribute; a new one is added behind the others.
  void SetAttribute(XmlPart& part, pugi::xml_node node, const char* name, std::string_view value);
  void RemoveAttribute(XmlPart& part, pugi::xml_node node, const char* name);
  // A new element in parent, before a child, or last when there is none.
  pugi::xml_node InsertElement(XmlPart& part, pugi::xml_node parent, const char* name, pugi::xml_node before = {});
  // A copy of a node of any tree, likewise.
  pugi::xml_node InsertCopy(XmlPart& part, pugi::xml_node parent, pugi::xml_node original, pugi::xml_node before = {});
  void AppendText(XmlPart& part, pugi::xml_node parent, std::string_view text);
  void Remove(XmlPart& part, pugi::xml_node node);

 private:
  void ChangeAttribute(XmlPart& part, pugi::xml_node node, const std::string& name, const std::optional<std::string>& after);
  void RecordInsertion(XmlPart& part, pugi::xml_node node);
  void Make(XmlPart& part, const Journal::Action& edit, const Journal::Action& reverse);
  void Record(XmlPart& part, const Journal::Action& edit, const Journal::Action& reverse);

  Journal& journal_;
};

}  // namespace vardo
