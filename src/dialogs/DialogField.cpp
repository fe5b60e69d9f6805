#include "dialogs/DialogField.h"

#include "dialogs/Utilities.h"
#include "validate/CheckDataType.h"

#include <algorithm>
#include <utility>

namespace vardo {
namespace {

constexpr std::string_view kYes = "Yes";
constexpr std::string_view kNo = "No";

// A field as OK checks it: hidden fields are checked too.
class CheckedWhetherShownOrNot : public FieldView {
 public:
  explicit CheckedWhetherShownOrNot(TextControl& control) : control_(control) {}
  bool Visible() const override { return true; }
  std::string Text() const override { return control_.Text(); }
  void SetFocus() override { control_.MoveFocusHere(); }

 private:
  TextControl& control_;
};

const CodeRow* RowOfCode(std::span<const CodeRow> table, std::string_view code) {
  const auto row = std::find_if(table.begin(), table.end(), [&](const CodeRow& r) { return r.code == code; });
  return row == table.end() ? nullptr : &*row;
}

const CodeRow* RowOfText(std::span<const CodeRow> table, std::string_view text) {
  const auto row = std::find_if(table.begin(), table.end(), [&](const CodeRow& r) { return r.text == text; });
  return row == table.end() ? nullptr : &*row;
}

}  // namespace

std::string CodeToText(std::span<const CodeRow> table, std::string_view code) {
  const CodeRow* row = RowOfCode(table, code);
  return row ? std::string(row->text) : std::string();
}

std::string TextToCode(std::span<const CodeRow> table, std::string_view text) {
  const CodeRow* row = RowOfText(table, text);
  return row ? std::string(row->code) : std::string();
}

DialogField::DialogField(Control& control, TextControl* text, const ModuleProperty& property)
    : control_(control), text_(text), property_(property.field), readProperty_(property.field), default_(property.defaultValue) {}

DialogField::DialogField(TextControl& control, const ModuleProperty& property) : DialogField(control, &control, property) {}

DialogField::DialogField(CheckBox& control, const ModuleProperty& property) : DialogField(control, nullptr, property) {
  items_ = {std::string(kYes), std::string(kNo)};
}

DialogField& DialogField::Default(std::string_view text) {
  default_ = text;
  return *this;
}

DialogField& DialogField::ReadAs(std::string_view property) {
  readProperty_ = property;
  return *this;
}

DialogField& DialogField::Items(Texts items) {
  items_.assign(items.begin(), items.end());
  return *this;
}

DialogField& DialogField::Codes(std::span<const CodeRow> table, UnknownCode unknown) {
  codes_ = table;
  unknown_ = unknown;
  for (const CodeRow& row : table) items_.emplace_back(row.text);
  return *this;
}

DialogField& DialogField::Offers(Filler filler) {
  offers_ = filler;
  return *this;
}

DialogField& DialogField::Check(std::string_view kind) {
  check_ = kind;
  return *this;
}

DialogField& DialogField::WhenEmpty(std::string_view text) {
  return WhenEmpty([text = std::string(text)] { return text; });
}

DialogField& DialogField::WhenEmpty(std::function<std::string()> text) {
  control_.LostFocus = [control = text_, text = std::move(text)] { TrimControlText(*control, text()); };
  return *this;
}

std::string DialogField::TextFor(std::string_view stored) const {
  if (const CodeRow* row = RowOfCode(codes_, stored)) return std::string(row->text);
  switch (unknown_) {
    case UnknownCode::ShowsNothing:
      return {};
    case UnknownCode::ShowsLastText:
      return std::string(codes_.back().text);
    case UnknownCode::ShowsItself:
      return std::string(stored);
  }
  return {};
}

std::string DialogField::ItemFor(std::string_view codeOrText) const {
  const CodeRow* row = RowOfCode(codes_, codeOrText);
  return std::string(row ? row->text : codeOrText);
}

std::vector<std::string> DialogField::Choices() const {
  const auto* combo = dynamic_cast<const ComboBox*>(&control_);
  const bool typed = text_ && !(combo && combo->PickOnly());
  return typed ? std::vector<std::string>() : items_;
}

void DialogField::FillList() {
  auto* combo = dynamic_cast<ComboBox*>(&control_);
  if (!combo) return;
  for (const std::string& item : items_) combo->AddItem(item);
  if (offers_) offers_(*combo);
}

void DialogField::ShowStored() {
  if (text_) return text_->SetText(TextFor(stored_));
  static_cast<CheckBox&>(control_).SetChecked(stored_ == kYes);
}

std::string DialogField::Value() const {
  if (!text_) return std::string(static_cast<const CheckBox&>(control_).Checked() ? kYes : kNo);
  const std::string text = text_->Text();
  if (const CodeRow* row = RowOfText(codes_, text)) return std::string(row->code);
  switch (unknown_) {
    case UnknownCode::ShowsNothing:
      return stored_;
    case UnknownCode::ShowsLastText:
      return std::string(codes_.back().code);
    case UnknownCode::ShowsItself:
      return text;
  }
  return {};
}

bool DialogField::IsValid() const {
  if (check_.empty()) return true;
  CheckedWhetherShownOrNot view(*text_);
  return ValidateField(view, check_);
}

}  // namespace vardo
