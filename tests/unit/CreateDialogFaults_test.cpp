// The add-in in a drawing host that refuses a call: the first, the second and so on until what was asked for succeeds, each time
// once and once for ever after.
#include "FaultInjection.h"
#include "TestPlatform.h"
#include "addin/Application.h"
#include "addin/Global_Variables.h"
#include "addin/host/HostConstants.h"
#include "addin/host/IVApplication.h"
#include "addin/host/IVDocument.h"
#include "addin/host/IVShape.h"
#include "catalog/NameCatalogues.h"
#include "events/CEventSink.h"
#include "events/PageRegisters.h"
#include "forms/Forms.h"
#include "forms/headless/HeadlessPresenter.h"
#include "memoryhost/DrawingHost.h"
#include "props/PropertyCells.h"
#include "props/StringFunctions.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace vardo {
namespace {

using testing::IsEmpty;
using testing::StartsWith;

class RefusingHost : public FailingHost {
 public:
  void Start(int call, Mode mode) {
    members.clear();
    FailAt(call, mode);
  }
  void BeforeCall(std::string_view member) override {
    members.emplace_back(member);
    FailingHost::BeforeCall(member);
  }
  std::vector<std::string> members;
};

// What the dialog edits, in the order it writes.
struct EditedField {
  const char* control;
  const char* cell;
  const char* text;
};
constexpr EditedField kEdited[] = {
    {"cboName", "Prop.CreateName", "Arrivals"},
    {"cboEntityType", "Prop.CreateEntityType", "Part"},
    {"cboType", "Prop.CreateType", "Constant"},
    {"txtValue", "Prop.CreateValue", "2.5"},
    {"cboUnits", "Prop.CreateUnits", "Minutes"},
    {"txtEntitiesPerArrival", "Prop.CreateBatchSize", "3"},
    {"txtMaxArrivals", "Prop.CreateMaxBatches", "100"},
    {"txtFirstCreation", "Prop.CreateFirstCreation", "1.5"},
    {"cboExpression", "Prop.CreateExpression", "EXPO(2)"},
    {"cboScheduleName", "Prop.CreateScheduleName", "Shifts"},
};

class CreateDialogFaults : public testing::Test {
 protected:
  CreateDialogFaults() {
    SetFormPresenter(&presenter_);
    BuildNameCatalogues();
    host_.New();
    addin_.SetupEventSink(app_);
  }
  ~CreateDialogFaults() override {
    UnloadAllForms();
    SetFormPresenter(nullptr);
    PagesToDelete.clear();
    visApp.reset();
    eventSink.reset();
  }

  // Runs an operation with call 1, 2, ... failing until it makes fewer calls than that.
  void Sweep(const std::function<void()>& operation) {
    for (const auto mode : {FailingHost::Mode::Once, FailingHost::Mode::EverAfter}) {
      for (int call = 1;; ++call) {
        SCOPED_TRACE("call " + std::to_string(call) + (mode == FailingHost::Mode::Once ? " fails" : " and all behind it fail"));
        startFaults_ = [=, this] { faults_.Start(call, mode); };
        operation();
        const int failures = faults_.failures();
        faults_.SwitchOff();
        if (failures == 0 || HasFailure()) break;
      }
    }
  }

