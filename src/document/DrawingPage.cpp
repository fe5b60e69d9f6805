#include "base/Errors.h"
#include "base/Numbers.h"
#include "document/Drawing.h"
#include "document/Glue.h"
#include "document/Inheritance.h"
#include "document/Recalculation.h"
#include "document/VisioXml.h"
#include "formula/FormulaReferences.h"

#include <algorithm>
#include <charconv>
#include <limits>
#include <optional>

namespace vardo {
namespace {

bool IsDeletedMarker(pugi::xml_node shape) { return std::string_view(shape.attribute("Del").value()) == "1"; }

std::string Attribute(pugi::xml_node node, const char* first, const char* second) {
  const pugi::xml_attribute attribute = node.attribute(first);
  return attribute ? attribute.value() : node.attribute(second).value();
}

int NumberOr(pugi::xml_node connect, const char* attribute) { return connect.attribute(attribute).as_int(-1); }

// The formula with references to copied shapes given their new numbers; none when it also refers to a shape that was not copied.
std::optional<std::string> Renumbered(std::string_view formula, const std::unordered_map<int, int>& newIds) {
  constexpr std::string_view kById = "Sheet.";
  bool allCopied = true;
  std::string result = RewriteReferences(formula, [&](FormulaReference& reference) {
    if (!reference.sheet.starts_with(kById) || reference.onOtherPage) return false;
    const auto renumbered = newIds.find(std::atoi(reference.sheet.c_str() + kById.size()));
    allCopied = allCopied && renumbered != newIds.end();
    if (renumbered != newIds.end()) reference.sheet = std::string(kById) + std::to_string(renumbered->second);
    return renumbered != newIds.end();
  });
  return allCopied ? std::optional(std::move(result)) : std::nullopt;
}

// The same for all formulas of an element that is in no part. One that also refers to a shape without a new number keeps only its
// value.
void RenumberFormulas(pugi::xml_node element, const std::unordered_map<int, int>& newIds) {
  for (const pugi::xpath_node& found : element.select_nodes(".//Cell[contains(@F, 'Sheet.')]")) {
    if (const auto formula = Renumbered(found.node().attribute("F").value(), newIds))
      found.node().attribute("F").set_value(formula->c_str());
    else
      found.node().remove_attribute("F");
  }
}

// The shapes inside a group, at any depth.
void AddInnerShapes(pugi::xml_node group, std::vector<pugi::xml_node>& found) {
  for (const pugi::xml_node shape : group.child("Shapes").children("Shape")) {
    if (!IsDeletedMarker(shape)) found.push_back(shape);
    AddInnerShapes(shape, found);
  }
}

std::vector<pugi::xml_node> InnerShapes(pugi::xml_node group) {
  std::vector<pugi::xml_node> shapes;
  AddInnerShapes(group, shapes);
  return shapes;
}

}  // namespace

DrawingPage::DrawingPage(Drawing& drawing, pugi::xml_node entry, std::string partName, XmlPart* contents)
    : drawing_(drawing), entry_(entry), id_(entry.attribute("ID").as_int()), partName_(std::move(partName)), contents_(contents) {
  sheet_ = std::make_unique<SheetOfPage>(drawing.package().Xml(drawing.pagesPart_), entry);
}

pugi::xml_node SheetOfPage::Insert(TreeEditor& editor, XmlPart& list, pugi::xml_node page) {
  const pugi::xml_node sheet = editor.InsertElement(list, page, "PageSheet", page.first_child());
  for (const char* style : {"LineStyle", "FillStyle", "TextStyle"}) editor.SetAttribute(list, sheet, style, "0");
  return sheet;
}

std::string DrawingPage::Name() const { return Attribute(entry_, "Name", "NameU"); }

void DrawingPage::SetName(std::string_view name) {
  for (const char* attribute : {"NameU", "Name"}) drawing_.editor().SetAttribute(sheet_->part(), entry_, attribute, name);
  for (const char* attribute : {"IsCustomNameU", "IsCustomName"})
    drawing_.editor().SetAttribute(sheet_->part(), entry_, attribute, "1");
}

int DrawingPage::ShapeCount() {
  EnsureShapes();
  return static_cast<int>(topLevel_.size());
}

DrawingShape& DrawingPage::ShapeAt(int index) {
  EnsureShapes();
  return *topLevel_[static_cast<size_t>(index - 1)];
}

DrawingShape* DrawingPage::FindShape(int id) {
  EnsureShapes();
  const auto found = shapes_.find(id);
  return found == shapes_.end() ? nullptr : found->second.shape.get();
}

DrawingShape* DrawingPage::FindShape(std::string_view name) {
  EnsureNames();
  const auto found = idsByName_.find(std::string(name));
  return found == idsByName_.end() ? nullptr : FindShape(found->second);
}

DrawingShape* DrawingPage::FindSheet(std::string_view name) {
  constexpr std::string_view kById = "Sheet.";
  const std::string_view number = name.substr(0, kById.size()) == kById ? name.substr(kById.size()) : std::string_view();
  int shapeId = 0;
  const auto [end, error] = std::from_chars(number.data(), number.data() + number.size(), shapeId);
  if (!number.empty() && error == std::errc() && end == number.data() + number.size()) return FindShape(shapeId);
  return name.empty() ? nullptr : FindShape(name);
}

const std::vector<int>& DrawingPage::ReadersOf(int shapeId) {
  EnsureReaders();
  return readers_[shapeId];
}

void DrawingPage::EnsureReaders() {
  EnsureShapes();
  if (readersKnown_) return;
  readersKnown_ = true;
  for (const auto& [id, entry] : shapes_) NoteReferences(*entry.shape);
}

void DrawingPage::NoteReferences(const DrawingShape& reader) {
  if (!readersKnown_) return;
  for (const Sheet::OwnFormula& own : reader.OwnFormulas()) {
    if (own.formula.find('!') == std::string_view::npos) continue;
    for (const FormulaReference& reference : ReferencesIn(own.formula)) {
      const DrawingShape* named = reference.onOtherPage ? nullptr : FindSheet(reference.sheet);
      if (!named && !NamesPageSheet(reference)) continue;
      std::vector<int>& readers = readers_[named ? named->id() : kPageSheet];
      if (std::find(readers.begin(), readers.end(), reader.id()) == readers.end()) readers.push_back(reader.id());
    }
  }
}

int DrawingPage::IndexOf(const DrawingShape& shape) {
  EnsureIndexes();
  return shapes_.at(shape.id()).index;
}

std::string DrawingPage::NameOf(const DrawingShape& shape) {
  EnsureNames();
  return names_.at(shape.id());
}

DrawingShape& DrawingPage::AddInstance(const DrawingMaster& master, double x, double y) {
  EnsureMasterRelationship(master);
  TreeEditor& editor = drawing_.editor();
  const int id = TakeNewId();
  const std::string name = FreeName(master.Name(), id);
  const pugi::xml_node element = editor.InsertElement(*contents_, ShapesElement(), "Shape");
  const auto set = [&](const char* attribute, std::string_view value) {
    editor.SetAttribute(*contents_, element, attribute, value);
  };
  set("ID", std::to_string(id));
  set("NameU", name);
  set("Name", name);
  set("Type", master.TopShape() && master.TopShape()->Type() == 2 ? "Group" : "Shape");
  set("Master", std::to_string(master.id()));
  if (master.TopShape()) InsertInnerShapes(element, master.TopShape()->element());
  const pugi::xml_node firstInner = element.first_child();
  const auto cell = [&](const char* cellName, double value) {
    const pugi::xml_node added = editor.InsertElement(*contents_, element, "Cell", firstInner);
    editor.SetAttribute(*contents_, added, "N", cellName);
    editor.SetAttribute(*contents_, added, "V", NumberText(value));
  };
  const DrawingShape* original = master.TopShape();
  const bool isConnector = original && original->IsOneDimensional();
  if (isConnector) {
    const double right = x - NumberIn(*original, "PinX").value_or(0), up = y - NumberIn(*original, "PinY").value_or(0);
    for (const ConnectorEnd& end : kConnectorEnds) {
      cell(end.x, NumberIn(*original, end.x).value_or(0) + right);
      cell(end.y, NumberIn(*original, end.y).value_or(0) + up);
    }
  } else {
    cell("PinX", x);
    cell("PinY", y);
  }
  DrawingShape& shape = Adopt(element, name);
  if (isConnector) {
    Recalculation recalculation(drawing_, this);
    for (const ConnectorEnd& end : kConnectorEnds)
      for (const char* moved : {end.x, end.y}) recalculation.Changed(shape, {nullptr, "", moved});
    recalculation.Run();
  }
  return shape;
}

// An instance of a group lists every shape inside the group, each by its number in the master.
void DrawingPage::InsertInnerShapes(pugi::xml_node instance, pugi::xml_node original) {
  const pugi::xml_node inner = original.child("Shapes");
  if (!inner) return;
  TreeEditor& editor = drawing_.editor();
  const pugi::xml_node shapes = editor.InsertElement(*contents_, instance, "Shapes");
  for (const pugi::xml_node shape : inner.children("Shape")) {
    const pugi::xml_node added = editor.InsertElement(*contents_, shapes, "Shape");
    editor.SetAttribute(*contents_, added, "ID", std::to_string(TakeNewId()));
    editor.SetAttribute(*contents_, added, "Type", shape.attribute("Type").as_string("Shape"));
    editor.SetAttribute(*contents_, added, "MasterShape", shape.attribute("ID").value());
    InsertInnerShapes(added, shape);
  }
}

DrawingShape& DrawingPage::AddCopy(const DrawingShape& original, const std::unordered_map<int, int>& newIds, int newId) {
  TreeEditor& editor = drawing_.editor();
  const DrawingMaster* master = drawing_.FindMaster(original.MasterId());
  if (master) EnsureMasterRelationship(*master);
  const std::string name = FreeName(master ? master->Name() : "Sheet", newId);
  const pugi::xml_node element = editor.InsertCopy(*contents_, ShapesElement(), original.element());
  editor.RemoveAttribute(*contents_, element, "UniqueID");
  editor.SetAttribute(*contents_, element, "ID", std::to_string(newId));
  if (master) {
    editor.SetAttribute(*contents_, element, "NameU", name);
    editor.SetAttribute(*contents_, element, "Name", name);
  } else {
    for (const char* attribute : {"NameU", "Name", "IsCustomNameU", "IsCustomName"})
      editor.RemoveAttribute(*contents_, element, attribute);
  }
  const std::vector<pugi::xml_node> inner = InnerShapes(element);
  std::unordered_map<int, int> ids;
  if (!inner.empty()) ids = newIds;
  for (const pugi::xml_node shape : inner) {
    const int innerId = TakeNewId();
    ids[shape.attribute("ID").as_int()] = innerId;
    editor.SetAttribute(*contents_, shape, "ID", std::to_string(innerId));
  }
  for (const pugi::xpath_node& found : element.select_nodes(".//Cell[@F]")) {
    if (const auto formula = Renumbered(found.node().attribute("F").value(), inner.empty() ? newIds : ids))
      editor.SetAttribute(*contents_, found.node(), "F", *formula);
    else
      editor.RemoveAttribute(*contents_, found.node(), "F");
  }
  return Adopt(element, name);
}

void DrawingPage::CopyGlue(DrawingPage& from, const std::vector<int>& originals, const std::unordered_map<int, int>& newIds) {
  TreeEditor& editor = drawing_.editor();
  for (const int connector : originals) {
    for (const pugi::xml_node connect : from.ConnectsOf(connector)) {
      if (NumberOr(connect, "FromSheet") != connector || !newIds.contains(NumberOr(connect, "ToSheet"))) continue;
      const pugi::xml_node copy = editor.InsertCopy(*contents_, ConnectsElement(), connect);
      for (const char* end : {"FromSheet", "ToSheet"})
        editor.SetAttribute(*contents_, copy, end, std::to_string(newIds.at(NumberOr(connect, end))));
      NoteConnect(copy);
    }
  }
}

int DrawingPage::TakeNewId() {
  EnsureShapes();
  int& highest = drawing_.highestIds_[id()];
  highest = std::max(highest, highestId_);
  if (highest == std::numeric_limits<int>::max())
    throw HostError(kHostNotAllowed, "The page " + Name() + " has no number left for a new shape.");
  return ++highest;
}

void DrawingPage::Remove(const std::vector<int>& shapeIds) {
  EnsureNames();
  EnsureReaders();
  std::vector<const DrawingShape*> removed;
  std::set<int> going;
  for (const int id : shapeIds) {
    const DrawingShape* shape = FindShape(id);
    if (!shape || !going.insert(id).second) continue;
    removed.push_back(shape);
    // Shapes inside a deleted group go with it.
    for (const pugi::xml_node inner : InnerShapes(shape->element())) going.insert(inner.attribute("ID").as_int());
  }
  LoosenGlueTo(going);
  for (const DrawingShape* shape : removed) drawing_.editor().Remove(*contents_, shape->element());

  const auto isGoing = [&](const DrawingShape* shape) { return going.contains(shape->id()); };
  const auto first = std::find_if(topLevel_.begin(), topLevel_.end(), isGoing);
  const auto left = std::remove_if(first, topLevel_.end(), isGoing);
  indexesKnown_ = indexesKnown_ && left == first;
  topLevel_.erase(left, topLevel_.end());
  for (const int id : going) {
    const auto name = names_.find(id);
    if (name == names_.end()) continue;
    const auto known = idsByName_.find(name->second);
    if (known != idsByName_.end() && known->second == id) idsByName_.erase(known);
    names_.erase(name);
    shapes_.erase(id);
  }
  for (const int id : going) {
    TellOfLoss(id);
    readers_.erase(id);
  }
}

// Formulas that named a shape which has gone have lost their reference.
void DrawingPage::TellOfLoss(int shapeId) {
  const std::string lost = "Sheet." + std::to_string(shapeId);
  Recalculation recalculation(drawing_, this);
  for (const int id : std::vector<int>(ReadersOf(shapeId))) {
    DrawingShape* reader = FindShape(id);
    if (!reader) continue;
    for (const Sheet::OwnFormula& own : reader->OwnFormulas())
      for (const FormulaReference& reference : ReferencesIn(own.formula))
        if (reference.sheet == lost && !reference.onOtherPage) recalculation.Outdated(*reader, own.address);
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
  std::unordered_map<int, std::unordered_map<int, int>> numbers;  // by group: a shape's number in the master, and on the page
  for (const auto& [id, entry] : shapes_) {
    const Sheet* inherited = entry.shape->base();
    if (!inherited || &inherited->part() != &master.part()) continue;
    const DrawingShape* group = entry.shape.get();
    while (group->MasterId() < 0) group = group->parent();
    instances.push_back({entry.shape.get(), inherited, group->id()});
    numbers[group->id()][inherited->element().attribute("ID").as_int()] = id;
  }
  TreeEditor& editor = drawing_.editor();
  for (const Instance& instance : instances) {
    const pugi::xml_node element = instance.shape->element();
    pugi::xml_document copy;
    const pugi::xml_node inherited = copy.append_copy(instance.inherited->element());
    RenumberFormulas(inherited, numbers.at(instance.group));
    CopyInherited(editor, *contents_, element, inherited);
    for (const char* name : {"NameU", "Name"})
      if (instance.shape->MasterId() >= 0) editor.SetAttribute(*contents_, element, name, NameOf(*instance.shape));
    for (const char* attribute : {"Master", "MasterShape"}) editor.RemoveAttribute(*contents_, element, attribute);
  }
}

void DrawingPage::EnsureShapes() {
  if (shapesKnown_) return;
  shapesKnown_ = true;
  if (!contents_) return;
  struct Pending {
    pugi::xml_node element;
    const DrawingShape* parent;
  };
  std::vector<Pending> pending;
  for (const pugi::xml_node element : contents_->root().child("Shapes").children("Shape")) pending.push_back({element, nullptr});
  for (size_t at = 0; at < pending.size(); ++at) {
    const DrawingShape* shape = AddView(pending[at].element, pending[at].parent);
    if (!shape) continue;
    for (const pugi::xml_node inner : pending[at].element.child("Shapes").children("Shape")) pending.push_back({inner, shape});
  }
}

void DrawingPage::EnsureIndexes() {
  EnsureShapes();
  if (indexesKnown_) return;
  indexesKnown_ = true;
  int index = 0;
  for (const DrawingShape* shape : topLevel_) shapes_.at(shape->id()).index = ++index;
}

// A file need not say the name of a shape: the first instance of a master has the master's, further ones its name, "." and the
// ID.
void DrawingPage::EnsureNames() {
  EnsureShapes();
  if (namesKnown_) return;
  namesKnown_ = true;
  std::vector<const DrawingShape*> shapes, nameless;
  for (const auto& [id, entry] : shapes_) shapes.push_back(entry.shape.get());
  std::sort(shapes.begin(), shapes.end(), [](const DrawingShape* a, const DrawingShape* b) { return a->id() < b->id(); });
  for (const DrawingShape* shape : shapes) {
    const std::string name = Attribute(shape->element(), "Name", "NameU");
    if (name.empty() || !idsByName_.emplace(name, shape->id()).second)
      nameless.push_back(shape);
    else
      names_[shape->id()] = name;
  }
  for (const DrawingShape* shape : nameless) {
    const DrawingMaster* master = shape->MasterId() < 0 ? nullptr : drawing_.FindMaster(shape->MasterId());
    const std::string name = master ? FreeName(master->Name(), shape->id()) : "Sheet." + std::to_string(shape->id());
    names_[shape->id()] = name;
    idsByName_.emplace(name, shape->id());
  }
}

DrawingShape* DrawingPage::AddView(pugi::xml_node element, const DrawingShape* parent) {
  if (IsDeletedMarker(element)) return nullptr;
  auto view = std::make_unique<DrawingShape>(*contents_, element, BaseOf(element, parent), parent);
  DrawingShape* shape = view.get();
  const auto [place, isNew] = shapes_.try_emplace(shape->id());
  if (!isNew) return nullptr;  // a second shape of one ID cannot be told from the first; its element stays as it is
  place->second.shape = std::move(view);
  highestId_ = std::max(highestId_, shape->id());
  if (!parent) topLevel_.push_back(shape);
  return shape;
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

pugi::xml_node DrawingPage::ShapesElement() {
  if (!contents_) throw HostError(kHostNotAllowed, "The page " + Name() + " is a stencil's and takes no shapes.");
  const pugi::xml_node shapes = contents_->root().child("Shapes");
  return shapes ? shapes
                : drawing_.editor().InsertElement(*contents_, contents_->root(), "Shapes", contents_->root().first_child());
}

DrawingShape& DrawingPage::Adopt(pugi::xml_node element, const std::string& name) {
  EnsureIndexes();
  EnsureNames();
  DrawingShape* shape = AddView(element, nullptr);
  shapes_.at(shape->id()).index = static_cast<int>(topLevel_.size());
  names_[shape->id()] = name;
  idsByName_[name] = shape->id();
  NoteReferences(*shape);
  AdoptInnerShapes(*shape);
  return *shape;
}

void DrawingPage::AdoptInnerShapes(const DrawingShape& group) {
  for (const pugi::xml_node inner : group.element().child("Shapes").children("Shape")) {
    const DrawingShape* shape = AddView(inner, &group);
    if (!shape) continue;
    names_[shape->id()] = "Sheet." + std::to_string(shape->id());
    AdoptInnerShapes(*shape);
  }
}

std::string DrawingPage::FreeName(std::string_view wanted, int id) {
  EnsureNames();
  const std::string name(wanted);
  return wanted != "Sheet" && !idsByName_.contains(name) ? name : name + "." + std::to_string(id);
}

pugi::xml_node DrawingPage::ConnectsElement() {
  const pugi::xml_node connects = contents_->root().child("Connects");
  return connects ? connects
                  : drawing_.editor().InsertElement(*contents_, contents_->root(), "Connects", ShapesElement().next_sibling());
}

void DrawingPage::EnsureConnects() {
  if (connectsKnown_) return;
  connectsKnown_ = true;
  for (const pugi::xml_node connect : contents_->root().child("Connects").children("Connect")) NoteConnect(connect);
}

void DrawingPage::NoteConnect(pugi::xml_node connect) {
  if (!connectsKnown_) return;
  const int from = NumberOr(connect, "FromSheet"), to = NumberOr(connect, "ToSheet");
  connects_[from].push_back(connect);
  if (to != from) connects_[to].push_back(connect);
}

std::vector<pugi::xml_node> DrawingPage::ConnectsOf(int shapeId) {
  EnsureConnects();
  std::vector<pugi::xml_node>& known = connects_[shapeId];
  const pugi::xml_node connects = contents_->root().child("Connects");
  std::erase_if(known, [&](pugi::xml_node connect) {
    const bool names = NumberOr(connect, "FromSheet") == shapeId || NumberOr(connect, "ToSheet") == shapeId;
    return connect.parent() != connects || !names;
  });
  return known;
}

void DrawingPage::KeepConnect(const DrawingShape& connector, const ConnectorEnd& end) {
  TreeEditor& editor = drawing_.editor();
  const auto target = GlueTargetOf(*this, connector, end);
  pugi::xml_node connect;
  for (const pugi::xml_node known : ConnectsOf(connector.id()))
    if (!connect && NumberOr(known, "FromSheet") == connector.id() && NumberOr(known, "FromPart") == end.fromPart)
      connect = known;
  if (!target) {
    if (connect) editor.Remove(*contents_, connect);
    return;
  }
  if (connect)
    std::erase(connects_[NumberOr(connect, "ToSheet")], connect);
  else
    connects_[connector.id()].push_back(connect = editor.InsertElement(*contents_, ConnectsElement(), "Connect"));
  const std::pair<const char*, std::string> attributes[] = {
      {"FromSheet", std::to_string(connector.id())}, {"FromCell", end.x},      {"FromPart", std::to_string(end.fromPart)},
      {"ToSheet", std::to_string(target->shape)},    {"ToCell", target->cell}, {"ToPart", std::to_string(target->part)}};
  for (const auto& [name, value] : attributes) editor.SetAttribute(*contents_, connect, name, value);
  if (target->shape != connector.id()) connects_[target->shape].push_back(connect);
}

void DrawingPage::RenumberPoints(DrawingShape& moved, int position, int by) {
  const SectionInfo& points = *FindSectionByElement("Connection");
  const auto pointNumber = [&](const FormulaReference& reference) {
    const auto name =
        FindSheet(reference.sheet) == &moved && !reference.onOtherPage ? ParseCellName(reference.cell) : std::nullopt;
    return name && name->section == &points && name->byNumber ? std::atoi(name->row.c_str()) : 0;
  };
  for (const int id : std::vector<int>(ReadersOf(moved.id()))) {
    DrawingShape* reader = FindShape(id);
    if (!reader) continue;
    for (const ConnectorEnd& end : kConnectorEnds)
      for (const FormulaReference& reference :
           ReferencesIn(reader->element().find_child_by_attribute("Cell", "N", end.x).attribute("F").value()))
        if (by < 0 && pointNumber(reference) == position + 1) LoosenEnd(*reader, end);
    Recalculation recalculation(drawing_, this);
    for (const Sheet::OwnFormula& own : reader->OwnFormulas()) {
      const std::string formula = RewriteReferences(own.formula, [&](FormulaReference& reference) {
        const int number = pointNumber(reference);
        if (number <= position + (by < 0 ? 1 : 0)) return false;
        reference.cell.resize(reference.cell.find_last_not_of("0123456789") + 1);
        reference.cell += std::to_string(number + by);
        return true;
      });
      if (formula == own.formula) continue;
      reader->SetFormula(drawing_.editor(), own.address, formula, drawing_.ScopeFor(this, *reader, own.address));
      recalculation.Changed(*reader, own.address);
    }
    recalculation.Run();
    for (const ConnectorEnd& end : kConnectorEnds) KeepConnect(*reader, end);
  }
}

// Connects whose formulas say something else, as other programs leave them, go with their shapes too.
void DrawingPage::LoosenGlueTo(const std::set<int>& shapeIds) {
  for (const int id : shapeIds) {
    for (const pugi::xml_node connect : ConnectsOf(id)) {
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
  for (const char* name : {end.x, end.y, end.trigger})
    drawing_.editor().RemoveAttribute(*contents_, connector.element().find_child_by_attribute("Cell", "N", name), "F");
}

// A page's part lists the masters of its shapes among its relationships.
void DrawingPage::EnsureMasterRelationship(const DrawingMaster& master) {
  Package& package = drawing_.package();
  for (const Relationship& relationship : package.RelationshipsOf(partName_))
    if (relationship.target == master.partName()) return;
  const std::string id = package.AddRelationship(partName_, kMasterRelationship, master.partName());
  drawing_.journal().Record([&package, part = partName_, id] { package.RemoveRelationship(part, id); },
                            [&package, part = partName_, target = master.partName(), id] {
                              package.AddRelationship(part, kMasterRelationship, target, id);
                            });
}

}  // namespace vardo
