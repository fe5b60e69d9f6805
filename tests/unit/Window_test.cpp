// The drawing window, used as a person uses it: real mouse and key events, drawn off screen.
#include "TestFiles.h"
#include "canvas/ShapeFacts.h"
#include "desktop/MainWindow.h"
#include "document/Drawing.h"
#include "forms/Forms.h"
#include "forms/qt/QtPlatform.h"
#include "forms/qt/QtPresenter.h"
#include "forms/qt/QtSession.h"
#include "platform/NativePlatform.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <QDialog>
#include <QDropEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMessageBox>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QStandardPaths>
#include <QTabBar>
#include <QTest>
#include <QTimer>
#include <QTreeWidget>

#include <cstdlib>
#include <map>
#include <memory>

namespace vardo {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

class QtEnvironment : public testing::Environment {
 public:
  void SetUp() override {
    qputenv("XDG_CONFIG_HOME", (folder_ / "").c_str());
    qputenv("XDG_STATE_HOME", (folder_ / "").c_str());
    session_ = std::make_unique<QtSession>(1, argv_);
    QApplication::setOrganizationName("vardo");
    QApplication::setApplicationName("vardo");
  }
  void TearDown() override { session_.reset(); }

 private:
  test::TempFolder folder_;
  char name_[8] = "Window_";
  char* argv_[2] = {name_, nullptr};
  std::unique_ptr<QtSession> session_;
};

[[maybe_unused]] const auto* const kEnvironment = testing::AddGlobalTestEnvironment(new QtEnvironment);

class WindowTest : public testing::Test {
 protected:
  WindowTest() {
    SetPlatform(&screen_);
    SetFormPresenter(&presenter_);
    window_ = std::make_unique<MainWindow>();
    window_->resize(1400, 900);
    window_->show();
    window_->NewDrawing();
    QApplication::setActiveWindow(window_.get());
  }
  ~WindowTest() override {
    window_.reset();
    SetFormPresenter(nullptr);
  }

  DrawingHost& host() { return window_->session().host(); }
  DrawingPage& page() { return host().ActivePage(); }
  DrawingCanvas& canvas() { return window_->canvas(); }
  QWidget* paper() { return canvas().viewport(); }

  QPoint PixelOf(double x, double y) {
    const Pixel at = canvas().view().ToPixel({x, y});
    return {static_cast<int>(std::lround(at.x)), static_cast<int>(std::lround(at.y))};
  }
  QPoint MiddleOf(const std::string& name) {
    const Box box = window_->session().scene().BoxOf(page().FindShape(name)->id());
    return PixelOf(box.middle().x, box.middle().y);
  }
  // Of the point's middle on the screen.
  QPoint PointOf(const std::string& name, int point) {
    const PagePoint at = PointsOf(*page().FindShape(name), 1)[static_cast<size_t>(point - 1)];
    return PixelOf(at.x, at.y);
  }

