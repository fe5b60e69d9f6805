// All that the window says, in one place.
#pragma once

#include <QCoreApplication>
#include <QString>

namespace vardo::texts {

// For a translation by its English text.
inline QString Say(const char* text) { return QCoreApplication::translate("Desktop", text); }

inline QString WindowTitle(const QString& drawing) { return Say("%1[*] - Vardo").arg(drawing); }
inline QString NewDrawing() { return Say("New drawing"); }
inline QString MiniMapName() { return Say("Overview of the page"); }
inline QString PageTabs() { return Say("Pages"); }
inline QString Breadcrumb() { return Say("Where this page belongs"); }
inline QString CanvasName(const QString& page, int modules) { return Say("%1, %2 modules").arg(page).arg(modules); }
inline QString PageOf(int number, int count) { return Say("Page %1 of %2").arg(number).arg(count); }
inline QString SubmodelTab(const QString& page, const QString& parent) { return Say("%1  \u2039 %2").arg(page, parent); }
inline QString ZoomName() { return Say("Zoom"); }

inline QString CannotOpen(const QString& file, const QString& why) { return Say("%1 cannot be opened: %2").arg(file, why); }
inline QString CannotSave(const QString& file, const QString& why) {
  return Say("%1 cannot be written: %2\nChoose another place.").arg(file, why);
}
inline QString SaveChanges(const QString& file) { return Say("Save changes to %1 before closing?").arg(file); }
inline QString NoDrawing(const QString& file) { return Say("%1 is no Visio drawing.").arg(file); }
inline QString DrawingFiles() { return Say("Visio drawings (*.vsdx *.vsdm *.vstx *.vssx);;All files (*)"); }

}  // namespace vardo::texts
