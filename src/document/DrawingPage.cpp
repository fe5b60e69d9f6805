#include "document/DrawingPage.h"

#include "addin/host/HostConstants.h"
#include "base/Errors.h"
#include "base/Numbers.h"
#include "base/Text.h"
#include "document/CellText.h"
#include "document/Drawing.h"
#include "document/Elements.h"
#include "document/FormulaScopeOfDrawing.h"
#include "document/Glue.h"
#include "document/Inheritance.h"
#include "document/PackageEdits.h"
#include "document/Recalculation.h"
#include "document/UndoStep.h"
#include "document/VisioXml.h"
#include "package/Package.h"

#include <pugixml.hpp>

#include <algorithm>
#include <limits>

namespace vardo {
namespace {

constexpr std::string_view kById = "Sheet.";

// The number in "Sheet.12"; none in any other name.
std::optional<int> NumberInName(std::string_view name) {
  return name.starts_with(kById) ? ParseInteger(name.substr(kById.size())) : std::nullopt;
}

std::string NameById(int id) { return std::string(kById) + std::to_string(id); }

int NumberOr(pugi::xml_node connect, const char* attribute) { return connect.attribute(attribute).as_int(-1); }

// The element that holds the cell, row or section: of a shape, of a page's sheet.
pugi::xml_node SheetAround(pugi::xml_node node) {
  while (node && !IsNamed(node, "Shape") && !IsNamed(node, "PageSheet")) node = node.parent();
  return node;
}

template <class Visit>
void VisitCells(pugi::xml_node node, const Visit& visit) {
  if (IsNamed(node, "Cell")) return visit(node);
  for (const pugi::xml_node child : node.children())
    if (!IsNamed(child, "Shapes")) VisitCells(child, visit);
}

bool HasOwnFormulas(pugi::xml_node node) {
  bool found = false;
  VisitCells(node, [&](pugi::xml_node cell) { found = found || !OwnFormulaOf(cell).empty(); });
  return found;
}

void AppendCell(pugi::xml_node parent, pugi::xml_node before, const char* name, double value) {
  pugi::xml_node cell = before ? parent.insert_child_before("Cell", before) : parent.append_child("Cell");
  SetAttribute(cell, "N", name);
  SetAttribute(cell, "V", NumberText(value));
}

// A master's formulas number the shapes inside the master. One that also refers to a shape without a number here keeps only its
// value.
void RenumberMasterFormulas(pugi::xml_node element, const std::unordered_map<int, int>& numbers) {
  VisitCells(element, [&](pugi::xml_node cell) {
    const std::string_view formula = OwnFormulaOf(cell);
    if (!NamesSheet(formula)) return;
    bool known = true;
    const std::string renumbered = Formula(formula).WithReferences([&](FormulaReference& reference) {
      const auto number = reference.onOtherPage ? std::nullopt : NumberInName(reference.sheet);
      if (!number) return false;
      const auto found = numbers.find(*number);
      known = known && found != numbers.end();
      if (found != numbers.end()) reference.sheet = NameById(found->second);
      return found != numbers.end();
    });
    if (known)
      SetAttribute(cell, "F", renumbered);
    else
      cell.remove_attribute("F");
  });
}

// The shapes inside a group, at any depth.
void AddInnerElements(pugi::xml_node group, std::vector<pugi::xml_node>& found) {
  for (const pugi::xml_node shape : group.child("Shapes").children("Shape")) {
    if (!IsDeleted(shape)) found.push_back(shape);
    AddInnerElements(shape, found);
  }
}

std::vector<pugi::xml_node> InnerElements(pugi::xml_node group) {
  std::vector<pugi::xml_node> shapes;
  AddInnerElements(group, shapes);
  return shapes;
}

}  // namespace

// ------------------------------------------------------------------------------------------------------------- the page

SheetOfPage::SheetOfPage(XmlPart& list, pugi::xml_node page)
    : Sheet(list, page.child("PageSheet").internal_object(), nullptr), page_(page.internal_object()) {}

void SheetOfPage::MakeElement(TreeEditor& editor) {
  const pugi::xml_node page(page_);
  editor.Insert(part(), page, "PageSheet", {{"LineStyle", "0"}, {"FillStyle", "0"}, {"TextStyle", "0"}}, page.first_child());
}

DrawingPage::DrawingPage(Drawing& drawing, XmlPart& list, pugi::xml_node entry, std::string partName, XmlPart* contents)
    : drawing_(drawing),
      entry_(entry.internal_object()),
      id_(entry.attribute("ID").as_int()),
      partName_(std::move(partName)),
      contents_(contents),
      sheet_(list, entry) {}

DrawingPage::~DrawingPage() = default;

std::string DrawingPage::Name() const {
  const pugi::xml_attribute name = pugi::xml_node(entry_).attribute("Name");
  return name ? name.value() : pugi::xml_node(entry_).attribute("NameU").value();
}

void DrawingPage::SetName(std::string_view name) {
  drawing_.editor().ChangeAttributes(sheet_.part(), pugi::xml_node(entry_), [&](pugi::xml_node entry) {
    for (const char* attribute : {"NameU", "Name"}) SetAttribute(entry, attribute, name);
    for (const char* attribute : {"IsCustomNameU", "IsCustomName"}) SetAttribute(entry, attribute, "1");
  });
}

bool DrawingPage::IsBackground() const { return pugi::xml_node(entry_).attribute("Background").as_bool(); }

int DrawingPage::ShapeCount() { return static_cast<int>(TopLevel().size()); }

DrawingShape& DrawingPage::ShapeAt(int index) { return *TopLevel()[static_cast<size_t>(index - 1)]; }

const std::vector<DrawingShape*>& DrawingPage::TopLevel() {
  EnsureOrder();
  return topLevel_;
}

DrawingShape* DrawingPage::FindShape(int id) {
  EnsureShapes();
  const auto found = shapes_.find(id);
  return found == shapes_.end() ? nullptr : found->second.get();
}

DrawingShape* DrawingPage::FindShape(std::string_view name) {
  EnsureNames();
  return FindShape(names_.IdOf(name));
}

DrawingShape* DrawingPage::FindSheet(std::string_view name) {
  if (const auto number = NumberInName(name)) return FindShape(*number);
  return name.empty() ? nullptr : FindShape(name);
}

int DrawingPage::IndexOf(const DrawingShape& shape) {
  EnsureIndexes();
  return shape.parent() ? 0 : shape.index_;
}

const std::string& DrawingPage::NameOf(const DrawingShape& shape) {
  EnsureNames();
  return names_.NameOf(shape.id());
}

std::string DrawingPage::NameInFormula(const DrawingShape& shape) {
  const std::string& name = NameOf(shape);
  return NumberInName(name) ? NameById(shape.id()) : name;
}

std::vector<DrawingShape*> DrawingPage::InnerShapes(const DrawingShape& group) {
  std::vector<DrawingShape*> shapes;
  for (const pugi::xml_node inner : InnerElements(pugi::xml_node(group.element())))
    if (DrawingShape* shape = FindShape(inner.attribute("ID").as_int())) shapes.push_back(shape);
  return shapes;
}

// ------------------------------------------------------------------------------------- what is found in the page's tree

template <class Work>
decltype(auto) DrawingPage::Wholly(const Work& work) try {
  return work();
} catch (...) {
  ForgetAll();
  throw;
}

void DrawingPage::EnsureShapes() {
  if (shapesKnown_) return;
  Wholly([&] {
    shapesKnown_ = orderKnown_ = true;
    if (!contents_) return;
    for (const pugi::xml_node element : contents_->root().child("Shapes").children("Shape")) AddShapes(element, nullptr);
  });
}

void DrawingPage::AddShapes(pugi::xml_node element, DrawingShape* parent) {
  if (IsDeleted(element)) return;
  auto view = std::make_unique<DrawingShape>(*contents_, element, BaseOf(element, parent), parent);
  DrawingShape* const shape = view.get();
  drawing_.NoteShapeId(id_, shape->id());
  shapes_[shape->id()] = std::move(view);
  if (freeSlots_.empty()) freeSlots_.push_back(slots_++);
  shape->slot_ = freeSlots_.back();
  freeSlots_.pop_back();
  if (shape->MasterId() >= 0) shape->master_ = drawing_.FindMaster(shape->MasterId());
  if (!parent) {
    if (element.next_sibling("Shape")) ForgetPositions();
    orderKnown_ = orderKnown_ && !element.next_sibling("Shape");
    if (orderKnown_) topLevel_.push_back(shape);
    shape->index_ = static_cast<int>(topLevel_.size());
  }
  if (names_.known()) names_.Add(ClaimOf(*shape));
  if (instancesKnown_ && shape->base()) instances_[shape->base()].push_back(shape);
  for (const pugi::xml_node inner : element.child("Shapes").children("Shape")) AddShapes(inner, shape);
}

void DrawingPage::RemoveShapes(pugi::xml_node element) {
  if (IsDeleted(element)) return;
  for (const pugi::xml_node inner : element.child("Shapes").children("Shape")) RemoveShapes(inner);
  const auto entry = shapes_.find(element.attribute("ID").as_int());
  if (entry == shapes_.end()) return;
  DrawingShape* const shape = entry->second.get();
  if (names_.known()) names_.Remove(ClaimOf(*shape));
  if (instancesKnown_ && shape->base()) std::erase(instances_[shape->base()], shape);
  if (!shape->parent() && orderKnown_) {
    if (!indexesKnown_) CountIndexes();
    topLevel_[static_cast<size_t>(shape->index_) - 1] = nullptr;
    hasGaps_ = true;
  }
  if (!shape->parent()) ForgetPositions();
  columns_.Forget(shape->slot_);
  freeSlots_.push_back(shape->slot_);
  const int id = shape->id();
  shapes_.erase(entry);
  readers_.ReaderGone(id, shapes_.size());
  drawing_.NoteStructure();
}

// Shapes that have gone leave gaps until somebody looks, so that many can go at the cost of one.
void DrawingPage::EnsureOrder() {
  EnsureShapes();
  if (orderKnown_ && !hasGaps_) return;
  Wholly([&] {
    if (orderKnown_) {
      while (!topLevel_.empty() && !topLevel_.back()) topLevel_.pop_back();
      indexesKnown_ = std::erase(topLevel_, nullptr) == 0 && indexesKnown_;
    } else {
      topLevel_.clear();
      for (const pugi::xml_node element : contents_->root().child("Shapes").children("Shape"))
        if (!IsDeleted(element)) topLevel_.push_back(shapes_.at(element.attribute("ID").as_int()).get());
      indexesKnown_ = false;
    }
    orderKnown_ = true;
    hasGaps_ = false;
  });
}

void DrawingPage::EnsureIndexes() {
  EnsureOrder();
  if (!indexesKnown_) CountIndexes();
}

// Gaps have a position, too.
void DrawingPage::CountIndexes() {
  indexesKnown_ = true;
  int index = 0;
  for (DrawingShape* shape : topLevel_) {
    ++index;
    if (shape) shape->index_ = index;
  }
}

const Sheet* DrawingPage::BaseOf(pugi::xml_node element, const DrawingShape* parent) const {
  if (const pugi::xml_attribute master = element.attribute("Master")) {
    const DrawingMaster* made = drawing_.FindMaster(master.as_int());
    return made ? made->TopShape() : nullptr;
  }
  const pugi::xml_attribute inner = element.attribute("MasterShape");
  for (; inner && parent; parent = parent->parent()) {
    if (parent->MasterId() < 0) continue;
    const DrawingMaster* made = drawing_.FindMaster(parent->MasterId());
    return made ? made->FindShape(inner.as_int()) : nullptr;
  }
  return nullptr;
}

ShapeNames::Claim DrawingPage::ClaimOf(const DrawingShape& shape) const {
  return {shape.id(), shape.StoredName(), shape.master() ? shape.master()->Name() : ""};
}

void DrawingPage::EnsureNames() {
  EnsureShapes();
  if (names_.known()) return;
  Wholly([&] {
    std::vector<ShapeNames::Claim> claims;
    claims.reserve(shapes_.size());
    for (const auto& [id, shape] : shapes_) claims.push_back(ClaimOf(*shape));
    names_.Learn(std::move(claims));
  });
}

const std::vector<DrawingShape*>& DrawingPage::InstancesOf(const Sheet& masterShape) {
  EnsureShapes();
  if (!instancesKnown_) {
    instances_.clear();
    for (const auto& [id, shape] : shapes_)
      if (shape->base()) instances_[shape->base()].push_back(shape.get());
    for (auto& [base, shapes] : instances_)
      std::sort(shapes.begin(), shapes.end(), [](const DrawingShape* a, const DrawingShape* b) { return a->id() < b->id(); });
    instancesKnown_ = true;
  }
  return instances_[&masterShape];
}

const PageReaders& DrawingPage::Readers() {
  EnsureShapes();
  if (!readers_.known())
    Wholly([&] {
      readers_.Begin();
      for (const auto& [id, shape] : shapes_) NoteFormulas(pugi::xml_node(shape->element()), +1);
    });
  return readers_;
}

std::vector<Symbol> DrawingPage::CalledAs(const Sheet& sheet) {
  if (&sheet == &sheet_) return {Symbol("ThePage")};
  const auto& shape = static_cast<const DrawingShape&>(sheet);
  std::vector<Symbol> names;
  if (const auto byNumber = Symbol::Known(NameById(shape.id()))) names.push_back(*byNumber);
  const std::string& name = NameOf(shape);
  if (const auto byName = NumberInName(name) ? std::nullopt : Symbol::Known(name)) names.push_back(*byName);
  return names;
}

void DrawingPage::ForgetAll() {
  shapesKnown_ = orderKnown_ = indexesKnown_ = connectsKnown_ = instancesKnown_ = hasGaps_ = false;
  shapes_.clear();
  topLevel_.clear();
  names_.Forget();
  readers_.Forget();
  connects_.clear();
  instances_.clear();
  columns_.Clear();
  freeSlots_.clear();
  slots_ = 0;
  tallies_.clear();
  drawing_.NoteStructure();
}

// -------------------------------------------------------------------------------------------------- properties in bulk

std::string DrawingPage::ListOfPositions(Symbol field) const {
  const CellAddress address{FindSectionByElement("Property"), RowKey::Named(field), Symbol("Value")};
  return sheet_.Exists(address) ? sheet_.Formula(address) : "";
}

std::optional<ListedTally::Count> DrawingPage::CountInListedShapes(Symbol list, Symbol field, const std::string& key) {
  EnsureOrder();
  return Wholly([&] { return tallies_.try_emplace({list, field}, list, field).first->second.CountOf(*this, key); });
}

// The property that a Cell or Row is of; all of the shape's, where more than one may be touched.
void DrawingPage::ForgetProperties(const DrawingShape& shape, pugi::xml_node node) {
  if (columns_.empty()) return;
  const pugi::xml_node row = IsNamed(node, "Cell") ? node.parent() : node;
  if (IsNamed(node, "Cell") && (!IsNamed(row, "Row") || std::string_view(row.parent().attribute("N").value()) != "Property"))
    return;
  if (IsNamed(row, "Row") && IsNamed(node, "Cell"))
    columns_.Forget(shape.slot_, Symbol(row.attribute("N").value()));
  else
    columns_.Forget(shape.slot_);
  for (auto& [key, tally] : tallies_) tally.ValueChanged(shape);
}

void DrawingPage::ForgetPositions() {
  for (auto& [key, tally] : tallies_) tally.PositionsChanged();
}

void DrawingPage::SetPageSheet(XmlNode element) {
  sheet_.SetElement(element);
  PageSheetChanged(true, true);
}

void DrawingPage::PageSheetChanged(bool rows, bool formulas) {
  if (rows) sheet_.ForgetRows();
  if (formulas) sheet_.ForgetFormulas();
  for (auto& [key, tally] : tallies_) tally.ListChanged();
}

// ------------------------------------------------------------------------------------------------ what edits have changed

DrawingShape* DrawingPage::ShapeAround(pugi::xml_node node) {
  const pugi::xml_node sheet = SheetAround(node);
  const auto found = IsNamed(sheet, "Shape") ? shapes_.find(sheet.attribute("ID").as_int()) : shapes_.end();
  return found == shapes_.end() ? nullptr : found->second.get();
}

// Those within the node, but not within shapes inside it.
void DrawingPage::NoteFormulas(pugi::xml_node node, int by) {
  if (!readers_.known()) return;
  const int reader = SheetAround(node).attribute("ID").as_int();
  VisitCells(node, [&](pugi::xml_node cell) {
    if (const std::string_view formula = OwnFormulaOf(cell); NamesSheet(formula)) readers_.Note(reader, formula, by);
  });
}

void DrawingPage::NoteReader(pugi::xml_node shape) {
  if (!readers_.ReaderIsBack(shape.attribute("ID").as_int())) NoteFormulas(shape, +1);
}

void DrawingPage::Inserted(pugi::xml_node node) {
  if (!shapesKnown_) return;
  Wholly([&] {
    if (IsNamed(node, "Shape")) {
      AddShapes(node, ShapeAround(node.parent()));
      NoteReader(node);
      for (const pugi::xml_node inner : InnerElements(node)) NoteReader(inner);
    } else if (IsNamed(node, "Connect")) {
      AddConnect(node);
    } else if (IsNamed(node, "Shapes") || IsNamed(node, "Connects")) {
      for (const pugi::xml_node child : node.children()) Inserted(child);
    } else if (DrawingShape* shape = ShapeAround(node)) {
      NoteFormulas(node, +1);
      ForgetProperties(*shape, node);
      if (!IsNamed(node, "Cell")) shape->ForgetRows();
      if (HasOwnFormulas(node)) shape->ForgetFormulas();
    }
  });
}

void DrawingPage::Removing(pugi::xml_node node) {
  if (!shapesKnown_) return;
  Wholly([&] {
    if (IsNamed(node, "Shape")) {
      RemoveShapes(node);
    } else if (IsNamed(node, "Connect")) {
      RemoveConnect(node);
    } else if (IsNamed(node, "Shapes") || IsNamed(node, "Connects")) {
      for (const pugi::xml_node child : node.children()) Removing(child);
    } else if (DrawingShape* shape = ShapeAround(node)) {
      NoteFormulas(node, -1);
      ForgetProperties(*shape, node);
      if (!IsNamed(node, "Cell")) {
        shape->ForgetRows();
        drawing_.NoteStructure();
      }
      if (HasOwnFormulas(node)) shape->ForgetFormulas();
    }
  });
}

void DrawingPage::Changing(pugi::xml_node node) {
  if (!shapesKnown_) return;
  Wholly([&] {
    if (IsNamed(node, "Connect")) return RemoveConnect(node);
    if (IsNamed(node, "Shape")) {
      if (const DrawingShape* shape = ShapeAround(node); shape && names_.known()) names_.Remove(ClaimOf(*shape));
      return;
    }
    if (IsNamed(node, "Cell")) formulaBefore_ = OwnFormulaOf(node);
  });
}

void DrawingPage::Changed(pugi::xml_node node) {
  if (!shapesKnown_) return;
  Wholly([&] {
    if (IsNamed(node, "Connect")) return AddConnect(node);
    if (IsNamed(node, "Shape")) {
      DrawingShape* shape = ShapeAround(node);
      // Made from another master, or from none, it is another shape.
      if (!shape || shape->base() != BaseOf(node, shape->parent())) return ForgetAll();
      if (names_.known()) names_.Add(ClaimOf(*shape));
      return;
    }
    const bool isCell = IsNamed(node, "Cell");
    const bool isAsBefore = isCell ? OwnFormulaOf(node) == formulaBefore_ : !IsNamed(node, "Row") && !IsNamed(node, "Section");
    if (isAsBefore && columns_.empty()) return;
    const DrawingShape* shape = ShapeAround(node);
    if (!shape) return;
    ForgetProperties(*shape, node);
    if (isAsBefore) return;
    shape->ForgetFormulas();
    if (!isCell) return shape->ForgetRows();
    readers_.Note(shape->id(), formulaBefore_, -1);
    readers_.Note(shape->id(), OwnFormulaOf(node), +1);
  });
}

void DrawingPage::MasterChanged() { ForgetAll(); }

// --------------------------------------------------------------------------------------------------------------- connects

void DrawingPage::EnsureConnects() {
  EnsureShapes();
  if (connectsKnown_ || !contents_) return;
  Wholly([&] {
    connectsKnown_ = true;
    for (const pugi::xml_node connect : contents_->root().child("Connects").children("Connect")) AddConnect(connect);
  });
}

void DrawingPage::AddConnect(pugi::xml_node connect) {
  if (!connectsKnown_) return;
  const int from = NumberOr(connect, "FromSheet"), to = NumberOr(connect, "ToSheet");
  for (const int id : {from, to}) drawing_.NoteShapeId(id_, id);
  connects_[from].push_back(connect.internal_object());
  if (to != from) connects_[to].push_back(connect.internal_object());
}

void DrawingPage::RemoveConnect(pugi::xml_node connect) {
  if (!connectsKnown_) return;
  for (const char* end : {"FromSheet", "ToSheet"}) std::erase(connects_[NumberOr(connect, end)], connect.internal_object());
}

std::vector<XmlNode> DrawingPage::ConnectsOf(int shapeId) {
  EnsureConnects();
  const auto found = connects_.find(shapeId);
  return found == connects_.end() ? std::vector<XmlNode>() : found->second;
}

std::vector<DrawingPage::GluedEnd> DrawingPage::GluedEnds() {
  std::vector<GluedEnd> ends;
  if (!contents_) return ends;
  for (const pugi::xml_node connect : contents_->root().child("Connects").children("Connect")) {
    const int from = NumberOr(connect, "FromSheet"), to = NumberOr(connect, "ToSheet");
    const std::string_view cell = connect.attribute("FromCell").value();
    const bool isBegin = cell.starts_with("Begin");
    if (FindShape(from) && FindShape(to) && (isBegin || cell.starts_with("End"))) ends.push_back({from, to, isBegin});
  }
  return ends;
}

void DrawingPage::KeepConnect(const DrawingShape& connector, const ConnectorEnd& end) {
  TreeEditor& editor = drawing_.editor();
  const auto target = GlueTargetOf(*this, connector, end);
  pugi::xml_node connect;
  for (const XmlNode known : ConnectsOf(connector.id())) {
    const pugi::xml_node node(known);
    if (!connect && NumberOr(node, "FromSheet") == connector.id() && NumberOr(node, "FromPart") == end.fromPart) connect = node;
  }
  if (!target) {
    if (connect) editor.Remove(*contents_, connect);
    return;
  }
  const std::pair<const char*, std::string> attributes[] = {
      {"FromSheet", std::to_string(connector.id())}, {"FromCell", end.x},      {"FromPart", std::to_string(end.fromPart)},
      {"ToSheet", std::to_string(target->shape)},    {"ToCell", target->cell}, {"ToPart", std::to_string(target->part)}};
  const auto put = [&](pugi::xml_node element) {
    for (const auto& [name, value] : attributes) SetAttribute(element, name, value);
  };
  const auto holds = [&](const auto& attribute) { return attribute.second == connect.attribute(attribute.first).value(); };
  if (!connect)
    editor.Insert(*contents_, ConnectsElement(), "Connect", {}, {}, put);
  else if (!std::all_of(std::begin(attributes), std::end(attributes), holds))
    editor.ChangeAttributes(*contents_, connect, put);
}

void DrawingPage::RenumberPoints(DrawingShape& moved, int position, int by) {
  const SectionInfo& points = *FindSectionByElement("Connection");
  const auto pointNumber = [&](const FormulaReference& reference) {
    const bool isPoint = reference.name && !reference.onOtherPage && reference.name->section == &points;
    return isPoint && FindSheet(reference.sheet) == &moved ? std::max(reference.name->position, 0) : 0;
  };
  std::set<int> readers;
  for (const Symbol name : CalledAs(moved))
    for (const int reader : Readers().ReadersOf(name)) readers.insert(reader);
  for (const int id : readers) {
    DrawingShape* reader = FindShape(id);
    if (!reader) continue;
    for (const ConnectorEnd& end : kConnectorEnds) {
      const auto address = ObjectCellAddress(end.x);
      const Formula* formula = reader->formulas().FormulaOf(address);
      const bool wasGlued =
          by < 0 && formula &&
          std::any_of(formula->references().begin(), formula->references().end(),
                      [&](const FormulaReference& reference) { return pointNumber(reference) == position + 1; });
      if (wasGlued) LoosenEnd(*reader, end);
    }
    Recalculation recalculation(drawing_, this);
    for (const Sheet::OwnFormula& own : reader->OwnFormulas()) {
      const std::string text(own.formula);
      const std::string renumbered = Formula(text).WithReferences([&](FormulaReference& reference) {
        const int number = pointNumber(reference);
        if (number <= position + (by < 0 ? 1 : 0)) return false;
        reference.cell.resize(reference.cell.find_last_not_of("0123456789") + 1);
        reference.cell += std::to_string(number + by);
        return true;
      });
      if (renumbered == text) continue;
      reader->SetFormula(drawing_.editor(), own.address, renumbered, FormulaScopeOfDrawing(drawing_, this, *reader, own.address));
      recalculation.Changed(*reader, own.address);
    }
    recalculation.Run();
    for (const ConnectorEnd& end : kConnectorEnds) KeepConnect(*reader, end);
  }
}

// Connects whose formulas say something else, as other programs leave them, go with their shapes too.
void DrawingPage::LoosenGlueTo(const std::set<int>& shapeIds) {
  for (const int id : shapeIds) {
    for (const XmlNode known : ConnectsOf(id)) {
      const pugi::xml_node connect(known);
      const int from = NumberOr(connect, "FromSheet");
      const ConnectorEnd* end = FindConnectorEnd(connect.attribute("FromCell").value());
      DrawingShape* connector = FindShape(from);
      if (connector && end && !shapeIds.contains(from)) LoosenEnd(*connector, *end);
      drawing_.editor().Remove(*contents_, connect);
    }
  }
}

// The end stays where it is: its cells keep their values.
void DrawingPage::LoosenEnd(DrawingShape& connector, const ConnectorEnd& end) {
  const pugi::xml_node element(connector.element());
  for (const char* name : {end.x, end.y, end.trigger})
    if (const pugi::xml_node cell = element.find_child_by_attribute("Cell", "N", name))
      drawing_.editor().RemoveAttribute(*contents_, cell, "F");
}

// -------------------------------------------------------------------------------------------------- shapes come and go

pugi::xml_node DrawingPage::ShapesElement() {
  if (!contents_) throw HostError(kHostNotAllowed, "The page " + InWords(Name()) + " is a stencil's and takes no shapes.");
  const pugi::xml_node root = contents_->root(), shapes = root.child("Shapes");
  return shapes ? shapes : drawing_.editor().Insert(*contents_, root, "Shapes", {}, root.first_child());
}

pugi::xml_node DrawingPage::ConnectsElement() {
  const pugi::xml_node root = contents_->root(), connects = root.child("Connects");
  return connects ? connects : drawing_.editor().Insert(*contents_, root, "Connects", {}, ShapesElement().next_sibling());
}

// A Connect that leads nowhere must not come to name a new shape, so its numbers count as taken.
int DrawingPage::TakeNewId() {
  EnsureConnects();
  const int highest = drawing_.HighestShapeId(id_);
  if (highest == std::numeric_limits<int>::max())
    throw HostError(kHostNotAllowed, "The page " + InWords(Name()) + " has no number left for a new shape.");
  drawing_.NoteShapeId(id_, highest + 1);
  return highest + 1;
}

namespace {

// An instance of a group lists every shape inside the group, each by its number in the master.
template <class TakeId>
void AppendInnerShapes(pugi::xml_node instance, pugi::xml_node original, const TakeId& takeId) {
  const pugi::xml_node inner = original.child("Shapes");
  if (!inner) return;
  pugi::xml_node shapes = instance.append_child("Shapes");
  for (const pugi::xml_node shape : inner.children("Shape")) {
    pugi::xml_node added = shapes.append_child("Shape");
    SetAttribute(added, "ID", std::to_string(takeId()));
    SetAttribute(added, "Type", shape.attribute("Type").as_string("Shape"));
    SetAttribute(added, "MasterShape", shape.attribute("ID").value());
    AppendInnerShapes(added, shape, takeId);
  }
}

// Where an instance of a master is first put: its pin, or with a connector both ends, as far apart as the master's.
void PutPlace(pugi::xml_node instance, const DrawingShape& original, double x, double y) {
  const pugi::xml_node before = instance.first_child();
  if (!original.IsOneDimensional()) {
    AppendCell(instance, before, "PinX", x);
    AppendCell(instance, before, "PinY", y);
    return;
  }
  const double right = x - NumberIn(original, "PinX").value_or(0), up = y - NumberIn(original, "PinY").value_or(0);
  for (const ConnectorEnd& end : kConnectorEnds) {
    AppendCell(instance, before, end.x, NumberIn(original, end.x).value_or(0) + right);
    AppendCell(instance, before, end.y, NumberIn(original, end.y).value_or(0) + up);
  }
}

}  // namespace

DrawingShape& DrawingPage::AddInstance(const DrawingMaster& master, double x, double y) {
  const UndoStep step(drawing_.log(), "Drop On Page");
  ShapesElement();
  EnsureMasterRelationship(master);
  EnsureNames();
  const int id = TakeNewId();
  const std::string name = names_.FreeName(master.Name(), id);
  const DrawingShape* original = master.TopShape();
  drawing_.editor().Insert(*contents_, ShapesElement(), "Shape",
                           {{"ID", std::to_string(id)},
                            {"NameU", name},
                            {"Name", name},
                            {"Type", original && original->Type() == kShapeTypeGroup ? "Group" : "Shape"},
                            {"Master", std::to_string(master.id())}},
                           {}, [&](pugi::xml_node instance) {
                             if (!original) return AppendCell(instance, {}, "PinX", x), AppendCell(instance, {}, "PinY", y);
                             AppendInnerShapes(instance, pugi::xml_node(original->element()), [this] { return TakeNewId(); });
                             PutPlace(instance, *original, x, y);
                           });
  DrawingShape& shape = *FindShape(id);
  if (original && original->IsOneDimensional()) {
    Recalculation recalculation(drawing_, this);
    for (const ConnectorEnd& end : kConnectorEnds)
      for (const char* moved : {end.x, end.y}) recalculation.Changed(shape, ObjectCellAddress(moved));
    recalculation.Run();
  }
  return shape;
}

std::vector<int> DrawingPage::AddCopies(const std::vector<Original>& originals) {
  const UndoStep step(drawing_.log(), "Paste");
  EnsureNames();
  std::vector<DrawingPage*> pages;
  for (const Original& original : originals)
    if (std::find(pages.begin(), pages.end(), original.page) == pages.end()) pages.push_back(original.page);
  std::unordered_map<DrawingPage*, NewIds> newIds;
  for (DrawingPage* page : pages) newIds[page] = TakeNewIds(originals, page);
  std::vector<int> copies;
  for (const auto& [page, id] : originals) {
    const NewIds& ids = newIds.at(page);
    AddCopy(*page->FindShape(id), *page, ids);
    copies.push_back(ids.at(id));
  }
  for (DrawingPage* page : pages) CopyGlue(*page, newIds.at(page));
  return copies;
}

// For the originals of that page, and for all shapes inside them.
DrawingPage::NewIds DrawingPage::TakeNewIds(const std::vector<Original>& originals, const DrawingPage* of) {
  NewIds ids;
  for (const auto& [page, id] : originals)
    if (page == of) ids.emplace(id, TakeNewId());
  for (const auto& [page, id] : originals)
    if (page == of)
      for (const pugi::xml_node inner : InnerElements(pugi::xml_node(page->FindShape(id)->element())))
        ids.emplace(inner.attribute("ID").as_int(), TakeNewId());
  return ids;
}

void DrawingPage::AddCopy(const DrawingShape& original, DrawingPage& from, const NewIds& newIds) {
  const DrawingMaster* master = drawing_.FindMaster(original.MasterId());
  if (master) EnsureMasterRelationship(*master);
  EnsureNames();
  const int id = newIds.at(original.id());
  const std::string name = names_.FreeName(master ? master->Name() : "Sheet", id);
  const auto renumber = [&](pugi::xml_node shape) {
    SetAttribute(shape, "ID", std::to_string(newIds.at(shape.attribute("ID").as_int())));
    VisitCells(shape, [&](pugi::xml_node cell) {
      const std::string_view formula = OwnFormulaOf(cell);
      if (!NamesSheet(formula)) return;
      if (const auto renumbered = from.Renumbered(formula, newIds))
        SetAttribute(cell, "F", *renumbered);
      else
        cell.remove_attribute("F");
    });
  };
  drawing_.editor().InsertCopy(*contents_, ShapesElement(), pugi::xml_node(original.element()), {}, [&](pugi::xml_node copy) {
    for (const pugi::xml_node inner : InnerElements(copy)) renumber(inner);
    renumber(copy);
    copy.remove_attribute("UniqueID");
    for (const char* attribute : {"NameU", "Name"}) {
      if (master)
        SetAttribute(copy, attribute, name);
      else
        copy.remove_attribute(attribute);
    }
    if (!master)
      for (const char* attribute : {"IsCustomNameU", "IsCustomName"}) copy.remove_attribute(attribute);
  });
}

// The formula with references to copied shapes given their new numbers; none when it also refers to a shape that was not copied.
std::optional<std::string> DrawingPage::Renumbered(std::string_view formula, const NewIds& newIds) {
  bool allCopied = true;
  std::string result = Formula(formula).WithReferences([&](FormulaReference& reference) {
    const DrawingShape* named = reference.onOtherPage ? nullptr : FindSheet(reference.sheet);
    const bool lost = !named && !reference.onOtherPage && NumberInName(reference.sheet);
    const auto renumbered = named ? newIds.find(named->id()) : newIds.end();
    const bool isCopied = renumbered != newIds.end();
    allCopied = allCopied && !lost && (isCopied || !named);
    if (isCopied) reference.sheet = NameById(renumbered->second);
    return isCopied;
  });
  return allCopied ? std::optional(std::move(result)) : std::nullopt;
}

// The glue of the originals that are connectors to others of them, for the copies.
void DrawingPage::CopyGlue(DrawingPage& from, const NewIds& newIds) {
  if (!from.contents_) return;
  std::vector<int> connectors;
  for (const auto& [original, copy] : newIds) connectors.push_back(original);
  std::sort(connectors.begin(), connectors.end());
  for (const int connector : connectors) {
    for (const XmlNode known : from.ConnectsOf(connector)) {
      const pugi::xml_node connect(known);
      if (NumberOr(connect, "FromSheet") != connector || !newIds.contains(NumberOr(connect, "ToSheet"))) continue;
      drawing_.editor().InsertCopy(*contents_, ConnectsElement(), connect, {}, [&](pugi::xml_node copy) {
        for (const char* end : {"FromSheet", "ToSheet"}) SetAttribute(copy, end, std::to_string(newIds.at(NumberOr(copy, end))));
      });
    }
  }
}

// A number is never there twice: the element goes first, and is copied from where it is kept for an undo.
void DrawingPage::MoveBefore(int shape, int before) {
  const UndoStep step(drawing_.log(), "Order");
  const DrawingShape* const moved = FindShape(shape);
  const DrawingShape* const next = FindShape(before);
  if (!moved || moved->parent() || (next && next->parent()) || moved == next) return;
  const pugi::xml_node element(moved->element()), place(next ? next->element() : nullptr);
  drawing_.editor().Remove(*contents_, element);
  drawing_.editor().InsertCopy(*contents_, ShapesElement(), element, place);
}

void DrawingPage::Remove(const std::vector<int>& shapeIds) {
  const UndoStep step(drawing_.log(), "Delete");
  EnsureNames();
  Readers();
  std::vector<const DrawingShape*> removed;
  std::set<int> going;
  for (const int id : shapeIds) {
    const DrawingShape* shape = FindShape(id);
    if (!shape || !going.insert(id).second) continue;
    removed.push_back(shape);
    // Shapes inside a deleted group go with it.
    for (const pugi::xml_node inner : InnerElements(pugi::xml_node(shape->element())))
      going.insert(inner.attribute("ID").as_int());
  }
  std::erase_if(removed, [&](const DrawingShape* shape) {
    for (const DrawingShape* group = shape->parent(); group; group = group->parent())
      if (going.contains(group->id())) return true;
    return false;
  });
  const bool othersHangOn = std::any_of(removed.begin(), removed.end(),
                                        [&](const DrawingShape* shape) { return names_.OthersHangOn(ClaimOf(*shape)); });
  const auto derived = othersHangOn ? names_.DerivedNames() : std::vector<std::pair<int, std::string>>();
  std::vector<XmlNode> elements;
  for (const DrawingShape* shape : removed) elements.push_back(shape->element());
  LoosenGlueTo(going);
  for (const XmlNode element : elements) drawing_.editor().Remove(*contents_, pugi::xml_node(element));
  KeepNames(derived);
  for (const int id : going) TellOfLoss(id);
}

// A name that hung on that of a shape which has gone is the shape's own from now on.
void DrawingPage::KeepNames(const std::vector<std::pair<int, std::string>>& names) {
  for (const auto& [id, name] : names) {
    DrawingShape* shape = FindShape(id);
    if (!shape || NameOf(*shape) == name) continue;
    drawing_.editor().ChangeAttributes(*contents_, pugi::xml_node(shape->element()), [&name = name](pugi::xml_node element) {
      for (const char* attribute : {"NameU", "Name"}) SetAttribute(element, attribute, name);
    });
  }
}

// Formulas that named a shape which has gone have lost their reference.
void DrawingPage::TellOfLoss(int shapeId) {
  const auto lost = Symbol::Known(NameById(shapeId));
  if (!lost) return;
  Recalculation recalculation(drawing_, this);
  for (const int id : Readers().ReadersOf(*lost)) {
    DrawingShape* reader = FindShape(id);
    if (!reader) continue;
    for (const Sheet::OwnFormula& own : reader->OwnFormulas()) {
      const Formula formula(own.formula);
      const auto names = [&](const FormulaReference& reference) {
        return !reference.onOtherPage && NumberInName(reference.sheet) == shapeId;
      };
      if (std::any_of(formula.references().begin(), formula.references().end(), names))
        recalculation.Outdated(*reader, own.address);
    }
  }
  recalculation.Run();
}

void DrawingPage::LetGoOf(const DrawingMaster& master) {
  EnsureNames();
  struct Instance {
    DrawingShape* shape;
    const Sheet* inherited;
    int group;  // the instance that it is or is inside of
  };
  std::vector<Instance> instances;
  std::unordered_map<int, NewIds> numbers;  // by group: a shape's number in the master, and on the page
  for (const auto& [id, shape] : shapes_) {
    const Sheet* inherited = shape->base();
    if (!inherited || &inherited->part() != &master.part()) continue;
    const DrawingShape* group = shape.get();
    while (group->MasterId() < 0) group = group->parent();
    instances.push_back({shape.get(), inherited, group->id()});
    numbers[group->id()][pugi::xml_node(inherited->element()).attribute("ID").as_int()] = id;
  }
  std::sort(instances.begin(), instances.end(),
            [](const Instance& a, const Instance& b) { return a.shape->id() < b.shape->id(); });
  // The shapes are other ones without their master, so what is needed of them is asked before the first is changed.
  struct Kept {
    XmlNode element, inherited;
    int group;
    std::string name;  // empty for a shape that has none of its own
  };
  std::vector<Kept> kept;
  for (const Instance& instance : instances)
    kept.push_back({instance.shape->element(), instance.inherited->element(), instance.group,
                    instance.shape->MasterId() >= 0 ? NameOf(*instance.shape) : ""});
  TreeEditor& editor = drawing_.editor();
  for (const Kept& shape : kept) {
    const pugi::xml_node element(shape.element);
    pugi::xml_document copy;
    const pugi::xml_node inherited = copy.append_copy(pugi::xml_node(shape.inherited));
    RenumberMasterFormulas(inherited, numbers.at(shape.group));
    CopyInherited(editor, *contents_, element, inherited);
    editor.ChangeAttributes(*contents_, element, [&](pugi::xml_node changed) {
      if (!shape.name.empty())
        for (const char* attribute : {"NameU", "Name"}) SetAttribute(changed, attribute, shape.name);
      for (const char* attribute : {"Master", "MasterShape"}) changed.remove_attribute(attribute);
    });
  }
}

// A page's part lists the masters of its shapes among its relationships.
void DrawingPage::EnsureMasterRelationship(const DrawingMaster& master) {
  if (!contents_) return;
  for (const Relationship& relationship : drawing_.package().RelationshipsOf(partName_))
    if (relationship.target == master.partName()) return;
  PackageEdits(drawing_.package(), drawing_.editor()).Relate(partName_, kMasterRelationship, master.partName());
}

}  // namespace vardo