  void DropMaster(const std::string& master, double x, double y) {
    QMimeData data;
    data.setData(kMasterMime, QByteArray::fromStdString(master));
    QDragEnterEvent enter(PixelOf(x, y), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(paper(), &enter);
    QDropEvent drop(QPointF(PixelOf(x, y)), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(paper(), &drop);
  }
  void Drag(QPoint from, QPoint to, Qt::KeyboardModifiers held = Qt::NoModifier) {
    QTest::mouseMove(paper(), from);
    QTest::mousePress(paper(), Qt::LeftButton, held, from);
    const auto moveTo = [&](QPoint at) {
      QMouseEvent move(QEvent::MouseMove, at, paper()->mapToGlobal(at), Qt::NoButton, Qt::LeftButton, held);
      QApplication::sendEvent(paper(), &move);
    };
    moveTo((2 * from + to) / 3);
    moveTo((from + 2 * to) / 3);
    moveTo(to);
    QTest::mouseRelease(paper(), Qt::LeftButton, held, to);
  }
  void Click(QPoint at, Qt::KeyboardModifiers held = Qt::NoModifier) { QTest::mouseClick(paper(), Qt::LeftButton, held, at); }
  void Key(int key, Qt::KeyboardModifiers held = Qt::NoModifier) { QTest::keyClick(&canvas(), static_cast<Qt::Key>(key), held); }
  void Choose(std::string_view action) { window_->actions()[action].trigger(); }

  // What a person does as soon as a dialog is up.
  void WhenShown(std::function<void(QDialog&)> act) {
    auto* const timer = new QTimer(window_.get());
    timer->setInterval(10);
    QObject::connect(timer, &QTimer::timeout, timer, [timer, act] {
      auto* const dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
      if (!dialog || !dialog->isVisible()) return;
      timer->stop();
      timer->deleteLater();
      act(*dialog);
    });
    timer->start();
  }

  std::vector<std::string> Names() {
    std::vector<std::string> names;
    for (const DrawingShape* shape : page().TopLevel()) names.push_back(page().NameOf(*shape));
    return names;
  }
  std::string Glued(const std::string& connector, const char* cell) {
    const DrawingShape& shape = *page().FindShape(connector);
    return host().FormulaOf(host().RefTo(page(), shape.id()), *shape.Find(cell));
  }
  std::string Selected() {
    std::string names;
    for (const int id : host().selection()) names += (names.empty() ? "" : ", ") + page().NameOf(*page().FindShape(id));
    return names;
  }
  // For the eye, where VARDO_SHOTS names a folder.
  void Shoot(const std::string& name) {
    if (const char* folder = std::getenv("VARDO_SHOTS"))
      window_->grab().save(QString::fromStdString(std::string(folder) + "/" + name + ".png"));
  }

  std::unique_ptr<Platform> machine_ = MakeNativePlatform();
  QtPlatform screen_{*machine_};
  QtPresenter presenter_;
  std::unique_ptr<MainWindow> window_;
};

TEST_F(WindowTest, AWholeJob) {
  DropMaster("Create", 1.5, 7);
  DropMaster("Process", 3.5, 7);
  DropMaster("Decide", 5.5, 7);
  DropMaster("Dispose", 8, 7.5);
  DropMaster("Dispose", 8, 6);
  EXPECT_THAT(Names(), ElementsAre("Create", "Process", "Decide", "Dispose", "Dispose.5"));
  EXPECT_EQ(Selected(), "Dispose.5");
  Key(Qt::Key_Escape);

  Drag(PointOf("Create", 1), PointOf("Process", 2));
  Drag(PointOf("Process", 1), PointOf("Decide", 2));
  Drag(PointOf("Decide", 1), MiddleOf("Dispose"));
  Drag(PointOf("Decide", 3), MiddleOf("Dispose.5"));
  EXPECT_THAT(Names(), ElementsAre("Create", "Process", "Decide", "Dispose", "Dispose.5", "Dynamic connector",
                                   "Dynamic connector.7", "True Connector", "False Connector"));
  EXPECT_THAT(Glued("Dynamic connector", "EndX"), HasSubstr("Process!Connections.X2"));
  EXPECT_THAT(Glued("False Connector", "BeginX"), HasSubstr("Decide!Connections.X3"));
  Shoot("job");

  // Renamed by typing.
  Click(MiddleOf("Process"));
  QTest::keyClicks(&canvas(), "T");
  QTest::keyClicks(QApplication::focusWidget(), "eller");
  QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
  EXPECT_EQ(page().FindShape("Process")->Text(), "Teller");
  EXPECT_EQ(TextIn(*page().FindShape("Process"), "Prop.ProcessName"), "Teller");

  // Edited in its dialog.
  WhenShown([](QDialog& dialog) {
    auto* const value = dialog.findChild<QWidget*>("txtValue");
    ASSERT_NE(value, nullptr);
    value->setFocus();
    if (auto* const line = qobject_cast<QLineEdit*>(value)) line->selectAll();
    QTest::keyClicks(value, "3");
    dialog.findChild<QPushButton*>("cmdOK")->click();
  });
  QTest::mouseDClick(paper(), Qt::LeftButton, Qt::NoModifier, MiddleOf("Create"));
  EXPECT_EQ(TextIn(*page().FindShape("Create"), "Prop.CreateValue"), "3");

  const test::TempFolder folder;
  const std::filesystem::path file = folder / "job.vsdx";
  ASSERT_TRUE(window_->files().SaveTo(file));
  const auto after = Names();
  size_t steps = 0;
  for (; window_->actions()["undo"].isEnabled(); ++steps) Choose("undo");
  EXPECT_THAT(Names(), IsEmpty());
  for (; steps > 0; --steps) Choose("redo");
  EXPECT_EQ(Names(), after);
  EXPECT_FALSE(window_->session().IsChanged());

  ASSERT_TRUE(window_->OpenFile(file));
  EXPECT_EQ(Names(), after);
  EXPECT_EQ(page().FindShape("Process")->Text(), "Teller");
}

TEST_F(WindowTest, PropertiesGoThroughTheDialogsChecks) {
  DropMaster("Create", 2, 5);
  auto& table = *window_->findChild<QTreeWidget*>("properties");
  const auto row = [&](const char* label) { return table.findItems(label, Qt::MatchExactly, 0).value(0); };
  ASSERT_NE(row("Value"), nullptr);
  row("Value")->setText(1, "7");
  EXPECT_EQ(TextIn(*page().FindShape("Create"), "Prop.CreateValue"), "7");
  EXPECT_EQ(row("Value")->text(1), "7");
  row("Max Arrivals")->setText(1, "(1");
  EXPECT_FALSE(window_->findChild<QLabel*>("propertiesRefusal")->text().isEmpty());
  EXPECT_EQ(TextIn(*page().FindShape("Create"), "Prop.CreateMaxBatches"), "Infinite");
  EXPECT_EQ(row("Max Arrivals")->text(1), "Infinite");

  // Two of a kind at once, in one step.
  DropMaster("Create", 2, 3);
  Choose("selectAll");
  row("Units")->setText(1, "Minutes");
  for (const char* name : {"Create", "Create.2"})
    EXPECT_EQ(TextIn(*page().FindShape(name), "Prop.CreateUnits"), "Minutes") << name;
  Choose("undo");
  for (const char* name : {"Create", "Create.2"}) EXPECT_EQ(TextIn(*page().FindShape(name), "Prop.CreateUnits"), "Hours") << name;
}

TEST_F(WindowTest, TheModelListAndTheProblemsLeadToTheirShapes) {
  DropMaster("Create", 2, 5);
  DropMaster("Process", 5, 5);
  Choose("addPage");
  DropMaster("Dispose", 5, 5);
  auto& model = *window_->findChild<QTreeWidget*>("model");
  QTRY_COMPARE(model.topLevelItemCount(), 3);
  window_->findChild<QLineEdit*>("modelFilter")->setText("Process");
  Choose("findNext");
  EXPECT_EQ(page().Name(), "Page-1");
  EXPECT_EQ(Selected(), "Process");

  Choose("refreshProblems");
  auto& problems = *window_->findChild<QTreeWidget*>("problems");
  ASSERT_GT(problems.topLevelItemCount(), 0);
  Shoot("problems");
  Choose("deselect");
  Q_EMIT problems.itemActivated(problems.topLevelItem(0), 0);
  EXPECT_NE(Selected(), "");
}

TEST_F(WindowTest, AnIllegalConnectorIsRefusedWithItsMessageAndGone) {
  DropMaster("Create", 2, 5);
  DropMaster("Decide", 5, 5);
  QString said;
  WhenShown([&](QDialog& dialog) {
    said = dynamic_cast<QMessageBox&>(dialog).text();
    dialog.accept();
  });
  canvas().SetConnector("True Connector");
  Drag(PointOf("Create", 1), PointOf("Decide", 2));
  EXPECT_THAT(said.toStdString(), HasSubstr("invalid connector"));
  EXPECT_THAT(Names(), ElementsAre("Create", "Decide"));
}

TEST_F(WindowTest, QuickBuildByKeyboardAlone) {
  const auto choose = [&](const char* name) {
    auto& search = *window_->findChild<QLineEdit*>("stencilSearch");
    search.setText(name);
    QTest::keyClick(&search, Qt::Key_Return);
  };
  choose("Create");
  choose("Process");
  choose("Dispose");
  EXPECT_THAT(Names(), ElementsAre("Create", "Process", "Dynamic connector", "Dispose", "Dynamic connector.5"));
  EXPECT_EQ(Selected(), "Dispose");
  canvas().setFocus();
  Key(Qt::Key_Left, Qt::ControlModifier);
  EXPECT_EQ(Selected(), "Process");
  const double before = FrameOf(*page().FindShape("Process"), 1).left;
  Key(Qt::Key_Right);
  EXPECT_NEAR(FrameOf(*page().FindShape("Process"), 1).left, before + 0.125, 1e-9);
  Choose("delete");
  EXPECT_EQ(page().FindShape("Process"), nullptr);
  Choose("undo");
  EXPECT_NE(page().FindShape("Process"), nullptr);
}

TEST_F(WindowTest, ASubmodelIsGoneIntoAndOutOf) {
  DropMaster("Process", 3, 5);
  Choose("submodelPage");
  EXPECT_EQ(page().Name(), "Process 1 (Submodel)");
  EXPECT_TRUE(window_->findChild<QLabel*>("breadcrumb")->isVisibleTo(window_.get()));
  Shoot("submodel");
  Choose("parentPage");
  EXPECT_EQ(page().Name(), "Page-1");
  Click(MiddleOf("Process"));
  Choose("intoSubmodel");
  EXPECT_EQ(page().Name(), "Process 1 (Submodel)");
}

TEST_F(WindowTest, ShapesComeIntoLineAndToTheFront) {
  DropMaster("Process", 2, 5);
  DropMaster("Assign", 5, 4);
  Choose("selectAll");
  Choose("alignTop");
  EXPECT_NEAR(FrameOf(*page().FindShape("Process"), 1).top, FrameOf(*page().FindShape("Assign"), 1).top, 1e-9);
  Choose("deselect");
  Click(MiddleOf("Process"));
  Choose("bringToFront");
  EXPECT_THAT(Names(), ElementsAre("Assign", "Process"));
  EXPECT_EQ(Selected(), "Process");
  Choose("undo");
  EXPECT_THAT(Names(), ElementsAre("Process", "Assign"));
}

TEST_F(WindowTest, WhatIsCopiedIsPutOnAnotherPage) {
  DropMaster("Create", 2, 5);
  Choose("copy");
  Choose("paste");
  EXPECT_THAT(Names(), ElementsAre("Create", "Create.2"));
  EXPECT_NE(MiddleOf("Create"), MiddleOf("Create.2"));
  Choose("addPage");
  Choose("paste");
  ASSERT_THAT(Names(), SizeIs(1));
  EXPECT_NEAR(FrameOf(*page().TopLevel().front(), 1).middle().x, 2, 1e-9);
}

TEST_F(WindowTest, NoKeyIsUsedTwice) {
  std::map<std::string, std::string> keys;
  for (const QAction* action : window_->actions().All())
    for (const QKeySequence& key : action->shortcuts())
      EXPECT_TRUE(keys.emplace(key.toString().toStdString(), action->objectName().toStdString()).second)
          << key.toString().toStdString() << " of " << action->objectName().toStdString();
}

}  // namespace
}  // namespace vardo
