#include "desktop/Actions.h"

#include "desktop/Icons.h"
#include "desktop/Texts.h"

#include <QIcon>
#include <QKeySequence>
#include <QWidget>

namespace vardo {
namespace {

struct Row {
  std::string_view id;
  const char* caption;
  const char* keys;  // several by " | "
  const char* tip;
  const char* icon = "";
  bool checkable = false;
};

constexpr Row kRows[] = {
    {"new", "&New", "Ctrl+N", "Begin a new drawing", "document-new"},
    {"open", "&Open...", "Ctrl+O", "Open a drawing", "document-open"},
    {"save", "&Save", "Ctrl+S", "Save the drawing", "document-save"},
    {"saveAs", "Save &As...", "Ctrl+Shift+S", "Save the drawing under another name", "document-save-as"},
    {"saveCopy", "Save a &Copy...", "", "Save a copy and go on with this drawing"},
    {"exportPicture", "&Picture...", "", "Make a picture of this page: SVG or PNG"},
    {"exportPdf", "P&DF...", "", "Make a PDF of all pages"},
    {"printPreview", "Print Pre&view...", "", "See the pages as they will be printed"},
    {"print", "&Print...", "Ctrl+P", "Print the drawing", "document-print"},
    {"close", "&Close", "Ctrl+W", "Close this drawing"},
    {"quit", "&Quit", "Ctrl+Q", "Close all windows of this program"},
    {"undo", "&Undo", "Ctrl+Z", "Take the last step back", "edit-undo"},
    {"redo", "&Redo", "Ctrl+Shift+Z | Ctrl+Y", "Do the step again", "edit-redo"},
    {"copy", "&Copy", "Ctrl+C", "Copy what is selected to the clipboard", "edit-copy"},
    {"paste", "&Paste", "Ctrl+V", "Put what is in the clipboard onto the page", "edit-paste"},
    {"duplicate", "Dupl&icate", "Ctrl+D", "Copy what is selected beside itself"},
    {"delete", "&Delete", "Del", "Delete what is selected", "edit-delete"},
    {"selectAll", "Select &All", "Ctrl+A", "Select everything on the page"},
    {"selectModules", "Select &Modules", "", "Select the page's modules"},
    {"invertSelection", "I&nvert Selection", "", "Select what is not selected"},
    {"deselect", "D&eselect", "Ctrl+Shift+A", "Select nothing"},
    {"editModule", "Edit M&odule...", "", "Open the dialog of the selected module"},
    {"editText", "Edit Te&xt", "F2", "Type on the selected shape"},
    {"find", "&Find...", "Ctrl+F", "Find a name, a value or a text", "edit-find"},
    {"findNext", "Find Ne&xt", "F3", "Go to the next place found"},
    {"findPrevious", "Find Pre&vious", "Shift+F3", "Go to the place found before"},
    {"zoomIn", "Zoom &In", "Ctrl++ | Ctrl+=", "See it larger", "zoom-in"},
    {"zoomOut", "Zoom &Out", "Ctrl+-", "See more of it", "zoom-out"},
    {"fullSize", "&100 %", "Ctrl+0", "As large as on paper", "zoom-original"},
    {"fitPage", "&Fit Page", "Ctrl+9", "See the whole page", "zoom-fit-best"},
    {"fitSelection", "Fit &Selection", "Ctrl+Shift+9", "See what is selected as large as possible"},
    {"grid", "&Grid", "Ctrl+'", "Show the grid", "", true},
    {"snap", "S&nap to Grid", "Ctrl+;", "Let shapes come to rest on the grid", "", true},
    {"guides", "Gui&des", "", "Let shapes come to rest in line with others", "", true},
    {"miniMap", "&Overview", "", "Show the page as a whole in a corner", "", true},
    {"nextPage", "Ne&xt Page", "Ctrl+PgDown", "Go to the next page"},
    {"previousPage", "Pre&vious Page", "Ctrl+PgUp", "Go to the page before"},
    {"parentPage", "Pa&rent Page", "Alt+Up", "Go to the page that this submodel belongs to"},
    {"intoSubmodel", "Into the Sub&model", "Alt+Down", "Go to the page of the selected submodel"},
    {"fullScreen", "F&ull Screen", "F11", "Use the whole screen", "", true},
    {"notExact", "Not Painted E&xactly...", "", "What of this page is not painted as the drawing means it"},
    {"addPage", "&Page", "", "Add a page"},
    {"submodelPage", "&Submodel Page", "", "Make or show the page of the selected Process"},
    {"renamePage", "Rename &Page...", "", "Give this page another name"},
    {"deletePage", "De&lete Page", "", "Delete this page"},
    {"alignLeft", "&Left", "", "In line with the leftmost edge"},
    {"alignCentre", "&Centre", "", "In line with the middle"},
    {"alignRight", "&Right", "", "In line with the rightmost edge"},
    {"alignTop", "&Top", "", "In line with the topmost edge"},
    {"alignMiddle", "&Middle", "", "In line with the middle"},
    {"alignBottom", "&Bottom", "", "In line with the lowest edge"},
    {"distributeAcross", "&Horizontally", "", "With equal gaps from left to right"},
    {"distributeUp", "&Vertically", "", "With equal gaps from top to bottom"},
    {"sameSize", "&Same Size", "", "As large as the one selected first"},
    {"bringToFront", "Bring to &Front", "Ctrl+Alt+Shift+Up", "Before all others"},
    {"bringForward", "Bring F&orward", "Ctrl+Shift+Up", "Before the next one"},
    {"sendBackward", "Send Back&ward", "Ctrl+Shift+Down", "Behind the next one"},
    {"sendToBack", "Send to &Back", "Ctrl+Alt+Shift+Down", "Behind all others"},
    {"refreshProblems", "Check A&gain", "F5", "Look for problems again"},
    {"shortcuts", "&Shortcuts", "F1", "All keys of this window"},
    {"about", "&About Vardo", "", "What this program is"},
};

}  // namespace

Actions::Actions(QWidget& window) {
  for (const Row& row : kRows) {
    auto* const action = new QAction(texts::Say(row.caption), &window);
    QList<QKeySequence> keys;
    for (const QString& key : QString(row.keys).split(" | ", Qt::SkipEmptyParts)) keys.append(QKeySequence(key));
    action->setShortcuts(keys);
    action->setObjectName(QString::fromUtf8(row.id.data(), static_cast<qsizetype>(row.id.size())));
    action->setStatusTip(texts::Say(row.tip));
    action->setToolTip(texts::Say(row.tip) +
                       (keys.isEmpty() ? QString() : " (" + keys.front().toString(QKeySequence::NativeText) + ")"));
    action->setCheckable(row.checkable);
    action->setIcon(QIcon::fromTheme(row.icon, OwnIcon(row.id, window.palette().color(QPalette::ButtonText))));
    action->setIconVisibleInMenu(false);
    window.addAction(action);
    actions_[row.id] = action;
  }
}

void Actions::On(std::string_view id, const std::function<void()>& run) {
  QAction& action = (*this)[id];
  QObject::connect(&action, &QAction::triggered, &action, [run] { run(); });
}

void Actions::Enable(std::string_view id, const QString& whyNot) const {
  QAction& action = (*this)[id];
  action.setEnabled(whyNot.isEmpty());
  action.setWhatsThis(whyNot);
}

QList<QAction*> Actions::All() const {
  QList<QAction*> all;
  for (const Row& row : kRows) all.append(actions_.at(row.id));
  return all;
}

}  // namespace vardo
