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
// The shape's frame, as it stands unturned.
struct Resize {
  int shape = 0;
  Box frame;
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

using Deed = std::variant<deeds::Select, deeds::Drop, deeds::Connect, deeds::Reglue, deeds::Move, deeds::Resize, deeds::Delete,
                          deeds::Type, deeds::Undo, deeds::Redo, deeds::ShowPage, deeds::AddPage, deeds::RenamePage,
                          deeds::DeletePage, deeds::OpenDialog, deeds::OpenSubmodel, deeds::CloseSubmodel, deeds::RunAction>;

}  // namespace vardo
