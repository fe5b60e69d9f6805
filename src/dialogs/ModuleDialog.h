// The frame of the dialogs that edit one module shape: finding the shape, loading the fields, checking them, keeping the name
// unique, writing back.
//
// A dialog says only what is its own, in its constructor: its fields in the order they are read, its lists, its rows and its
// layout. Nothing is written to the shape before every check has passed; only filling the drop-downs may give module shapes the
// (empty, hidden) properties that they lack.
#pragma once

#include "addin/host/IVShape.h"
#include "dialogs/DialogFrame.h"
#include "dialogs/RepeatGroup.h"
#include "dialogs/RowList.h"
#include "forms/Forms.h"

#include <deque>
#include <functional>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vardo {

class ModuleDialog : public DialogFrame {
 public:
  // The field that edits a property (without "Prop.", letter case does not count); null when there is none.
  const DialogField* FindField(std::string_view property) const;
  const std::deque<DialogField>& Fields() const { return fields(); }

 protected:
  ModuleDialog(const ModuleSchema& module, std::string_view name, std::string_view caption, std::string_view helpTopic);

  // Loads the fields of the active window's first selected shape, shows the dialog and returns when it is closed.
  // Throws what the host throws, before anything is shown; the form is unloaded then. Throws RuntimeError 5 when it is shown
  // already.
  void Open();

  // The box that holds the module's name; it is checked first and written first. The fields behind it come in the order of
  // reading.
  void Name(ComboBox& control, DialogField::Filler offered);
  // OK writes the fields as they were added unless another order is given here, the name first.
  void WriteInOrder(std::initializer_list<const Control*> controls) { writeOrder_ = controls; }
  // The kind's rows, in a list; openRow edits one of them.
  RepeatGroup& Rows(RowList& list, std::function<void(std::string_view)> openRow);

  // What follows from the loaded fields (which boxes are shown), run when all are set.
  virtual void AfterLoad() {}
  // A sentence that says why the shape cannot be called by its new name, which no other module has; none when it can.
  virtual std::optional<std::string> WhyNotNamed(const IVShapePtr&) { return std::nullopt; }
  // OK has passed its checks: what goes before the shape's text, and what goes between the name and the other fields.
  virtual void WriteBeforeName(const IVShapePtr&) {}
  virtual void WriteAfterName(const IVShapePtr&) {}
  virtual StringList ReadRows(const IVShapePtr& shape);
  virtual void WriteRows(const IVShapePtr& shape);
  // Gives up the row dialog, where there is one.
  virtual void UnloadRowDialog() {}

  void cmdOK_Click() override;
  void cmdCancel_Click() override;

  std::string NewName() const { return name_->Text(); }
  bool IsRenamed() const { return NewName() != nameAtOpening_; }

 private:
  void Load();
  bool NameIsFree();
  void Write();

  IVShapePtr shape_;
  ComboBox* name_ = nullptr;
  std::string nameAtOpening_;
  std::vector<const Control*> writeOrder_;
  RowList* rowList_ = nullptr;
  RepeatGroup rowGroup_;
};

// The row dialog of a class, if it is loaded, is given up.
template <class RowDialogClass>
void UnloadIfLoaded() {
  if (RowDialogClass* loaded = LoadedForm<RowDialogClass>()) Unload(*loaded);
}

}  // namespace vardo
