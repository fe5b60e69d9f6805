#include "addin/Vardo_Visio_Link_Module.h"
#include "app/Commands.h"
#include "app/Modules.h"
#include "app/StandardStreams.h"
#include "base/Errors.h"
#include "base/Numbers.h"
#include "base/Text.h"
#include "forms/Forms.h"
#include "forms/headless/HeadlessPresenter.h"
#include "forms/qt/QtPlatform.h"
#include "forms/qt/QtPresenter.h"
#include "forms/qt/QtSession.h"
#include "platform/FileSystem.h"
#include "platform/NativePlatform.h"
#include "script/AddinSession.h"
#include "script/DialogFiller.h"

#include <fmt/format.h>

#include <algorithm>

namespace vardo {
namespace {

struct FoundModule {
  SheetRef ref;
  std::string page, name;
  std::string kind;
};

using Properties = std::vector<std::pair<std::string, std::string>>;

AutomationError Refused(const std::string& sentence) { return AutomationError(5, sentence); }

FieldText ParseAssignment(const std::string& text) {
  const size_t equals = text.find('=');
  if (equals == std::string::npos || equals == 0)
    throw Refused(fmt::format("\"{}\" is no assignment: write FIELD=TEXT, such as CreateUnits=Minutes.", InWords(text)));
  return {text.substr(0, equals), text.substr(equals + 1)};
}

// By name or ID first; a text is how people know their modules, so it serves when no shape bears the name.
std::vector<FoundModule> FindShapes(DrawingHost& host, const EditOptions& options, bool byText) {
  std::vector<FoundModule> found;
  const std::optional<int> id = ParseInteger(options.shape);
  Drawing& drawing = host.drawing();
  for (int p = 1; p <= drawing.PageCount(); ++p) {
    DrawingPage& page = drawing.PageAt(p);
    if (!options.page.empty() && page.Name() != options.page) continue;
    for (int i = 1; i <= page.ShapeCount(); ++i) {
      const DrawingShape& shape = page.ShapeAt(i);
      const bool matches = byText ? shape.Text() == options.shape : page.NameOf(shape) == options.shape || shape.id() == id;
      if (matches) found.push_back({host.RefTo(page, shape.id()), page.Name(), page.NameOf(shape), ModuleKindOf(shape)});
    }
  }
  return found;
}

FoundModule FindModule(DrawingHost& host, const EditOptions& options) {
  const std::string file = PathInWords(options.file), wanted = InWords(options.shape);
  if (!options.page.empty() && !host.drawing().FindPage(options.page))
    throw Refused(fmt::format("{} has no page \"{}\"; `vardo show` lists its pages.", file, InWords(options.page)));
  std::vector<FoundModule> found = FindShapes(host, options, false);
  if (found.empty()) found = FindShapes(host, options, true);
  if (found.empty()) throw Refused(fmt::format("{} has no shape \"{}\"; `vardo show` lists its modules.", file, wanted));
  if (found.size() > 1) {
    std::string places;
    for (const FoundModule& module : found)
      places += fmt::format("{}\"{}\" on page \"{}\"", places.empty() ? "" : ", ", InWords(module.name), InWords(module.page));
    throw Refused(
        fmt::format("\"{}\" is more than one shape in {} ({}); name the shape and its page (--page).", wanted, file, places));
  }
  if (found[0].kind.empty())
    throw Refused(fmt::format("The shape \"{}\" in {} is no module, so it has no dialog.", wanted, file));
  if (!HasModuleDialog(found[0].kind)) throw Refused(fmt::format("There is no dialog for {} modules.", InWords(found[0].kind)));
  return found[0];
}

// Without a screen a message is for standard error.
class ConsolePlatform : public ForwardingPlatform {
 public:
  using ForwardingPlatform::ForwardingPlatform;
  void ShowMessage(std::string_view text, std::string_view, int) override { Tell(text); }
};

Properties Snapshot(DrawingHost& host, const SheetRef& ref) {
  const DrawingShape& shape = host.ResolveShape(ref);
  Properties all = PropertiesOfShape(shape);
  all.insert(all.begin(), {"text", shape.Text()});
  return all;
}

std::string Changes(const FoundModule& module, const Properties& before, const Properties& after) {
  std::string changes;
  for (const auto& [name, value] : after) {
    const auto old = std::find_if(before.begin(), before.end(), [&, &key = name](const auto& p) { return p.first == key; });
    const std::string oldValue = old == before.end() ? "" : old->second;
    if (oldValue != value) changes += fmt::format("  {}: \"{}\" -> \"{}\"\n", name, oldValue, value);
  }
  return fmt::format("{} \"{}\" on page \"{}\":\n{}", module.kind, module.name, module.page,
                     changes.empty() ? "  nothing changed\n" : changes);
}

// Shows the dialog through the presenter; true when it was closed with OK, which gives the shape its text.
bool RunDialog(AddinSession& session, const FoundModule& module, FormPresenter& presenter) {
  SetFormPresenter(&presenter);
  session.host().StartWriteLog();
  session.ShowEditor(module.ref, true);
  SetFormPresenter(nullptr);
  const std::vector<CellWrite> writes = session.host().TakeWriteLog();
  return std::any_of(writes.begin(), writes.end(), [](const CellWrite& write) { return write.cell.empty(); });
}

// Each returns whether the dialog was closed with OK.

bool EditWith(const std::vector<FieldText>& assignments, AddinSession& session, const FoundModule& module) {
  DialogFiller filler(assignments);
  HeadlessPresenter presenter([&](Form& form) { filler.Fill(form); });
  RunDialog(session, module, presenter);
  return filler.accepted();
}

bool EditOnScreen(AddinSession& session, const FoundModule& module, Platform& machine, int argc, char** argv) {
  if (!HasDisplay()) throw Refused("There is no display to show the dialog on; give its fields as FIELD=TEXT instead.");
  QtSession qt(argc, argv);
  QtPlatform screen(machine);
  SetPlatform(&screen);
  QtPresenter presenter;
  return RunDialog(session, module, presenter);
}

}  // namespace

Outcome EditModule(const EditOptions& options, std::ostream& output, int argc, char** argv) {
  std::vector<FieldText> assignments;
  for (const std::string& text : options.assignments) assignments.push_back(ParseAssignment(text));

  const std::unique_ptr<Platform> machine = MakeNativePlatform();
  ConsolePlatform console(*machine);
  SetPlatform(&console);
  AddinSession session(true);
  session.Open(options.file);
  const FoundModule module = FindModule(session.host(), options);
  const Properties before = Snapshot(session.host(), module.ref);

  const bool accepted =
      assignments.empty() ? EditOnScreen(session, module, *machine, argc, argv) : EditWith(assignments, session, module);
  SetPlatform(&console);
  if (!accepted) {
    Tell(PathInWords(options.file) + " was left as it is.");
    return {assignments.empty() ? 0 : 1, {}};
  }
  // Nothing but the output can fail once the file is saved.
  const std::string changes = Changes(module, before, Snapshot(session.host(), module.ref));
  const std::filesystem::path saved = session.host().Save(options.output, options.force ? Overwrite::Allow : Overwrite::Refuse);
  output << changes << "Saved " << PathInWords(saved) << ".\n";
  return {0, saved};
}

}  // namespace vardo
