#include "forms/qt/QtPlatform.h"

#include "forms/qt/FormWindow.h"

#include <QApplication>
#include <QDesktopServices>
#include <QFileInfo>
#include <QMessageBox>
#include <QPointer>
#include <QScreen>
#include <QUrl>

#include <utility>

namespace vardo {
namespace {

constexpr double kTwipsPerPixel = 15;

QString ToQt(std::string_view text) { return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())); }

}  // namespace

QtPlatform::QtPlatform(Platform& target, QString helpFolder) : ForwardingPlatform(target), helpFolder_(std::move(helpFolder)) {}

void QtPlatform::ShowMessage(std::string_view text, std::string_view title, int style) {
  const QPointer<QWidget> below = QApplication::activeWindow();
  const QMessageBox::Icon icon = style == kStyleCritical ? QMessageBox::Critical : QMessageBox::Warning;
  {
    QMessageBox box(icon, ToQt(title), ToQt(text), QMessageBox::Ok, below);
    box.setTextFormat(Qt::PlainText);
    box.exec();
  }
  if (below) ActivateWindow(*below);
}

TwipsSize QtPlatform::ScreenSize() {
  const QSize pixels = QGuiApplication::primaryScreen()->availableGeometry().size();
  return {pixels.width() * kTwipsPerPixel, pixels.height() * kTwipsPerPixel};
}

void QtPlatform::ShowHelp(std::string_view, std::string_view topic) {
  const QFileInfo page(helpFolder_ + '/' + ToQt(topic));
  if (page.isFile()) QDesktopServices::openUrl(QUrl::fromLocalFile(page.absoluteFilePath()));
}

QString QtPlatform::InstalledHelpFolder() { return QCoreApplication::applicationDirPath() + "/../share/vardo/help"; }

}  // namespace vardo
