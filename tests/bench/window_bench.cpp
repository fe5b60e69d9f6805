// How fluid the window is on pages of 100, 1 000 and 10 000 modules with as many connectors: real paint events at 1920 x 1080
// pixels, off screen. Milliseconds of the processor's time: all of it runs on one core.
#include "ManyModules.h"
#include "Measurements.h"
#include "TestFiles.h"
#include "TestPlatform.h"
#include "canvas/ShapeFacts.h"
#include "desktop/DrawingCanvas.h"
#include "document/Glue.h"
#include "forms/qt/QtSession.h"

#include <fmt/format.h>
#include <QApplication>
#include <QMouseEvent>

#include <algorithm>
#include <cmath>
#include <ctime>
#include <functional>
#include <map>
#include <string>
#include <vector>

namespace vardo {
namespace {

constexpr int kSizes[] = {100, 1'000, 10'000};
constexpr QSize kWindow(1920, 1080);
constexpr int kFrames = 60;
constexpr double kAcross = 2, kUp = 1.5;  // inches from module to module

double MillisecondsOf(const std::function<void()>& work) {
  const std::clock_t start = std::clock();
  work();
  return 1e3 * static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
}

struct Times {
  double median, worst;  // 99 of 100 take no longer
};
Times TimesOf(std::vector<double> each) {
  std::sort(each.begin(), each.end());
  return {each[each.size() / 2], each[std::min(each.size() - 1, each.size() * 99 / 100)]};
}

// A square of Process modules, each connected with the next.
void MakeDrawing(int count, const std::filesystem::path& file) {
  DrawingHost host;
  host.New();
  Drawing& drawing = host.drawing();
  host.RunCommand("Make", [&] {
    DrawingPage& page = host.ActivePage();
    const int columns = static_cast<int>(std::ceil(std::sqrt(count)));
    std::vector<int> modules;
    for (int i = 0; i < count; ++i) {
      DrawingShape& shape =
          page.AddInstance(*drawing.BringMaster("Process"), 1 + kAcross * (i % columns), 1 + kUp * (i / columns));
      shape.SetText(drawing.editor(), fmt::format("Process {}", i + 1));
      modules.push_back(shape.id());
    }
    for (int i = 0; i + 1 < count; ++i)
      host.Connect("Dynamic connector", page.id(), {modules[static_cast<size_t>(i)], 1},
                   {modules[static_cast<size_t>(i + 1)], 2});
  });
  const SheetRef sheet = host.RefTo(host.ActivePage(), SheetKind::Page);
  host.SetCell(sheet, "PageWidth", std::to_string(2 + kAcross * std::ceil(std::sqrt(count))));
  host.SetCell(sheet, "PageHeight", std::to_string(2 + kUp * std::ceil(std::sqrt(count))));
  host.Save(file);
}

class Measured {
 public:
  explicit Measured(const std::filesystem::path& file) {
    session_.Open(file);
    canvas_.resize(kWindow);
    canvas_.show();
    QApplication::processEvents();
  }

  double FirstPicture() {
    return MillisecondsOf([&] {
      canvas_.SetView(View({0, session_.scene().picture().height}, kFullSize));
      canvas_.Refresh();
      canvas_.viewport()->repaint();
    });
  }

