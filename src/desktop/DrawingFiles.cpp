#include "desktop/DrawingFiles.h"

#include "base/Errors.h"
#include "base/FileError.h"
#include "desktop/Texts.h"
#include "picture/SvgWriter.h"
#include "picture/qt/Export.h"
#include "platform/FileSystem.h"

#include <QFileDialog>
#include <QMessageBox>
#include <QSettings>

#include <new>

namespace vardo {
namespace {

constexpr const char* kRecentKey = "recentFiles";
constexpr qsizetype kMostRecent = 10;

void Warn(QWidget& window, const QString& sentence) {
  QMessageBox box(QMessageBox::Warning, "Vardo", sentence, QMessageBox::Ok, &window);
  box.setTextFormat(Qt::PlainText);
  box.exec();
}

}  // namespace

std::filesystem::path PathOf(const QString& name) { return std::filesystem::u8path(name.toStdString()); }
QString NameOf(const std::filesystem::path& path) { return QString::fromStdString(path.string()); }

QString DrawingFiles::Name() {
  const std::filesystem::path& file = session_.host().file();
  return file.empty() ? texts::NewDrawing() : NameOf(file.filename());
}

bool DrawingFiles::Open(const std::filesystem::path& file) {
  QString why;
  try {
    session_.Open(file);
    Remember(file);
    return true;
  } catch (const std::bad_alloc&) {
    why = texts::Say("There is not enough memory for it.");
  } catch (const std::exception& error) {
    why = QString::fromUtf8(error.what());
  }
  Warn(window_, texts::CannotOpen(NameOf(file.filename()), why));
  return false;
}

std::optional<std::filesystem::path> DrawingFiles::AskForDrawing() {
  const QString folder = session_.host().IsOpen() ? NameOf(session_.host().file().parent_path()) : QString();
  const QString chosen = QFileDialog::getOpenFileName(&window_, texts::Say("Open a Drawing"), folder, texts::DrawingFiles());
  if (chosen.isEmpty()) return std::nullopt;
  return PathOf(chosen);
}

std::optional<std::filesystem::path> DrawingFiles::AskWhere() {
  const std::filesystem::path& file = session_.host().file();
  QFileDialog dialog(&window_, texts::Say("Save the Drawing"), file.empty() ? QString() : NameOf(file), texts::DrawingFiles());
  dialog.setAcceptMode(QFileDialog::AcceptSave);
  dialog.setDefaultSuffix("vsdx");
  if (file.empty()) dialog.selectFile(texts::Say("Drawing.vsdx"));
  if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return std::nullopt;
  return PathOf(dialog.selectedFiles().front());
}

bool DrawingFiles::SaveTo(const std::filesystem::path& file) {
  try {
    session_.Save(file, Overwrite::Refuse);
    Remember(file);
    return true;
  } catch (const FileError& error) {
    Warn(window_, texts::CannotSave(NameOf(file.filename()), QString::fromUtf8(error.what())));
  } catch (const AutomationError& error) {
    Warn(window_, texts::CannotSave(NameOf(file.filename()), QString::fromUtf8(error.what())));
  }
  return false;
}

bool DrawingFiles::Save() {
  const std::filesystem::path file = session_.host().file();
  return (!file.empty() && SaveTo(file)) || SaveAs();
}

// Until it is written or the person gives up.
bool DrawingFiles::SaveAs() {
  while (const auto file = AskWhere())
    if (SaveTo(*file)) return true;
  return false;
}

bool DrawingFiles::SaveCopy() {
  while (const auto file = AskWhere()) {
    try {
      session_.SaveCopy(*file);
      return true;
    } catch (const FileError& error) {
      Warn(window_, texts::CannotSave(NameOf(file->filename()), QString::fromUtf8(error.what())));
    }
  }
  return false;
}

void DrawingFiles::Export(const QString& filter, const std::function<std::string(const std::filesystem::path&)>& make) {
  const QString chosen = QFileDialog::getSaveFileName(&window_, texts::Say("Export"), {}, filter);
  if (chosen.isEmpty()) return;
  const std::filesystem::path file = PathOf(chosen);
  try {
    WriteFileAtomically(MachineFileSystem(), file, make(file));
  } catch (const FileError& error) {
    Warn(window_, texts::CannotSave(NameOf(file.filename()), QString::fromUtf8(error.what())));
  }
}

void DrawingFiles::ExportPicture() {
  Export(texts::Say("Pictures (*.svg *.png)"), [this](const std::filesystem::path& file) {
    const picture::PagePicture& picture = session_.scene().picture();
    return file.extension() == ".png" ? picture::PngOf(picture, 2) : picture::SvgOf(picture);
  });
}

void DrawingFiles::ExportPdf() {
  Export(texts::Say("PDF (*.pdf)"), [this](const std::filesystem::path&) { return picture::PdfOf(session_.Pictures()); });
}

bool DrawingFiles::MayLeave() {
  if (!session_.IsChanged()) return true;
  QMessageBox box(QMessageBox::Question, "Vardo", texts::SaveChanges(Name()),
                  QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel, &window_);
  box.setObjectName("saveQuestion");
  box.setDefaultButton(QMessageBox::Save);
  const int answer = box.exec();
  return answer == QMessageBox::Discard || (answer == QMessageBox::Save && Save());
}

QStringList DrawingFiles::Recent() { return QSettings().value(kRecentKey).toStringList(); }

void DrawingFiles::Remember(const std::filesystem::path& file) {
  QStringList recent = Recent();
  const QString name = NameOf(std::filesystem::absolute(file));
  recent.removeAll(name);
  recent.prepend(name);
  QSettings().setValue(kRecentKey, recent.mid(0, kMostRecent));
}

}  // namespace vardo
