// The frame of the dialogs that edit one row of a module dialog's list. They exchange lines with that list and never touch the
// shape. A row dialog is hidden when it is closed; its module dialog unloads it.
#pragma once

#include "dialogs/DialogFrame.h"
#include "dialogs/RowList.h"
#include "forms/Forms.h"

#include <string_view>
#include <vector>

namespace vardo {

class RowDialog : public DialogFrame {
 public:
  // Fills the drop-downs; they are kept as long as the module dialog is open.
  void FillLists();

 protected:
  // rows: finds the list of the module dialog that is open.
  RowDialog(const ModuleSchema& module, std::string_view name, std::string_view caption, std::string_view helpTopic,
            RowList& (*rows)());

  // Shows the row's fields, or the defaults for kAddRow, until the dialog is closed.
  void Open(std::string_view line);

  // The boxes whose texts make the line, in its order, as the first of them now have it. Without any, OK leaves the list alone.
  virtual std::vector<TextControl*> LineBoxes() = 0;
  // Puts a line into the boxes, which hold their defaults.
  virtual void SetLine(std::string_view line);
  virtual void AfterLoad() {}
  // The line has gone into the list.
  virtual void AfterOK() {}

 private:
  void cmdOK_Click() override;
  void cmdCancel_Click() override;
  std::string Line();
  void TakeLine();

  RowList& (*rows_)();
  bool edits_ = false;
};

// The row list of the one open dialog of that class.
template <class ModuleDialogClass>
RowList& RowsOf() {
  return LoadedForm<ModuleDialogClass>()->rows;
}

}  // namespace vardo
