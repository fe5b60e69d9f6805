// How much of the processor's time what a user does takes in drawings of 100, 1 000 and 10 000 modules, and how it grows. Making
// the drawing is not counted, nor is what is read anew after an undo; each time is the best of several.
#include "Measurements.h"
#include "TestDrawings.h"
#include "TestPlatform.h"
#include "addin/host/IVApplication.h"
#include "addin/host/IVDocument.h"
#include "addin/host/IVShape.h"
#include "base/Text.h"
#include "document/Glue.h"
#include "forms/Forms.h"
#include "forms/headless/HeadlessPresenter.h"
#include "modules/ModuleKinds.h"
#include "props/DrawingLists.h"
#include "props/PropertyCells.h"
#include "script/AddinSession.h"

#include <benchmark/benchmark.h>
#include <fmt/format.h>

#include <algorithm>
#include <ctime>
#include <functional>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace vardo {
namespace {

// The processor's time, which other programs disturb less than they do the clock on the wall.
double Now() { return static_cast<double>(std::clock()) / CLOCKS_PER_SEC; }

double SecondsOf(const std::function<void()>& work) {
  const double start = Now();
  work();
  return Now() - start;
}

// ------------------------------------------------------------------------------------------------------ the drawing

using Kinds = std::span<const std::string_view>;
constexpr std::string_view kCreateAlone[] = {"Create"};

// Modules of those kinds by turns on one page, entered in its registers as if each had been dropped, and a connector from each to
// the next. The add-in listens.
class World {
 public:
  World(int modules, Kinds kinds) : session_(true) {
    session_.New();
    AddModules(modules, kinds);
    AddConnectors();
    // Saved and opened, as a person finds it: in memory it is laid out anew then.
    const test::TempFolder folder;
    host().Save(folder / "world.vsdx");
    session_.Open(folder / "world.vsdx");
    LookAround();
  }

  DrawingHost& host() { return session_.host(); }
  AddinSession& session() { return session_; }
  int page() { return host().ActivePage().id(); }
  // Counted from 0, and again from the first behind the last.
  SheetRef Module(size_t number) { return host().RefTo(host().ActivePage(), modules_[number % modules_.size()]); }
  SheetRef MiddleModule() { return Module(modules_.size() / 2); }
  // The shapes of the first half: modules, and as many connectors.
  std::vector<int> Half() {
    const auto half = static_cast<ptrdiff_t>(modules_.size() / 2);
    std::vector<int> ids(modules_.begin(), modules_.begin() + half);
    ids.insert(ids.end(), connectors_.begin(), connectors_.begin() + half);
    return ids;
  }

  void Undo() {
    host().Undo();
    LookAround();
  }

 private:
  Drawing& drawing() { return session_.host().drawing(); }

  void AddModules(int count, Kinds kinds) {
    std::map<std::string_view, StringList> positions;
    for (int i = 1; i <= count; ++i) {
      const std::string_view kind = kinds[static_cast<size_t>(i - 1) % kinds.size()];
      DrawingShape& shape = host().ActivePage().AddInstance(*drawing().BringMaster(kind), i % 100 * 2, i / 100);
      const std::string name = fmt::format("{} {}", kind, i);
      shape.SetText(drawing().editor(), name);
      test::SetCell(drawing(), shape, fmt::format("Prop.{}Name", kind), QuoteText(name));
      positions[kind].push_back(std::to_string(i));
      modules_.push_back(shape.id());
    }
    const IVPagePtr page = host().application()->ActivePage();
    for (const auto& [kind, registered] : positions) SetPagePropList(page, kind, registered);
    SetPagePropList(page, "Count", std::to_string(count));
  }

  void AddConnectors() {
    const DrawingMaster& master = *drawing().BringMaster("Dynamic connector");
    DrawingPage& page = host().ActivePage();
    for (size_t i = 0; i < modules_.size(); ++i) {
      DrawingShape& connector = page.AddInstance(master, 1, 1);
      const int ends[] = {modules_[i], modules_[(i + 1) % modules_.size()]};
      for (size_t end = 0; end < 2; ++end) {
        test::SetCell(drawing(), connector, kConnectorEnds[end].trigger, TriggerOfShape(ends[end]));
        for (const char* cell : {kConnectorEnds[end].x, kConnectorEnds[end].y})
          test::SetCell(drawing(), connector, cell, PointGlue(ends[end], 1));
        page.KeepConnect(connector, kConnectorEnds[end]);
      }
      connectors_.push_back(connector.id());
    }
  }

