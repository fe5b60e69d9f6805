#include "memoryhost/DrawingHost.h"

#include "addin/host/HostConstants.h"
#include "addin/host/IVDocument.h"
#include "addin/host/IVShape.h"
#include "base/Errors.h"
#include "base/Numbers.h"
#include "base/ScopeExit.h"
#include "base/Text.h"
#include "document/FormulaScopeOfDrawing.h"
#include "document/Glue.h"
#include "document/Places.h"
#include "document/Recalculation.h"
#include "memoryhost/HostObjects.h"
#include "stencil/StencilPackage.h"

#include <algorithm>
#include <unordered_map>
#include <utility>

namespace vardo {
namespace {

// The nearest page that stands for itself, not behind others: at that position, before it, else the first.
DrawingPage& PageToShow(Drawing& drawing, int index) {
  for (int at = index; at >= 1; --at)
    if (!drawing.PageAt(at).IsBackground()) return drawing.PageAt(at);
  for (int at = index + 1; at <= drawing.PageCount(); ++at)
    if (!drawing.PageAt(at).IsBackground()) return drawing.PageAt(at);
  return drawing.PageAt(1);
}

const SectionInfo& ConnectionPoints() { return *FindSection(kSectionConnectionPts); }

// What no file can hold is refused before anything is written.
void RequireKeepable(std::string_view text) {
  if (const auto what = FindUnkeepable(text))
    throw HostError(kHostNotAllowed, "A drawing cannot hold " + *what + ": leave that out of the text.");
}

// "CreateName" in "Prop.CreateName.Label", as it is spelled.
std::string_view RowNameIn(std::string_view cell) {
  const std::string_view row = cell.substr(cell.find('.') + 1);
  return row.substr(0, row.find('.'));
}

HostError NotOpen() { return HostError(kHostNotAllowed, "No drawing is open."); }

}  // namespace

struct DrawingHost::AdvisedEvent : public IVEvent {
  void SetEnabled(bool on) override { enabled = on; }
  std::int16_t code = 0;
  std::int32_t id = 0;
  IVEventSinkPtr sink;
  std::string targetArgs;
  bool enabled = true;
};

// A scope that is begun while this lives and not ended ends with it.
class DrawingHost::OpenScopesEnd {
 public:
  explicit OpenScopesEnd(DrawingHost& host) : host_(host), before_(host.undoScopes_.size()) {}
  ~OpenScopesEnd() {
    for (; host_.undoScopes_.size() > before_; host_.undoScopes_.pop_back()) host_.drawing_->log().EndStep();
  }
  OpenScopesEnd(const OpenScopesEnd&) = delete;
  OpenScopesEnd& operator=(const OpenScopesEnd&) = delete;

 private:
  DrawingHost& host_;
  const size_t before_;
};

// What a person, or a caller of the object model, does at a time: one undo step, and nothing at all when it fails.
class DrawingHost::Command {
 public:
  Command(DrawingHost& host, std::string_view label) : before_(host), step_(host.drawing().log(), label), scopes_(host) {
    EditLog& log = host.drawing().log();
    before_.isOutermost = log.IsOutermost();
    if (before_.isOutermost) log.SetShownBefore(before_.page);
  }
  Command(const Command&) = delete;
  Command& operator=(const Command&) = delete;