  IVShapesPtr Shapes() { return host_.application()->ActivePage()->Shapes(); }
  // Dropped and left selected, seen through the refusing host.
  IVShapePtr Drop(std::string_view master) {
    host_.Drop(master, host_.ActivePage().id(), 1, 1, std::nullopt);
    return app_->ActiveWindow()->Selection()->Item(1);
  }
  void OpenEditor(const IVShapePtr& shape) {
    host_.RunCommand("Edit Module", [&] { addin_.ShowEditor(app_, shape); });
  }
  // The formulas of what the dialog edits; a missing cell is left out.
  std::map<std::string, std::string> Cells(int index = 1) {
    const IVShapePtr shape = Shapes()->Item(index);
    std::map<std::string, std::string> cells = {{"Text", shape->Text()}};
    for (const EditedField& field : kEdited)
      if (shape->CellExists(field.cell, kExistsAnywhere)) cells[field.cell] = shape->Cells(field.cell)->Formula();
    return cells;
  }
  // All pages with their registers and the texts of their shapes.
  std::vector<std::string> Drawn() {
    std::vector<std::string> drawn;
    const IVPagesPtr pages = host_.application()->ActiveDocument()->Pages();
    for (int i = 1; i <= pages->Count(); ++i) {
      const IVPagePtr page = pages->Item(i);
      drawn.push_back(page->Name());
      for (const auto& kind : kModuleKinds) drawn.push_back(JoinList(GetPagePropList(page, kind, "none")));
      for (int j = 1; j <= page->Shapes()->Count(); ++j) drawn.push_back(page->Shapes()->Item(j)->Text());
    }
    return drawn;
  }
  // Nothing but empty rows may have been added.
  void ExpectOnlyEmptyRowsAdded(const std::map<std::string, std::string>& before) {
    for (const auto& [cell, formula] : Cells()) {
      const auto was = before.find(cell);
      if (was != before.end()) {
        EXPECT_EQ(formula, was->second) << cell;
      } else {
        EXPECT_TRUE(formula.empty() || formula == "\"\"") << cell << " is " << formula;
      }
    }
  }
  // One message, of the kind every failure in a handler ends in.
  void ExpectOneFailureMessage() {
    ASSERT_EQ(platform_->messages.size(), 1u);
    const RecordingPlatform::Message& message = platform_->messages[0];
    EXPECT_EQ(message.title, "Quellis");
    EXPECT_EQ(message.style, 48);
    const size_t lineEnd = message.text.find('\n');
    ASSERT_NE(lineEnd, std::string::npos) << message.text;
    EXPECT_EQ(std::to_string(std::atoi(message.text.c_str())), message.text.substr(0, lineEnd))
        << "the number has a line of its own";
    EXPECT_GT(message.text.size(), lineEnd + 1) << "so has the description";
    EXPECT_EQ(message.text.find('\n', lineEnd + 1), std::string::npos) << message.text;
  }