  // What the host reads of a drawing when it first needs it.
  void LookAround() {
    DrawingPage& page = host().ActivePage();
    page.FindShape("Create");
    page.IndexOf(page.ShapeAt(1));
    page.Readers();
  }

  const TestPlatform platform_;
  AddinSession session_;
  std::vector<int> modules_, connectors_;
};

// ------------------------------------------------------------------------------------------------------ the operations

// An operation's time in seconds, of which the best of so many rounds is reported.
struct Operation {
  std::string name;
  int rounds;
  std::function<double(World&)> run;
  Kinds kinds = kCreateAlone;
};

double Paste(World& world) {
  return SecondsOf([&] { world.host().Paste({world.MiddleModule()}, world.page()); });
}

double PasteThousand(World& world) {
  return SecondsOf([&] {
    for (int i = 0; i < 1000; ++i) world.host().Paste({world.MiddleModule()}, world.page());
  });
}

double Rename(World& world) {
  static int number = 0;
  return SecondsOf([&] { world.host().TypeText(world.MiddleModule(), fmt::format("Renamed {}", ++number), false); });
}

double Delete(World& world, const std::vector<int>& shapes) {
  world.host().Select(shapes);
  const double seconds = SecondsOf([&] { world.host().DeleteSelection(); });
  world.Undo();
  return seconds;
}

// Of the module of that number.
double OpenDialog(World& world, size_t module) {
  double shown = 0;
  HeadlessPresenter presenter([&](Form&) { shown = Now(); });
  FormPresenter* const before = SetFormPresenter(&presenter);
  const double start = Now();
  world.session().ShowEditor(world.Module(module), true);
  SetFormPresenter(before);
  return shown - start;
}

double Drop(World& world) {
  return SecondsOf([&] { world.host().Drop("Create", world.page(), 1, 1, std::nullopt); });
}

double Gather(World&) {
  return SecondsOf([] { FillComboFromDrawing({"Create"}, {"CreateName"}, true); });
}

// A cell of one module, and the first looks at the drawing afterwards.
double UndoCell(World& world) {
  const SheetRef module = world.MiddleModule();
  DrawingPage& page = world.host().ActivePage();
  world.host().SetCell(module, "Prop.CreateValue", "\"3\"");
  return SecondsOf([&] {
    world.host().Undo();
    DrawingShape& shape = *page.FindShape(module.shape);
    page.IndexOf(shape);
    page.FindShape(page.NameOf(shape));
    world.host().FormulaOf(module, shape.Find("Prop.CreateValue").value());
    page.Readers();
  });
}

constexpr int kManyTimes = 1000;

// Of a shape that is held, and a cell that is looked up each time.
IVShapePtr MiddleShape(World& world) {
  return world.host().application()->ActivePage()->Shapes()->ItemFromID(world.MiddleModule().shape);
}

double ReadProperties(World& world) {
  const IVShapePtr shape = MiddleShape(world);
  size_t length = 0;
  const double seconds = SecondsOf([&] {
    for (int i = 0; i < kManyTimes; ++i) length += shape->Cells("Prop.CreateValue")->Formula().size();
  });
  benchmark::DoNotOptimize(length);
  return seconds;
}

double WriteProperties(World& world) {
  const IVShapePtr shape = MiddleShape(world);
  const std::string values[] = {"\"5\"", "\"7.5\""};
  double seconds = 0;
  world.host().RunCommand("Edit", [&] {
    seconds = SecondsOf([&] {
      for (int i = 0; i < kManyTimes; ++i) shape->Cells("Prop.CreateValue")->SetFormula(values[i % 2]);
    });
  });
  return seconds;
}

// As many modules as there are, one write each.
double WriteEverywhere(World& world) {
  static int number = 0;
  const std::string value = QuoteText(std::to_string(++number));
  const IVShapesPtr shapes = world.host().application()->ActivePage()->Shapes();
  std::vector<IVShapePtr> held;
  for (int i = 0; i < kManyTimes; ++i) held.push_back(shapes->ItemFromID(world.Module(static_cast<size_t>(i)).shape));
  double seconds = 0;
  world.host().RunCommand("Edit", [&] {
    seconds = SecondsOf([&] {
      for (const IVShapePtr& shape : held) shape->Cells("Prop.CreateValue")->SetFormula(value);
    });
  });
  return seconds;
}

// The width of a shape of 3 000 connection points, the first at its right side and each further one where the one before is.
double WidenChain(World&) {
  constexpr int kPoints = 3'000;
  std::string points;
  for (int i = 0; i < kPoints; ++i)
    points += fmt::format("<Row T='Connection' IX='{}'><Cell N='X' V='1' F='{}'/><Cell N='Y' V='0'/></Row>", i,
                          i == 0 ? std::string("Width*1") : fmt::format("Connections.X{}+0", i));
  const test::TempFolder folder;
  test::WriteFile(folder / "chain.vsdx",
                  test::ZipOf({.shapes = "<Shape ID='1' Type='Shape'><Cell N='Width' V='1'/><Section N='Connection'>" + points +
                                         "</Section></Shape>"}));
  DrawingHost host;
  host.Open(folder / "chain.vsdx");
  const SheetRef shape = host.RefTo(host.ActivePage(), 1);
  host.SetCell(shape, "Width", "2");
  const double seconds = SecondsOf([&] { host.SetCell(shape, "Width", "3"); });
  const Sheet& sheet = *host.Resolve(shape).sheet;
  if (sheet.Value(sheet.Find(fmt::format("Connections.X{}", kPoints)).value()) != CellValue(3.0)) return -1;
  return seconds;
}

const Operation kCommands[] = {
    {"paste one", 5, Paste},
    {"paste 1000, one by one", 1, PasteThousand},
    {"rename one", 5, Rename},
    {"delete one", 5, [](World& world) { return Delete(world, {world.MiddleModule().shape}); }},
    {"delete half with connectors", 3, [](World& world) { return Delete(world, world.Half()); }},
    {"drop one", 5, Drop},
    {"gather names", 9, Gather},
    {"undo one cell", 9, UndoCell},
    {"read one property 1000 times", 9, ReadProperties},
    {"write one property 1000 times", 9, WriteProperties},
    {"write 1000 properties", 9, WriteEverywhere},
    {"widen 3000 chained points", 3, WidenChain},
};
constexpr int kSizes[] = {100, 1'000, 10'000};

std::vector<Operation> AllOperations() {
  std::vector<Operation> all(std::begin(kCommands), std::end(kCommands));
  for (size_t i = 0; i < std::size(kModuleKinds); ++i)
    all.push_back({fmt::format("open {}", kModuleKinds[i]), 5, [i](World& world) { return OpenDialog(world, i); }, kModuleKinds});
  return all;
}

void Measure(benchmark::State& state, const Operation& operation) {
  World world(static_cast<int>(state.range(0)), operation.kinds);
  if (operation.rounds > 1) operation.run(world);
  for (auto _ : state) {
    double best = operation.run(world);
    for (int round = 1; round < operation.rounds; ++round) best = std::min(best, operation.run(world));
    state.SetIterationTime(best);
  }
}

// A line for each operation, once all of its sizes have been run.
class GrowthReporter : public benchmark::BenchmarkReporter {
 public:
  bool ReportContext(const Context&) override {
    fmt::print("\n{:<30}", "modules (and connectors)");
    for (const int size : kSizes) fmt::print("{:>12}", size);
    fmt::print("   growth\n");
    return true;
  }