  std::vector<double> Frames(double pixelsPerInch) {
    LookAt(pixelsPerInch);
    return Each([&](int) { canvas_.viewport()->repaint(); });
  }
  std::vector<double> WholePage() {
    canvas_.Fit(session_.scene().Paper());
    return Each([&](int) { canvas_.viewport()->repaint(); });
  }
  std::vector<double> Pan(double pixelsPerInch) {
    LookAt(pixelsPerInch);
    return Each([&](int i) {
      canvas_.SetView(canvas_.view().MovedBy({i % 20 < 10 ? 24.0 : -24.0, 10}));
      QApplication::processEvents();
    });
  }
  std::vector<double> Zoom() {
    canvas_.Fit(session_.scene().Paper());
    return Each([&](int i) {
      canvas_.ZoomBySteps(i % 20 < 10 ? 1 : -1);
      QApplication::processEvents();
    });
  }
  // One module with its connectors, as the pointer moves.
  std::vector<double> DragModule() {
    LookAt(kFullSize);
    DrawingShape& shape = *session_.page().TopLevel().front();
    const PagePoint middle = FrameOf(shape, 1).middle();
    canvas_.SetView(View({middle.x - 8, middle.y + 4}, kFullSize));
    QApplication::processEvents();
    const Pixel at = canvas_.view().ToPixel(middle);
    Send(QEvent::MouseButtonPress, at);
    canvas_.onDeed = [this](const Deed& deed) {
      if (std::holds_alternative<deeds::Select>(deed)) session_.Do(deed);
    };
    std::vector<double> each = Each([&](int i) {
      Send(QEvent::MouseMove, {at.x + 10 + i, at.y + i});
      QApplication::processEvents();
    });
    Send(QEvent::MouseButtonRelease, at);
    return each;
  }
  // The step itself, with what is painted afterwards.
  std::vector<double> MoveModule() {
    session_.onDirty = [this](const Scene::Dirty& dirty) { canvas_.Repaint(dirty); };
    const int shape = session_.page().TopLevel().front()->id();
    return Each([&](int i) {
      session_.Do(deeds::Move{{shape}, {i % 2 ? 0.125 : -0.125, 0}});
      QApplication::processEvents();
    });
  }

 private:
  void LookAt(double pixelsPerInch) {
    const Box paper = session_.scene().Paper();
    canvas_.SetView(
        View({paper.middle().x - kWindow.width() / 2 / pixelsPerInch, paper.middle().y + kWindow.height() / 2 / pixelsPerInch},
             pixelsPerInch));
    canvas_.viewport()->repaint();
    canvas_.viewport()->repaint();
  }
  static std::vector<double> Each(const std::function<void(int)>& frame) {
    std::vector<double> each;
    for (int i = 0; i < kFrames; ++i) each.push_back(MillisecondsOf([&] { frame(i); }));
    return each;
  }
  void Send(QEvent::Type type, Pixel at) {
    const QPointF place(at.x, at.y);
    QMouseEvent event(type, place, canvas_.viewport()->mapToGlobal(place), Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(canvas_.viewport(), &event);
  }

  DrawingSession session_;
  DrawingCanvas canvas_{session_};
};

}  // namespace

void MeasureWindow(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  const QtSession qt(argc, argv);
  const TestPlatform platform;
  const test::TempFolder folder;
  std::vector<std::pair<std::string, std::vector<std::string>>> lines;
  std::map<std::string, std::pair<double, double>> ends;
  const auto note = [&](const std::string& what, int size, Times times) {
    auto line = std::find_if(lines.begin(), lines.end(), [&](const auto& known) { return known.first == what; });
    if (line == lines.end()) line = lines.insert(lines.end(), {what, {}});
    line->second.push_back(fmt::format("{:.1f} / {:.1f}", times.median, times.worst));
    (size == kSizes[0] ? ends[what].first : ends[what].second) = times.median;
  };
  for (const int size : kSizes) {
    const std::filesystem::path file = folder / "many.vsdx";
    MakeDrawing(size, file);
    Measured window(file);
    const double first = window.FirstPicture();
    note("first picture at 100 %, from cells", size, {first, first});
    for (const double scale : {96.0, 40.0, 24.0, 15.0}) {
      note(fmt::format("frame at {} pixels an inch", scale), size, TimesOf(window.Frames(scale)));
      note(fmt::format("pan step at {} pixels an inch", scale), size, TimesOf(window.Pan(scale)));
    }
    note("frame of the whole page", size, TimesOf(window.WholePage()));
    note("zoom step from the whole page", size, TimesOf(window.Zoom()));
    note("drag step of a module", size, TimesOf(window.DragModule()));
    note("move of a module, done and painted", size, TimesOf(window.MoveModule()));
  }
  fmt::print("\nThe window, milliseconds (median / 99 of 100), modules with as many connectors\n{:<40}{:>16}{:>16}{:>16}{:>10}\n",
             "", "100", "1 000", "10 000", "growth");
  for (const auto& [what, cells] : lines) {
    fmt::print("{:<40}", what);
    for (const std::string& cell : cells) fmt::print("{:>16}", cell);
    fmt::print("{:>10.1f}\n", ends[what].second / ends[what].first);
  }
}

}  // namespace vardo
