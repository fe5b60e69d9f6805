// What the registered add-in costs its host: the calls it makes and the time it takes for loading, for opening each dialog and
// for one event, in drawings of 100 and 10 000 modules. The time holds the host's own work and is that of Wine where it runs
// there.
#include "ManyModules.h"
#include "addin/Vardo_Visio_Link_Module.h"
#include "addin/host/IVShape.h"
#include "automation_script/AutomationAddin.h"
#include "automation_script/WindowDesktop.h"
#include "platform/NativePlatform.h"
#include "script/AddinSession.h"

#include <objbase.h>

#include <chrono>
#include <map>
#include <optional>

namespace vardo {
namespace {

using Clock = std::chrono::steady_clock;

// Times and calls from its making to its reading.
class Meter {
 public:
  explicit Meter(const AutomationAddin& addin) : addin_(addin), calls_(addin.HostCallCount()) {}
  std::string Read() const {
    const double milliseconds = std::chrono::duration<double, std::milli>(Clock::now() - start_).count();
    return fmt::format("{:>8} calls{:>10.2f} ms", addin_.HostCallCount() - calls_, milliseconds);
  }

 private:
  const AutomationAddin& addin_;
  size_t calls_;
  Clock::time_point start_ = Clock::now();
};

void Print(int modules, const std::string& what, const std::string& read) {
  fmt::print("{:>6} modules  {:<32}{}\n", modules, what, read);
}

void CloseForm() { PostMessageW(FindWindowW(L"VardoForm", nullptr), WM_CLOSE, 0, 0); }

// What is typed in the dialogs of modules that have rows before one can be added.
struct Typed {
  const char* control;
  const char* text;
};
const std::map<std::string, std::vector<Typed>> kWaysToRows = {
    {"frmAssign", {}},
    {"frmProcess", {{"cboAction", "Seize Delay Release"}}},
    {"frmSchedule", {}},
    {"frmSeparate", {{"cboType", "Split Existing Batch"}, {"cboMemberAttributes", "Take Specific Representative Values"}}},
    {"frmSet", {}},
    {"frmVariable", {}},
};

// Opens the dialogs and reads the meter when each has come, goes on to the row dialog of those that have one, and closes them.
class Person : public DesktopListener {
 public:
  explicit Person(const AutomationAddin& addin) : addin_(addin), desktop_(addin.library(), [this] { UseForm(); }) {
    desktop_.SetListener(*this);
  }
  void Open(AddinSession& session, const SheetRef& shape, int modules) {
    modules_ = modules;
    meter_.emplace(addin_);
    session.ShowEditor(shape, true);
  }

 private:
  void FormShown(const std::string& name, const std::string&) override { Print(modules_, "open " + name, meter_->Read()); }
  void FormClosed(const std::string&) override {}
  void MessageShown(const std::string& text, const std::string&, int) override { fmt::print("message: {}\n", text); }
  void HelpShown(const std::string&, const std::string&) override {}

  void UseForm() {
    if (const auto way = kWaysToRows.find(desktop_.TopForm()); way != kWaysToRows.end()) {
      for (const Typed& typed : way->second) desktop_.Type(typed.control, typed.text);
      meter_.emplace(addin_);
      desktop_.Click("cmdAdd");
    }
    CloseForm();
  }

  const AutomationAddin& addin_;
  WindowDesktop desktop_;
  std::optional<Meter> meter_;
  int modules_ = 0;
};

// A new shape of the kind.
SheetRef DropOne(DrawingHost& host, const std::string& kind) {
  DrawingPage& page = host.ActivePage();
  const IVShapePtr shape = host.Drop(kind, page.id(), 1, 1, std::nullopt);
  return host.RefTo(page, shape->ID());
}

void Measure(AddinSession& session, const AutomationAddin& addin, Person& person, int modules) {
  DrawingHost& host = session.host();
  session.New();
  test::AddModules(host, modules);
  for (const std::string& kind : host.MasterNames()) {
    if (!HasModuleDialog(kind)) continue;
    const Meter dropping(addin);
    const SheetRef shape = DropOne(host, kind);
    Print(modules, "drop " + kind, dropping.Read());
    person.Open(session, shape, modules);
  }
  const SheetRef typed = DropOne(host, "Create");
  const Meter typing(addin);
  host.TypeText(typed, "Another name", false);
  Print(modules, "type a name", typing.Read());
}

void MeasurePaste(AddinSession& session, const AutomationAddin& addin, int count, int modules) {
  DrawingHost& host = session.host();
  session.New();
  test::AddModules(host, modules);
  DrawingPage& page = host.ActivePage();
  std::vector<SheetRef> originals;
  for (int i = 1; i <= count; ++i) originals.push_back(host.RefTo(page, page.ShapeAt(i).id()));
  const Meter pasting(addin);
  host.Paste(originals, page.id());
  Print(modules, fmt::format("paste {}", count), pasting.Read());
}

void MeasureAll() {
  const std::unique_ptr<Platform> machine = MakeNativePlatform();
  SetPlatform(machine.get());
  const auto start = Clock::now();
  auto made = std::make_unique<AutomationAddin>();
  const AutomationAddin& addin = *made;
  AddinSession session(true, std::move(made));
  session.addin().SetupEventSink(session.host().application());
  fmt::print("load and SetupEventSink: {} calls, {:.2f} ms (wanted: under 50)\n\n", addin.HostCallCount(),
             std::chrono::duration<double, std::milli>(Clock::now() - start).count());
  Person person(addin);
  for (const int modules : {100, 10'000}) Measure(session, addin, person, modules);
  for (const int modules : {100, 1000, 10'000}) MeasurePaste(session, addin, 50, modules);
}

}  // namespace
}  // namespace vardo

int main() {
  CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
  vardo::MeasureAll();
  CoUninitialize();
}