  TestPlatform platform_;
  RefusingHost faults_;
  DrawingHost host_;
  IVApplicationPtr app_ = ObserveHost(host_.application(), faults_);
  Application addin_;
  std::function<void()> startFaults_;
  std::function<void(Form&)> whenShown_;
  HeadlessPresenter presenter_{[this](Form& form) { whenShown_(form); }};
};

TEST_F(CreateDialogFaults, AnOpeningThatFailsTellsTheCallerAndLeavesNoForm) {
  for (const bool bare : {false, true}) {
    SCOPED_TRACE(bare ? "a shape without properties" : "a shape with all properties");
    host_.New();
    const IVShapePtr shape = Drop("Create");
    while (bare && shape->RowCount(kSectionProp) > 0) shape->DeleteRow(kSectionProp, 0);
    const auto before = Cells();
    int shown = 0;
    whenShown_ = [&](Form&) {
      ++shown;
      faults_.SwitchOff();
    };
    Sweep([&] {
      shown = 0;
      startFaults_();
      bool told = false;
      try {
        OpenEditor(shape);
      } catch (const HostError&) {
        told = true;
      }
      EXPECT_EQ(shown, told ? 0 : 1);
      EXPECT_THAT(LoadedForms(), IsEmpty());
      EXPECT_EQ(TopForm(), nullptr);
      EXPECT_THAT(platform_->messages, IsEmpty());
      ExpectOnlyEmptyRowsAdded(before);
      while (Cells() != before) host_.Undo();
    });
  }
}

TEST_F(CreateDialogFaults, AfterAnOpeningThatFailedTheNextOneShowsTheSameFormAsEver) {
  const IVShapePtr shape = Drop("Create");
  std::map<std::string, std::vector<std::string>> items, expected;
  whenShown_ = [&](Form& form) {
    faults_.SwitchOff();
    items.clear();
    for (Control* control : form.Controls()) {
      if (const auto* combo = dynamic_cast<ComboBox*>(control)) items[control->name()] = combo->Items();
      if (const auto* text = dynamic_cast<TextControl*>(control)) items[control->name()].push_back(text->Text());
    }
  };
  OpenEditor(shape);
  expected = items;
  Sweep([&] {
    startFaults_();
    try {
      OpenEditor(shape);
    } catch (const HostError&) {
    }
    const int failures = faults_.failures();
    faults_.SwitchOff();
    OpenEditor(shape);
    EXPECT_EQ(items, expected);
    faults_.SwitchOff();
    ASSERT_EQ(faults_.failures(), failures);
  });
}

TEST_F(CreateDialogFaults, AnOKThatFailsShowsOneMessageAndCanBePressedAgain) {
  const IVShapePtr shape = Drop("Create");
  Drop("Process");
  std::vector<CellWrite> expectedWrites = {{"Create", "", "Arrivals"}};
  for (const EditedField& field : kEdited) expectedWrites.push_back({"Create", field.cell, InQuotes(field.text)});

  whenShown_ = [&](Form& form) {
    Control& ok = *form.Find("cmdOK");
    for (const EditedField& field : kEdited) dynamic_cast<TextControl&>(*form.Find(field.control)).SetText(field.text);
    host_.StartWriteLog();
    startFaults_();
    presenter_.Click(ok);
    const bool failed = faults_.failures() > 0;
    faults_.SwitchOff();
    const std::vector<CellWrite> writes = host_.TakeWriteLog();
    const auto firstWrite = std::find(faults_.members.begin(), faults_.members.end(), "Shape.SetText");
    const bool passedChecks = firstWrite != faults_.members.end();

    ASSERT_LE(writes.size(), expectedWrites.size());
    EXPECT_TRUE(std::equal(writes.begin(), writes.end(), expectedWrites.begin())) << "what is written is written in order";
    if (!passedChecks) {
      EXPECT_THAT(writes, IsEmpty());
    }
    if (platform_->messages.empty()) {
      EXPECT_FALSE(form.IsShown());
      return;
    }
    EXPECT_TRUE(failed);
    ExpectOneFailureMessage();
    ASSERT_TRUE(form.IsShown());
    platform_->messages.clear();
    presenter_.Click(ok);
    EXPECT_THAT(platform_->messages, IsEmpty());
    EXPECT_FALSE(form.IsShown());
  };

  const auto before = Cells();
  Sweep([&] {
    host_.Select({host_.ActivePage().ShapeAt(1).id()});
    OpenEditor(shape);
    const int failures = faults_.failures();
    EXPECT_THAT(LoadedForms(), IsEmpty());
    const auto cells = Cells();
    EXPECT_EQ(cells.at("Text"), "Arrivals");
    for (const EditedField& field : kEdited) EXPECT_EQ(cells.at(field.cell), InQuotes(field.text)) << field.cell;
    host_.Undo();
    EXPECT_EQ(Cells(), before) << "the command is one step, whatever happened in it";
    ASSERT_EQ(faults_.failures(), failures);
  });
}

TEST_F(CreateDialogFaults, ARefusedFieldWritesNothingInAFailingHostEither) {
  const IVShapePtr shape = Drop("Create");
  whenShown_ = [&](Form& form) {
    dynamic_cast<TextControl&>(*form.Find("cboEntityType")).SetText("no symbol name!");
    host_.StartWriteLog();
    startFaults_();
    presenter_.Click(*form.Find("cmdOK"));
    faults_.SwitchOff();
    EXPECT_THAT(host_.TakeWriteLog(), IsEmpty());
    EXPECT_EQ(platform_->messages.size(), 1u);
    EXPECT_TRUE(form.IsShown());
    platform_->messages.clear();
    presenter_.Click(*form.Find("cmdCancel"));
  };
  Sweep([&] { OpenEditor(shape); });
}

// What a person does in the drawing while the add-in listens: nothing that the listener meets reaches the person.
TEST_F(CreateDialogFaults, AListenerThatFailsDoesNotDisturbThePersonsCommand) {
  const auto page = [&](int index) { return host_.drawing().PageAt(index).id(); };
  const auto shape = [&](int index) { return host_.RefTo(host_.ActivePage(), host_.ActivePage().ShapeAt(index).id()); };
  const auto drop = [&](std::string_view master) { host_.Drop(master, host_.ActivePage().id(), 1, 1, std::nullopt); };
  struct Command {
    const char* name;
    std::function<void()> prepare;
    std::function<void()> run;
    int steps;
    int shapesAfter;
  };
  const Command commands[] = {
      {"dropping a first module", [] {}, [&] { drop("Create"); }, 1, 1},
      {"dropping a module whose name is in use", [&] { drop("Create"); }, [&] { drop("Create"); }, 1, 2},
      {"dropping a connector", [&] { drop("Create"); }, [&] { drop("Dynamic connector"); }, 1, 2},
      {"pasting", [&] { drop("Process"); }, [&] { host_.Paste({shape(1)}, page(1)); }, 1, 2},
      {"typing a new name", [&] { drop("Create"); }, [&] { host_.TypeText(shape(1), " Arrivals", false); }, 1, 1},
      {"typing a name in use",
       [&] {
         drop("Process");
         drop("Create");
       },
       [&] { host_.TypeText(shape(2), "process 1", false); }, 1, 2},
      {"deleting a selection",
       [&] {
         for (const char* master : {"Create", "Process", "Dispose"}) drop(master);
       },
       [&] {
         host_.Select({shape(1).shape, shape(2).shape});
         host_.DeleteSelection();
       },
       1, 1},
      {"adding a page", [] {}, [&] { host_.AddPage(std::nullopt); }, 1, 0},
      {"deleting a page", [&] { host_.AddPage(std::nullopt); }, [&] { host_.DeletePage(page(2), true); }, 1, 0},
      {"deleting a Process that has a submodel page, and going on",
       [&] {
         addin_.Submodel(app_, Drop("Process"));
         host_.ShowPage(page(1));
       },
       [&] {
         host_.Select({shape(1).shape});
         host_.DeleteSelection();
         drop("Create");
       },
       2, 1},
  };
  for (const Command& command : commands) {
    SCOPED_TRACE(command.name);
    host_.New();
    command.prepare();
    const std::vector<std::string> before = Drawn();
    Sweep([&] {
      startFaults_();
      EXPECT_NO_THROW(command.run());
      faults_.SwitchOff();
      EXPECT_EQ(host_.ActivePage().ShapeCount(), command.shapesAfter) << "the person's own command is done as ever";
      drop("Variable");
      EXPECT_THAT(PagesToDelete, IsEmpty()) << "what was put off is done at the next event";
      for (int step = 0; step < command.steps + 1; ++step) host_.Undo();
      EXPECT_EQ(Drawn(), before) << "and undone";
    });
  }
}

TEST_F(CreateDialogFaults, AMenuThatCannotBeAddedIsOneMessageAndNoMenu) {
  const auto captions = [&] {
    std::vector<std::string> shown;
    for (const MenuData& menu : host_.menus().Shown()) shown.push_back(menu.caption);
    return shown;
  };
  const std::vector<std::string> before = captions();
  Sweep([&] {
    host_.menus().SetCustomMenus(host_.menus().BuiltInMenus());
    startFaults_();
    addin_.AddVardoMenu();
    if (faults_.failures() > 0) {
      ASSERT_EQ(platform_->messages.size(), 1u);
      EXPECT_THAT(platform_->messages[0].text,
                  StartsWith("Error in AddVardoMenu\n" + std::to_string(kHostNotAllowed) + "\nThe host refused "));
      EXPECT_EQ(platform_->messages[0].title, "Quellis");
      EXPECT_EQ(platform_->messages[0].style, 48);
      EXPECT_EQ(captions(), before);
    } else {
      EXPECT_THAT(platform_->messages, IsEmpty());
    }
    platform_->messages.clear();
  });
  EXPECT_THAT(captions(), testing::Contains("&Simulate").Times(1));
}

}  // namespace
}  // namespace vardo
