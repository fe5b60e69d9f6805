// The frame of the dialogs that edit one module shape: finding the shape, loading and tidying the fields, checking them, keeping
// the name unique, writing back.
//
// A dialog says only what is its own, in its constructor: its controls, its fields in the order they are read and written, its
// lists and its layout. Nothing is written to the shape before every check has passed; only filling the drop-downs may give
// module shapes the (empty, hidden) properties that they lack.
#pragma once

#include "addin/host/IVShape.h"
#include "catalog/NameCatalogues.h"
#include "forms/Form.h"

#include <deque>
#include <initializer_list>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace vardo {

// One box and the property it edits. Field names are without "Prop.".
class DialogField {
 public:
  DialogField(TextControl& control, std::string_view property) : control_(control), property_(property) {}

  // The default on reading; a missing cell shows its first word.
  DialogField& Default(std::string_view text);
  // Fixed items of the drop-down.
  DialogField& Items(std::span<const std::string_view> items);
  DialogField& Items(std::initializer_list<std::string_view> items) { return Items(std::span(items.begin(), items.size())); }
  // Names from the drawing, behind the fixed items.
  DialogField& Offers(NameList names);
  // The kind that OK checks the text as (kSymbolName, kExpression, ...).
  DialogField& Check(std::string_view kind);
  // What an emptied field gets when the focus leaves it.
  DialogField& WhenEmpty(std::string_view text);

  TextControl& control() const { return control_; }
  const std::string& property() const { return property_; }

 private:
  friend class ModuleDialog;
  TextControl& control_;
  std::string property_;
  std::string default_;
  std::vector<std::string> items_;
  std::optional<NameList> offers_;
  std::string check_;
  std::string stored_;  // item 1 of the cell at opening
};

class ModuleDialog : public Form {
 public:
  void Form_Load() override;

  // Loads the fields of the active window's first selected shape, shows the dialog and returns when it is closed.
  // Throws what the host throws, before anything is shown; the form is unloaded then.
  void Open();

  // The field that edits a property (without "Prop.", letter case does not count); null when there is none.
  const DialogField* FindField(std::string_view property) const;
  const std::deque<DialogField>& Fields() const { return fields_; }

 protected:
  ModuleDialog(std::string_view name, std::string_view caption, std::string_view helpTopic);

  // The box that holds the module's name; it is checked first and written first.
  void Name(ComboBox& control, std::string_view property, NameList offered);
  // The next field in the order of reading, checking and writing.
  DialogField& Field(TextControl& control, std::string_view property);

  // What follows from the loaded fields (which boxes are shown), run when all are set.
  virtual void AfterLoad() {}

  void Show(std::initializer_list<Control*> controls, bool shown);

 private:
  void Load();
  void ReadFields();
  void FillLists();
  void SetTexts();
  bool FieldsAreValid();
  bool NameIsUnique();
  void WriteFields();

  void cmdOK_Click();
  void cmdCancel_Click();
  void cmdHelp_Click();

  std::string helpTopic_;
  IVShapePtr shape_;
  ComboBox* name_ = nullptr;
  std::string nameAtOpening_;
  std::deque<DialogField> fields_;  // the name first; references to its elements stay good

 protected:
  // Registered by each dialog behind its own controls, so that they come last in tab order.
  struct Buttons {
    explicit Buttons(ModuleDialog& dialog);
    Button cmdOK, cmdCancel, cmdHelp;
  };
};

}  // namespace vardo
