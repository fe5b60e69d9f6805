// Makes the edits of a drawing's trees. Every change of a part goes through here: it is recorded in the log, and whoever keeps
// something derived from the trees is told.
#pragma once

#include "document/EditLog.h"
#include "document/XmlNode.h"

#include <functional>
#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>

namespace vardo {

class EditObserver;
class Package;
class XmlPart;

// Without memory for an edit std::bad_alloc is thrown, so that the step is taken back.
class TreeEditor {
 public:
  // What is done to a node's own tree before anybody hears of it, or within one record.
  using Change = std::function<void(pugi::xml_node)>;
  using Attributes = std::initializer_list<std::pair<const char*, std::string_view>>;

  TreeEditor(Package& package, EditObserver& observer, EditLog& log) : package_(package), observer_(observer), log_(log) {}

  // A new element in parent, before a child, or last when there is none; fill gives it its content.
  pugi::xml_node Insert(XmlPart& part, pugi::xml_node parent, const char* name, Attributes attributes, pugi::xml_node before,
                        const Change& fill = {});
  pugi::xml_node Insert(XmlPart& part, pugi::xml_node parent, const char* name, Attributes attributes);
  // A copy of a node of any tree, likewise; adapt makes it what it is to be.
  pugi::xml_node InsertCopy(XmlPart& part, pugi::xml_node parent, pugi::xml_node original, pugi::xml_node before,
                            const Change& adapt = {});
  void AppendText(XmlPart& part, pugi::xml_node parent, std::string_view text);
  // Of a text node.
  void SetText(XmlPart& part, pugi::xml_node node, std::string_view text);
  void Remove(XmlPart& part, pugi::xml_node node);
  // change may do what it likes to the attributes of the element, and to nothing else.
  void ChangeAttributes(XmlPart& part, pugi::xml_node element, const Change& change);
  // Sets one; a new one goes behind the others.
  void SetAttribute(XmlPart& part, pugi::xml_node element, const char* name, std::string_view value);
  void RemoveAttribute(XmlPart& part, pugi::xml_node element, const char* name);

  // A new part of the package; adapt makes its tree what it is to be.
  XmlPart& AddPart(std::string name, std::string_view xml, const Change& adapt = {});
  // Takes a part out. What names it is the caller's.
  void RemovePart(XmlPart& part);
  void NoteRowsShifted(const RowsShifted& rows);

 private:
  void NoteInsertion(XmlPart& part, pugi::xml_node node, const Change& fill);
  void NoteContent(XmlPart& part, pugi::xml_node node, const std::function<Edit()>& record);
  void SetPresent(XmlPart& part, bool present);

  Package& package_;
  EditObserver& observer_;
  EditLog& log_;
};

}  // namespace vardo
