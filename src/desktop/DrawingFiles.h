// Opening and saving for a person: asks for names, says what went wrong, and never loses what has been done.
#pragma once

#include "desktop/DrawingSession.h"

#include <QStringList>
#include <QWidget>

#include <filesystem>
#include <functional>
#include <optional>

namespace vardo {

class DrawingFiles {
 public:
  DrawingFiles(DrawingSession& session, QWidget& window) : session_(session), window_(window) {}

  // False when a message has said why not.
  bool Open(const std::filesystem::path& file);
  std::optional<std::filesystem::path> AskForDrawing();
  bool Save();
  bool SaveAs();
  bool SaveTo(const std::filesystem::path& file);
  bool SaveCopy();
  // The page shown as SVG or PNG; all pages as PDF.
  void ExportPicture();
  void ExportPdf();
  // Asks about what has not been saved; false when the person would rather stay.
  bool MayLeave();
  // The drawing's name, as its window bears it.
  QString Name();

  static QStringList Recent();

 private:
  std::optional<std::filesystem::path> AskWhere();
  void Export(const QString& filter, const std::function<std::string(const std::filesystem::path&)>& make);
  static void Remember(const std::filesystem::path& file);

  DrawingSession& session_;
  QWidget& window_;
};

std::filesystem::path PathOf(const QString& name);
QString NameOf(const std::filesystem::path& path);

}  // namespace vardo
