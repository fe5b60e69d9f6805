// Forms in real Qt windows, drawn off screen. The model driven directly is the measure: the same acts through the toolkit's
// events must leave the same traces.
#include "forms/qt/QtPresenter.h"

#include "PresenterScripts.h"
#include "forms/qt/QtPlatform.h"
#include "forms/qt/QtSession.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <QAccessible>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDesktopServices>
#include <QDialog>
#include <QFile>
#include <QGroupBox>
#include <QImage>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMessageBox>
#include <QPushButton>
#include <QScreen>
#include <QStyleOptionGroupBox>
#include <QTemporaryDir>
#include <QTest>
#include <QTextBrowser>
#include <QTimer>
#include <QWindow>

#include <memory>

namespace vardo {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class QtEnvironment : public testing::Environment {
 public:
  void SetUp() override { session_ = std::make_unique<QtSession>(1, argv_); }
  void TearDown() override { session_.reset(); }

 private:
  char name_[9] = "QtForms_";
  char* argv_[2] = {name_, nullptr};
  std::unique_ptr<QtSession> session_;
};

[[maybe_unused]] const auto* const kEnvironment = testing::AddGlobalTestEnvironment(new QtEnvironment);

class QtPresenterTest : public PresenterTest {
 protected:
  // Shows the form and runs the body on it; the window is that of the form.
  template <class F>
  void WithWindow(const std::function<void(F&, QDialog&, QtPresenter&)>& body) {
    QtPresenter* driver = nullptr;
    QtPresenter presenter([&](Form& form) {
      auto* window = dynamic_cast<QDialog*>(QApplication::activeWindow());
      ASSERT_NE(window, nullptr);
      body(dynamic_cast<F&>(form), *window, *driver);
    });
    driver = &presenter;
    FormPresenter* const before = SetFormPresenter(&presenter);
    ShowModal(DefaultForm<F>());
    SetFormPresenter(before);
    UnloadAllForms();
  }
};

// Its first control shows nothing of a text.
class ChoiceForm : public Form {
 public:
  ChoiceForm() : Form("ChoiceForm", "Choice") {
    FormLayout(*this, 1500, 2400).Row(chkFirst).Buttons({&cmdOK, &cmdCancel});
    cmdCancel.Click = [this] { Hide(*this); };
    SetDefaultButtons(cmdOK, cmdCancel);
  }
  CheckBox chkFirst{*this, "chkFirst", "&First"};
  Button cmdOK{*this, "cmdOK", "OK"}, cmdCancel{*this, "cmdCancel", "Cancel"};
};

template <class W>
W& Widget(QDialog& window, const char* name) {
  return *window.findChild<W*>(name);
}

void TypeKeys(QDialog& window, std::string_view text) {
  for (const char key : text) QTest::keyClick(window.windowHandle(), key);
}

class SameAsTheModel : public QtPresenterTest, public testing::WithParamInterface<Script> {};

TEST_P(SameAsTheModel, WhateverAPersonDoes) {
  const auto model = Play<HeadlessPresenter>(GetParam().acts);
  const auto qt = Play<QtPresenter>(GetParam().acts);
  ASSERT_EQ(qt.size(), model.size());
  for (size_t act = 0; act < qt.size(); ++act) ASSERT_EQ(qt[act], model[act]);
}

INSTANTIATE_TEST_SUITE_P(QtPresenter, SameAsTheModel, testing::ValuesIn(kScripts));

TEST_F(QtPresenterTest, WindowIsWhereTheFormSaysWithItsControlsInPlace) {
  WithWindow<TestForm>([](TestForm& form, QDialog& window, QtPresenter&) {
    EXPECT_EQ(window.windowTitle(), "Test");
    EXPECT_EQ(window.size(), QSize(360, 360));
    EXPECT_EQ(window.minimumSize(), window.maximumSize());
    EXPECT_EQ(window.pos(), QPoint(40, 30));
    EXPECT_TRUE(window.isModal());
    for (const Control* control : form.Controls()) {
      const QWidget& widget = Widget<QWidget>(window, control->name().c_str());
      const QPoint at = widget.mapTo(&window, QPoint());
      EXPECT_NEAR(at.x() * 15, control->Place().left, 8) << control->name();
      EXPECT_NEAR(at.y() * 15, control->Place().top, 8) << control->name();
      EXPECT_NEAR(widget.width() * 15, control->Place().width, 15) << control->name();
      EXPECT_EQ(widget.isVisible(), control->Shown()) << control->name();
    }
    EXPECT_EQ(Widget<QWidget>(window, "txtValue").parent(), &Widget<QGroupBox>(window, "Frame1"));
  });
}

TEST_F(QtPresenterTest, WindowHasACloseBoxAndNoOther) {
  WithWindow<TestForm>([](TestForm&, QDialog& window, QtPresenter&) {
    const Qt::WindowFlags flags = window.windowFlags();
    EXPECT_TRUE(flags & Qt::CustomizeWindowHint) << "or the window manager adds what it likes";
    EXPECT_TRUE(flags & Qt::WindowTitleHint);
    EXPECT_TRUE(flags & Qt::WindowCloseButtonHint);
    EXPECT_FALSE(flags & (Qt::WindowMinimizeButtonHint | Qt::WindowMaximizeButtonHint));
  });
}

TEST_F(QtPresenterTest, KeyboardFocusIsSeenFromTheFirstMoment) {
  WithWindow<ChoiceForm>([](ChoiceForm& form, QDialog& window, QtPresenter&) {
    QWidget& first = Widget<QWidget>(window, "chkFirst");
    const QImage atFirst = first.grab().toImage();
    QTest::keyClick(window.windowHandle(), Qt::Key_Tab);
    EXPECT_NE(first.grab().toImage(), atFirst);
    QTest::keyClick(window.windowHandle(), Qt::Key_Backtab, Qt::ShiftModifier);
    EXPECT_EQ(form.Focus(), &form.chkFirst);
    EXPECT_EQ(first.grab().toImage(), atFirst);
  });
}

TEST_F(QtPresenterTest, TitleOfAFrameStandsOverTheLabelsInIt) {
  WithWindow<TestForm>([](TestForm&, QDialog& window, QtPresenter&) {
    auto& frame = Widget<QGroupBox>(window, "Frame1");
    QStyleOptionGroupBox option;
    option.initFrom(&frame);
    option.text = frame.title();
    option.subControls = QStyle::SC_All;
    const QRect title = frame.style()->subControlRect(QStyle::CC_GroupBox, &option, QStyle::SC_GroupBoxLabel, &frame);
    EXPECT_EQ(title.left(), Widget<QWidget>(window, "lblValue").x());
  });
}

TEST_F(QtPresenterTest, ScreenReadersFindEachBoxByItsLabel) {
  WithWindow<TestForm>([](TestForm&, QDialog& window, QtPresenter&) {
    const struct {
      const char* control;
      const char* name;
    } cases[] = {
        {"cboName", "Name"}, {"cboType", "Type"}, {"txtValue", "Value"}, {"txtExpression", "Expression"}, {"lstRows", "Rows"}};
    for (const auto& c : cases) EXPECT_EQ(Widget<QWidget>(window, c.control).accessibleName(), c.name);
    EXPECT_EQ(Widget<QLabel>(window, "lblValue").buddy(), &Widget<QWidget>(window, "txtValue"));
    const auto* check = QAccessible::queryAccessibleInterface(&Widget<QWidget>(window, "chkStatistics"));
    EXPECT_EQ(check->text(QAccessible::Name), "Report Statistics");
    const auto* box = QAccessible::queryAccessibleInterface(&Widget<QWidget>(window, "txtValue"));
    EXPECT_TRUE(box->state().focusable);
  });
}

TEST_F(QtPresenterTest, WhatTheProgramChangesIsSeen) {
  WithWindow<TestForm>([](TestForm& form, QDialog& window, QtPresenter&) {
    form.txtValue.SetText("42");
    form.cboName.SetText("Entity 2");
    form.cboName.AddItem("Entity 4");
    form.cboType.SetListIndex(1);
    form.chkStatistics.SetCaption("&Other");
    form.lstRows.RemoveItem(0);
    form.lstRows.SetItem(0, "changed");
    form.lstRows.SetListIndex(1);
    form.lblValue.SetCaption("&Size:");
    form.Frame1.SetCaption("Times");
    EXPECT_EQ(Widget<QLineEdit>(window, "txtValue").text(), "42");
    EXPECT_EQ(Widget<QComboBox>(window, "cboName").currentText(), "Entity 2");
    EXPECT_EQ(Widget<QComboBox>(window, "cboName").count(), 4);
    EXPECT_EQ(Widget<QComboBox>(window, "cboType").currentText(), "Constant");
    EXPECT_EQ(Widget<QCheckBox>(window, "chkStatistics").text(), "&Other");
    EXPECT_EQ(Widget<QListWidget>(window, "lstRows").count(), 2);
    EXPECT_EQ(Widget<QListWidget>(window, "lstRows").item(0)->text(), "changed");
    EXPECT_EQ(Widget<QListWidget>(window, "lstRows").currentRow(), 1);
    EXPECT_EQ(Widget<QLabel>(window, "lblValue").text(), "&Size:");
    EXPECT_EQ(Widget<QGroupBox>(window, "Frame1").title(), "Times");
    form.chkStatistics.SetChecked(true);
    EXPECT_TRUE(Widget<QCheckBox>(window, "chkStatistics").isChecked());
    EXPECT_FALSE(Widget<QWidget>(window, "txtValue").isVisible());
    form.lstRows.MoveFocusHere();
    EXPECT_EQ(QApplication::focusWidget(), &Widget<QWidget>(window, "lstRows"));
  });
}

TEST_F(QtPresenterTest, TextIsPutIntoABoxAtOnce) {
  WithWindow<TestForm>([](TestForm& form, QDialog& window, QtPresenter& driver) {
    driver.Type(form.cboName, "Entity 12");
    EXPECT_EQ(form.cboName.Text(), "Entity 12");
    EXPECT_THAT(trace, IsEmpty()) << "an item that it begins with is not chosen on the way";
    const std::string many(200'000, 'x');
    driver.Type(form.txtValue, many);
    EXPECT_EQ(form.txtValue.Text(), many);
    EXPECT_EQ(Widget<QLineEdit>(window, "txtValue").text().toStdString(), many);
  });
}

TEST_F(QtPresenterTest, PickOnlyComboShowsForeignTextInTheOrdinaryColour) {
  WithWindow<TestForm>([](TestForm& form, QDialog& window, QtPresenter& driver) {
    auto& units = Widget<QComboBox>(window, "cboUnits");
    EXPECT_FALSE(units.isEditable());
    EXPECT_EQ(units.currentIndex(), -1);
    EXPECT_EQ(units.placeholderText(), "fortnights");
    EXPECT_EQ(units.palette().placeholderText(), units.palette().buttonText());
    driver.Pick(form.cboUnits, 2);
    EXPECT_EQ(units.currentText(), "Hours");
    form.cboUnits.SetText("weeks");
    EXPECT_EQ(units.currentIndex(), -1);
    EXPECT_EQ(units.placeholderText(), "weeks");
  });
}

TEST_F(QtPresenterTest, KeysOfTheKeyboardReachTheForm) {
  WithWindow<TestForm>([](TestForm& form, QDialog& window, QtPresenter&) {
    const auto press = [&](Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
      QTest::keyClick(window.windowHandle(), key, modifiers);
      return form.Focus() ? form.Focus()->name() : "none";
    };
    EXPECT_EQ(press(Qt::Key_Tab), "cboType");
    EXPECT_EQ(press(Qt::Key_Backtab, Qt::ShiftModifier), "cboName");
    EXPECT_EQ(press(Qt::Key_V, Qt::AltModifier), "txtValue");
    TypeKeys(window, "5 a");
    EXPECT_EQ(form.txtValue.Text(), "5 a") << "what was there was selected";
    press(Qt::Key_Home);
    TypeKeys(window, "x");
    EXPECT_EQ(form.txtValue.Text(), "x5 a") << "the caret's keys are the box's own";
    EXPECT_EQ(press(Qt::Key_U, Qt::AltModifier), "cboUnits");
    press(Qt::Key_Down);
    EXPECT_EQ(form.cboUnits.Text(), "Seconds");
    TypeKeys(window, "h");
    EXPECT_EQ(form.cboUnits.Text(), "Hours") << "letters choose";
    press(Qt::Key_PageDown);
    EXPECT_EQ(form.cboUnits.Text(), "Days");
    press(Qt::Key_PageUp);
    EXPECT_EQ(form.cboUnits.Text(), "Seconds");
    EXPECT_EQ(press(Qt::Key_R, Qt::AltModifier), "chkStatistics") << "of two with this key the next one";
    EXPECT_FALSE(form.chkStatistics.Checked()) << "and only leads to it";
    EXPECT_EQ(press(Qt::Key_R, Qt::AltModifier), "lstRows");
    trace.clear();
    EXPECT_TRUE(form.IsShown());
    press(Qt::Key_Enter, Qt::KeypadModifier);
    EXPECT_FALSE(form.IsShown());
    EXPECT_THAT(trace, testing::Contains("OK"));
  });
}

TEST_F(QtPresenterTest, EscapeAndTheCloseBoxCancel) {
  WithWindow<TestForm>([](TestForm& form, QDialog& window, QtPresenter&) {
    QTest::keyClick(window.windowHandle(), Qt::Key_Escape);
    EXPECT_FALSE(form.IsShown());
  });
  EXPECT_THAT(std::exchange(trace, {}), ElementsAre("cboName LostFocus"));
  WithWindow<TestForm>([](TestForm& form, QDialog& window, QtPresenter&) {
    window.close();
    EXPECT_FALSE(form.IsShown());
  });
  EXPECT_THAT(trace, ElementsAre("cboName LostFocus"));
}

TEST_F(QtPresenterTest, TypingInTheMiddleKeepsTheCaret) {
  WithWindow<TestForm>([](TestForm& form, QDialog& window, QtPresenter& driver) {
    driver.Type(form.cboName, "Entity 2");
    QLineEdit& edit = *Widget<QComboBox>(window, "cboName").lineEdit();
    edit.setCursorPosition(3);
    TypeKeys(window, "ab");
    EXPECT_EQ(form.cboName.Text(), "Entabity 2");
    EXPECT_EQ(form.cboName.ListIndex(), -1);
    EXPECT_EQ(edit.cursorPosition(), 5);
  });
}

TEST_F(QtPresenterTest, MouseMovesTheFocusAndChoosesItems) {
  WithWindow<TestForm>([](TestForm& form, QDialog& window, QtPresenter&) {
    const auto click = [&](QWidget& widget) {
      QTest::mouseClick(window.windowHandle(), Qt::LeftButton, Qt::NoModifier, widget.mapTo(&window, widget.rect().center()));
    };
    click(Widget<QWidget>(window, "txtValue"));
    EXPECT_THAT(std::exchange(trace, {}), ElementsAre("cboName LostFocus"));
    EXPECT_EQ(form.Focus(), &form.txtValue);

    auto& list = Widget<QListWidget>(window, "lstRows");
    const QPoint line = list.viewport()->mapTo(&window, list.visualItemRect(list.item(1)).center());
    QTest::mouseDClick(window.windowHandle(), Qt::LeftButton, Qt::NoModifier, line);
    EXPECT_THAT(std::exchange(trace, {}), ElementsAre("txtValue LostFocus", "lstRows Click", "lstRows DblClick"));
    EXPECT_EQ(form.lstRows.ListIndex(), 1);

    auto& units = Widget<QComboBox>(window, "cboUnits");
    click(units);
    EXPECT_TRUE(form.cboUnits.DroppedDown());
    EXPECT_TRUE(units.view()->isVisible());
    QTest::qWait(QApplication::doubleClickInterval() + 50);
    QWidget& items = *units.view()->viewport();
    const QPoint item = units.view()->visualRect(units.model()->index(1, 0)).center();
    QTest::mouseMove(&items, item);
    QTest::mouseClick(&items, Qt::LeftButton, Qt::NoModifier, item);
    EXPECT_FALSE(form.cboUnits.DroppedDown());
    EXPECT_EQ(form.cboUnits.Text(), "Minutes");
    EXPECT_THAT(std::exchange(trace, {}), ElementsAre("lstRows LostFocus", "cboUnits Click"));
  });
}

TEST_F(QtPresenterTest, MouseOpensNoListInPlaceOfOneThatIsHidden) {
  WithWindow<TestForm>([](TestForm& form, QDialog& window, QtPresenter&) {
    form.cboName.LostFocus = [&form] { form.cboUnits.SetVisible(false); };
    QTest::mouseClick(&Widget<QComboBox>(window, "cboUnits"), Qt::LeftButton);
    EXPECT_EQ(form.Focus(), &form.cboName);
    EXPECT_FALSE(form.cboName.DroppedDown());
    EXPECT_FALSE(form.cboUnits.DroppedDown());
  });
}

TEST_F(QtPresenterTest, ScreenReadersMoveTheFocusAsAPersonDoes) {
  WithWindow<TestForm>([](TestForm& form, QDialog& window, QtPresenter&) {
    QAccessible::queryAccessibleInterface(&Widget<QWidget>(window, "txtValue"))
        ->actionInterface()
        ->doAction(QAccessibleActionInterface::setFocusAction());
    EXPECT_EQ(form.Focus(), &form.txtValue);
    EXPECT_THAT(trace, ElementsAre("cboName LostFocus"));
  });
}

TEST_F(QtPresenterTest, LosingTheWindowRaisesNothing) {
  WithWindow<TestForm>([](TestForm& form, QDialog& window, QtPresenter&) {
    form.txtValue.SetFocus();
    trace.clear();
    QApplication::setActiveWindow(nullptr);
    QApplication::setActiveWindow(&window);
    EXPECT_EQ(form.Focus(), &form.txtValue);
    EXPECT_EQ(QApplication::focusWidget(), &Widget<QWidget>(window, "txtValue"));
    EXPECT_THAT(trace, IsEmpty());
  });
}

TEST_F(QtPresenterTest, AccessKeysWorkAgainAfterTheFormAboveHasClosed) {
  QtPresenter* driver = nullptr;
  std::vector<std::string> shown;
  QtPresenter presenter([&](Form& form) {
    shown.push_back(form.name());
    QWindow* const window = QApplication::activeWindow()->windowHandle();
    if (form.name() == "SubForm") {
      EXPECT_EQ(QApplication::activeModalWidget(), QApplication::activeWindow());
      return QTest::keyClick(window, Qt::Key_Escape);
    }
    driver->Click(*form.Find("cmdAdd"));
    EXPECT_EQ(QApplication::activeWindow()->windowHandle(), window);
    QTest::keyClick(window, Qt::Key_V, Qt::AltModifier);
    EXPECT_EQ(form.Focus()->name(), "txtValue");
  });
  driver = &presenter;
  SetFormPresenter(&presenter);
  ShowModal(DefaultForm<TestForm>());
  SetFormPresenter(nullptr);
  EXPECT_THAT(shown, ElementsAre("TestForm", "SubForm"));
}

TEST_F(QtPresenterTest, WithoutAPumpAPersonIsServed) {
  QtPresenter presenter;
  SetFormPresenter(&presenter);
  QTimer::singleShot(0, [] { QTest::keyClick(QApplication::activeWindow()->windowHandle(), Qt::Key_Return); });
  ShowModal(DefaultForm<TestForm>());
  SetFormPresenter(nullptr);
  EXPECT_THAT(trace, ElementsAre("cboName LostFocus", "OK"));
}

TEST_F(QtPresenterTest, FormsThatAreNotShownCannotBeDriven) {
  QtPresenter presenter;
  TestForm form;
  EXPECT_THROW(presenter.Focus(form.txtValue), RuntimeError);
  EXPECT_THROW(presenter.Key(form, "Tab"), RuntimeError);
  EXPECT_THROW(presenter.Screenshot(form, "x.png"), RuntimeError);
}

TEST_F(QtPresenterTest, PicturesAreWritten) {
  QTemporaryDir folder;
  WithWindow<TestForm>([&](TestForm& form, QDialog&, QtPresenter& driver) {
    const QString file = folder.filePath("form.png");
    driver.Screenshot(form, file.toStdString());
    EXPECT_EQ(QImage(file).size(), QSize(360, 360) * qApp->devicePixelRatio());
    EXPECT_THROW(driver.Screenshot(form, folder.filePath("no/such.png").toStdString()), RuntimeError);
    const QString keep = qEnvironmentVariable("VARDO_PICTURE");
    if (!keep.isEmpty()) QFile::copy(file, keep);
  });
}

TEST_F(QtPresenterTest, MessageBoxesAreReal) {
  QtPlatform qt(ThePlatform());
  const struct {
    int style;
    QMessageBox::Icon icon;
  } cases[] = {{kStyleCritical, QMessageBox::Critical}, {kStyleExclamation, QMessageBox::Warning}};
  for (const auto& c : cases) {
    bool seen = false;
    QTimer::singleShot(0, [&] {
      auto* box = dynamic_cast<QMessageBox*>(QApplication::activeModalWidget());
      ASSERT_NE(box, nullptr);
      seen = true;
      EXPECT_EQ(box->icon(), c.icon);
      EXPECT_EQ(box->text(), "<b> is no number & no name");
      EXPECT_EQ(box->windowTitle(), "Quellis");
      EXPECT_EQ(box->textFormat(), Qt::PlainText);
      box->button(QMessageBox::Ok)->click();
    });
    qt.ShowMessage("<b> is no number & no name", "Quellis", c.style);
    EXPECT_TRUE(seen);
  }
}

TEST_F(QtPresenterTest, MessageBoxesTakeNoFocusFromTheForm) {
  QtPlatform qt(ThePlatform());
  Platform* const before = SetPlatform(&qt);
  WithWindow<TestForm>([](TestForm& form, QDialog& window, QtPresenter& driver) {
    QTimer::singleShot(0, [] { QTest::keyClick(QApplication::activeModalWidget()->windowHandle(), Qt::Key_Return); });
    driver.Click(form.cmdFail);
    EXPECT_EQ(QApplication::activeWindow(), &window);
    EXPECT_EQ(QApplication::focusWidget(), &Widget<QWidget>(window, "cmdFail"));
    EXPECT_THAT(trace, ElementsAre("cboName LostFocus"));
  });
  SetPlatform(before);
}

TEST_F(QtPresenterTest, ScreenSizeIsThePrimaryScreensInTwips) {
  const QSize pixels = QApplication::primaryScreen()->availableGeometry().size();
  const TwipsSize twips = QtPlatform(ThePlatform()).ScreenSize();
  EXPECT_EQ(twips.width, pixels.width() * 15);
  EXPECT_EQ(twips.height, pixels.height() * 15);
}

TEST_F(QtPresenterTest, HelpOpensTheTopicsPageAndIsQuietWhenThereIsNone) {
  QTemporaryDir folder;
  QFile page(folder.filePath("Create_.htm"));
  ASSERT_TRUE(page.open(QIODevice::WriteOnly));
  page.close();
  QTextBrowser viewer;
  QDesktopServices::setUrlHandler("file", &viewer, "setSource");
  QtPlatform qt(ThePlatform(), folder.path());
  qt.ShowHelp(kHelpFile, "Missing_.htm");
  EXPECT_TRUE(viewer.source().isEmpty());
  qt.ShowHelp(kHelpFile, "Create_.htm");
  EXPECT_EQ(viewer.source(), QUrl::fromLocalFile(page.fileName()));
  QDesktopServices::unsetUrlHandler("file");
}

}  // namespace
}  // namespace vardo
