// The window in which a drawing is drawn, edited and kept in order.
#pragma once

#include "desktop/Actions.h"
#include "desktop/DrawingCanvas.h"
#include "desktop/DrawingFiles.h"
#include "desktop/DrawingSession.h"
#include "desktop/HistoryDock.h"
#include "desktop/MiniMap.h"
#include "desktop/ModelDock.h"
#include "desktop/PageTabs.h"
#include "desktop/Printing.h"
#include "desktop/ProblemsDock.h"
#include "desktop/PropertiesDock.h"
#include "desktop/StencilDock.h"
#include "desktop/TextEditor.h"

#include <QLabel>
#include <QMainWindow>
#include <QMenu>
#include <QSlider>

#include <filesystem>
#include <functional>
#include <string>

namespace vardo {

class MainWindow : public QMainWindow {
 public:
  MainWindow();
  ~MainWindow() override;

  DrawingSession& session() { return session_; }
  DrawingCanvas& canvas() { return *canvas_; }
  DrawingFiles& files() { return files_; }
  const Actions& actions() const { return actions_; }

  // False, and a message has said why, when it could not be opened; the drawing shown stays then.
  bool OpenFile(const std::filesystem::path& file);
  // In a window and a program of its own; without a name a new drawing.
  static void OpenElsewhere(const std::filesystem::path& file);
  void NewDrawing();
  // Carries it out and shows what has come of it; what the host refuses is said in a message.
  void Do(const Deed& deed);

 protected:
  void closeEvent(QCloseEvent* event) override;
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dropEvent(QDropEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  // Runs what changes the drawing; nothing else does meanwhile.
  void Guarded(const std::function<void()>& work);
  // Another drawing is shown.
  void Opened();

  // Everything that shows the drawing's state shows it as it is now.
  void Sync();
  void SyncPage();
  void SyncActions();
  void SyncStatus();
  void SyncSimulateMenu();

  void BuildCentre();
  void BuildDocks();
  void BuildMenus();
  void BuildToolBar();
  void BuildStatusBar();
  void ConnectFileActions();
  void ConnectEditActions();
  void ConnectViewActions();
  void ConnectArrangeActions();
  void ConnectCanvas();
  void ConnectDocks();
  QMenu* AddMenu(const char* caption, std::initializer_list<const char*> entries);
  void FillMenu(QMenu& menu, std::initializer_list<const char*> entries);

  // --- Files.
  void OpenAsked();
  void FillRecent();

  // --- The page.
  void PlaceNext(const StencilItem& item);
  void EditText(const QString& first);
  void DoubleClicked(int shape);
  void ShowMenu(int shape, QPoint at);
  void AddActionsOf(const SheetRef& sheet, QMenu& menu);
  bool KeyPressed(QKeyEvent& event);
  void Nudge(int across, int up, bool fine);
  void GoTo(int page, int shape);
  void DrawMarks(const Stage& stage, Overlay& overlay) const;
  void Copy();
  void Paste();
  void SelectOne(std::optional<int> shape);
  void SelectWhere(const std::function<bool(DrawingShape&)>& wanted);
  void RenamePage(int page);
  void DeletePage(int page);
  void TurnPage(int step);
  std::optional<int> SelectedSubmodel();
  std::string DraggedMaster(const QDropEvent& event) const;
  bool PageEvent(QEvent& event);

  DrawingSession session_;
  DrawingFiles files_{session_, *this};
  Printing printing_{session_, *this};
  Actions actions_{*this};
  DrawingCanvas* canvas_ = nullptr;
  MiniMap* miniMap_ = nullptr;
  PageTabs* tabs_ = nullptr;
  Breadcrumb* breadcrumb_ = nullptr;
  StencilDock* stencil_ = nullptr;
  HistoryDock* history_ = nullptr;
  ModelDock* model_ = nullptr;
  PropertiesDock* properties_ = nullptr;
  ProblemsDock* problems_ = nullptr;
  TextEditor* textEditor_ = nullptr;
  QMenu* simulateMenu_ = nullptr;
  QMenu* recentMenu_ = nullptr;
  QLabel* selectionLabel_ = nullptr;
  QLabel* hintLabel_ = nullptr;
  QLabel* pageLabel_ = nullptr;
  QLabel* zoomLabel_ = nullptr;
  QSlider* zoomSlider_ = nullptr;
  std::vector<SheetRef> copied_;
  bool busy_ = false;
  int shownPage_ = -1;
};

}  // namespace vardo
