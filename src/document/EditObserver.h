// Who keeps something derived from the trees is told of every edit, be it done, undone, redone or rolled back.
#pragma once

#include "document/Edit.h"

namespace vardo {

class EditObserver {
 public:
  virtual ~EditObserver() = default;
  // A subtree has come to its place; is about to leave it.
  virtual void Inserted(XmlPart& part, pugi::xml_node node) = 0;
  virtual void Removing(XmlPart& part, pugi::xml_node node) = 0;
  // An element's attributes, or a text, are about to change; have changed.
  virtual void Changing(XmlPart& part, pugi::xml_node node) = 0;
  virtual void Changed(XmlPart& part, pugi::xml_node node) = 0;
  // again: rows that went at that position come back.
  virtual void Shifted(const RowsShifted& rows, bool again) = 0;
};

}  // namespace vardo
