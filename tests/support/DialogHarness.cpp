#include "DialogHarness.h"

#include "addin/host/IVApplication.h"
#include "addin/host/IVDocument.h"
#include "formula/CellNames.h"
#include "props/PropertyCells.h"

#include <algorithm>
#include <stdexcept>

namespace vardo::test {
namespace {

std::string Unquoted(const std::string& formula) { return formula.size() < 2 ? formula : formula.substr(1, formula.size() - 2); }

const ControlRow* FindControl(const DialogTable& table, const std::string& name) {
  for (const ControlRow& row : table.controls)
    if (row.name == name) return &row;
  return nullptr;
}

const Texts* ItemsOf(const DialogTable& table, const std::string& control) {
  for (const ListRow& row : table.lists)
    if (row.control == control && !row.items.empty()) return &row.items;
  return nullptr;
}

std::string CheckOf(const DialogTable& table, const std::string& control) {
  for (const CheckRow& row : table.checks)
    if (row.control == control) return row.kind;
  return "";
}

}  // namespace

const BadText& BadTextOf(std::string_view kind) {
  static const BadText texts[] = {
      {"symbol name", "a,b",
       "Invalid symbol name. Symbol names can be alphanumeric strings containing letters, numbers, embedded spaces, and the "
       "special characters: @,_,%,?,#, and <period>. Symbol names may not contain any other punctuation characters such as "
       "<comma> or <colon> and they must not be reserved words such as COUNT."},
      {"expression", "(1", "Parentheses in expression are not balanced."},
      {"integer", "2.5", "Invalid integer."},
      {"real", "abc", "Invalid real."},
  };
  for (const BadText& text : texts)
    if (text.kind == kind) return text;
  throw std::logic_error("no kind " + std::string(kind));
}

DialogHarness::DialogHarness() {
  SetFormPresenter(&presenter_);
  BuildNameCatalogues();
  host_.New();
  addin_.SetupEventSink(app_);
}

DialogHarness::~DialogHarness() {
  UnloadAllForms();
  SetFormPresenter(nullptr);
  visApp.reset();
  eventSink.reset();
}

IVShapePtr DialogHarness::Drop(std::string_view kind) {
  host_.Drop(kind, host_.ActivePage().id(), 1, 1, std::nullopt);
  return app_->ActiveWindow()->Selection()->Item(1);
}

IVShapePtr DialogHarness::DropBare(std::string_view kind) {
  const IVShapePtr shape = Drop(kind);
  while (shape->RowCount(kSectionProp) > 0) shape->DeleteRow(kSectionProp, 0);
  return shape;
}

IVShapePtr DialogHarness::DropFilled(const DialogTable& table) {
  const IVShapePtr shape = Drop(table.kind);
  for (const FieldRow& field : table.fields) SetProperty(shape, field.property, FilledWith(table, field));
  for (const RowGroup& rows : table.rows) {
    for (const std::string& column : rows.columns) SetProperty(shape, column, "Left over");
    SetProperty(shape, rows.count, "0");
  }
  return shape;
}

void DialogHarness::SetProperty(const IVShapePtr& shape, std::string_view property, std::string_view text) {
  host_.SetCell(host_.RefTo(host_.ActivePage(), shape->ID()), CellName(property), InQuotes(text));
}

void DialogHarness::RemoveProperty(const IVShapePtr& shape, std::string_view property) {
  const SectionInfo* section = FindSection(kSectionProp);
  const Sheet& sheet = *host_.Resolve(host_.RefTo(host_.ActivePage(), shape->ID())).sheet;
  const std::vector<Sheet::Row>& rows = sheet.Rows(*section);
  for (size_t i = 0; i < rows.size(); ++i)
    if (sheet.RowText(*section, rows[i].key) == property) return shape->DeleteRow(kSectionProp, static_cast<short>(i));
  throw std::logic_error("no property " + std::string(property));
}

std::string DialogHarness::Property(const IVShapePtr& shape, std::string_view property) {
  const std::string cell = CellName(property);
  return shape->CellExists(cell, kExistsAnywhere) ? Unquoted(shape->Cells(cell)->Formula()) : "<missing>";
}

// A check box is put to what its default is not, a list to its last item.
std::string DialogHarness::FilledWith(const DialogTable& table, const FieldRow& field) {
  const ControlRow& control = *FindControl(table, field.control);
  if (control.kind == Kind::Check) return field.missing == "Yes" ? "No" : "Yes";
  const Texts* items = ItemsOf(table, field.control);
  if (control.kind == Kind::Pick) return CodeOf(table, field.control, items->back());
  const std::string number = std::to_string(&field - table.fields.data() + 40);
  return CheckOf(table, field.control) == "symbol name" ? "Kept " + number : number;
}

std::string DialogHarness::FilledShows(const DialogTable& table, const FieldRow& field, const std::string& shapeText) {
  if (field.control == table.name) return shapeText;
  const ControlRow& control = *FindControl(table, field.control);
  return control.kind == Kind::Pick ? ItemsOf(table, field.control)->back() : FilledWith(table, field);
}

std::vector<std::string> DialogHarness::Drawn() {
  std::vector<std::string> lines;
  for (int page = 1; page <= host_.drawing().PageCount(); ++page) {
    DrawingPage& drawn = host_.drawing().PageAt(page);
    lines.push_back("page " + drawn.Name());
    for (int index = 1; index <= drawn.ShapeCount(); ++index) {
      DrawingShape& shape = drawn.ShapeAt(index);
      const std::string name = drawn.Name() + "!" + drawn.NameOf(shape) + " ";
      lines.push_back(name + "text " + shape.Text());
      for (const short number : {kSectionProp, kSectionUser, kSectionConnectionPts}) {
        const SectionInfo* section = FindSection(number);
        int position = 0;
        for (const Sheet::Row& row : shape.Rows(*section)) {
          std::string line = name + std::string(section->prefix) + "." +
                             (number == kSectionConnectionPts ? std::to_string(++position) : shape.RowText(*section, row.key)) +
                             ":";
          for (const ColumnInfo& column : section->columns)
            line += " " + host_.FormulaOf(host_.RefTo(drawn, shape.id()), {section, row.key, Symbol(column.name)});
          lines.push_back(line);
        }
      }
    }
  }
  return lines;
}

std::vector<std::string> DialogHarness::Difference(const std::vector<std::string>& before,
                                                   const std::vector<std::string>& after) {
  std::vector<std::string> difference;
  const auto add = [&](const char* mark, const auto& lines, const auto& others) {
    for (const std::string& line : lines)
      if (std::find(others.begin(), others.end(), line) == others.end()) difference.push_back(mark + line);
  };
  add("-", before, after);
  add("+", after, before);
  return difference;
}

void DialogHarness::Shown(Form& form) {
  const auto act = acts_.find(form.name());
  if (act == acts_.end()) {
    ADD_FAILURE() << form.name() << " was shown";
    return;
  }
  act->second(form);
}

void DialogHarness::Open(const DialogTable& table, const IVShapePtr& shape, const Act& act) {
  bool shown = false;
  OnForm(table.form, [&](Form& form) {
    shown = true;
    act(form);
  });
  host_.Select({shape->ID()});
  host_.RunCommand("Edit Module", [&] { addin_.ShowEditor(app_, shape); });
  EXPECT_TRUE(shown) << table.form << " was not shown";
  acts_.erase(table.form);
}

void DialogHarness::Add(Form& module, const DialogTable& table, const Act& act) {
  bool shown = false;
  OnForm(table.form, [&](Form& form) {
    shown = true;
    act(form);
  });
  Click(module, "cmdAdd");
  EXPECT_TRUE(shown) << table.form << " was not shown";
  acts_.erase(table.form);
}

void DialogHarness::Edit(Form& module, const DialogTable& table, int line, const Act& act) {
  presenter_.Pick(At(module, TableOf(table.module).rows[0].list), line);
  bool shown = false;
  OnForm(table.form, [&](Form& form) {
    shown = true;
    act(form);
  });
  Click(module, "cmdEdit");
  EXPECT_TRUE(shown) << table.form << " was not shown";
  acts_.erase(table.form);
}

void DialogHarness::OpenAny(const DialogTable& table, bool filled, const Act& act) {
  const DialogTable& module = ModuleOf(table);
  Open(module, filled ? DropFilled(module) : Drop(module.kind), [&](Form& form) {
    if (table.module.empty()) return act(form);
    Put(form, module.rows[0].setup);
    Add(form, table, act);
  });
}

Control& DialogHarness::At(const Form& form, std::string_view control) {
  Control* const found = form.Find(control);
  if (!found) throw std::logic_error(form.name() + " has no " + std::string(control));
  return *found;
}

// A combo is put to another item first, so that what follows from a choice follows from this one, even if it is the same again.
void DialogHarness::Put(const Form& form, std::string_view control, std::string_view text) {
  Control& found = At(form, control);
  if (auto* check = dynamic_cast<CheckBox*>(&found)) {
    check->SetChecked(text != "Yes");
    return check->SetChecked(text == "Yes");
  }
  auto& box = dynamic_cast<TextControl&>(found);
  if (auto* combo = dynamic_cast<ComboBox*>(&found); combo && !combo->Items().empty())
    box.SetText(combo->Items()[combo->Items()[0] == text && combo->Items().size() > 1 ? 1 : 0]);
  box.SetText(text);
  if (box.kind() == ControlKind::Text && box.LostFocus) box.LostFocus();
}

void DialogHarness::ExpectRules(const DialogTable& table, const Form& form) {
  for (const RuleRow& rule : table.rules) {
    for (const std::string& name : rule.controls) {
      const Control& control = At(form, name);
      if (control.parent() && !control.parent()->Shown()) continue;
      EXPECT_EQ(control.IsVisible(), rule.when(form)) << name;
    }
  }
}

void DialogHarness::ChangeEverything(const DialogTable& table, const Form& form) {
  int number = 700;
  for (const FieldRow& field : table.fields) {
    Control& control = At(form, field.control);
    const std::string text = std::to_string(++number);
    if (auto* combo = dynamic_cast<ComboBox*>(&control); combo && combo->PickOnly())
      combo->SetListIndex(0);
    else if (auto* box = dynamic_cast<TextControl*>(&control))
      box->SetText(CheckOf(table, field.control) == "symbol name" ? "New " + text : text);
    else
      Put(form, field.control, TextOf(form, field.control) == "Yes" ? "No" : "Yes");
  }
}

}  // namespace vardo::test
