// What a person wants done, as data. Places and lengths in inches on paper, shapes by their IDs on the page that is shown.
#pragma once

#include "canvas/Boxes.h"
#include "memoryhost/DrawingHost.h"

#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace vardo::deeds {

struct Select {
  std::vector<int> shapes;
};
struct Drop {
  std::string master;
  PagePoint at;
  std::optional<int> connectFrom = {};  // a connector leads from there to what is dropped
};
struct Connect {
  std::string master;
  DrawingHost::End begin, end;
  PagePoint from, to;  // of ends that are glued to nothing
};
struct Reglue {
  int connector = 0;
  bool isBegin = false;
  DrawingHost::End end;
  PagePoint to;  // of an end that is glued to nothing
};
struct Move {
  std::vector<int> shapes;
  PagePoint by;
  bool copies = false;
};
// Copies of shapes of any pages; by: on the page that they are on already.
struct Paste {
  std::vector<SheetRef> originals;
  PagePoint by;
};
// The shape's frame, as it stands unturned.
struct Resize {
  int shape = 0;
  Box frame;
};
// A property of the modules, as if typed into their dialogs.
struct SetField {
  std::vector<int> shapes;
  std::string field, text;
};
enum class Alignment { Left, Centre, Right, Top, Middle, Bottom };
struct Align {
  std::vector<int> shapes;
  Alignment how;
};
struct Distribute {
  std::vector<int> shapes;
  bool across = true;
};
// As large as the first.
struct SameSize {
  std::vector<int> shapes;
};
enum class Place { Front, Forward, Backward, Back };
struct Order {
  std::vector<int> shapes;
  Place to;
};
struct Delete {};
struct Type {
  int shape = 0;
  std::string text;
};
struct Undo {};
struct Redo {};
struct ShowPage {
  int page = 0;
};
struct AddPage {};
struct RenamePage {
  int page = 0;
  std::string name;
};
struct DeletePage {
  int page = 0;
};
struct OpenDialog {
  int shape = 0;
};
struct OpenSubmodel {
  int shape = 0;
};
struct CloseSubmodel {};
// What a menu item or a shortcut menu's action runs.
struct RunAction {
  std::string caption, statement;
};

}  // namespace vardo::deeds

namespace vardo {

using Deed = std::variant<deeds::Select, deeds::Drop, deeds::Connect, deeds::Reglue, deeds::Move, deeds::Paste, deeds::Resize,
                          deeds::SetField, deeds::Align, deeds::Distribute, deeds::SameSize, deeds::Order, deeds::Delete,
                          deeds::Type, deeds::Undo, deeds::Redo, deeds::ShowPage, deeds::AddPage, deeds::RenamePage,
                          deeds::DeletePage, deeds::OpenDialog, deeds::OpenSubmodel, deeds::CloseSubmodel, deeds::RunAction>;

}  // namespace vardo
