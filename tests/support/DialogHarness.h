// Opens the dialogs of modules in a drawing and says what is in the drawing, for the tests that read DialogTables.h.
#pragma once

#include "DialogTables.h"
#include "FaultInjection.h"
#include "TestPlatform.h"
#include "addin/Application.h"
#include "addin/Global_Variables.h"
#include "addin/host/HostConstants.h"
#include "addin/host/IVShape.h"
#include "catalog/NameCatalogues.h"
#include "events/CEventSink.h"
#include "forms/Forms.h"
#include "forms/headless/HeadlessPresenter.h"
#include "memoryhost/DrawingHost.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace vardo::test {

inline constexpr const char* kEndOfList = "<End of list>";

// A text that no check of that kind lets pass, and the message for it.
struct BadText {
  std::string kind, text, message;
};
const BadText& BadTextOf(std::string_view kind);

// Fails a call on purpose and remembers what was called.
class RefusingHost : public FailingHost {
 public:
  void Start(int call) {
    members.clear();
    FailAt(call, Mode::Once);
  }
  void BeforeCall(std::string_view member) override {
    members.emplace_back(member);
    FailingHost::BeforeCall(member);
  }
  std::vector<std::string> members;
};

class DialogHarness : public testing::Test {
 protected:
  using Act = std::function<void(Form&)>;

  DialogHarness();
  ~DialogHarness() override;

  // --- Shapes.
  // A module just dropped, selected.
  IVShapePtr Drop(std::string_view kind);
  // The same without any property.
  IVShapePtr DropBare(std::string_view kind);
  // The same with a text of its own in each property that the table knows; the list of rows is empty.
  IVShapePtr DropFilled(const DialogTable& table);
  void SetProperty(const IVShapePtr& shape, std::string_view property, std::string_view text);
  void RemoveProperty(const IVShapePtr& shape, std::string_view property);
  // The cell's text without quotes; "<missing>" when there is no such cell.
  std::string Property(const IVShapePtr& shape, std::string_view property);
  // The text that DropFilled stored for a field, and the one that shows it.
  static std::string FilledWith(const DialogTable& table, const FieldRow& field);
  static std::string FilledShows(const DialogTable& table, const FieldRow& field, const std::string& shapeText);
  // Everything that a dialog can change: pages, and the texts, properties, user cells and connection points of all shapes. A line
  // each.
  std::vector<std::string> Drawn();
  // The lines of Drawn() that one has and the other has not, marked by - and +.
  static std::vector<std::string> Difference(const std::vector<std::string>& before, const std::vector<std::string>& after);

  // --- Dialogs.
  // Opens the module's dialog; act runs while it is shown. The form is cancelled afterwards if act left it open.
  void Open(const DialogTable& table, const IVShapePtr& shape, const Act& act);
  // The row dialog, through the Add button of its module's dialog.
  void Add(Form& module, const DialogTable& table, const Act& act);
  void Edit(Form& module, const DialogTable& table, int line, const Act& act);
  // What is done when a form of that name is shown.
  void OnForm(const std::string& form, const Act& act) { acts_[form] = act; }
  // Either kind of dialog on a module just dropped; filled or fresh.
  void OpenAny(const DialogTable& table, bool filled, const Act& act);

  static const DialogTable& ModuleOf(const DialogTable& table) { return table.module.empty() ? table : TableOf(table.module); }
  static Control& At(const Form& form, std::string_view control);
  static ListBox& ListAt(const Form& form, std::string_view control) { return dynamic_cast<ListBox&>(At(form, control)); }
  // Puts a control to a text by program, so that a hidden one can be put as well, and leaves it.
  static void Put(const Form& form, std::string_view control, std::string_view text);
  static void Put(const Form& form, const Settings& settings) {
    for (const auto& [control, text] : settings) Put(form, control, text);
  }
  // What is visible follows from the form's texts, in frames that are shown.
  static void ExpectRules(const DialogTable& table, const Form& form);
  // Puts every field to another text than a shape has that was just dropped or filled.
  static void ChangeEverything(const DialogTable& table, const Form& form);
  void Click(const Form& form, std::string_view control) { presenter_.Click(At(form, control)); }

  TestPlatform platform_;
  RefusingHost faults_;
  DrawingHost host_;
  IVApplicationPtr app_ = ObserveHost(host_.application(), faults_);
  Application addin_;
  std::map<std::string, Act> acts_;
  HeadlessPresenter presenter_{[this](Form& form) { Shown(form); }};

 private:
  void Shown(Form& form);
};

// A table as a test's parameter and name.
using TableParam = const DialogTable*;
inline std::vector<TableParam> Params(std::initializer_list<const std::vector<DialogTable>*> lists) {
  std::vector<TableParam> params;
  for (const auto* list : lists)
    for (const DialogTable& table : *list) params.push_back(&table);
  return params;
}
inline std::string ParamName(const testing::TestParamInfo<TableParam>& info) { return info.param->form; }
inline void PrintTo(const DialogTable* table, std::ostream* out) { *out << table->form; }

class TableTest : public DialogHarness, public testing::WithParamInterface<TableParam> {
 protected:
  const DialogTable& table() const { return *GetParam(); }
};

}  // namespace vardo::test