 private:
  // Outlives the step.
  struct Before {
    explicit Before(DrawingHost& h) : host(h), page(h.activePage_), selection(h.selection_) {}
    ~Before() {
      if (!isOutermost) return;
      if (!Failing()) {
        host.TellTouched();
        return;
      }
      host.activePage_ = page;
      host.selection_ = selection;
      host.drawing_->TakeTouched();
    }
    bool Failing() const { return std::uncaught_exceptions() > exceptions; }
    DrawingHost& host;
    int page;
    std::vector<int> selection;
    int exceptions = std::uncaught_exceptions();
    bool isOutermost = false;
  };
  Before before_;
  UndoStep step_;
  OpenScopesEnd scopes_;
};

DrawingHost::DrawingHost() : application_(MakeApplication(*this)) {}
// A sink may keep its own event.
DrawingHost::~DrawingHost() {
  for (const auto& event : advises_) event->sink.reset();
}

void DrawingHost::New() {
  Replace(Drawing::New(), {});
  Raise(kEventDocumentCreated, MakeDocument(*this, serial_));
}

void DrawingHost::Open(const std::filesystem::path& file) { Replace(Drawing::Open(file), file); }

void DrawingHost::Replace(std::unique_ptr<Drawing> drawing, const std::filesystem::path& file) {
  if (drawing_) Raise(kEventDocumentClosed, MakeDocument(*this, serial_));
  drawing_ = std::move(drawing);
  undoScopes_.clear();
  file_ = file;
  ++serial_;
  activePage_ = PageToShow(*drawing_, 1).id();
  selection_.clear();
  drawing_->onRowsShifted = [this](const RowsShifted& rows, bool again) { heldRows_.Shifted(serial_, rows, again); };
  drawing_->WantTouched(stepObserver_ != nullptr);
  drawing_->log().SetLimit(undoLimit_);
}

std::filesystem::path DrawingHost::Save(const std::optional<std::filesystem::path>& file, Overwrite overwrite) {
  const std::filesystem::path target = file.value_or(file_);
  if (target.empty()) throw HostError(kHostNotAllowed, "The drawing has never been saved: name a file.");
  drawing().Save(target, overwrite);
  file_ = target;
  return target;
}

Drawing& DrawingHost::drawing() {
  if (!drawing_) throw NotOpen();
  return *drawing_;
}

DrawingPage& DrawingHost::ActivePage() {
  DrawingPage* page = drawing().FindPage(activePage_);
  return page ? *page : PageToShow(*drawing_, 1);
}

IVPagePtr DrawingHost::AddPage(const std::optional<std::string>& name) {
  const Command command(*this, "Insert Page");
  if (name) RequireKeepable(*name);
  if (name && (name->empty() || drawing_->FindPage(*name)))
    throw HostError(kHostNotAllowed, "A page needs a name that no other page has.");
  DrawingPage& page = drawing_->AddPage(ActivePage());
  const int id = page.id();
  if (name) page.SetName(*name);
  Raise(kEventPageAdded, MakePage(*this, serial_, id));
  ShowPage(id);
  return MakePage(*this, serial_, id);
}

void DrawingHost::DeletePage(int pageId, bool renumber) {
  const Command command(*this, "Delete Page");
  ResolvePage(serial_, pageId);
  if (drawing_->PageCount() == 1) throw HostError(kHostNotAllowed, "A drawing keeps at least one page.");
  Raise(kEventPageDeleted, MakePage(*this, serial_, pageId));
  // A listener may have deleted it, or all others.
  DrawingPage* page = drawing_->FindPage(pageId);
  if (!page || drawing_->PageCount() == 1) return;
  const bool wasActive = page == &ActivePage();
  const int index = drawing_->IndexOf(*page);
  drawing_->RemovePage(*page, renumber);
  if (wasActive) return ShowPage(PageToShow(*drawing_, std::max(1, index - 1)).id());
  // Its tab has gone from the window. What a listener has put off until now is done in this step, so that undo takes it back too.
  Raise(kEventWindowChanged, MakeWindow(*this, serial_));
}

void DrawingHost::ShowPage(int pageId) {
  if (activePage_ == pageId) return;
  ResolvePage(serial_, pageId);
  activePage_ = pageId;
  selection_.clear();
  Raise(kEventWindowChanged, MakeWindow(*this, serial_));
}

void DrawingHost::RenamePage(int pageId, std::string_view name) {
  const Command command(*this, "Rename Page");
  DrawingPage& page = ResolvePage(serial_, pageId);
  DrawingPage* const same = drawing_->FindPage(name);
  RequireKeepable(name);
  if (name.empty() || (same && same != &page)) throw HostError(kHostNotAllowed, "A page needs a name that no other page has.");
  page.SetName(name);
  Raise(kEventPageChanged, MakePage(*this, serial_, pageId));
}

std::vector<std::string> DrawingHost::MasterNames() {
  std::vector<std::string> names;
  for (int i = 1; i <= drawing().MasterCount(); ++i) names.push_back(drawing_->MasterAt(i).Name());
  for (const std::string& name : StencilMasterNames())
    if (std::find(names.begin(), names.end(), name) == names.end()) names.push_back(name);
  return names;
}

IVShapePtr DrawingHost::Drop(std::string_view masterName, int pageId, double x, double y,
                             const std::optional<std::string>& text) {
  const Command command(*this, "Drop On Page");
  ShowPage(pageId);
  const DrawingMaster* master = drawing_->BringMaster(masterName);
  if (!master) throw HostError(kHostBadIndex, "There is no master " + InWords(masterName) + ".");
  if (text) RequireKeepable(*text);
  DrawingShape& shape = ActivePage().AddInstance(*master, x, y);
  const SheetRef ref = RefTo(ActivePage(), shape.id());
  if (text) shape.SetText(drawing_->editor(), *text);
  return Announce(ref);
}

// The shape is selected before anybody hears of it. Null when a listener has deleted it.
IVShapePtr DrawingHost::Announce(const SheetRef& ref) {
  SelectAndTell({ref.shape});
  const IVShapePtr object = MakeShape(*this, ref);
  Raise(kEventShapeAdded, object);
  DrawingPage* page = drawing_->FindPage(ref.page);
  return page && page->FindShape(ref.shape) ? object : nullptr;
}

std::vector<IVShapePtr> DrawingHost::Paste(const std::vector<SheetRef>& copied, int pageId) {
  // As in a selection, a shape is there once, however often it is named.
  std::vector<SheetRef> originals;
  for (const SheetRef& ref : copied)
    if (std::find(originals.begin(), originals.end(), ref) == originals.end()) originals.push_back(ref);
  const Command command(*this, "Paste");
  ShowPage(pageId);
  std::vector<DrawingPage::Original> found;
  for (const SheetRef& original : originals) {
    ResolveShape(original);
    found.push_back({&ResolvePage(serial_, original.page), original.shape});
  }
  std::vector<int> copies = ActivePage().AddCopies(found);

  for (const int id : copies) Announce({serial_, pageId, id});
  DrawingPage& now = ResolvePage(serial_, pageId);
  std::erase_if(copies, [&](int id) { return now.FindShape(id) == nullptr; });
  std::vector<IVShapePtr> objects;
  for (const int id : copies) objects.push_back(MakeShape(*this, {serial_, pageId, id}));
  SelectAndTell(copies);
  return objects;
}

IVShapePtr DrawingHost::Connect(std::string_view masterName, int pageId, const End& begin, const End& end) {
  const Command command(*this, "Connector");
  ShowPage(pageId);
  for (const End& glued : {begin, end}) RequirePoint(pageId, glued);
  const DrawingMaster* master = drawing_->BringMaster(masterName);
  if (!master) throw HostError(kHostBadIndex, "There is no master " + InWords(masterName) + ".");
  if (!master->TopShape() || !master->TopShape()->IsOneDimensional())
    throw HostError(kHostNotAllowed, "The master " + InWords(masterName) + " is no connector.");

  // Where each end is to be roughly, for the other to turn to: a loose end lies to the right of where the connector begins, or to
  // the left of its end.
  constexpr double kLooseLength = 1;
  DrawingPage& page = ActivePage();
  const auto middle = [&](const End& e) { return e.shape ? std::optional(MiddleOf(*page.FindShape(*e.shape))) : std::nullopt; };
  const std::optional<Point> from = middle(begin), to = middle(end);
  const Point start = from ? *from : to ? Point{to->x - 2 * kLooseLength, to->y} : Point{kLooseLength, kLooseLength};
  const Point finish = to ? *to : Point{start.x + (from ? 2 : 1) * kLooseLength, start.y};

  const SheetRef ref = RefTo(page, page.AddInstance(*master, (start.x + finish.x) / 2, (start.y + finish.y) / 2).id());
  const End* ends[] = {&begin, &end};
  const Point places[] = {start, finish};
  for (size_t i = 0; i < 2; ++i) {
    PutFormula(ref, ObjectCellAddress(kConnectorEnds[i].x), NumberText(places[i].x));
    PutFormula(ref, ObjectCellAddress(kConnectorEnds[i].y), NumberText(places[i].y));
  }
  for (size_t i = 0; i < 2; ++i)
    if (ends[i]->shape) Glue(ref, kConnectorEnds[i], *ends[i], places[1 - i]);

  return Announce(ref);
}

void DrawingHost::RequirePoint(int pageId, const End& end) {
  if (!end.shape) return;
  const DrawingShape& shape = ResolveShape({serial_, pageId, *end.shape});
  const auto count = static_cast<int>(shape.Rows(ConnectionPoints()).size());
  if (end.point && (*end.point < 1 || *end.point > count))
    throw HostError(kHostBadIndex,
                    InWords(ActivePage().NameOf(shape)) + " has no connection point " + std::to_string(*end.point) + ".");
}

void DrawingHost::Reglue(const SheetRef& connector, bool isBegin, const End& end) {
  const Command command(*this, "Move Connector End");
  ShowPage(connector.page);
  const DrawingShape& shape = ResolveShape(connector);
  if (!shape.IsOneDimensional()) throw HostError(kHostNotAllowed, "Only a connector has ends.");
  if (!end.shape) throw HostError(kHostBadIndex, "An end is glued to a shape.");
  RequirePoint(connector.page, end);
  const ConnectorEnd &cells = kConnectorEnds[isBegin ? 0 : 1], &other = kConnectorEnds[isBegin ? 1 : 0];
  Glue(connector, cells, end, {NumberIn(shape, other.x).value_or(0), NumberIn(shape, other.y).value_or(0)});
  Announce(connector);
}

void DrawingHost::Glue(const SheetRef& connector, const ConnectorEnd& cells, const End& end, Point otherEnd) {
  const auto put = [&](const char* cell, const std::string& formula) {
    if (const auto address = ResolveShape(connector).Find(std::string_view(cell))) PutFormula(connector, *address, formula);
  };
  put(cells.trigger, TriggerOfShape(*end.shape));
  const bool walks = end.walks && !end.point;
  const std::string glue =
      walks ? std::string(cells.walkingGlue)
            : PointGlue(*end.shape,
                        end.point ? *end.point : AddOutlinePoint({connector.drawing, connector.page, *end.shape}, otherEnd));
  put(cells.x, glue);
  put(cells.y, glue);
}

// Where a connector touches the outline the host makes a point, and marks it as its own. Returns the point's number.
int DrawingHost::AddOutlinePoint(const SheetRef& ref, Point towards) {
  const SectionInfo& points = ConnectionPoints();
  const Point side = NearestSide(ResolveShape(ref), towards);
  const auto count = static_cast<short>(ResolveShape(ref).Rows(points).size());
  const short row = AddRow(ref, points, count);
  const RowKey key = ResolveShape(ref).Rows(points)[static_cast<size_t>(row)].key;
  PutFormula(ref, {&points, key, Symbol("X")}, "Width*" + NumberText(side.x));
  PutFormula(ref, {&points, key, Symbol("Y")}, "Height*" + NumberText(side.y));
  PutFormula(ref, {&points, key, Symbol("AutoGen")}, "1");
  return row + 1;
}

void DrawingHost::Select(const std::vector<int>& shapeIds) {
  for (const int id : shapeIds) ResolveShape({serial_, ActivePage().id(), id});
  SelectAndTell(shapeIds);
}

void DrawingHost::SelectAndTell(std::vector<int> shapeIds) {
  if (shapeIds == selection_) return;
  selection_ = std::move(shapeIds);
  Raise(kEventWindowChanged, MakeWindow(*this, serial_));
}

void DrawingHost::DeleteSelection() {
  const Command command(*this, "Delete");
  const int pageId = ActivePage().id();
  const std::vector<int> going = selection_;
  if (going.empty()) return;
  Raise(kEventBeforeSelectionDelete, MakeSelection(*this, serial_, pageId, going));
  if (DrawingPage* page = drawing_->FindPage(pageId)) page->Remove(going);
  SelectAndTell({});
}

void DrawingHost::TypeText(const SheetRef& ref, std::string_view text, bool keepSelection) {
  const Command command(*this, "Typing");
  ResolveShape(ref);
  ShowPage(ref.page);
  const std::vector<int> selected = keepSelection ? selection_ : std::exchange(selection_, {});
  WriteText(ref, text);
  if (keepSelection || activePage_ != ref.page) return;
  selection_ = selected;
}

void DrawingHost::SetCell(const SheetRef& ref, std::string_view cell, std::string_view formula) {
  const Command command(*this, "Set Cell");
  RequireKeepable(cell);
  Sheet& sheet = *Resolve(ref).sheet;
  if (!sheet.Find(cell)) {
    const auto name = ParseCellName(cell);
    const bool canMake =
        name && name->section && (name->section->section == kSectionProp || name->section->section == kSectionUser);
    if (!canMake) throw HostError(kHostNoSuchCell, "The cell " + InWords(cell) + " does not exist.");
    sheet.AddNamedRow(drawing_->editor(), *name->section, RowNameIn(cell));
  }
  const auto address = sheet.Find(cell);
  if (!address) throw HostError(kHostNoSuchCell, "The cell " + InWords(cell) + " does not exist.");
  WriteFormula(ref, *address, formula);
}

void DrawingHost::DeleteRow(const SheetRef& ref, short section, short row) {
  const Command command(*this, "Delete Row");
  const SectionInfo* info = FindSection(section);
  if (!info) throw HostError(kHostNotAllowed, "Section " + std::to_string(section) + " has no rows to delete.");
  const SheetView view = Resolve(ref);
  const bool existed = row >= 0 && static_cast<size_t>(row) < view.sheet->Rows(*info).size();
  view.sheet->DeleteRow(drawing_->editor(), *info, row);
  if (existed && !info->rowsHaveNames) drawing_->editor().NoteRowsShifted({ref.page, ref.shape, ref.kind, info, row, -1});
  if (existed && info == &ConnectionPoints() && ref.IsShape()) view.page->RenumberPoints(ResolveShape(ref), row, -1);
}

void DrawingHost::AddSection(const SheetRef& ref, const SectionInfo& section) {
  const Command command(*this, "Add Section");
  Resolve(ref).sheet->AddSection(drawing_->editor(), section);
}

short DrawingHost::AddNamedRow(const SheetRef& ref, const SectionInfo& section, std::string_view name) {
  const Command command(*this, "Add Row");
  RequireKeepable(name);
  return Resolve(ref).sheet->AddNamedRow(drawing_->editor(), section, name);
}

short DrawingHost::AddRow(const SheetRef& ref, const SectionInfo& section, short position) {
  const Command command(*this, "Add Row");
  const SheetView view = Resolve(ref);
  short added = view.sheet->AddRow(drawing_->editor(), section, position);
  if (!section.rowsHaveNames && position >= 0 && added > position) {
    MoveRowsUp(ref, section, position);
    added = position;
  }
  if (!section.rowsHaveNames) drawing_->editor().NoteRowsShifted({ref.page, ref.shape, ref.kind, &section, added, +1});
  const bool isLast = static_cast<size_t>(added) + 1 == view.sheet->Rows(section).size();
  if (!isLast && &section == &ConnectionPoints() && ref.IsShape()) view.page->RenumberPoints(ResolveShape(ref), added, +1);
  return added;
}

// Rows that come from a master keep their places. For a new row to stand before one of them, what the rows hold moves up to the
// next, and into the new one at the end; its own blank cells come to stand at the position.
void DrawingHost::MoveRowsUp(const SheetRef& ref, const SectionInfo& section, short position) {
  const std::vector<Sheet::Row> rows = Resolve(ref).sheet->Rows(section);
  for (const ColumnInfo& column : section.columns) {
    const auto cell = [&](size_t row) { return CellAddress{&section, rows[row].key, Symbol(column.name)}; };
    const std::string blank = FormulaOf(ref, cell(rows.size() - 1));
    for (size_t row = rows.size() - 1; row > static_cast<size_t>(position); --row) {
      const std::string below = FormulaOf(ref, cell(row - 1));
      PutFormula(ref, cell(row), below.empty() ? blank : below);
    }
    PutFormula(ref, cell(static_cast<size_t>(position)), blank);
  }
}

std::shared_ptr<const HeldRow> DrawingHost::HoldRow(const SheetRef& ref, const CellAddress& address) {
  if (!address.section || address.section->rowsHaveNames) return nullptr;
  const auto position = Resolve(ref).sheet->PositionOf(address);
  return heldRows_.Hold(ref, *address.section, position.value());
}

void DrawingHost::RunCommand(std::string_view label, const std::function<void()>& work) {
  const Command command(*this, label);
  work();
}

std::string DrawingHost::Undo() { return Replay(ReplayDirection::Undo); }
std::string DrawingHost::Redo() { return Replay(ReplayDirection::Redo); }

std::string DrawingHost::Replay(ReplayDirection direction) {
  const bool isUndo = direction == ReplayDirection::Undo;
  EditLog& log = drawing().log();
  const auto require = [&](const char* otherwise) {
    if (isUndo ? !log.CanUndo() : !log.CanRedo()) throw HostError(kHostNotAllowed, otherwise);
  };
  if (log.InStep()) throw HostError(kHostNotAllowed, "Nothing is undone or redone before what is going on has ended.");
  require(isUndo ? "There is nothing to undo." : "There is nothing to redo.");
  replaying_ = true;
  const AtExit done([this] { replaying_ = false; });
  const ReplayNews news = NewsOfReplay(*drawing_, isUndo ? log.EditsToUndo() : log.EditsToRedo(), direction);
  TellOfGoing(news);
  require("A listener has edited the drawing meanwhile.");
  const int shown = activePage_;
  const bool hadSelection = !selection_.empty();
  selection_.clear();
  const EditLog::Replayed replayed = isUndo ? log.Undo() : log.Redo();
  if (isUndo && drawing_->FindPage(replayed.shownBefore)) activePage_ = replayed.shownBefore;
  TellOfChange(news);
  if (hadSelection || activePage_ != shown) Raise(kEventWindowChanged, MakeWindow(*this, serial_));
  TellTouched();
  return replayed.label;
}

void DrawingHost::TellOfGoing(const ReplayNews& news) {
  for (const auto& [page, shapes] : news.shapesGoing)
    Raise(kEventBeforeSelectionDelete, MakeSelection(*this, serial_, page, shapes));
  for (const int page : news.pagesGoing) Raise(kEventPageDeleted, MakePage(*this, serial_, page));
}

void DrawingHost::TellOfChange(const ReplayNews& news) {
  for (const int page : news.pagesComing) Raise(kEventPageAdded, MakePage(*this, serial_, page));
  for (const int page : news.pagesChanged)
    if (drawing_->FindPage(page)) Raise(kEventPageChanged, MakePage(*this, serial_, page));
  for (const auto& [page, shape] : news.shapesComing) Raise(kEventShapeAdded, MakeShape(*this, {serial_, page, shape}));
  for (const auto& [pageId, shape] : news.texts)
    if (DrawingPage* page = drawing_->FindPage(pageId); page && page->FindShape(shape)) RaiseTextChanged(*page, shape);
}

int DrawingHost::BeginUndoScope(std::string_view label) {
  EditLog& log = drawing().log();
  undoScopes_.reserve(undoScopes_.size() + 1);
  log.BeginStep(label);
  if (log.IsOutermost()) log.SetShownBefore(activePage_);
  undoScopes_.push_back({++lastUndoScope_, activePage_});
  return lastUndoScope_;
}

void DrawingHost::EndUndoScope(int scope, bool keep) {
  if (scope == 0) return;
  if (undoScopes_.empty() || undoScopes_.back().number != scope)
    throw HostError(kHostNotAllowed, "Undo scopes are ended from the last one begun.");
  EditLog& log = drawing().log();
  const bool isOutermost = log.IsOutermost();
  if (!keep && !isOutermost) throw HostError(kHostNotAllowed, "What is done inside a command is taken back with the command.");
  const UndoScope ended = undoScopes_.back();
  undoScopes_.pop_back();
  if (!keep) {
    log.RollBack();
    activePage_ = ended.pageBefore;
    selection_.clear();
    drawing_->TakeTouched();
  }
  log.EndStep();
  if (isOutermost) TellTouched();
}

void DrawingHost::SetUndoLimit(EditLog::Limit limit) {
  undoLimit_ = limit;
  if (drawing_) drawing_->log().SetLimit(limit);
}

void DrawingHost::SetStepObserver(StepObserver observer) {
  stepObserver_ = std::move(observer);
  if (drawing_) drawing_->WantTouched(stepObserver_ != nullptr);
}

void DrawingHost::TellTouched() {
  if (!stepObserver_) return;
  if (const std::vector<TouchedCell> touched = drawing_->TakeTouched(); !touched.empty()) stepObserver_(touched);
}

void DrawingHost::StartWriteLog() { writes_.emplace(); }

std::vector<CellWrite> DrawingHost::TakeWriteLog() {
  std::vector<CellWrite> taken = std::move(writes_).value_or(std::vector<CellWrite>());
  writes_.reset();
  return taken;
}

DrawingHost::SheetView DrawingHost::Resolve(const SheetRef& ref) {
  if (ref.kind == SheetKind::Document) {
    if (!drawing_ || ref.drawing != serial_) throw HostError(kHostObjectGone, "The drawing has been closed.");
    return {nullptr, &drawing_->DocumentSheet()};
  }
  DrawingPage& page = ResolvePage(ref.drawing, ref.page);
  return {&page, ref.kind == SheetKind::Page ? &page.PageSheet() : &ResolveShape(ref)};
}

DrawingShape& DrawingHost::ResolveShape(const SheetRef& ref) {
  DrawingShape* shape = !ref.IsShape() ? nullptr : ResolvePage(ref.drawing, ref.page).FindShape(ref.shape);
  if (!shape) throw HostError(kHostObjectGone, "The shape has gone.");
  return *shape;
}

DrawingPage& DrawingHost::ResolvePage(int drawingSerial, int pageId) {
  DrawingPage* page = drawingSerial == serial_ ? drawing().FindPage(pageId) : nullptr;
  if (!page) throw HostError(kHostObjectGone, "The page has gone.");
  return *page;
}

std::uint64_t DrawingHost::Stamp() const {
  return static_cast<std::uint64_t>(serial_) << 32 | (drawing_ ? drawing_->structure() : 0);
}

std::string DrawingHost::FormulaOf(const SheetView& view, const CellAddress& address) {
  std::string stored = view.sheet->Formula(address);
  if (!view.page || !NamesSheet(stored)) return stored;
  return Formula(stored).WithReferences([&](FormulaReference& reference) {
    const DrawingShape* shape = reference.onOtherPage ? nullptr : view.page->FindSheet(reference.sheet);
    if (shape) reference.sheet = view.page->NameInFormula(*shape);
    return shape != nullptr;
  });
}

void DrawingHost::PutFormula(const SheetRef& ref, const CellAddress& address, std::string_view formula) {
  RequireKeepable(formula);
  const SheetView view = Resolve(ref);
  std::string stored(formula);
  if (view.page && NamesSheet(formula)) {
    const Formula parsed(formula);
    RefuseLostGlue(view, address, parsed);
    stored = parsed.WithReferences([&](FormulaReference& reference) {
      const DrawingShape* shape = reference.onOtherPage ? nullptr : view.page->FindSheet(reference.sheet);
      if (shape) reference.sheet = "Sheet." + std::to_string(shape->id());
      return shape != nullptr;
    });
  }
  view.sheet->SetFormula(drawing_->editor(), address, stored, FormulaScopeOfDrawing(*drawing_, view.page, *view.sheet, address));
  Recalculation recalculation(*drawing_, view.page);
  recalculation.Changed(*view.sheet, address);
  recalculation.Run();
  const ConnectorEnd* end = ref.IsShape() && !address.section ? FindConnectorEnd(address.cell.text()) : nullptr;
  if (end) view.page->KeepConnect(ResolveShape(ref), *end);
}

// An end is not glued to a connection point that is not there.
void DrawingHost::RefuseLostGlue(const SheetView& view, const CellAddress& address, const Formula& formula) {
  if (address.section || !FindConnectorEnd(address.cell.text()) || !formula.FollowsPoint()) return;
  for (const FormulaReference& reference : formula.references()) {
    const DrawingShape* shape = reference.onOtherPage ? nullptr : view.page->FindSheet(reference.sheet);
    if (shape && reference.name && reference.name->section == &ConnectionPoints() && !shape->Find(*reference.name))
      throw HostError(kHostNoSuchCell, InWords(view.page->NameOf(*shape)) + " has no cell " + InWords(reference.cell) + ".");
  }
}

void DrawingHost::WriteFormula(const SheetRef& ref, const CellAddress& address, std::string_view formula) {
  const Command command(*this, "Edit");
  PutFormula(ref, address, formula);
  if (!writes_) return;
  const Sheet& sheet = *Resolve(ref).sheet;
  const std::string row =
      address.section ? std::string(address.section->prefix) + "." + sheet.RowText(*address.section, address.row) + "." : "";
  const bool isValue = address.section && address.cell == Symbol(address.section->shortName);
  writes_->push_back(
      {SheetName(ref), isValue ? row.substr(0, row.size() - 1) : row + std::string(address.cell.text()), std::string(formula)});
}

void DrawingHost::WriteFormulas(const SheetRef& ref, const std::vector<CellAddress>& cells,
                                const std::vector<std::string>& formulas, const std::optional<HostError>& refused) {
  const Command command(*this, "Edit");
  for (size_t i = 0; i < cells.size(); ++i) WriteFormula(ref, cells[i], formulas[std::min(i, formulas.size() - 1)]);
  if (refused) throw *refused;
}

void DrawingHost::WriteText(const SheetRef& ref, std::string_view text) {
  const Command command(*this, "Typing");
  RequireKeepable(text);
  DrawingShape& shape = ResolveShape(ref);
  if (shape.Text() != text) shape.SetText(drawing_->editor(), text);
  if (writes_) writes_->push_back({SheetName(ref), "", std::string(text)});
  RaiseTextChanged(ResolvePage(ref.drawing, ref.page), ref.shape);
}

void DrawingHost::RaiseTextChanged(const DrawingPage& page, int shapeId) {
  Raise(kEventTextChanged, MakeShape(*this, RefTo(page, shapeId)),
        "/doc=1 /page=" + std::to_string(drawing_->IndexOf(page)) + " /shape=Sheet." + std::to_string(shapeId));
}

void DrawingHost::DeleteMaster(int masterId) {
  const Command command(*this, "Delete Master");
  if (DrawingMaster* master = drawing_->FindMaster(masterId)) drawing_->RemoveMaster(*master);
}

void DrawingHost::DeleteShape(const SheetRef& ref) {
  const Command command(*this, "Delete");
  ResolveShape(ref);
  ResolvePage(ref.drawing, ref.page).Remove({ref.shape});
  if (activePage_ != ref.page) return;
  std::vector<int> left = selection_;
  std::erase(left, ref.shape);
  SelectAndTell(left);
}

IVEventPtr DrawingHost::Advise(std::int16_t code, const IVEventSinkPtr& sink, std::string_view targetArgs) {
  auto event = std::make_shared<AdvisedEvent>();
  event->code = code;
  event->id = AdviseCount() + 1;
  event->sink = sink;
  event->targetArgs = targetArgs;
  advises_.push_back(event);
  return event;
}

IVEventPtr DrawingHost::AdviseAt(int index) { return advises_[static_cast<size_t>(index - 1)]; }

void DrawingHost::Raise(std::uint16_t code, const EventSubject& subject, std::string_view moreInfo) {
  const auto signedCode = static_cast<std::int16_t>(code);
  const std::vector<std::shared_ptr<AdvisedEvent>> listeners = advises_;
  const OpenScopesEnd scopes(*this);
  for (const auto& listener : listeners)
    if (listener->code == signedCode && listener->enabled)
      listener->sink->VisEventProc(signedCode, application_, listener->id, ++eventSequence_, subject, moreInfo);
}

std::string DrawingHost::SheetName(const SheetRef& ref) {
  if (ref.kind == SheetKind::Page) return "ThePage";
  if (ref.kind == SheetKind::Document) return "TheDoc";
  return ResolvePage(ref.drawing, ref.page).NameOf(ResolveShape(ref));
}

}  // namespace vardo
