#include "document/Sheet.h"

#include "base/Errors.h"
#include "base/Numbers.h"
#include "base/Text.h"
#include "document/CellText.h"
#include "document/Elements.h"
#include "document/FormulaIndex.h"
#include "document/TreeEditor.h"

#include <pugixml.hpp>

#include <algorithm>
#include <cmath>

namespace vardo {
namespace {

// Beyond so many rows they are found by their hash.
constexpr size_t kFewRows = 24;

// The attribute mostly comes first.
std::string_view NameOfCell(pugi::xml_node cell) {
  const pugi::xml_attribute first = cell.first_attribute();
  return first.name() == std::string_view("N") ? first.value() : cell.attribute("N").value();
}

pugi::xml_node CellIn(pugi::xml_node parent, std::string_view name) {
  for (pugi::xml_node cell = parent.first_child(); cell; cell = cell.next_sibling()) {
    if (!IsNamed(cell, "Cell")) continue;
    if (EqualAsciiIgnoringCase(NameOfCell(cell), name)) return cell;
  }
  return {};
}

const ColumnInfo* ColumnOf(const CellAddress& address) {
  const std::string_view name = address.cell.text();
  for (const ColumnInfo& column : address.section->columns)
    if (column.name == name) return &column;
  return nullptr;
}

// Small differences are the rounding of others, not changes.
bool SameValue(const CellValue& a, const CellValue& b) {
  const auto *x = std::get_if<double>(&a), *y = std::get_if<double>(&b);
  return x && y ? std::abs(*x - *y) <= 1e-9 * std::max(1.0, std::abs(*y)) : a == b;
}

bool IsSection(pugi::xml_node element, const SectionInfo& section) {
  return section.element == element.attribute("N").value() &&
         (section.index < 0 || section.index == element.attribute("IX").as_int());
}

// What a new section stands before: Geometry is last among the sections, in the order of IX, and other things are behind the
// sections.
pugi::xml_node PlaceOfSection(pugi::xml_node sheet, const SectionInfo& section) {
  for (const pugi::xml_node child : sheet.children()) {
    const std::string_view name = child.name();
    const bool isGeometry = name == "Section" && std::string_view(child.attribute("N").value()) == "Geometry";
    if (isGeometry && child.attribute("IX").as_int() > section.index) return child;
    if (child.type() == pugi::node_element && name != "Cell" && name != "Section" && name != "Trigger") return child;
  }
  return {};
}

pugi::xml_node FirstBehindCells(pugi::xml_node parent) {
  for (const pugi::xml_node child : parent.children())
    if (child.type() == pugi::node_element && !IsNamed(child, "Cell")) return child;
  return {};
}

// Every cell that a row of the section has.
void FillRow(const SectionInfo& section, pugi::xml_node row) {
  if (!section.rowType.empty()) SetAttribute(row, "T", section.rowType);
  for (const ColumnInfo& column : section.columns) {
    pugi::xml_node cell = row.append_child("Cell");
    SetAttribute(cell, "N", column.name);
    SetAttribute(cell, "V", column.value);
    const bool noValueYet = column.name == section.shortName || column.name == "DataLinked";
    if (section.rowsHaveNames && noValueYet) SetAttribute(cell, "F", kNoFormula);
  }
}

bool IsRowName(std::string_view name) {
  return !name.empty() && std::all_of(name.begin(), name.end(), [](char c) {
    return IsAsciiLetter(c) || IsAsciiDigit(c) || c == '_' || static_cast<unsigned char>(c) >= 0x80;
  });
}

}  // namespace

bool IsTextCell(const CellAddress& address) {
  if (!address.section) return false;
  const ColumnInfo* column = ColumnOf(address);
  return column && column->isText;
}

std::string_view DefaultValue(const CellAddress& address) {
  if (!address.section) {
    const ObjectCell* cell = FindObjectCell(address.cell.text());
    return cell ? cell->value : std::string_view();
  }
  const ColumnInfo* column = ColumnOf(address);
  return column ? column->value : std::string_view();
}

const SectionInfo* SectionOfElement(pugi::xml_node section) {
  const std::string_view name = section.attribute("N").value();
  return name == "Geometry" ? FindGeometry(section.attribute("IX").as_int()) : FindSectionByElement(name);
}

RowKey KeyOfRow(const SectionInfo& section, pugi::xml_node row) {
  const pugi::xml_attribute name = row.attribute("N");
  if (name || section.rowsHaveNames) return RowKey::Named(Symbol(name.value()));
  return RowKey::Numbered(row.attribute("IX").as_int());
}

Sheet::Sheet(XmlPart& part, XmlNode element, const Sheet* base) : part_(&part), element_(element), base_(base) {}
Sheet::~Sheet() = default;

void Sheet::SetElement(XmlNode element) {
  element_ = element;
  ForgetRows();
  ForgetFormulas();
}

// -------------------------------------------------------------------------------------------------------------- finding

std::optional<CellAddress> Sheet::Find(std::string_view cellName, bool localOnly) const {
  const auto name = ParseCellName(cellName);
  return name ? Find(*name, localOnly) : std::nullopt;
}

std::optional<CellAddress> Sheet::Find(const ParsedCellName& name, bool localOnly) const {
  CellAddress address{name.section, RowKey::Named(name.row), name.cell};
  if (!name.section) {
    address.row = {};
    if (localOnly ? LocalCell(address) != nullptr : Exists(address)) return address;
    return std::nullopt;
  }
  if (name.position != 0) {
    const std::vector<Row>& rows = Rows(*name.section);
    if (name.position < 1 || static_cast<size_t>(name.position) > rows.size()) return std::nullopt;
    address.row = rows[static_cast<size_t>(name.position) - 1].key;
  }
  if (!RowExists(*address.section, address.row, localOnly)) return std::nullopt;
  if (!ColumnOf(address) && !NearestCell(address)) return std::nullopt;
  if (localOnly && !CellIsOwn(address)) return std::nullopt;
  return address;
}

// A row that only overrides an inherited one owns just the cells that it writes.
bool Sheet::CellIsOwn(const CellAddress& address) const {
  return LocalCell(address) || !base_ || !base_->RowExists(*address.section, address.row, false);
}

std::optional<CellAddress> Sheet::Find(short sectionNumber, short row, short column) const {
  if (const SectionInfo* section = FindSection(sectionNumber)) {
    const std::vector<Row>& rows = Rows(*section);
    if (row < 0 || static_cast<size_t>(row) >= rows.size()) return std::nullopt;
    for (const ColumnInfo& info : section->columns)
      if (info.column == column) return CellAddress{section, rows[static_cast<size_t>(row)].key, Symbol(info.name)};
    return std::nullopt;
  }
  const ObjectCell* cell = FindObjectCell(row, column);
  if (!cell) return std::nullopt;
  const CellAddress address = ObjectCellAddress(cell->name);
  return Exists(address) ? std::optional(address) : std::nullopt;
}

bool Sheet::Exists(const CellAddress& address) const {
  if (address.section) return RowExists(*address.section, address.row, false);
  const ObjectCell* known = FindObjectCell(address.cell.text());
  if (known && (!IsOneDimensionalRow(known->row) || IsOneDimensional())) return true;
  return NearestCell(address) != nullptr;
}

std::string Sheet::Formula(const CellAddress& address) const {
  const bool isText = IsTextCell(address);
  for (const Sheet* sheet = this; sheet; sheet = sheet->base_)
    if (const XmlNode cell = sheet->LocalCell(address))
      if (auto formula = FormulaText(pugi::xml_node(cell), isText)) return *std::move(formula);
  return isText ? QuoteText("") : std::string(DefaultValue(address));
}

CellValue Sheet::Value(const CellAddress& address) const {
  if (const XmlNode cell = NearestCell(address)) return StoredValue(pugi::xml_node(cell), IsTextCell(address));
  const std::string_view value = DefaultValue(address);
  if (const auto number = ParseNumber(value)) return *number;
  return std::string(value);
}

bool Sheet::InheritsFormula(const CellAddress& address) const {
  const XmlNode own = LocalCell(address);
  return !own || FormulaIsInherited(pugi::xml_node(own));
}

std::vector<Sheet::OwnFormula> Sheet::OwnFormulas() const {
  std::vector<OwnFormula> formulas;
  const auto collect = [&](const SectionInfo* section, RowKey row, pugi::xml_node parent) {
    for (const pugi::xml_node cell : parent.children("Cell")) {
      const std::string_view formula = OwnFormulaOf(cell);
      if (!formula.empty()) formulas.push_back({{section, row, Symbol(cell.attribute("N").value())}, formula});
    }
  };
  const pugi::xml_node element(element_);
  collect(nullptr, {}, element);
  for (const pugi::xml_node section : element.children("Section")) {
    const SectionInfo* info = SectionOfElement(section);
    if (!info) continue;
    for (const pugi::xml_node row : section.children("Row")) collect(info, KeyOfRow(*info, row), row);
  }
  return formulas;
}

const FormulaIndex& Sheet::formulas() const {
  if (!formulas_) formulas_ = std::make_unique<FormulaIndex>(*this);
  return *formulas_;
}

void Sheet::ForgetFormulas() const { formulas_.reset(); }

// ----------------------------------------------------------------------------------------------------------------- rows

Sheet::RowIndex& Sheet::Index() const {
  if (rows_) return *rows_;
  auto rows = std::make_unique<RowIndex>();
  for (const pugi::xml_node element : pugi::xml_node(element_).children("Section")) {
    const SectionInfo* section = SectionOfElement(element);
    if (!section || SectionElement(*section) != element.internal_object()) continue;
    for (const pugi::xml_node row : element.children("Row"))
      rows->own.push_back({section, KeyOfRow(*section, row), row.internal_object(), IsDeleted(row)});
  }
  if (rows->own.size() > kFewRows)
    for (size_t at = 0; at < rows->own.size(); ++at)
      rows->places.emplace(CellAddress{rows->own[at].section, rows->own[at].key, {}}, at);
  rows_ = std::move(rows);
  return *rows_;
}

const Sheet::OwnRow* Sheet::FindOwnRow(const SectionInfo& section, RowKey key) const {
  const RowIndex& index = Index();
  if (!index.places.empty()) {
    const auto found = index.places.find(CellAddress{&section, key, {}});
    return found == index.places.end() ? nullptr : &index.own[found->second];
  }
  for (const OwnRow& own : index.own)
    if (own.key == key && own.section == &section) return &own;
  return nullptr;
}

const std::vector<Sheet::Row>& Sheet::Rows(const SectionInfo& section) const {
  RowIndex& index = Index();
  for (const auto& [known, rows] : index.all)
    if (known == &section) return rows;
  return index.all.emplace_back(&section, GatherRows(section)).second;
}

std::vector<Sheet::Row> Sheet::GatherRows(const SectionInfo& section) const {
  std::vector<Row> rows;
  if (base_) {
    rows = base_->Rows(section);
    for (Row& row : rows) row = {row.key, nullptr, row.local ? row.local : row.inherited};
  }
  const size_t inherited = rows.size();
  const auto twin = [&](RowKey key) {
    return std::find_if(rows.begin(), rows.begin() + static_cast<ptrdiff_t>(inherited),
                        [&](const Row& row) { return row.key == key; });
  };
  const auto none = [&] { return rows.begin() + static_cast<ptrdiff_t>(inherited); };
  std::vector<RowKey> deleted;
  for (const OwnRow& own : Index().own) {
    if (own.section != &section || FindOwnRow(section, own.key) != &own) continue;
    const auto same = twin(own.key);
    if (own.isDeleted)
      deleted.push_back(own.key);
    else if (same != none())
      same->local = own.row;
    else
      rows.push_back({own.key, own.row, nullptr});
  }
  std::erase_if(rows, [&](const Row& row) { return std::find(deleted.begin(), deleted.end(), row.key) != deleted.end(); });
  if (!section.rowsHaveNames)
    std::stable_sort(rows.begin(), rows.end(), [](const Row& a, const Row& b) { return a.key.ix() < b.key.ix(); });
  return rows;
}

std::optional<size_t> Sheet::PositionOf(const CellAddress& address) const {
  const std::vector<Row>& rows = Rows(*address.section);
  auto at = rows.begin();
  if (!address.section->rowsHaveNames)
    at = std::lower_bound(rows.begin(), rows.end(), address.row.ix(), [](const Row& row, int ix) { return row.key.ix() < ix; });
  at = std::find_if(at, rows.end(), [&](const Row& row) { return row.key == address.row; });
  return at == rows.end() ? std::nullopt : std::optional(static_cast<size_t>(at - rows.begin()));
}

std::string Sheet::RowText(const SectionInfo& section, RowKey key) const {
  if (!key.IsNamed()) return key.Text();
  for (const Sheet* sheet = this; sheet; sheet = sheet->base_)
    if (const OwnRow* own = sheet->FindOwnRow(section, key)) return pugi::xml_node(own->row).attribute("N").value();
  return key.Text();
}

bool Sheet::HasSection(const SectionInfo& section) const {
  return SectionElement(section) || (base_ && base_->HasSection(section));
}

bool Sheet::IsOneDimensional() const {
  return CellIn(pugi::xml_node(element_), "BeginX") || (base_ && base_->IsOneDimensional());
}

XmlNode Sheet::FindChild(const char* name) const {
  const pugi::xml_node own = pugi::xml_node(element_).child(name);
  return own || !base_ ? own.internal_object() : base_->FindChild(name);
}

XmlNode Sheet::SectionElement(const SectionInfo& section) const {
  for (const pugi::xml_node child : pugi::xml_node(element_).children("Section"))
    if (IsSection(child, section)) return child.internal_object();
  return nullptr;
}

XmlNode Sheet::LocalCell(const CellAddress& address) const {
  if (!address.section) return CellIn(pugi::xml_node(element_), address.cell.text()).internal_object();
  const OwnRow* own = FindOwnRow(*address.section, address.row);
  return !own || own->isDeleted ? nullptr : CellIn(pugi::xml_node(own->row), address.cell.text()).internal_object();
}

XmlNode Sheet::NearestCell(const CellAddress& address) const {
  if (const XmlNode own = LocalCell(address)) return own;
  const OwnRow* row = address.section ? FindOwnRow(*address.section, address.row) : nullptr;
  return base_ && !(row && row->isDeleted) ? base_->NearestCell(address) : nullptr;
}

bool Sheet::RowExists(const SectionInfo& section, RowKey key, bool localOnly) const {
  if (const OwnRow* own = FindOwnRow(section, key)) return !own->isDeleted;
  return !localOnly && base_ && base_->RowExists(section, key, false);
}

// -------------------------------------------------------------------------------------------------------------- writing

void Sheet::SetFormula(TreeEditor& editor, const CellAddress& address, std::string_view formula, const FormulaScope& scope) {
  const pugi::xml_node cell = EnsureCell(editor, address);
  const auto evaluate = [&] {
    Evaluation evaluation = vardo::Formula(formula).Evaluate(scope);
    // A text whose inner quotes are not doubled is no formula the host could evaluate, yet its text is plain to see.
    if (!evaluation.value && formula.size() >= 2 && formula.front() == '"' && formula.back() == '"')
      evaluation = {std::string(formula.substr(1, formula.size() - 2))};
    return evaluation;
  };
  WriteFormula(editor, *part_, cell, formula, evaluate, IsTextCell(address));
}

bool Sheet::StoreEvaluation(TreeEditor& editor, const CellAddress& address, const Evaluation& evaluation) {
  const pugi::xml_node nearest(NearestCell(address));
  const std::string_view error = nearest.attribute("E").value();
  const bool sameValue = !evaluation.value || SameValue(Value(address), *evaluation.value);
  if (sameValue && error == evaluation.error) return false;
  const bool inherits = InheritsFormula(address);
  const pugi::xml_node cell = EnsureCell(editor, address);
  if (inherits) editor.SetAttribute(*part_, cell, "F", kInheritedFormula);
  if (evaluation.value) WriteValue(editor, *part_, cell, *evaluation.value, IsTextCell(address));
  if (evaluation.error.empty())
    editor.RemoveAttribute(*part_, cell, "E");
  else
    editor.SetAttribute(*part_, cell, "E", evaluation.error);
  return !sameValue;
}

void Sheet::AddSection(TreeEditor& editor, const SectionInfo& section) {
  if (HasSection(section)) throw HostError(kHostNotAllowed, "The section " + std::string(section.element) + " exists already.");
  EnsureSection(editor, section);
}

short Sheet::AddRow(TreeEditor& editor, const SectionInfo& section, short position) {
  const std::vector<Row> rows = Rows(section);
  const auto count = static_cast<short>(rows.size());
  if (section.rowsHaveNames) {
    for (int number = count + 1;; ++number) {
      const std::string name = "Row_" + std::to_string(number);
      if (!RowExists(section, RowKey::Named(Symbol(name)), false)) return AddNamedRow(editor, section, name);
    }
  }
  // Rows that others inherit cannot move, so a row before one of them goes to the end.
  const bool canMove = position >= 0 && position < count && std::all_of(rows.begin() + position, rows.end(), [](const Row& row) {
                         return row.local && !row.inherited;
                       });
  const int ix = canMove ? rows[static_cast<size_t>(position)].key.ix() : (rows.empty() ? 0 : rows.back().key.ix() + 1);
  if (canMove)
    for (auto row = rows.rbegin(); row != rows.rend() - position; ++row)
      editor.SetAttribute(*part_, pugi::xml_node(row->local), "IX", std::to_string(row->key.ix() + 1));
  InsertRow(editor, section, std::to_string(ix), true);
  return canMove ? position : count;
}

short Sheet::AddNamedRow(TreeEditor& editor, const SectionInfo& section, std::string_view name) {
  if (!IsRowName(name)) throw HostError(kHostNotAllowed, "\"" + InWords(name) + "\" is no name for a row.");
  const RowKey key = RowKey::Named(Symbol(name));
  if (RowExists(section, key, false)) throw HostError(kHostNotAllowed, "The row " + InWords(name) + " exists already.");
  InsertRow(editor, section, name, true);
  // The last one, unless it is an inherited row that had been deleted: that comes back in its old place.
  return static_cast<short>(PositionOf({&section, key, {}}).value());
}

void Sheet::DeleteRow(TreeEditor& editor, const SectionInfo& section, short position) {
  const std::vector<Row> rows = Rows(section);
  if (position < 0 || static_cast<size_t>(position) >= rows.size()) return;
  const Row& row = rows[static_cast<size_t>(position)];
  const std::string text = RowText(section, row.key);
  if (row.local) editor.Remove(*part_, pugi::xml_node(row.local));
  if (row.inherited) {
    InsertRow(editor, section, text, false, true);
    return;
  }
  // An empty section says nothing, and there are readers that take what follows it for its contents.
  const pugi::xml_node left(SectionElement(section));
  if (left && !left.first_child()) editor.Remove(*part_, left);
  if (section.rowsHaveNames) return;
  // Local rows are numbered without gaps.
  for (size_t behind = static_cast<size_t>(position) + 1; behind < rows.size(); ++behind)
    if (rows[behind].local && !rows[behind].inherited && !rows[behind].key.IsNamed())
      editor.SetAttribute(*part_, pugi::xml_node(rows[behind].local), "IX", std::to_string(rows[behind].key.ix() - 1));
}

void Sheet::EnsureElement(TreeEditor& editor) {
  if (!element_) MakeElement(editor);
}

pugi::xml_node Sheet::EnsureSection(TreeEditor& editor, const SectionInfo& section) {
  if (const XmlNode own = SectionElement(section)) return pugi::xml_node(own);
  EnsureElement(editor);
  const pugi::xml_node sheet(element_);
  const std::string name(section.element), index = std::to_string(section.index);
  return editor.Insert(*part_, sheet, "Section", {{"N", name}}, PlaceOfSection(sheet, section), [&](pugi::xml_node added) {
    if (section.index >= 0) added.append_attribute("IX").set_value(index.c_str());
  });
}

// key: its name or IX. full: with every cell that a row of the section has. deleted: a mark that the inherited row is gone.
pugi::xml_node Sheet::InsertRow(TreeEditor& editor, const SectionInfo& section, std::string_view key, bool full, bool deleted) {
  const pugi::xml_node parent = EnsureSection(editor, section);
  const int ix = section.rowsHaveNames ? 0 : ParseInteger(key).value_or(0);
  const RowKey rowKey = section.rowsHaveNames || !ParseInteger(key) ? RowKey::Named(Symbol(key)) : RowKey::Numbered(ix);
  if (const OwnRow* marker = FindOwnRow(section, rowKey)) editor.Remove(*part_, pugi::xml_node(marker->row));
  pugi::xml_node before;
  if (!section.rowsHaveNames)
    for (const pugi::xml_node row : parent.children("Row"))
      if (!before && row.attribute("IX").as_int() > ix) before = row;
  // A step of a path says what it is also where it only overrides the master's.
  const OwnRow* overridden = section.index >= 0 && base_ ? base_->FindOwnRow(section, rowKey) : nullptr;
  return editor.Insert(*part_, parent, "Row", {}, before, [&](pugi::xml_node row) {
    if (overridden) row.append_attribute("T").set_value(pugi::xml_node(overridden->row).attribute("T").value());
    row.append_attribute(rowKey.IsNamed() ? "N" : "IX").set_value(std::string(key).c_str());
    if (deleted) row.append_attribute("Del").set_value("1");
    if (full) FillRow(section, row);
  });
}

pugi::xml_node Sheet::EnsureRow(TreeEditor& editor, const CellAddress& address) {
  if (const OwnRow* own = FindOwnRow(*address.section, address.row)) return pugi::xml_node(own->row);
  // A local row that overrides an inherited one bears the name as the master spells it.
  return InsertRow(editor, *address.section, RowText(*address.section, address.row), false);
}

pugi::xml_node Sheet::EnsureCell(TreeEditor& editor, const CellAddress& address) {
  if (const XmlNode own = LocalCell(address)) return pugi::xml_node(own);
  if (!Exists(address)) throw HostError(kHostNoSuchCell, "The cell " + InWords(address.cell.text()) + " does not exist.");
  const pugi::xml_node inherited(NearestCell(address));
  if (!address.section) EnsureElement(editor);
  const pugi::xml_node parent = address.section ? EnsureRow(editor, address) : pugi::xml_node(element_);
  if (inherited) return editor.InsertCopy(*part_, parent, inherited, FirstBehindCells(parent));
  return editor.Insert(*part_, parent, "Cell", {{"N", address.cell.text()}, {"V", DefaultValue(address)}},
                       FirstBehindCells(parent));
}

}  // namespace vardo
