// What a long session holds on to: the memory that is in use at the start, every so many operations, and by the drawing it comes
// to when that is opened anew.
#include "Measurements.h"
#include "TestDrawings.h"
#include "memoryhost/DrawingHost.h"

#include <fmt/format.h>

#include <malloc.h>

#include <optional>
#include <random>
#include <string>

namespace vardo {
namespace {

constexpr int kOperations = 200'000, kReports = 5;
constexpr int kModules = 300;  // that the drawing has about

double MebibytesInUse() {
  const struct mallinfo2 info = mallinfo2();
  return static_cast<double>(info.uordblks + info.hblkhd) / (1 << 20);
}

// A person who drops, deletes, copies and edits, and takes some of it back.
class Session {
 public:
  Session() {
    host_.New();
    while (Page().ShapeCount() < kModules) Drop();
  }
  void Work(int operations) {
    static constexpr struct {
      int share;
      void (Session::*work)();
    } kWork[] = {{40, &Session::SetCell}, {15, &Session::Drop}, {10, &Session::Paste},
                 {25, &Session::Delete},  {5, &Session::Undo},  {5, &Session::Redo}};
    for (int i = 0; i < operations; ++i) {
      int drawn = Below(100);
      for (const auto& [share, work] : kWork)
        if (drawn >= 0 && (drawn -= share) < 0) (this->*work)();
    }
  }
  // Of a host that has but opened what this one has come to.
  double MebibytesOfDrawing() {
    const test::TempFolder folder;
    host_.drawing().Save(folder / "now.vsdx");
    const double before = MebibytesInUse();
    DrawingHost fresh;
    fresh.Open(folder / "now.vsdx");
    fresh.ActivePage().FindShape("Create");
    return MebibytesInUse() - before;
  }
  int ShapeCount() { return Page().ShapeCount(); }
  double MebibytesOfLog() { return static_cast<double>(host_.drawing().log().Bytes()) / (1 << 20); }

 private:
  int Below(int end) { return static_cast<int>(random_() % static_cast<unsigned>(end)); }
  DrawingPage& Page() { return host_.ActivePage(); }
  SheetRef Any() { return host_.RefTo(Page(), Page().ShapeAt(1 + Below(Page().ShapeCount())).id()); }

  void SetCell() {
    const std::string text = fmt::format("\"{}\"", std::string(static_cast<size_t>(Below(40)), 'x'));
    host_.SetCell(Any(), Below(2) ? "Prop.CreateValue" : "Prop.CreateUnits", text);
  }
  void Drop() {
    if (Page().ShapeCount() < 2 * kModules) host_.Drop("Create", Page().id(), Below(10), Below(10), "module");
  }
  void Paste() {
    if (Page().ShapeCount() < 2 * kModules) host_.Paste({Any()}, Page().id());
  }
  void Delete() {
    if (Page().ShapeCount() < kModules) return;
    host_.Select({Any().shape});
    host_.DeleteSelection();
  }
  void Undo() {
    if (host_.drawing().log().CanUndo()) host_.Undo();
  }
  void Redo() {
    if (host_.drawing().log().CanRedo()) host_.Redo();
  }

  DrawingHost host_;
  std::mt19937 random_{1};
};

}  // namespace

void MeasureMemory() {
  Session session;
  fmt::print("\n{:<20}{:>10}{:>14}{:>12}{:>14}\n", "operations so far", "shapes", "in use", "of the log", "drawing alone");
  for (int done = 0; done <= kOperations; done += kOperations / kReports) {
    if (done > 0) session.Work(kOperations / kReports);
    const double inUse = MebibytesInUse();
    fmt::print("{:<20}{:>10}{:>10.1f} MiB{:>8.1f} MiB{:>10.1f} MiB\n", done, session.ShapeCount(), inUse,
               session.MebibytesOfLog(), session.MebibytesOfDrawing());
    std::fflush(stdout);
  }
}

}  // namespace vardo
