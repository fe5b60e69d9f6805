#include "desktop/MainWindow.h"

#include "base/Errors.h"
#include "canvas/LegalTargets.h"
#include "canvas/PageTree.h"
#include "canvas/Placing.h"
#include "canvas/ShapeFacts.h"
#include "desktop/Texts.h"
#include "document/Drawing.h"
#include "modules/ModuleKinds.h"

#include <QApplication>
#include <QCloseEvent>
#include <QFileInfo>
#include <QInputDialog>
#include <QMenuBar>
#include <QMessageBox>
#include <QMimeData>
#include <QProcess>
#include <QScopedValueRollback>
#include <QScreen>
#include <QSettings>
#include <QStatusBar>
#include <QToolBar>
#include <QVBoxLayout>

#include <algorithm>
#include <cmath>

namespace vardo {
namespace {

constexpr const char* kSeparator = "|";
constexpr const char* kGeometryKey = "window/geometry";
constexpr const char* kStateKey = "window/state";
constexpr double kNudge = 0.125;  // inches
// The zoom slider counts in steps of which eight double the size.
constexpr double kSliderStep = 8;

int SliderOf(double zoom) { return static_cast<int>(std::lround(kSliderStep * std::log2(zoom))); }

QString QtText(const std::string& text) { return QString::fromStdString(text); }

}  // namespace

MainWindow::MainWindow() {
  setObjectName("mainWindow");
  setAcceptDrops(true);
  BuildCentre();
  BuildDocks();
  BuildMenus();
  BuildToolBar();
  BuildStatusBar();
  ConnectFileActions();
  ConnectEditActions();
  ConnectViewActions();
  ConnectArrangeActions();
  ConnectCanvas();
  ConnectDocks();
  resize(1280, 860);
  const QSettings settings;
  restoreGeometry(settings.value(kGeometryKey).toByteArray());
  restoreState(settings.value(kStateKey).toByteArray());
  if (!QGuiApplication::screenAt(geometry().center())) move(QGuiApplication::primaryScreen()->availableGeometry().topLeft());
  session_.onDirty = [this](const Scene::Dirty& dirty) {
    canvas_->Repaint(dirty);
    miniMap_->Refresh();
  };
  session_.onStep = [this](const std::vector<TouchedCell>&) {
    model_->Refresh();
    problems_->Refresh();
  };
}

MainWindow::~MainWindow() { canvas_->Show(nullptr); }

// --- What it is made of.

void MainWindow::BuildCentre() {
  auto* const centre = new QWidget(this);
  auto* const layout = new QVBoxLayout(centre);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  breadcrumb_ = new Breadcrumb(centre);
  canvas_ = new DrawingCanvas(session_, centre);
  canvas_->viewport()->setAcceptDrops(true);
  canvas_->viewport()->installEventFilter(this);
  miniMap_ = new MiniMap(*canvas_);
  textEditor_ = new TextEditor(*canvas_);
  tabs_ = new PageTabs(centre);
  layout->addWidget(breadcrumb_);
  layout->addWidget(canvas_, 1);
  layout->addWidget(tabs_);
  setCentralWidget(centre);
}

void MainWindow::BuildDocks() {
  stencil_ = new StencilDock(this);
  addDockWidget(Qt::LeftDockWidgetArea, stencil_);
  history_ = new HistoryDock(this);
  addDockWidget(Qt::RightDockWidgetArea, history_);
  history_->hide();
  properties_ = new PropertiesDock(session_, this);
  addDockWidget(Qt::RightDockWidgetArea, properties_);
  model_ = new ModelDock(session_, this);
  addDockWidget(Qt::RightDockWidgetArea, model_);
  problems_ = new ProblemsDock(session_, this);
  addDockWidget(Qt::BottomDockWidgetArea, problems_);
  setCorner(Qt::BottomRightCorner, Qt::RightDockWidgetArea);
  setCorner(Qt::BottomLeftCorner, Qt::LeftDockWidgetArea);
  resizeDocks({stencil_, properties_}, {210, 280}, Qt::Horizontal);
  resizeDocks({problems_}, {110}, Qt::Vertical);
}

void MainWindow::FillMenu(QMenu& menu, std::initializer_list<const char*> entries) {
  for (const std::string_view entry : entries) {
    if (entry == kSeparator)
      menu.addSeparator();
    else
      menu.addAction(&actions_[entry]);
  }
}

QMenu* MainWindow::AddMenu(const char* caption, std::initializer_list<const char*> entries) {
  QMenu* const menu = menuBar()->addMenu(texts::Say(caption));
  FillMenu(*menu, entries);
  return menu;
}

void MainWindow::BuildMenus() {
  QMenu* const file = AddMenu("&File", {"new", "open"});
  recentMenu_ = file->addMenu(texts::Say("Open &Recent"));
  QObject::connect(recentMenu_, &QMenu::aboutToShow, this, [this] { FillRecent(); });
  FillMenu(*file, {kSeparator, "save", "saveAs", "saveCopy", kSeparator});
  FillMenu(*file->addMenu(texts::Say("&Export")), {"exportPicture", "exportPdf"});
  FillMenu(*file, {"printPreview", "print", kSeparator, "close", "quit"});
  AddMenu("&Edit",
          {"undo", "redo", kSeparator, "copy", "paste", "duplicate", "delete", kSeparator, "selectAll", "selectModules",
           "invertSelection", "deselect", kSeparator, "editModule", "editText", kSeparator, "find", "findNext", "findPrevious"});
  QMenu* const view = AddMenu("&View", {"zoomIn", "zoomOut", "fullSize", "fitPage", "fitSelection", kSeparator, "grid", "snap",
                                        "guides", "miniMap", kSeparator});
  for (QDockWidget* dock : findChildren<QDockWidget*>()) view->addAction(dock->toggleViewAction());
  FillMenu(*view, {kSeparator, "nextPage", "previousPage", "parentPage", "intoSubmodel", kSeparator, "refreshProblems",
                   "notExact", "fullScreen"});
  QMenu* const insert = AddMenu("&Insert", {});
  QMenu* const modules = insert->addMenu(texts::Say("&Module"));
  for (const StencilItem& item : stencil_->items())
    if (!item.isConnector)
      QObject::connect(modules->addAction(item.icon, QtText(item.name)), &QAction::triggered, this,
                       [this, item] { PlaceNext(item); });
  FillMenu(*insert, {"addPage", "submodelPage", kSeparator, "renamePage", "deletePage"});
  QMenu* const arrange = AddMenu("&Arrange", {});
  FillMenu(*arrange->addMenu(texts::Say("&Align")),
           {"alignLeft", "alignCentre", "alignRight", "alignTop", "alignMiddle", "alignBottom"});
  FillMenu(*arrange->addMenu(texts::Say("&Distribute")), {"distributeAcross", "distributeUp"});
  FillMenu(*arrange, {"sameSize", kSeparator, "bringToFront", "bringForward", "sendBackward", "sendToBack"});
  simulateMenu_ = menuBar()->addMenu(QString());
  AddMenu("&Help", {"shortcuts", "about"});
}

void MainWindow::BuildToolBar() {
  QToolBar* const bar = addToolBar(texts::Say("Tool Bar"));
  bar->setObjectName("toolBar");
  bar->setIconSize(QSize(20, 20));
  for (const std::string_view entry : {"new", "open", "save", kSeparator, "undo", "redo", kSeparator, "copy", "paste",
                                       "duplicate", "delete", kSeparator, "zoomOut", "zoomIn", "fitPage"}) {
    if (entry == kSeparator)
      bar->addSeparator();
    else
      bar->addAction(&actions_[entry]);
  }
}

void MainWindow::BuildStatusBar() {
  selectionLabel_ = new QLabel(this);
  hintLabel_ = new QLabel(this);
  pageLabel_ = new QLabel(this);
  zoomLabel_ = new QLabel(this);
  zoomSlider_ = new QSlider(Qt::Horizontal, this);
  selectionLabel_->setObjectName("selection");
  hintLabel_->setObjectName("hint");
  zoomSlider_->setRange(SliderOf(View::kSmallest / kFullSize), SliderOf(View::kLargest / kFullSize));
  zoomSlider_->setFixedWidth(120);
  zoomSlider_->setAccessibleName(texts::ZoomName());
  zoomLabel_->setMinimumWidth(zoomLabel_->fontMetrics().horizontalAdvance("0000 %"));
  statusBar()->addWidget(selectionLabel_);
  statusBar()->addWidget(hintLabel_, 1);
  statusBar()->addPermanentWidget(pageLabel_);
  statusBar()->addPermanentWidget(zoomSlider_);
  statusBar()->addPermanentWidget(zoomLabel_);
  QObject::connect(zoomSlider_, &QSlider::valueChanged, this, [this](int value) {
    if (value != SliderOf(canvas_->view().Zoom())) canvas_->ZoomTo(kFullSize * std::exp2(value / kSliderStep));
  });
}

void MainWindow::ConnectFileActions() {
  actions_.On("new", [this] {
    if (session_.IsUntouched()) return;
    if (session_.host().IsOpen()) return OpenElsewhere({});
    NewDrawing();
  });
  actions_.On("open", [this] { OpenAsked(); });
  actions_.On("save", [this] {
    textEditor_->Commit();
    files_.Save();
    Sync();
  });
  actions_.On("saveAs", [this] {
    textEditor_->Commit();
    files_.SaveAs();
    Sync();
  });
  actions_.On("saveCopy", [this] { files_.SaveCopy(); });
  actions_.On("exportPicture", [this] { files_.ExportPicture(); });
  actions_.On("exportPdf", [this] { files_.ExportPdf(); });
  actions_.On("print", [this] { printing_.Print(); });
  actions_.On("printPreview", [this] { printing_.Preview(); });
  actions_.On("close", [this] { close(); });
  actions_.On("quit", [] { QApplication::closeAllWindows(); });
  actions_.On("about", [this] {
    QMessageBox::about(this, texts::Say("About Vardo"),
                       texts::Say("Vardo models business and production processes as flowcharts in Visio drawings."));
  });
  actions_.On("shortcuts", [this] {
    QString keys;
    for (const QAction* action : actions_.All())
      if (!action->shortcut().isEmpty())
        keys += QString("<tr><td>%1&nbsp;&nbsp;</td><td>%2</td></tr>")
                    .arg(action->shortcut().toString(QKeySequence::NativeText).toHtmlEscaped(),
                         action->text().remove('&').toHtmlEscaped());
    QMessageBox::information(this, texts::Say("Shortcuts"), "<table>" + keys + "</table>");
  });
}

void MainWindow::ConnectEditActions() {
  actions_.On("undo", [this] { Do(deeds::Undo{}); });
  actions_.On("redo", [this] { Do(deeds::Redo{}); });
  actions_.On("delete", [this] { Do(deeds::Delete{}); });
  actions_.On("duplicate", [this] { Do(deeds::Move{session_.host().selection(), {0.25, -0.25}, true}); });
  actions_.On("selectAll", [this] { SelectWhere([](DrawingShape&) { return true; }); });
  actions_.On("selectModules", [this] { SelectWhere([](DrawingShape& shape) { return !KindOf(shape).empty(); }); });
  actions_.On("invertSelection", [this] {
    const std::vector<int> selected = session_.host().selection();
    SelectWhere([&](DrawingShape& shape) { return std::find(selected.begin(), selected.end(), shape.id()) == selected.end(); });
  });
  actions_.On("copy", [this] { Copy(); });
  actions_.On("paste", [this] { Paste(); });
  actions_.On("deselect", [this] { Do(deeds::Select{}); });
  actions_.On("editModule", [this] { Do(deeds::OpenDialog{session_.host().selection().front()}); });
  actions_.On("editText", [this] { EditText({}); });
  actions_.On("addPage", [this] { Do(deeds::AddPage{}); });
  actions_.On("submodelPage", [this] { Do(deeds::OpenSubmodel{session_.host().selection().front()}); });
  actions_.On("renamePage", [this] { RenamePage(session_.page().id()); });
  actions_.On("deletePage", [this] { DeletePage(session_.page().id()); });
}

void MainWindow::ConnectViewActions() {
  actions_.On("zoomIn", [this] { canvas_->ZoomBySteps(2); });
  actions_.On("zoomOut", [this] { canvas_->ZoomBySteps(-2); });
  actions_.On("fullSize", [this] { canvas_->ZoomTo(kFullSize); });
  actions_.On("fitPage", [this] { canvas_->Fit(session_.scene().Paper(), View::kLargest); });
  actions_.On("fitSelection", [this] {
    Box box;
    for (const int shape : session_.host().selection()) box.Add(session_.scene().BoxOf(shape));
    if (!box.empty()) canvas_->Fit(box, 2 * kFullSize);
  });
  for (const char* id : {"grid", "snap", "guides", "miniMap"}) actions_[id].setChecked(true);
  actions_.On("grid", [this] { canvas_->ShowGrid(actions_["grid"].isChecked()); });
  actions_.On("snap", [this] { canvas_->snap().toGrid = actions_["snap"].isChecked(); });
  actions_.On("guides", [this] { canvas_->snap().toOthers = actions_["guides"].isChecked(); });
  actions_.On("miniMap", [this] { miniMap_->setVisible(actions_["miniMap"].isChecked()); });
  actions_.On("fullScreen", [this] { actions_["fullScreen"].isChecked() ? showFullScreen() : showNormal(); });
  actions_.On("nextPage", [this] { TurnPage(1); });
  actions_.On("previousPage", [this] { TurnPage(-1); });
  actions_.On("parentPage", [this] { Do(deeds::CloseSubmodel{}); });
  actions_.On("intoSubmodel", [this] { Do(deeds::OpenSubmodel{*SelectedSubmodel()}); });
}

void MainWindow::ConnectArrangeActions() {
  using deeds::Alignment;
  using deeds::Place;
  constexpr std::pair<std::string_view, Alignment> kAlignments[] = {
      {"alignLeft", Alignment::Left}, {"alignCentre", Alignment::Centre}, {"alignRight", Alignment::Right},
      {"alignTop", Alignment::Top},   {"alignMiddle", Alignment::Middle}, {"alignBottom", Alignment::Bottom}};
  for (const auto& [id, how] : kAlignments)
    actions_.On(id, [this, how = how] { Do(deeds::Align{session_.host().selection(), how}); });
  constexpr std::pair<std::string_view, Place> kPlaces[] = {{"bringToFront", Place::Front},
                                                            {"bringForward", Place::Forward},
                                                            {"sendBackward", Place::Backward},
                                                            {"sendToBack", Place::Back}};
  for (const auto& [id, to] : kPlaces) actions_.On(id, [this, to = to] { Do(deeds::Order{session_.host().selection(), to}); });
  actions_.On("distributeAcross", [this] { Do(deeds::Distribute{session_.host().selection(), true}); });
  actions_.On("distributeUp", [this] { Do(deeds::Distribute{session_.host().selection(), false}); });
  actions_.On("sameSize", [this] { Do(deeds::SameSize{session_.host().selection()}); });
}

void MainWindow::ConnectDocks() {
  model_->onGoTo = [this](int page, int shape) { GoTo(page, shape); };
  model_->onOpen = [this](int page, int shape) {
    GoTo(page, shape);
    Do(deeds::OpenDialog{shape});
  };
  problems_->onGoTo = [this](int page, int shape) { GoTo(page, shape); };
  problems_->onChecked = [this] { canvas_->Refresh(); };
  canvas_->onDecorate = [this](const Stage& stage, Overlay& overlay) { DrawMarks(stage, overlay); };
  properties_->onEdited = [this](const std::vector<int>& shapes, const std::string& field, const QString& text) {
    QString why;
    Guarded([&] {
      try {
        session_.Do(deeds::SetField{shapes, field, text.toStdString()});
      } catch (const AutomationError& error) {
        why = QtText(error.description());
      }
    });
    return why;
  };
  actions_.On("find", [this] { model_->FocusFilter(); });
  actions_.On("findNext", [this] { model_->Step(1); });
  actions_.On("findPrevious", [this] { model_->Step(-1); });
  actions_.On("refreshProblems", [this] { problems_->CheckNow(); });
  actions_.On("notExact", [this] {
    QString notes;
    for (const picture::Note& note : session_.scene().picture().notes) notes += QtText(note.sentence) + '\n';
    QMessageBox::information(this, texts::Say("Not Painted Exactly"),
                             notes.isEmpty() ? texts::Say("All of this page is painted as the drawing means it.") : notes);
  });
}

// Something that has to be seen: its page is turned to, it is selected and in sight.
void MainWindow::GoTo(int page, int shape) {
  if (!session_.drawing().FindPage(page)) return;
  Do(deeds::ShowPage{page});
  if (shape > 0 && session_.page().FindShape(shape)) SelectOne(shape);
}

// At the upper right corner of every shape that something is wrong with.
void MainWindow::DrawMarks(const Stage& stage, Overlay& overlay) const {
  const int page = stage.scene.pageId();
  const auto& worst = problems_->worst();
  const Box seen = stage.view.Seen(stage.window);
  for (auto mark = worst.lower_bound({page, 0}); mark != worst.end() && mark->first.first == page; ++mark) {
    const Box box = stage.scene.BoxOf(mark->first.second);
    if (box.empty() || !Meets(box, seen) || mark->second == Severity::Note) continue;
    overlay.spots.push_back({{box.right, box.top}, mark->second == Severity::Error ? Ink::Error : Ink::Warning, true});
  }
}

void MainWindow::ConnectCanvas() {
  canvas_->onDeed = [this](const Deed& deed) { Do(deed); };
  canvas_->onHint = [this](const QString& hint) { hintLabel_->setText(hint); };
  canvas_->onDoubleClick = [this](int shape) { DoubleClicked(shape); };
  canvas_->onMenu = [this](int shape, QPoint at) { ShowMenu(shape, at); };
  canvas_->onTyping = [this](QKeyEvent& event) { EditText(event.text()); };
  canvas_->onKey = [this](QKeyEvent& event) { return KeyPressed(event); };
  canvas_->onViewChanged = [this] {
    textEditor_->Commit();
    miniMap_->update();
    SyncStatus();
  };
  stencil_->onChosen = [this](const StencilItem& item) { PlaceNext(item); };
  history_->onChosen = [this](int steps) {
    for (; steps > 0; --steps) Do(deeds::Undo{});
    for (; steps < 0; ++steps) Do(deeds::Redo{});
  };
  textEditor_->onTyped = [this](int shape, const QString& text) { Do(deeds::Type{shape, text.toStdString()}); };
  tabs_->onChosen = [this](int page) { Do(deeds::ShowPage{page}); };
  tabs_->onAdd = [this] { Do(deeds::AddPage{}); };
  tabs_->onRename = [this](int page) { RenamePage(page); };
  tabs_->onMenu = [this](int page, QPoint at) {
    QMenu menu;
    QObject::connect(menu.addAction(texts::Say("&Rename...")), &QAction::triggered, this, [=, this] { RenamePage(page); });
    QObject::connect(menu.addAction(texts::Say("&Delete")), &QAction::triggered, this, [=, this] { DeletePage(page); });
    menu.exec(at);
  };
  breadcrumb_->onChosen = [this](int page) { Do(deeds::ShowPage{page}); };
}

// --- Deeds.

void MainWindow::Guarded(const std::function<void()>& work) {
  if (busy_) return;
  QString why;
  {
    const QScopedValueRollback<bool> busy(busy_, true);
    try {
      work();
    } catch (const AutomationError& error) {
      why = QtText(error.description());
    } catch (const std::bad_alloc&) {
      why = texts::Say("There is not enough memory for this.");
    }
  }
  Sync();
  if (why.isEmpty()) return;
  QMessageBox box(QMessageBox::Warning, "Vardo", why, QMessageBox::Ok, this);
  box.setTextFormat(Qt::PlainText);
  box.exec();
}

void MainWindow::Do(const Deed& deed) {
  if (session_.host().IsOpen()) Guarded([&] { session_.Do(deed); });
}

void MainWindow::Sync() {
  if (!session_.host().IsOpen()) return;
  setWindowTitle(texts::WindowTitle(files_.Name()));
  setWindowModified(session_.IsChanged());
  SyncPage();
  SyncActions();
  SyncStatus();
  SyncSimulateMenu();
  history_->Show(session_);
  properties_->Refresh();
}

void MainWindow::SyncPage() {
  const int page = session_.page().id();
  const bool turned = page != shownPage_;
  if (turned) textEditor_->Commit();
  canvas_->Refresh();
  tabs_->Show(session_);
  breadcrumb_->Show(session_);
  if (!turned) return;
  shownPage_ = page;
  canvas_->Fit(session_.scene().Paper());
  miniMap_->Refresh();
}

void MainWindow::SyncActions() {
  const EditLog& log = session_.drawing().log();
  const std::vector<int>& selected = session_.host().selection();
  const QString nothing = selected.empty() ? texts::Say("Nothing is selected.") : QString();
  const auto undone = log.UndoLabels(), redone = log.RedoLabels();
  actions_["undo"].setText(undone.empty() ? texts::Say("&Undo") : texts::Say("&Undo \"%1\"").arg(QtText(undone.back())));
  actions_["redo"].setText(redone.empty() ? texts::Say("&Redo") : texts::Say("&Redo \"%1\"").arg(QtText(redone.back())));
  actions_.Enable("undo", undone.empty() ? texts::Say("Nothing has been done.") : QString());
  actions_.Enable("redo", redone.empty() ? texts::Say("Nothing has been taken back.") : QString());
  for (const char* id : {"copy", "delete", "duplicate", "deselect", "fitSelection", "invertSelection", "editText"})
    actions_.Enable(id, nothing);
  actions_.Enable("paste", copied_.empty() ? texts::Say("Nothing has been copied.") : QString());
  const QString tooFew = selected.size() < 2 ? texts::Say("Several shapes have to be selected.") : QString();
  for (const char* id : {"alignLeft", "alignCentre", "alignRight", "alignTop", "alignMiddle", "alignBottom", "distributeAcross",
                         "distributeUp", "sameSize"})
    actions_.Enable(id, tooFew);
  for (const char* id : {"bringToFront", "bringForward", "sendBackward", "sendToBack"}) actions_.Enable(id, nothing);
  const DrawingShape* const one = selected.size() == 1 ? session_.page().FindShape(selected.front()) : nullptr;
  const std::string kind = one ? KindOf(*one) : "";
  actions_.Enable("editModule", kind.empty() ? texts::Say("No module is selected.") : QString());
  actions_.Enable("submodelPage", kind != "Process" ? texts::Say("No Process is selected.") : QString());
  actions_.Enable("intoSubmodel", SelectedSubmodel() ? QString() : texts::Say("No submodel is selected."));
  actions_.Enable("parentPage",
                  ParentPageOf(session_.drawing(), session_.page()) ? QString() : texts::Say("This page is no submodel's."));
  actions_.Enable("deletePage", session_.drawing().PageCount() == 1 ? texts::Say("A drawing keeps one page.") : QString());
}

void MainWindow::SyncStatus() {
  if (!session_.host().IsOpen()) return;
  const std::vector<int>& selected = session_.host().selection();
  QString text;
  if (const DrawingShape* one = selected.size() == 1 ? session_.page().FindShape(selected.front()) : nullptr) {
    text = QtText(NameInWords(session_.page(), *one));
  } else if (!selected.empty()) {
    int connectors = 0;
    for (const int id : selected)
      if (const DrawingShape* shape = session_.page().FindShape(id); shape && shape->IsOneDimensional()) ++connectors;
    text = texts::Say("%1 shapes, %2 connectors").arg(static_cast<int>(selected.size()) - connectors).arg(connectors);
  }
  selectionLabel_->setText(text);
  pageLabel_->setText(texts::PageOf(session_.drawing().IndexOf(session_.page()), session_.drawing().PageCount()));
  zoomLabel_->setText(QString("%1 %").arg(std::lround(canvas_->view().Zoom() * 100)));
  const QSignalBlocker quiet(zoomSlider_);
  zoomSlider_->setValue(SliderOf(canvas_->view().Zoom()));
}

// As the add-in has built it.
void MainWindow::SyncSimulateMenu() {
  const MenuBar& menus = session_.host().menus().Shown();
  const auto added = std::find_if(menus.begin(), menus.end(), [](const MenuData& menu) { return menu.added; });
  simulateMenu_->menuAction()->setVisible(added != menus.end());
  simulateMenu_->clear();
  if (added == menus.end()) return;
  simulateMenu_->setTitle(QtText(added->caption));
  std::vector<MenuItemData> items = added->items;
  for (const MenuItemData& item : items)
    QObject::connect(simulateMenu_->addAction(QtText(item.caption)), &QAction::triggered, this, [this, item] {
      Do(deeds::RunAction{item.caption, item.runs});
    });
}

// --- Files.

void MainWindow::NewDrawing() {
  Guarded([this] { session_.New(); });
  Opened();
}

bool MainWindow::OpenFile(const std::filesystem::path& file) {
  canvas_->Show(nullptr);
  bool opened = false;
  Guarded([&] { opened = files_.Open(file); });
  if (session_.host().IsOpen()) Opened();
  return opened;
}

void MainWindow::Opened() {
  shownPage_ = -1;
  copied_.clear();
  Sync();
  model_->Refresh();
  problems_->Refresh();
  canvas_->setFocus();
}

// A drawing has a window and a program of its own, so that nothing that befalls one befalls another.
void MainWindow::OpenElsewhere(const std::filesystem::path& file) {
  QStringList arguments{"desktop"};
  if (!file.empty()) arguments << NameOf(file);
  QProcess::startDetached(QCoreApplication::applicationFilePath(), arguments);
}

void MainWindow::OpenAsked() {
  const auto file = files_.AskForDrawing();
  if (!file) return;
  session_.IsUntouched() || !session_.host().IsOpen() ? static_cast<void>(OpenFile(*file)) : OpenElsewhere(*file);
}

void MainWindow::FillRecent() {
  recentMenu_->clear();
  for (const QString& name : DrawingFiles::Recent())
    QObject::connect(recentMenu_->addAction(name), &QAction::triggered, this, [this, name] {
      session_.IsUntouched() ? static_cast<void>(OpenFile(PathOf(name))) : OpenElsewhere(PathOf(name));
    });
  recentMenu_->setEnabled(true);
  if (recentMenu_->isEmpty()) recentMenu_->addAction(texts::Say("None yet"))->setEnabled(false);
}

void MainWindow::closeEvent(QCloseEvent* event) {
  textEditor_->Commit();
  if (busy_ || !files_.MayLeave()) return event->ignore();
  QSettings settings;
  settings.setValue(kGeometryKey, saveGeometry());
  settings.setValue(kStateKey, saveState());
  event->accept();
}

void MainWindow::dragEnterEvent(QDragEnterEvent* event) {
  if (event->mimeData()->hasUrls()) event->acceptProposedAction();
}

void MainWindow::dropEvent(QDropEvent* event) {
  for (const QUrl& url : event->mimeData()->urls()) {
    const std::filesystem::path file = PathOf(url.toLocalFile());
    session_.IsUntouched() ? static_cast<void>(OpenFile(file)) : OpenElsewhere(file);
  }
  event->acceptProposedAction();
}

// --- The palette over the page.

std::string MainWindow::DraggedMaster(const QDropEvent& event) const {
  return event.mimeData()->hasFormat(kMasterMime) ? event.mimeData()->data(kMasterMime).toStdString() : "";
}

bool MainWindow::eventFilter(QObject* watched, QEvent* event) {
  return (watched == canvas_->viewport() && session_.host().IsOpen() && PageEvent(*event)) ||
         QMainWindow::eventFilter(watched, event);
}

bool MainWindow::PageEvent(QEvent& event) {
  if (event.type() == QEvent::DragLeave) {
    canvas_->ShowGhost({});
    return true;
  }
  const bool isDrag = event.type() == QEvent::DragEnter || event.type() == QEvent::DragMove;
  if (!isDrag && event.type() != QEvent::Drop) return false;
  auto& drop = static_cast<QDropEvent&>(event);
  const std::string master = DraggedMaster(drop);
  const StencilItem* const item = stencil_->Find(master);
  if (!item) return false;
  drop.acceptProposedAction();
  const PagePoint at = canvas_->PlaceUnder(drop.position(), true);
  if (isDrag) {
    Overlay ghost;
    const PagePoint half{item->width / 2, item->height / 2};
    ghost.frames.push_back({BoxBetween(at - half, at + half), Ink::Band});
    canvas_->ShowGhost(ghost);
    return true;
  }
  canvas_->ShowGhost({});
  Do(deeds::Drop{master, at});
  canvas_->setFocus();
  return true;
}

// --- The page.

// Beside the module that is selected, connected with it; otherwise where there is room.
void MainWindow::PlaceNext(const StencilItem& item) {
  if (!session_.host().IsOpen()) return;
  Scene& scene = session_.scene();
  DrawingPage& page = session_.page();
  const std::vector<int>& selected = session_.host().selection();
  const DrawingShape* const from = selected.size() == 1 ? page.FindShape(selected.front()) : nullptr;
  const ModuleSchema* const module = FindModule(item.name);
  const bool isFlow = module && !module->look.connections.empty() && item.name != "Create";
  if (from && isFlow && !ExitsOf(*from).empty()) {
    const PagePoint at = PlaceBeside(scene, page, FrameOf(*from, scene.picture().scale), item.width, item.height);
    Do(deeds::Drop{item.name, at, from->id()});
  } else {
    const Box seen = canvas_->view().Seen(canvas_->WindowSize());
    Do(deeds::Drop{item.name, SnapPoint(PlaceIn(scene, page, seen, item.width, item.height), canvas_->snap())});
  }
  if (!session_.host().selection().empty()) canvas_->ScrollTo(scene.BoxOf(session_.host().selection().front()));
}

void MainWindow::EditText(const QString& first) {
  const std::vector<int>& selected = session_.host().selection();
  const DrawingShape* const shape = selected.size() == 1 ? session_.page().FindShape(selected.front()) : nullptr;
  if (!shape || busy_) return;
  canvas_->ScrollTo(session_.scene().BoxOf(shape->id()));
  textEditor_->Begin(shape->id(), QtText(shape->Text()), !KindOf(*shape).empty(), first);
}

void MainWindow::DoubleClicked(int shape) {
  if (shape == 0) return;
  Do(deeds::Select{{shape}});
  const DrawingShape* const found = session_.page().FindShape(shape);
  if (!found) return;
  KindOf(*found).empty() ? EditText({}) : Do(deeds::OpenDialog{shape});
}

// The sheet's own actions, as the host shows them.
void MainWindow::AddActionsOf(const SheetRef& ref, QMenu& menu) {
  const Sheet& sheet = *session_.host().Resolve(ref).sheet;
  const SectionInfo& section = *FindSectionByElement("Actions");
  for (const Sheet::Row& row : sheet.Rows(section)) {
    const auto value = [&](const char* name) { return sheet.Value({&section, row.key, Symbol(name)}); };
    const auto isSet = [&](const char* name) {
      const CellValue cell = value(name);
      const auto* const number = std::get_if<double>(&cell);
      return number && *number != 0;
    };
    const CellValue caption = value("Menu");
    const auto* const text = std::get_if<std::string>(&caption);
    if (!text || text->empty() || isSet("Invisible")) continue;
    const std::string statement = StatementOfAction(sheet.Formula({&section, row.key, Symbol("Action")}));
    QAction* const action = menu.addAction(QtText(*text));
    action->setCheckable(isSet("Checked"));
    action->setChecked(isSet("Checked"));
    action->setEnabled(!statement.empty() && !isSet("Disabled"));
    QObject::connect(action, &QAction::triggered, this, [this, name = *text, statement] {
      Do(deeds::RunAction{name, statement});
    });
  }
}

void MainWindow::ShowMenu(int shape, QPoint at) {
  QMenu menu(this);
  menu.setObjectName("pageMenu");
  if (shape != 0) {
    AddActionsOf(session_.host().RefTo(session_.page(), shape), menu);
    FillMenu(menu, {kSeparator, "editModule", "editText", kSeparator, "copy", "duplicate", "delete"});
  } else {
    AddActionsOf(session_.host().RefTo(session_.page(), SheetKind::Page), menu);
    FillMenu(menu, {kSeparator, "paste", "selectAll", "fitPage"});
  }
  menu.exec(at);
}

bool MainWindow::KeyPressed(QKeyEvent& event) {
  if (!session_.host().IsOpen()) return false;
  const std::vector<int> selected = session_.host().selection();
  const bool shift = event.modifiers() & Qt::ShiftModifier, control = event.modifiers() & Qt::ControlModifier;
  const std::optional<int> current = selected.empty() ? std::nullopt : std::optional(selected.back());
  const auto arrow = [&](int x, int y) {
    if (selected.empty()) return false;
    control ? SelectOne(NearestShape(session_.page(), *current, x, y)) : Nudge(x, y, shift);
    return true;
  };
  switch (event.key()) {
    case Qt::Key_Left:
      return arrow(-1, 0);
    case Qt::Key_Right:
      return arrow(1, 0);
    case Qt::Key_Up:
      return arrow(0, 1);
    case Qt::Key_Down:
      return arrow(0, -1);
    case Qt::Key_Tab:
    case Qt::Key_Backtab:
      SelectOne(NextShape(session_.page(), current, event.key() == Qt::Key_Tab ? 1 : -1));
      return true;
    case Qt::Key_Return:
    case Qt::Key_Enter:
      if (actions_["editModule"].isEnabled()) actions_["editModule"].trigger();
      return true;
    case Qt::Key_Escape:
      Do(deeds::Select{});
      return true;
    default:
      return false;
  }
}

void MainWindow::Nudge(int across, int up, bool fine) {
  const double step = fine ? canvas_->view().ToInches(1) : kNudge;
  Do(deeds::Move{session_.host().selection(), {across * step, up * step}});
}

// Of this drawing: what is copied is looked up when it is put somewhere.
void MainWindow::Copy() {
  copied_.clear();
  for (const int shape : session_.host().selection()) copied_.push_back(session_.host().RefTo(session_.page(), shape));
  SyncActions();
}

void MainWindow::Paste() { Do(deeds::Paste{copied_, {0.25, -0.25}}); }

void MainWindow::SelectOne(std::optional<int> shape) {
  if (!shape) return;
  Do(deeds::Select{{*shape}});
  canvas_->ScrollTo(session_.scene().BoxOf(*shape));
}

void MainWindow::SelectWhere(const std::function<bool(DrawingShape&)>& wanted) {
  std::vector<int> shapes;
  for (DrawingShape* shape : session_.page().TopLevel())
    if (wanted(*shape)) shapes.push_back(shape->id());
  Do(deeds::Select{shapes});
}

void MainWindow::RenamePage(int page) {
  const QString before = QtText(session_.drawing().FindPage(page)->Name());
  bool wanted = false;
  const QString name =
      QInputDialog::getText(this, texts::Say("Rename Page"), texts::Say("Name:"), QLineEdit::Normal, before, &wanted);
  if (wanted && name != before) Do(deeds::RenamePage{page, name.toStdString()});
}

void MainWindow::DeletePage(int page) { Do(deeds::DeletePage{page}); }

void MainWindow::TurnPage(int step) {
  Drawing& drawing = session_.drawing();
  const int index = drawing.IndexOf(session_.page()) + step;
  if (index >= 1 && index <= drawing.PageCount() && !drawing.PageAt(index).IsBackground())
    Do(deeds::ShowPage{drawing.PageAt(index).id()});
}

std::optional<int> MainWindow::SelectedSubmodel() {
  const std::vector<int>& selected = session_.host().selection();
  const DrawingShape* const shape = selected.size() == 1 ? session_.page().FindShape(selected.front()) : nullptr;
  return shape && !TextIn(*shape, "Prop.VardoSubPage").empty() ? std::optional(shape->id()) : std::nullopt;
}

}  // namespace vardo
