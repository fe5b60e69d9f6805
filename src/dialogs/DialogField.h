// One box of a dialog: what it offers, how it is tidied and checked, and how its text goes with what a cell holds.
#pragma once

#include "forms/Controls.h"
#include "modules/ModuleProperty.h"

#include <functional>
#include <initializer_list>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace vardo {

// A short code that a cell holds, and the words that a box shows for it.
struct CodeRow {
  std::string_view code;
  std::string_view text;
};

// What a box shows for a code outside its table, and what becomes of the code on OK.
enum class UnknownCode {
  ShowsNothing,   // an empty box; the code stays unless the user chooses an item
  ShowsLastText,  // the last item, whose code is stored
  ShowsItself,    // the code; a text outside the table is stored as it is
};

std::string CodeToText(std::span<const CodeRow> table, std::string_view code);
std::string TextToCode(std::span<const CodeRow> table, std::string_view text);

class DialogField {
 public:
  using Texts = std::span<const std::string_view>;
  using Filler = void (*)(ItemList&);

  // property: what it edits; in a row dialog the column. A missing cell shows the first word of the property's default.
  DialogField(TextControl& control, const ModuleProperty& property);
  // Stores "Yes" when checked, else "No".
  DialogField(CheckBox& control, const ModuleProperty& property);

  // Another default than the property's.
  DialogField& Default(std::string_view text);
  // The spelling of the property's name that reading uses, where it is not the one that OK writes.
  DialogField& ReadAs(std::string_view property);
  // Fixed items of the drop-down.
  DialogField& Items(Texts items);
  DialogField& Items(std::initializer_list<std::string_view> items) { return Items(Texts(items.begin(), items.size())); }
  // Fixed items that stand for codes.
  DialogField& Codes(std::span<const CodeRow> table, UnknownCode unknown);
  // Names from the drawing, behind the fixed items.
  DialogField& Offers(Filler filler);
  // The kind that OK checks the text as (kSymbolName, kExpression, ...).
  DialogField& Check(std::string_view kind);
  // What an emptied field gets when the focus leaves it: the default unless told otherwise.
  DialogField& WhenEmpty() { return WhenEmpty(default_); }
  DialogField& WhenEmpty(std::string_view text);
  DialogField& WhenEmpty(std::function<std::string()> text);

  Control& control() const { return control_; }
  const std::string& property() const { return property_; }
  const std::string& readProperty() const { return readProperty_; }
  const std::string& defaultText() const { return default_; }

  // --- For a program that fills the dialog in a person's place.
  // The item that stands for a code; any other text is itself.
  std::string ItemFor(std::string_view codeOrText) const;
  // The only texts that the box takes; empty when a person may type into it.
  std::vector<std::string> Choices() const;

  // --- For the frames.
  void FillList();
  // Keeps what the cell holds, and shows it.
  void SetStored(std::string_view stored) { stored_ = stored; }
  void ShowStored();
  // What OK writes.
  std::string Value() const;
  // Checks the text, hidden or not; when it fails the user has been told and the field been given the focus.
  bool IsValid() const;

 private:
  DialogField(Control& control, TextControl* text, const ModuleProperty& property);

  Control& control_;
  TextControl* const text_;  // null for a check box
  std::string property_, readProperty_;
  std::string default_;
  std::vector<std::string> items_;
  std::span<const CodeRow> codes_;
  UnknownCode unknown_ = UnknownCode::ShowsItself;
  Filler offers_ = nullptr;
  std::string check_;
  std::string stored_;

  std::string TextFor(std::string_view stored) const;
};

}  // namespace vardo