  void ReportRuns(const std::vector<Run>& runs) override {
    for (const Run& run : runs) {
      const std::string& name = run.run_name.function_name;
      if (name != name_) Begin(name);
      const double milliseconds = run.real_accumulated_time / static_cast<double>(run.iterations) * 1e3;
      fmt::print("{:>9.3f} ms", milliseconds);
      if (last_) growth_ += fmt::format("{:>7.1f}", milliseconds / *last_);
      last_ = milliseconds;
    }
    std::fflush(stdout);
  }

  void Finalize() override { Begin(""); }

 private:
  void Begin(const std::string& name) {
    if (!name_.empty()) fmt::print("  {}\n", growth_);
    name_ = name;
    last_.reset();
    growth_.clear();
    if (!name.empty()) fmt::print("{:<30}", name);
  }

  std::string name_, growth_;
  std::optional<double> last_;
};

}  // namespace

void MeasureOperations() {
  const std::vector<Operation> operations = AllOperations();
  for (const Operation& operation : operations) {
    auto* registered =
        benchmark::RegisterBenchmark(operation.name.c_str(), [&](benchmark::State& state) { Measure(state, operation); });
    for (const int size : kSizes) registered->Arg(size);
    registered->Iterations(1)->UseManualTime();
  }
  GrowthReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
}

}  // namespace vardo
