// The list of a dialog's rows with the buttons that add, edit and delete one.
//   A row is one line, its fields joined by ";". The last line, "<End of list>", is no row: it is where new rows are appended.
#pragma once

#include "forms/Form.h"
#include "props/StringFunctions.h"

#include <functional>
#include <string_view>
#include <vector>

namespace vardo {

// What a row dialog is opened with instead of a line to make a new row.
inline constexpr std::string_view kAddRow = "Add";

class RowList {
 public:
  RowList(Form& form, std::string_view listName, std::string_view labelName, std::string_view labelCaption);

  // Opens the row dialog on a line, or on kAddRow.
  std::function<void(std::string_view)> openRow;

  // Fills the list with the rows, adds the end line and selects the first line.
  void Fill(const StringList& rows);
  StringList Rows() const;

  // A new row comes before the selected line, or last when none is selected; that line stays selected.
  void Insert(std::string_view row);
  // Takes the place of the selected line.
  void Replace(std::string_view row);

  std::vector<Button*> Buttons() { return {&cmdAdd, &cmdEdit, &cmdDelete}; }
  std::vector<Control*> Controls() { return {&label, &list, &cmdAdd, &cmdEdit, &cmdDelete}; }

  Label label;
  ListBox list;
  Button cmdAdd, cmdEdit, cmdDelete;

 private:
  // The end line when none is selected.
  std::string_view SelectedLine() const;
  void EditSelected();
  void AddOrEdit();
  void DeleteSelected();
};

}  // namespace vardo
