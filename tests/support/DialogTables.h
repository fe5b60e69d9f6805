// What every dialog is made of and does, as data: one table a form. The tests read them; nothing here looks at a form's code.
#pragma once

#include "catalog/NameCatalogues.h"
#include "forms/Form.h"

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace vardo::test {

using Texts = std::vector<std::string>;

// Combo takes typing, Pick is a drop-down that does not.
enum class Kind { Combo, Pick, Text, Check, Button, List, Frame, Line, Label };

struct ControlRow {
  std::string name;
  Kind kind;
  std::string caption{};  // the label's when there is one, else the control's own
  std::string label{};
};

struct FrameRow {
  std::string frame;
  Texts controls;  // their labels stand with them
};

// A box and the property it edits; a row dialog's boxes have none.
inline constexpr const char* kShapeText = "<the shape's text>";
inline constexpr const char* kNameBox = "<the text of the name box>";
inline constexpr const char* kNotTidied = "<not tidied>";
struct FieldRow {
  std::string control;
  std::string property;
  std::string missing;                 // shown when the cell is missing, or on adding a row; "Yes" and "No" for a check box
  std::string whenEmpty = kNotTidied;  // what an emptied box gets
};

struct CheckRow {
  std::string control;
  std::string kind;
};

// Fixed items, then what the drawing offers.
struct ListRow {
  std::string control;
  Texts items{};
  void (*offers)(ItemList&) = nullptr;
};

struct CodeRow {
  std::string control;
  std::vector<std::pair<std::string, std::string>> codes;  // item, code
};

// A stored text that no table knows: what it shows and what OK writes when nobody touches it.
struct OddRow {
  std::string control;
  std::string stored, shown, written;
};

// The controls are visible exactly when the condition holds. Controls of no rule are always visible.
struct RuleRow {
  Texts controls;
  bool (*when)(const Form&);
};

// Texts that a control is put to when states are tried; "Yes" and "No" for a check box.
struct ChoiceRow {
  std::string control;
  Texts texts;
};

// What OK writes: a control's text (or code), or a text of its own, or what the form says. An empty property is the shape's text.
struct WriteRow {
  std::string property;
  std::string control{};
  std::string text{};
  std::string (*special)(const Form&) = nullptr;
};

using Settings = std::vector<std::pair<std::string, std::string>>;

// One row of a repeat group, in all its forms.
struct RowExample {
  std::string line;
  Texts stored;    // the columns as they may be found
  Texts written;   // the columns as OK writes them
  Settings shown;  // boxes of the row dialog that edits the line
};

struct RowGroup {
  std::string list, count, dialog;
  Texts columns;  // in the order of writing
  Texts noRows;   // what the columns get without rows; empty: the fields written before say it already
  std::vector<RowExample> examples;
  std::string missingLine;  // count 1, but no column is there
  std::string shortLine;    // a row beyond the end of all columns
  std::string added;        // the line that Add and OK make
  Settings setup{};         // what shows the list, and makes it the list of the columns above
  bool rowDialogStaysOnCancel = false;
};

struct DialogTable {
  std::string form, caption, helpTopic;
  std::string kind{};        // the module kind; empty for a row dialog
  std::string module{};      // of a row dialog: the form that opens it
  std::string name{};        // the name box
  std::string sharedKeys{};  // access keys that captions give twice
  std::vector<ControlRow> controls{};
  std::vector<FrameRow> frames{};
  std::vector<FieldRow> fields{};
  std::vector<CheckRow> checks{};
  std::vector<ListRow> lists{};
  std::vector<CodeRow> codes{};
  std::vector<OddRow> odd{};
  std::vector<RuleRow> rules{};
  std::vector<ChoiceRow> choices{};  // in an order that leaves the last word to the rule behind all others
  std::vector<WriteRow> writes{};
  Settings changes{};  // property and text: what opening and OK change in a shape fresh from the stencil
  std::vector<RowGroup> rows{};
};

const std::vector<DialogTable>& ModuleTables();
const std::vector<DialogTable>& RowTables();
const DialogTable& TableOf(std::string_view form);

// The text of a box, "Yes" or "No" of a check box.
std::string TextOf(const Form& form, std::string_view control);
// What is stored for a text of that control.
std::string CodeOf(const DialogTable& table, const std::string& control, const std::string& text);
// The texts that OK writes for the form as it is, without rows.
std::string WrittenBy(const DialogTable& table, const WriteRow& row, const Form& form);

}  // namespace vardo::test
