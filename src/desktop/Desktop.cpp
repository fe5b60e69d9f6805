#include "desktop/Desktop.h"

#include "desktop/MainWindow.h"
#include "forms/Forms.h"
#include "forms/qt/QtPlatform.h"
#include "forms/qt/QtPresenter.h"
#include "forms/qt/QtSession.h"
#include "platform/NativePlatform.h"

namespace vardo {

int RunDesktop(std::span<const std::filesystem::path> files, int argc, char** argv) {
  QtSession qt(argc, argv);
  QApplication::setApplicationName("vardo");
  QApplication::setOrganizationName("vardo");
  QApplication::setApplicationDisplayName("Vardo");
  QApplication::setQuitOnLastWindowClosed(true);
  const std::unique_ptr<Platform> machine = MakeNativePlatform();
  QtPlatform screen(*machine);
  SetPlatform(&screen);
  QtPresenter presenter;
  SetFormPresenter(&presenter);
  {
    MainWindow window;
    window.show();
    const bool opened = !files.empty() && window.OpenFile(files.front());
    if (!opened) window.NewDrawing();
    for (size_t i = 1; i < files.size(); ++i) MainWindow::OpenElsewhere(files[i]);
    qt.Run();
  }
  SetFormPresenter(nullptr);
  return 0;
}

}  // namespace vardo
