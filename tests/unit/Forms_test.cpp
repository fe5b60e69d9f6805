#include "forms/Forms.h"

#include "TestPlatform.h"
#include "base/Errors.h"
#include "forms/headless/HeadlessPresenter.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>

namespace vardo {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

int loads = 0, alive = 0;

class CountedForm : public Form {
 public:
  explicit CountedForm(std::string_view name) : Form(name, name) {
    ++alive;
    SetDefaultButtons(cmdOK, cmdCancel);
    cmdCancel.Click = [this] { Unload(*this); };
  }
  ~CountedForm() override { --alive; }
  void Form_Load() override { ++loads; }
  TextBox txtValue{*this, "txtValue"};
  Button cmdOK{*this, "cmdOK"};
  Button cmdCancel{*this, "cmdCancel"};
};
class ModuleForm : public CountedForm {
 public:
  ModuleForm() : CountedForm("frmModule") {}
};
class RowForm : public CountedForm {
 public:
  RowForm() : CountedForm("frmRow") {}
};

class FormsTest : public testing::Test {
 protected:
  FormsTest() : before_(SetFormPresenter(&presenter_)) { loads = 0; }
  ~FormsTest() override {
    UnloadAllForms();
    SetFormPresenter(before_);
    EXPECT_EQ(alive, 0);
  }
  // Shows the form and does this while it is up.
  void Show(Form& form, std::function<void(Form&)> act) {
    acts_.push_back(std::move(act));
    ShowModal(form);
  }
  TestPlatform platform;

