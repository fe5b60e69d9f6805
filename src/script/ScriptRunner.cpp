#include "script/ScriptRunner.h"

#include "addin/host/IVApplication.h"
#include "addin/host/IVDocument.h"
#include "addin/host/IVShape.h"
#include "base/Errors.h"
#include "base/FileError.h"
#include "base/Text.h"
#include "check/Check.h"
#include "memoryhost/HostObjects.h"
#include "props/StringFunctions.h"
#include "report/FindingsReport.h"
#include "report/ResultsJson.h"
#include "run/PreparedRun.h"
#include "script/FormJson.h"

#include <algorithm>
#include <cstdint>
#include <stdexcept>
#include <type_traits>
#include <utility>

namespace vardo {
namespace {

constexpr int kInvalidArgument = 5;

[[noreturn]] void Refuse(const std::string& why) { throw RuntimeError(kInvalidArgument, why); }

std::string Quoted(std::string_view text) { return "\"" + InWords(text) + "\""; }

// --- Arguments. A missing or ill-typed one throws RuntimeError 5, naming it.

const Json& Required(const Json& arguments, const char* name) {
  const auto found = arguments.find(name);
  if (found == arguments.end()) Refuse(std::string("the argument \"") + name + "\" is missing");
  return *found;
}

[[noreturn]] void RefuseType(const char* name) { Refuse(std::string("the argument \"") + name + "\" is of the wrong type"); }

// The library itself would make numbers of true and false, and cut those that do not fit.
template <class T>
bool Holds(const Json& value) {
  if constexpr (std::is_same_v<T, double>) return value.is_number();
  if constexpr (std::is_integral_v<T> && !std::is_same_v<T, bool>) {
    if (value.is_number_unsigned()) return std::in_range<T>(value.get<std::uint64_t>());
    return value.is_number_integer() && std::in_range<T>(value.get<std::int64_t>());
  }
  return true;
}

template <class T>
T As(const Json& value, const char* name) {
  if (!Holds<T>(value)) RefuseType(name);
  try {
    return value.get<T>();
  } catch (const Json::exception&) {
    RefuseType(name);
  }
}

std::string Text(const Json& arguments, const char* name) { return As<std::string>(Required(arguments, name), name); }

template <class T>
std::optional<T> Optional(const Json& arguments, const char* name) {
  const auto found = arguments.find(name);
  if (found == arguments.end()) return std::nullopt;
  return As<T>(*found, name);
}

Json ValueJson(const CellValue& value) {
  if (const auto* number = std::get_if<double>(&value)) return *number;
  return std::get<std::string>(value);
}

// "--max-replications" of the command line is "maxReplications" here.
std::string NameOfArgument(SetupItem item) {
  std::string name;
  bool isCapital = false;
  for (const char character : InfoOf(item).option.substr(2)) {
    if (character != '-') name += isCapital ? static_cast<char>(character - 'a' + 'A') : character;
    isCapital = character == '-';
  }
  return name;
}

// A number is as good as a text, and a list is one text.
std::optional<std::string> SetupArgument(const Json& arguments, SetupItem item) {
  const std::string name = NameOfArgument(item);
  const auto found = arguments.find(name);
  if (found == arguments.end()) return std::nullopt;
  if (found->is_number()) return found->dump();
  if (found->is_array()) return JoinList(As<StringList>(*found, name.c_str()));
  return As<std::string>(*found, name.c_str());
}

// A command without a result returns null; one whose result is null returns this.
Json NullResult() { return Json(Json::value_t::discarded); }

bool IsTrue(const CellValue& value) { return std::holds_alternative<double>(value) && std::get<double>(value) != 0; }

}  // namespace

// Which commands go on while a form is shown.
enum class When { Always, NoForm, FormOnly };

struct ScriptRunner::Command {
  std::string_view name;
  When when;
  Json (ScriptRunner::*run)(const Json&);
};

const ScriptRunner::Command ScriptRunner::kCommands[] = {
    {"new", When::NoForm, &ScriptRunner::New},
    {"open", When::NoForm, &ScriptRunner::OpenFile},
    {"save", When::NoForm, &ScriptRunner::Save},
    {"pages", When::Always, &ScriptRunner::Pages},
    {"page.add", When::NoForm, &ScriptRunner::PageAdd},
    {"page.delete", When::NoForm, &ScriptRunner::PageDelete},
    {"page.show", When::NoForm, &ScriptRunner::PageShow},
    {"page.rename", When::NoForm, &ScriptRunner::PageRename},
    {"page.active", When::Always, &ScriptRunner::PageActive},
    {"masters", When::Always, &ScriptRunner::Masters},
    {"shapes", When::Always, &ScriptRunner::Shapes},
    {"drop", When::NoForm, &ScriptRunner::Drop},
    {"paste", When::NoForm, &ScriptRunner::Paste},
    {"connect", When::NoForm, &ScriptRunner::Connect},
    {"select", When::NoForm, &ScriptRunner::Select},
    {"delete", When::NoForm, &ScriptRunner::Delete},
    {"text", When::NoForm, &ScriptRunner::TypeText},
    {"cell", When::Always, &ScriptRunner::Cell},
    {"setCell", When::NoForm, &ScriptRunner::SetCell},
    {"rows", When::Always, &ScriptRunner::Rows},
    {"row.delete", When::NoForm, &ScriptRunner::RowDelete},
    {"menus", When::Always, &ScriptRunner::Menus},
    {"menu.run", When::NoForm, &ScriptRunner::MenuRun},
    {"actions", When::Always, &ScriptRunner::Actions},
    {"action.run", When::NoForm, &ScriptRunner::ActionRun},
    {"check", When::NoForm, &ScriptRunner::CheckDrawing},
    {"simulate", When::NoForm, &ScriptRunner::SimulateDrawing},
    {"undo", When::NoForm, &ScriptRunner::Undo},
    {"redo", When::NoForm, &ScriptRunner::Redo},
    {"screen", When::Always, &ScriptRunner::Screen},
    {"screenshot", When::Always, &ScriptRunner::Screenshot},
    {"addin.SetupEventSink", When::NoForm, &ScriptRunner::SetupEventSink},
    {"addin.AddVardoMenu", When::NoForm, &ScriptRunner::AddVardoMenu},
    {"addin.InitializePage", When::NoForm, &ScriptRunner::InitializePage},
    {"addin.ShowEditor", When::NoForm, &ScriptRunner::ShowEditor},
    {"addin.Submodel", When::NoForm, &ScriptRunner::Submodel},
    {"addin.CloseSubmodel", When::NoForm, &ScriptRunner::CloseSubmodel},
    {"addin.CopyAndPaste", When::NoForm, &ScriptRunner::CopyAndPaste},
    {"addin.forms", When::Always, &ScriptRunner::LoadedFormNames},
    {"form", When::FormOnly, &ScriptRunner::DescribeForm},
    {"type", When::FormOnly, &ScriptRunner::FormType},
    {"pick", When::FormOnly, &ScriptRunner::FormPick},
    {"check", When::FormOnly, &ScriptRunner::FormCheck},
    {"focus", When::FormOnly, &ScriptRunner::FormFocus},
    {"click", When::FormOnly, &ScriptRunner::FormClick},
    {"dblclick", When::FormOnly, &ScriptRunner::FormDblClick},
    {"key", When::FormOnly, &ScriptRunner::FormKey},
};

ScriptRunner::ScriptRunner(AddinSession& session, Desktop& desktop, LineSource nextLine, std::ostream& output)
    : session_(session), desktop_(desktop), nextLine_(std::move(nextLine)), output_(output) {
  desktop_.SetListener(*this);
}

void ScriptRunner::Serve() {
  while (IsReady() && CanAnswer()) {
    const std::optional<std::string> line = nextLine_();
    if (!line) return;
    ++commandsUnderWay_;
    Handle(*line);
    --commandsUnderWay_;
  }
}

void ScriptRunner::FormShown(const std::string& name, const std::string& caption) {
  ++formsShown_;
  Event("form", {{"name", name}, {"caption", caption}});
}

void ScriptRunner::FormClosed(const std::string& name) {
  --formsShown_;
  Event("formClosed", {{"name", name}});
}

void ScriptRunner::MessageShown(const std::string& text, const std::string& title, int style) {
  Event("message", {{"text", text}, {"title", title}, {"style", style}});
}

void ScriptRunner::HelpShown(const std::string& file, const std::string& topic) {
  Event("help", {{"file", file}, {"topic", topic}});
}

void ScriptRunner::Handle(const std::string& line) {
  const size_t start = line.find_first_not_of(" \t\r");
  if (start == std::string::npos || line[start] == '#') return;
  Json reply = Json::object();
  std::string name = "the line";
  try {
    const Json request = ParseRequest(line);
    if (request.contains("id")) reply["id"] = request["id"];
    name = Text(request, "do");
    Json result = Execute(name, request);
    reply["ok"] = true;
    if (result.is_discarded())
      reply["result"] = nullptr;
    else if (!result.is_null())
      reply["result"] = std::move(result);
  } catch (const RuntimeError& error) {
    reply["ok"] = false;
    reply["error"] = {{"number", error.number()}, {"description", InWords(name) + ": " + error.description()}};
  } catch (const AutomationError& error) {
    reply["ok"] = false;
    reply["error"] = {{"number", error.number()}, {"description", error.description()}};
  } catch (const FileError& error) {
    reply["ok"] = false;
    reply["error"] = {{"number", kInvalidArgument}, {"description", error.what()}};
  }
  lastFailed_ = !reply["ok"].get<bool>();
  Emit(reply);
}

Json ScriptRunner::Execute(const std::string& name, const Json& arguments) {
  const std::string form = desktop_.TopForm();
  // Of two commands of a name one is for forms.
  const Command* command = nullptr;
  for (const Command& known : kCommands)
    if (known.name == name && (!command || (known.when == When::FormOnly) != form.empty())) command = &known;
  if (!command) Refuse("there is no such command");
  if (command->when == When::NoForm && !form.empty())
    Refuse("this changes the drawing and has to wait until " + form + " is closed");
  if (command->when == When::FormOnly && form.empty()) Refuse("no form is shown");
  return (this->*command->run)(arguments);
}

void ScriptRunner::Emit(const Json& line) {
  output_ << line.dump(-1, ' ', false, Json::error_handler_t::replace) << '\n' << std::flush;
}

void ScriptRunner::Event(const char* name, Json fields) {
  Json event = {{"event", name}};
  event.update(fields);
  Emit(event);
}

// --- The drawing.

Json ScriptRunner::New(const Json&) {
  session_.New();
  return {{"page", session_.host().ActivePage().Name()}};
}

Json ScriptRunner::OpenFile(const Json& arguments) {
  session_.Open(std::filesystem::u8path(Text(arguments, "file")));
  Json names = Json::array();
  for (int i = 1; i <= session_.host().drawing().PageCount(); ++i) names.push_back(session_.host().drawing().PageAt(i).Name());
  return {{"pages", names}};
}

Json ScriptRunner::Save(const Json& arguments) {
  const auto file = Optional<std::string>(arguments, "file");
  const bool overwrite = Optional<bool>(arguments, "overwrite").value_or(false);
  const std::filesystem::path saved = session_.host().Save(file ? std::optional(std::filesystem::u8path(*file)) : std::nullopt,
                                                           overwrite ? Overwrite::Allow : Overwrite::Refuse);
  const std::u8string text = saved.u8string();
  return {{"file", std::string(text.begin(), text.end())}};
}

Json ScriptRunner::Pages(const Json&) {
  Json pages = Json::array();
  Drawing& drawing = session_.host().drawing();
  for (int i = 1; i <= drawing.PageCount(); ++i)
    pages.push_back({{"name", drawing.PageAt(i).Name()}, {"index", i}, {"shapes", drawing.PageAt(i).ShapeCount()}});
  return pages;
}

Json ScriptRunner::PageAdd(const Json& arguments) {
  return {{"name", session_.host().AddPage(Optional<std::string>(arguments, "name"))->Name()}};
}

Json ScriptRunner::PageDelete(const Json& arguments) {
  Required(arguments, "page");
  session_.host().DeletePage(PageArgument(arguments).id(), true);
  return nullptr;
}

Json ScriptRunner::PageShow(const Json& arguments) {
  Required(arguments, "page");
  session_.host().ShowPage(PageArgument(arguments).id());
  return nullptr;
}

Json ScriptRunner::PageRename(const Json& arguments) {
  Required(arguments, "page");
  session_.host().RenamePage(PageArgument(arguments).id(), Text(arguments, "name"));
  return nullptr;
}

Json ScriptRunner::PageActive(const Json&) { return {{"name", session_.host().ActivePage().Name()}}; }

Json ScriptRunner::Masters(const Json&) { return session_.host().MasterNames(); }

Json ScriptRunner::Shapes(const Json& arguments) {
  DrawingPage& page = PageArgument(arguments);
  Json shapes = Json::array();
  for (int i = 1; i <= page.ShapeCount(); ++i) {
    DrawingShape& shape = page.ShapeAt(i);
    const DrawingMaster* master = shape.MasterId() < 0 ? nullptr : session_.host().drawing().FindMaster(shape.MasterId());
    Json described = DescribeShape(session_.host().RefTo(page, shape.id()));
    described["master"] = master ? Json(master->Name()) : Json();
    described["text"] = shape.Text();
    described["type"] = shape.Type();
    described["oneD"] = shape.IsOneDimensional();
    shapes.push_back(std::move(described));
  }
  return shapes;
}

Json ScriptRunner::Drop(const Json& arguments) {
  DrawingPage& page = PageArgument(arguments);
  const double x = Optional<double>(arguments, "x").value_or(1), y = Optional<double>(arguments, "y").value_or(1);
  const IVShapePtr shape =
      session_.host().Drop(Text(arguments, "master"), page.id(), x, y, Optional<std::string>(arguments, "text"));
  if (!shape) return NullResult();
  return {{"id", shape->ID()}, {"index", shape->Index()}, {"name", shape->Name()}};
}

DrawingHost::End ScriptRunner::EndArgument(const Json& arguments, DrawingPage& page, const char* shape, const char* point) {
  DrawingHost::End end;
  if (arguments.contains(shape)) end.shape = ShapeNamed(arguments[shape], page).shape;
  end.point = Optional<int>(arguments, point);
  if (end.point && !end.shape) Refuse(std::string("the argument \"") + point + "\" needs \"" + shape + "\"");
  const auto glue = Optional<std::string>(arguments, "glue");
  if (glue && *glue != "dynamic") Refuse("the argument \"glue\" can only be \"dynamic\"");
  end.walks = glue.has_value();
  return end;
}

Json ScriptRunner::Connect(const Json& arguments) {
  DrawingPage& page = PageArgument(arguments);
  const DrawingHost::End from = EndArgument(arguments, page, "from", "fromPoint"),
                         to = EndArgument(arguments, page, "to", "toPoint");
  const IVShapePtr shape = session_.host().Connect(Text(arguments, "master"), page.id(), from, to);
  if (!shape) return NullResult();
  return {{"id", shape->ID()}, {"name", shape->Name()}};
}

Json ScriptRunner::Paste(const Json& arguments) {
  DrawingPage& from = PageArgument(arguments, "from");
  const int target = PageArgument(arguments).id();
  std::vector<SheetRef> originals;
  for (const Json& shape : As<std::vector<Json>>(Required(arguments, "shapes"), "shapes"))
    originals.push_back(ShapeNamed(shape, from));
  Json copies = Json::array();
  for (const IVShapePtr& shape : session_.host().Paste(originals, target))
    copies.push_back({{"id", shape->ID()}, {"index", shape->Index()}, {"name", shape->Name()}});
  return copies;
}

Json ScriptRunner::CheckDrawing(const Json& arguments) {
  if (arguments.contains("control")) Refuse("no form is shown");
  SetupTexts options;
  if (const auto ignored = Optional<StringList>(arguments, "ignore"))
    options[static_cast<size_t>(SetupItem::Ignore)] = JoinList(*ignored);
  session_.host().drawing();
  return FindingsJson("", Examine(session_.host().application()->ActiveDocument(), options, {}, CheckFor::Itself).findings);
}

Json ScriptRunner::SimulateDrawing(const Json& arguments) {
  RunOrder order;
  for (size_t i = 0; i < order.setup.size(); ++i) order.setup[i] = SetupArgument(arguments, static_cast<SetupItem>(i));
  order.settings = Optional<StringList>(arguments, "set").value_or(StringList());
  session_.host().drawing();
  PreparedRun run = PrepareRun(session_.host().application()->ActiveDocument(), order, "");
  if (!run.program) {
    const auto error = std::ranges::find(run.findings, Severity::Error, &Finding::severity);
    Refuse(error->message + " [" + std::string(error->rule) + "]");
  }
  const RunOptions options{.threads = Optional<unsigned>(arguments, "threads").value_or(0)};
  Progress progress;
  try {
    FindWarmUp(run, options, progress);
    return SummaryOf(*run.program, Simulate(*run.program, run.setup, options, progress));
  } catch (const RunError& error) {
    Refuse(error.what());
  } catch (const std::runtime_error& error) {
    Refuse(error.what());
  }
}

Json ScriptRunner::Select(const Json& arguments) {
  std::vector<int> ids;
  for (const Json& shape : As<std::vector<Json>>(Required(arguments, "shapes"), "shapes"))
    ids.push_back(ShapeNamed(shape, session_.host().ActivePage()).shape);
  session_.host().Select(ids);
  return nullptr;
}

Json ScriptRunner::Delete(const Json& arguments) {
  if (arguments.contains("shapes")) Select(arguments);
  session_.host().DeleteSelection();
  return nullptr;
}

Json ScriptRunner::TypeText(const Json& arguments) {
  const SheetRef shape = ShapeArgument(arguments, "shape");
  session_.host().TypeText(shape, Text(arguments, "text"), Optional<bool>(arguments, "keepSelection").value_or(false));
  return nullptr;
}

Json ScriptRunner::Cell(const Json& arguments) {
  const SheetRef ref = SheetArgument(arguments);
  const Sheet& sheet = *session_.host().Resolve(ref).sheet;
  const auto address = sheet.Find(Text(arguments, "name"));
  if (!address) return {{"exists", false}};
  return {{"exists", true}, {"formula", session_.host().FormulaOf(ref, *address)}, {"value", ValueJson(sheet.Value(*address))}};
}

Json ScriptRunner::SetCell(const Json& arguments) {
  session_.host().SetCell(SheetArgument(arguments), Text(arguments, "name"), Text(arguments, "formula"));
  return nullptr;
}

Json ScriptRunner::Rows(const Json& arguments) {
  const SheetRef ref = SheetArgument(arguments);
  const DrawingHost::SheetView view = session_.host().Resolve(ref);
  const SectionInfo* section = FindSection(As<short>(Required(arguments, "section"), "section"));
  Json rows = Json::array();
  if (!section) return rows;
  for (const Sheet::Row& row : view.sheet->Rows(*section)) {
    Json cells = Json::object();
    for (const ColumnInfo& column : section->columns)
      cells[std::string(column.name)] = session_.host().FormulaOf(view, {section, row.key, Symbol(column.name)});
    rows.push_back({{"name", view.sheet->RowText(*section, row.key)}, {"cells", cells}});
  }
  return rows;
}

Json ScriptRunner::RowDelete(const Json& arguments) {
  const SheetRef ref = SheetArgument(arguments);
  const short number = As<short>(Required(arguments, "section"), "section");
  const Json& row = Required(arguments, "row");
  const SectionInfo* section = FindSection(number);
  if (!section) Refuse("there is no section " + std::to_string(number));
  const Sheet& sheet = *session_.host().Resolve(ref).sheet;
  const std::vector<Sheet::Row>& rows = sheet.Rows(*section);
  short position = row.is_number_integer() ? As<short>(row, "row") : -1;
  for (size_t i = 0; row.is_string() && i < rows.size(); ++i)
    if (EqualAsciiIgnoringCase(sheet.RowText(*section, rows[i].key), row.get<std::string>())) position = static_cast<short>(i);
  if (position < 0 || static_cast<size_t>(position) >= rows.size()) Refuse("there is no row " + InWords(row.dump()));
  session_.host().DeleteRow(ref, number, position);
  return nullptr;
}

Json ScriptRunner::Menus(const Json&) {
  Json menus = Json::array();
  for (const MenuData& menu : session_.host().menus().Shown()) {
    if (!menu.added) continue;
    Json items = Json::array();
    for (const MenuItemData& item : menu.items)
      items.push_back({{"caption", item.caption}, {"position", item.position}, {"runs", item.runs}});
    menus.push_back({{"caption", menu.caption}, {"position", menu.position}, {"items", items}});
  }
  return menus;
}

Json ScriptRunner::MenuRun(const Json& arguments) {
  const std::string menuCaption = Text(arguments, "menu"), itemCaption = Text(arguments, "item");
  for (const MenuData& menu : session_.host().menus().Shown())
    for (const MenuItemData& item : menu.items)
      if (menu.caption == menuCaption && item.caption == itemCaption) {
        RunAddon(item.caption, item.runs);
        return nullptr;
      }
  Refuse("there is no item " + Quoted(itemCaption) + " in a menu " + Quoted(menuCaption));
}

Json ScriptRunner::Actions(const Json& arguments) {
  const Sheet& sheet = *session_.host().Resolve(SheetArgument(arguments)).sheet;
  const SectionInfo& section = *FindSectionByElement("Actions");
  Json actions = Json::array();
  for (const Sheet::Row& row : sheet.Rows(section)) {
    const auto cell = [&](const char* name) { return CellAddress{&section, row.key, Symbol(name)}; };
    if (!IsTrue(sheet.Value(cell("Invisible"))))
      actions.push_back({{"menu", ValueJson(sheet.Value(cell("Menu")))}, {"action", sheet.Formula(cell("Action"))}});
  }
  return actions;
}

Json ScriptRunner::ActionRun(const Json& arguments) {
  const std::string menu = Text(arguments, "menu");
  for (const Json& action : Actions(arguments)) {
    if (action["menu"] != menu) continue;
    const std::string formula = action["action"].get<std::string>(), statement = StatementOfAction(formula);
    if (statement.empty()) Refuse("the action " + Quoted(menu) + " runs no add-on: " + InWords(formula));
    const SheetRef ref = SheetArgument(arguments);
    session_.host().ShowPage(ref.page);
    if (ref.IsShape()) session_.host().Select({ref.shape});
    RunAddon(menu, statement);
    return nullptr;
  }
  Refuse("there is no action " + Quoted(menu));
}

void ScriptRunner::RunAddon(const std::string& caption, const std::string& statement) {
  Event("addon", {{"name", statement}});
  session_.RunAddOn(caption, statement);
}

Json ScriptRunner::Undo(const Json&) { return {{"label", session_.host().Undo()}}; }
Json ScriptRunner::Redo(const Json&) { return {{"label", session_.host().Redo()}}; }

Json ScriptRunner::Screen(const Json& arguments) {
  const TwipsSize now = desktop_.ScreenSize();
  const TwipsSize wanted{Optional<double>(arguments, "width").value_or(now.width),
                         Optional<double>(arguments, "height").value_or(now.height)};
  desktop_.SetScreenSize(wanted);
  const TwipsSize screen = desktop_.ScreenSize();
  return {{"width", screen.width}, {"height", screen.height}};
}

Json ScriptRunner::Screenshot(const Json& arguments) {
  const std::string file = Text(arguments, "file");
  if (Optional<std::string>(arguments, "of").value_or("form") != "form") Refuse("only a form can be pictured");
  if (desktop_.TopForm().empty()) Refuse("no form is shown");
  desktop_.Screenshot(file);
  return nullptr;
}

// --- The add-in.

Json ScriptRunner::SetupEventSink(const Json&) {
  session_.addin().SetupEventSink(session_.host().application());
  return nullptr;
}

Json ScriptRunner::AddVardoMenu(const Json&) {
  session_.addin().AddVardoMenu();
  return nullptr;
}

Json ScriptRunner::InitializePage(const Json&) {
  const auto initialize = [this] { session_.addin().InitializePage(); };
  // Without a drawing there is nothing to undo; the add-in says what it makes of that.
  session_.host().IsOpen() ? session_.host().RunCommand("Initialize Page", initialize) : initialize();
  return nullptr;
}

Json ScriptRunner::ShowEditor(const Json& arguments) {
  session_.ShowEditor(ShapeArgument(arguments, "shape"), Optional<bool>(arguments, "select").value_or(true));
  return nullptr;
}

Json ScriptRunner::Submodel(const Json& arguments) {
  session_.Submodel(ShapeArgument(arguments, "shape"));
  return nullptr;
}

Json ScriptRunner::CloseSubmodel(const Json& arguments) {
  Required(arguments, "page");
  session_.CloseSubmodel(PageArgument(arguments).id());
  return nullptr;
}

Json ScriptRunner::CopyAndPaste(const Json&) {
  session_.addin().CopyAndPaste();
  return nullptr;
}

Json ScriptRunner::LoadedFormNames(const Json&) { return desktop_.LoadedForms(); }

// --- The form on top.

namespace {

int ItemArgument(const Json& arguments, const ControlSeen& control) {
  const Json& item = Required(arguments, "item");
  const int count = control.items ? static_cast<int>(control.items->size()) : 0;
  if (item.is_number_integer()) {
    const int index = As<int>(item, "item");
    if (index < 0 || index >= count) Refuse(control.name + " has no item " + std::to_string(index));
    return index;
  }
  const std::string text = As<std::string>(item, "item");
  for (int index = 0; index < count; ++index)
    if ((*control.items)[static_cast<size_t>(index)] == text) return index;
  Refuse(control.name + " has no item " + Quoted(text));
}

}  // namespace

ControlSeen ScriptRunner::ControlArgument(const Json& arguments) {
  const std::string name = Text(arguments, "control");
  if (auto control = desktop_.SeeControl(name)) return *std::move(control);
  Refuse("there is no control " + Quoted(name) + " on " + desktop_.TopForm());
}

Json ScriptRunner::DescribeForm(const Json&) { return FormToJson(desktop_.SeeForm()); }

Json ScriptRunner::FormType(const Json& arguments) {
  const ControlSeen control = ControlArgument(arguments);
  if (!control.text) Refuse(control.name + " cannot be typed into");
  desktop_.Type(control.name, Text(arguments, "text"));
  return nullptr;
}

Json ScriptRunner::FormPick(const Json& arguments) {
  const ControlSeen control = ControlArgument(arguments);
  desktop_.Pick(control.name, ItemArgument(arguments, control));
  return nullptr;
}

Json ScriptRunner::FormCheck(const Json& arguments) {
  const ControlSeen control = ControlArgument(arguments);
  if (!control.checked) Refuse(control.name + " cannot be checked");
  desktop_.Check(control.name, As<bool>(Required(arguments, "checked"), "checked"));
  return nullptr;
}

Json ScriptRunner::FormFocus(const Json& arguments) {
  desktop_.Focus(ControlArgument(arguments).name);
  return nullptr;
}

Json ScriptRunner::FormClick(const Json& arguments) {
  desktop_.Click(ControlArgument(arguments).name);
  return nullptr;
}

Json ScriptRunner::FormDblClick(const Json& arguments) {
  desktop_.DblClick(ControlArgument(arguments).name);
  return nullptr;
}

Json ScriptRunner::FormKey(const Json& arguments) {
  desktop_.Key(Text(arguments, "key"));
  return nullptr;
}

// --- Naming things.

DrawingPage& ScriptRunner::PageArgument(const Json& arguments, const char* name) {
  const auto pageName = Optional<std::string>(arguments, name);
  if (!pageName) return session_.host().ActivePage();
  if (DrawingPage* page = session_.host().drawing().FindPage(*pageName)) return *page;
  Refuse("there is no page " + Quoted(*pageName));
}

SheetRef ScriptRunner::ShapeNamed(const Json& shape, DrawingPage& page) {
  DrawingShape* found = nullptr;
  if (shape.is_number_integer()) found = page.FindShape(As<int>(shape, "shape"));
  if (shape.is_string()) found = page.FindShape(std::string_view(shape.get_ref<const std::string&>()));
  if (!found) Refuse("there is no shape " + InWords(shape.dump()) + " on the page " + Quoted(page.Name()));
  return session_.host().RefTo(page, found->id());
}

SheetRef ScriptRunner::ShapeArgument(const Json& arguments, const char* name) {
  return ShapeNamed(Required(arguments, name), PageArgument(arguments));
}

SheetRef ScriptRunner::SheetArgument(const Json& arguments) {
  const Json& of = Required(arguments, "of");
  DrawingPage& page = PageArgument(arguments);
  if (of == "ThePage") return session_.host().RefTo(page, SheetKind::Page);
  if (of == "TheDoc") return session_.host().RefTo(page, SheetKind::Document);
  return ShapeNamed(of, page);
}

Json ScriptRunner::DescribeShape(const SheetRef& ref) {
  const IVShapePtr shape = MakeShape(session_.host(), ref);
  return {{"id", shape->ID()}, {"index", shape->Index()}, {"name", shape->Name()}};
}

}  // namespace vardo