 private:
  std::vector<std::function<void(Form&)>> acts_;
  HeadlessPresenter presenter_{[this](Form& form) {
    const auto act = std::move(acts_.back());
    acts_.pop_back();
    act(form);
  }};
  FormPresenter* before_;
};

TEST_F(FormsTest, AFormIsMadeOnFirstUse) {
  EXPECT_EQ(LoadedForm<ModuleForm>(), nullptr);
  ModuleForm& form = DefaultForm<ModuleForm>();
  EXPECT_EQ(&DefaultForm<ModuleForm>(), &form);
  EXPECT_EQ(loads, 1);
  DefaultForm<RowForm>();
  EXPECT_THAT(LoadedForms(), ElementsAre("frmModule", "frmRow"));
  form.txtValue.SetText("kept while it is loaded");
  Unload(form);
  EXPECT_THAT(LoadedForms(), ElementsAre("frmRow"));
  EXPECT_EQ(DefaultForm<ModuleForm>().txtValue.Text(), "") << "made afresh";
  EXPECT_EQ(loads, 3);
}

TEST_F(FormsTest, AHiddenFormKeepsItsState) {
  RowForm& form = DefaultForm<RowForm>();
  Show(form, [](Form& shown) {
    auto& row = static_cast<RowForm&>(shown);
    EXPECT_TRUE(row.IsShown());
    EXPECT_EQ(TopForm(), &row);
    row.UserType(row.txtValue, "typed");
    Hide(row);
  });
  EXPECT_FALSE(form.IsShown());
  EXPECT_EQ(TopForm(), nullptr);
  EXPECT_EQ(LoadedForm<RowForm>()->txtValue.Text(), "typed");
}

TEST_F(FormsTest, AFormMayUnloadItselfInItsOwnHandler) {
  bool ranOn = false;
  ModuleForm& form = DefaultForm<ModuleForm>();
  form.cmdOK.Click = [&form, &ranOn] {
    Unload(form);
    form.txtValue.SetText("the handler runs on");
    ranOn = form.txtValue.Text() == "the handler runs on" && !form.IsShown();
  };
  Show(form, [](Form& shown) {
    shown.UserKey("Enter");
    EXPECT_EQ(alive, 1) << "destroyed only when its loop has ended";
    EXPECT_EQ(LoadedForm<ModuleForm>(), nullptr);
    EXPECT_EQ(TopForm(), nullptr);
  });
  EXPECT_TRUE(ranOn);
  EXPECT_EQ(alive, 0);
}

TEST_F(FormsTest, ANewInstanceMayBeMadeWhileTheOldOneIsGoing) {
  ModuleForm& form = DefaultForm<ModuleForm>();
  form.cmdOK.Click = [&form] {
    Unload(form);
    EXPECT_NE(&DefaultForm<ModuleForm>(), &form);
  };
  Show(form, [](Form& shown) { shown.UserKey("Enter"); });
  EXPECT_EQ(alive, 1);
  EXPECT_TRUE(LoadedForm<ModuleForm>());
}

TEST_F(FormsTest, FormsNest) {
  std::vector<std::string> log;
  ModuleForm& module = DefaultForm<ModuleForm>();
  module.txtValue.DblClick = [&] {
    Show(DefaultForm<RowForm>(), [&](Form& row) {
      EXPECT_EQ(TopForm(), &row);
      EXPECT_TRUE(module.IsShown());
      EXPECT_THROW(ShowModal(module), RuntimeError) << "it is shown already";
      log.push_back("row");
      static_cast<RowForm&>(row).cmdOK.Click = [&row] { Hide(row); };
      row.UserKey("Enter");
    });
    log.push_back("row closed");
    EXPECT_EQ(TopForm(), &module);
  };
  module.cmdOK.Click = [&] {
    Unload(DefaultForm<RowForm>());
    Unload(module);
  };
  Show(module, [&](Form& form) {
    form.UserDblClick(module.txtValue);
    log.push_back("module");
    form.UserKey("Enter");
  });
  EXPECT_THAT(log, ElementsAre("row", "row closed", "module"));
  EXPECT_THAT(LoadedForms(), IsEmpty());
  EXPECT_EQ(alive, 0);
}

TEST_F(FormsTest, TheFormBelowMayBeUnloadedFromTheOneAbove) {
  ModuleForm& module = DefaultForm<ModuleForm>();
  module.txtValue.DblClick = [&] {
    Show(DefaultForm<RowForm>(), [&](Form& row) {
      Unload(module);
      EXPECT_EQ(alive, 2) << "its loop is still running";
      EXPECT_EQ(TopForm(), &row);
      Hide(row);
    });
  };
  Show(module, [&](Form& form) { form.UserDblClick(module.txtValue); });
  EXPECT_EQ(alive, 1) << "only the row form is left";
}

TEST_F(FormsTest, AFormLeftOpenIsCancelled) {
  Show(DefaultForm<ModuleForm>(), [](Form&) {});
  EXPECT_THAT(LoadedForms(), IsEmpty()) << "Escape pressed cmdCancel";
  RowForm& row = DefaultForm<RowForm>();
  row.cmdCancel.Click = [] {};
  Show(row, [](Form&) {});
  EXPECT_FALSE(row.IsShown()) << "closed though its cancel button does not";
}

TEST_F(FormsTest, AFailureInTheLoopTakesTheFormDown) {
  EXPECT_THROW(Show(DefaultForm<ModuleForm>(), [](Form&) { throw RuntimeError::Overflow(); }), RuntimeError);
  EXPECT_EQ(TopForm(), nullptr);
  EXPECT_THAT(LoadedForms(), IsEmpty()) << "the next opening makes a new one";
  EXPECT_EQ(alive, 0);
}

TEST_F(FormsTest, WithoutAToolkitNothingIsShown) {
  FormPresenter* const mine = SetFormPresenter(nullptr);
  EXPECT_THROW(ShowModal(DefaultForm<ModuleForm>()), RuntimeError);
  SetFormPresenter(mine);
}

TEST_F(FormsTest, AllAreUnloadedTopmostFirst) {
  DefaultForm<ModuleForm>();
  DefaultForm<RowForm>();
  UnloadAllForms();
  EXPECT_THAT(LoadedForms(), IsEmpty());
  EXPECT_EQ(alive, 0);
}

}  // namespace
}  // namespace vardo
