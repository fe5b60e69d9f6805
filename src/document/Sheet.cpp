#include "document/Sheet.h"

#include "base/Errors.h"
#include "base/Numbers.h"
#include "base/Text.h"

#include <algorithm>
#include <cmath>

namespace vardo {
namespace {

bool IsDeleted(pugi::xml_node element) { return std::string_view(element.attribute("Del").value()) == "1"; }

const char* RowKeyAttribute(const SectionInfo& section, pugi::xml_node row) {
  return section.rowsHaveNames || row.attribute("N") ? "N" : "IX";
}

std::string_view RowKey(const SectionInfo& section, pugi::xml_node row) {
  return row.attribute(RowKeyAttribute(section, row)).value();
}

bool SameKey(const SectionInfo& section, std::string_view a, std::string_view b) {
  return section.rowsHaveNames ? EqualAsciiIgnoringCase(a, b) : a == b;
}

// A sieve for rows, without regard to case: what tells the names in use apart, at the cost of a glance.
std::uint32_t HashOf(const SectionInfo& section, std::string_view key) {
  std::uint32_t hash = static_cast<std::uint32_t>(section.section) * 31 + static_cast<std::uint32_t>(key.size());
  if (key.empty()) return hash;
  for (const size_t at : {size_t{0}, key.size() / 2, key.size() - 1})
    hash = hash * 31 + (static_cast<unsigned char>(key[at]) | 0x20);
  return hash;
}

const SectionInfo* SectionOf(pugi::xml_node section) {
  const std::string_view name = section.attribute("N").value();
  return name == "Geometry" ? FindGeometry(section.attribute("IX").as_int()) : FindSectionByElement(name);
}

pugi::xml_node CellIn(pugi::xml_node parent, std::string_view name) {
  for (const pugi::xml_node cell : parent.children("Cell"))
    if (EqualAsciiIgnoringCase(cell.attribute("N").value(), name)) return cell;
  return {};
}

const ColumnInfo* ColumnOf(const CellAddress& address) {
  for (const ColumnInfo& column : address.section->columns)
    if (column.name == address.cell) return &column;
  return nullptr;
}

// Small differences are the rounding of others, not changes.
bool SameValue(const CellValue& a, const CellValue& b) {
  const auto *x = std::get_if<double>(&a), *y = std::get_if<double>(&b);
  return x && y ? std::abs(*x - *y) <= 1e-9 * std::max(1.0, std::abs(*y)) : a == b;
}

int IndexOf(const Sheet::Row& row) { return std::atoi(row.key.c_str()); }

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
    if (child.type() == pugi::node_element && std::string_view(child.name()) != "Cell") return child;
  return {};
}

}  // namespace

bool IsTextCell(const CellAddress& address) {
  if (!address.section) return false;
  const ColumnInfo* column = ColumnOf(address);
  return column && column->isText;
}

std::string_view DefaultValue(const CellAddress& address) {
  if (!address.section) {
    const ObjectCell* cell = FindObjectCell(address.cell);
    return cell ? cell->value : std::string_view();
  }
  const ColumnInfo* column = ColumnOf(address);
  return column ? column->value : std::string_view();
}

std::optional<CellAddress> Sheet::Find(std::string_view cellName, bool localOnly) const {
  const auto name = ParseCellName(cellName);
  if (!name) return std::nullopt;
  CellAddress address{name->section, name->row, name->cell};
  if (!name->section) {
    if (localOnly ? static_cast<bool>(LocalCell(address)) : Exists(address)) return address;
    return std::nullopt;
  }
  if (name->byNumber) {
    const std::vector<Row> rows = Rows(*name->section);
    const size_t number = std::stoul("0" + name->row.substr(0, 9));
    if (number < 1 || number > rows.size()) return std::nullopt;
    address.row = rows[number - 1].key;
  }
  if (!RowExists(*address.section, address.row, localOnly)) return std::nullopt;
  if (!ColumnOf(address) && !NearestCell(address)) return std::nullopt;
  // A row that only overrides an inherited one owns just the cells that it writes.
  const auto overrides = [&] { return base_ && base_->RowExists(*address.section, address.row, false); };
  if (localOnly && !LocalCell(address) && overrides()) return std::nullopt;
  return address;
}

std::optional<CellAddress> Sheet::Find(short sectionNumber, short row, short column) const {
  if (const SectionInfo* section = FindSection(sectionNumber)) {
    const std::vector<Row> rows = Rows(*section);
    if (row < 0 || static_cast<size_t>(row) >= rows.size()) return std::nullopt;
    for (const ColumnInfo& info : section->columns)
      if (info.column == column) return CellAddress{section, rows[static_cast<size_t>(row)].key, std::string(info.name)};
    return std::nullopt;
  }
  const ObjectCell* cell = FindObjectCell(row, column);
  if (!cell) return std::nullopt;
  CellAddress address{nullptr, "", std::string(cell->name)};
  return Exists(address) ? std::optional(address) : std::nullopt;
}

bool Sheet::Exists(const CellAddress& address) const {
  if (address.section) return RowExists(*address.section, address.row, false);
  if (const ObjectCell* known = FindObjectCell(address.cell)) return !IsOneDimensionalRow(known->row) || IsOneDimensional();
  return static_cast<bool>(NearestCell(address));
}

std::string Sheet::Formula(const CellAddress& address) const {
  if (const pugi::xml_node cell = FormulaCell(address)) return FormulaText(cell, IsTextCell(address));
  return IsTextCell(address) ? QuoteText("") : std::string(DefaultValue(address));
}

CellValue Sheet::Value(const CellAddress& address) const {
  if (const pugi::xml_node cell = NearestCell(address)) return StoredValue(cell, IsTextCell(address));
  const std::string_view value = DefaultValue(address);
  if (const auto number = ParseNumber(value)) return *number;
  return std::string(value);
}

void Sheet::SetFormula(TreeEditor& editor, const CellAddress& address, std::string_view formula, const FormulaScope& scope) {
  const pugi::xml_node cell = EnsureCell(editor, address);
  Evaluation evaluation = EvaluateIn(scope, formula);
  // A text whose inner quotes are not doubled is no formula the host could evaluate, yet its text is plain to see.
  if (!evaluation.value && formula.size() >= 2 && formula.front() == '"' && formula.back() == '"')
    evaluation.value = std::string(formula.substr(1, formula.size() - 2));
  WriteFormula(editor, *part_, cell, formula, evaluation.value, IsTextCell(address));
  if (!evaluation.value && !evaluation.error.empty()) editor.SetAttribute(*part_, cell, "E", evaluation.error);
}

bool Sheet::StoreEvaluation(TreeEditor& editor, const CellAddress& address, const Evaluation& evaluation) {
  const pugi::xml_node nearest = NearestCell(address);
  const std::string_view error = nearest.attribute("E").value();
  const bool sameValue = !evaluation.value || SameValue(Value(address), *evaluation.value);
  if (sameValue && error == evaluation.error) return false;
  const bool inherits = InheritsFormula(address);
  const pugi::xml_node cell = EnsureCell(editor, address);
  if (inherits) editor.SetAttribute(*part_, cell, "F", kInherited);
  if (evaluation.value) WriteValue(editor, *part_, cell, *evaluation.value, IsTextCell(address));
  if (evaluation.error.empty())
    editor.RemoveAttribute(*part_, cell, "E");
  else
    editor.SetAttribute(*part_, cell, "E", evaluation.error);
  return !sameValue;
}

std::vector<Sheet::OwnFormula> Sheet::OwnFormulas() const {
  std::vector<OwnFormula> formulas;
  const auto collect = [&](const SectionInfo* section, std::string_view row, pugi::xml_node parent) {
    for (const pugi::xml_node cell : parent.children("Cell")) {
      const std::string_view formula = cell.attribute("F").value();
      if (formula.empty() || formula == kInherited || formula == kNoFormula) continue;
      formulas.push_back({{section, std::string(row), cell.attribute("N").value()}, formula});
    }
  };
  collect(nullptr, "", element_);
  for (const pugi::xml_node section : element_.children("Section")) {
    const SectionInfo* info = SectionOf(section);
    if (!info) continue;
    for (const pugi::xml_node row : section.children("Row")) collect(info, RowKey(*info, row), row);
  }
  return formulas;
}

bool Sheet::InheritsFormula(const CellAddress& address) const {
  const pugi::xml_node own = LocalCell(address);
  return own ? FormulaIsInherited(own) : true;
}

std::vector<std::string> Sheet::NamesOf(const CellAddress& address) const {
  if (!address.section) return {address.cell};
  const std::string prefix = std::string(address.section->prefix) + ".";
  std::vector<std::string> names{prefix + address.row + "." + address.cell};
  if (address.section->rowsHaveNames) {
    if (address.cell == address.section->shortName) names.push_back(prefix + address.row);
    return names;
  }
  if (const auto position = PositionOf(address)) names.push_back(prefix + address.cell + std::to_string(*position + 1));
  return names;
}

std::optional<size_t> Sheet::PositionOf(const CellAddress& address) const {
  const std::vector<Row> rows = Rows(*address.section);
  for (size_t at = 0; at < rows.size(); ++at)
    if (SameKey(*address.section, rows[at].key, address.row)) return at;
  return std::nullopt;
}

std::vector<Sheet::Row> Sheet::Rows(const SectionInfo& section) const {
  std::vector<Row> rows;
  if (base_) {
    rows = base_->Rows(section);
    for (Row& row : rows) {
      if (row.local) row.inherited = row.local;
      row.local = {};
    }
  }
  for (const pugi::xml_node local : SectionElement(section).children("Row")) {
    const std::string_view key = RowKey(section, local);
    const auto same = std::find_if(rows.begin(), rows.end(), [&](const Row& row) { return SameKey(section, row.key, key); });
    if (IsDeleted(local)) {
      if (same != rows.end()) rows.erase(same);
    } else if (same != rows.end()) {
      same->local = local;
    } else {
      rows.push_back({std::string(key), local, {}});
    }
  }
  if (!section.rowsHaveNames)
    std::stable_sort(rows.begin(), rows.end(), [](const Row& a, const Row& b) { return IndexOf(a) < IndexOf(b); });
  return rows;
}

bool Sheet::HasSection(const SectionInfo& section) const {
  return SectionElement(section) || (base_ && base_->HasSection(section));
}

bool Sheet::IsOneDimensional() const { return CellIn(element_, "BeginX") || (base_ && base_->IsOneDimensional()); }

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
      if (!RowExists(section, name, false)) return AddNamedRow(editor, section, name);
    }
  }
  // Rows that others inherit cannot move, so a row before one of them goes to the end.
  const bool canMove = position >= 0 && position < count && std::all_of(rows.begin() + position, rows.end(), [](const Row& row) {
                         return row.local && !row.inherited;
                       });
  const int ix = canMove ? IndexOf(rows[static_cast<size_t>(position)]) : (rows.empty() ? 0 : IndexOf(rows.back()) + 1);
  if (canMove)
    for (auto row = rows.rbegin(); row != rows.rend() - position; ++row)
      editor.SetAttribute(*part_, row->local, "IX", std::to_string(IndexOf(*row) + 1));
  RowsChanged();
  WriteFullRow(editor, section, InsertRow(editor, section, std::to_string(ix)));
  return canMove ? position : count;
}

short Sheet::AddNamedRow(TreeEditor& editor, const SectionInfo& section, std::string_view name) {
  const bool legal = !name.empty() && std::all_of(name.begin(), name.end(), [](char c) {
    return std::isalnum(static_cast<unsigned char>(c)) || c == '_' || static_cast<unsigned char>(c) >= 0x80;
  });
  if (!legal) throw HostError(kHostNotAllowed, "\"" + std::string(name) + "\" is no name for a row.");
  if (RowExists(section, name, false)) throw HostError(kHostNotAllowed, "The row " + std::string(name) + " exists already.");
  WriteFullRow(editor, section, InsertRow(editor, section, name));
  // The last one, unless it is an inherited row that had been deleted: that comes back in its old place.
  const std::vector<Row> rows = Rows(section);
  const auto added = std::find_if(rows.begin(), rows.end(), [&](const Row& row) { return SameKey(section, row.key, name); });
  return static_cast<short>(added - rows.begin());
}

void Sheet::DeleteRow(TreeEditor& editor, const SectionInfo& section, short position) {
  const std::vector<Row> rows = Rows(section);
  if (position < 0 || static_cast<size_t>(position) >= rows.size()) return;
  const Row& row = rows[static_cast<size_t>(position)];
  if (row.local) editor.Remove(*part_, row.local);
  RowsChanged();
  if (row.inherited) {
    editor.SetAttribute(*part_, InsertRow(editor, section, row.key), "Del", "1");
    RowsChanged();
    return;
  }
  // An empty section says nothing, and there are readers that take what follows it for its contents.
  const pugi::xml_node left = SectionElement(section);
  if (left && !left.first_child()) editor.Remove(*part_, left);
  if (section.rowsHaveNames) return;
  // Local rows are numbered without gaps.
  for (size_t behind = static_cast<size_t>(position) + 1; behind < rows.size(); ++behind)
    if (rows[behind].local && !rows[behind].inherited)
      editor.SetAttribute(*part_, rows[behind].local, "IX", std::to_string(IndexOf(rows[behind]) - 1));
  RowsChanged();
}

pugi::xml_node Sheet::FindChild(const char* name) const {
  const pugi::xml_node own = element_.child(name);
  return own || !base_ ? own : base_->FindChild(name);
}

pugi::xml_node Sheet::SectionElement(const SectionInfo& section) const {
  for (const pugi::xml_node child : element_.children("Section"))
    if (section.element == child.attribute("N").value() && (section.index < 0 || section.index == child.attribute("IX").as_int()))
      return child;
  return {};
}

const std::vector<Sheet::OwnRow>& Sheet::OwnRows() const {
  if (ownRowsKnown_) return ownRows_;
  ownRowsKnown_ = true;
  ownRows_.clear();
  for (const pugi::xml_node element : element_.children("Section")) {
    const SectionInfo* section = SectionOf(element);
    if (!section || SectionElement(*section) != element) continue;
    for (const pugi::xml_node row : element.children("Row")) {
      const std::string_view key = RowKey(*section, row);
      ownRows_.push_back({section, HashOf(*section, key), IsDeleted(row), key, row});
    }
  }
  return ownRows_;
}

const Sheet::OwnRow* Sheet::FindOwnRow(const SectionInfo& section, std::string_view key) const {
  const std::uint32_t hash = HashOf(section, key);
  for (const OwnRow& own : OwnRows())
    if (own.hash == hash && own.section == &section && SameKey(section, own.key, key)) return &own;
  return nullptr;
}

pugi::xml_node Sheet::RowElement(const SectionInfo& section, std::string_view key) const {
  const OwnRow* own = FindOwnRow(section, key);
  return own ? own->row : pugi::xml_node();
}

pugi::xml_node Sheet::LocalCell(const CellAddress& address) const {
  if (!address.section) return CellIn(element_, address.cell);
  const OwnRow* own = FindOwnRow(*address.section, address.row);
  return !own || own->isDeleted ? pugi::xml_node() : CellIn(own->row, address.cell);
}

pugi::xml_node Sheet::NearestCell(const CellAddress& address) const {
  if (const pugi::xml_node own = LocalCell(address)) return own;
  const OwnRow* row = address.section ? FindOwnRow(*address.section, address.row) : nullptr;
  return base_ && !(row && row->isDeleted) ? base_->NearestCell(address) : pugi::xml_node();
}

pugi::xml_node Sheet::FormulaCell(const CellAddress& address) const {
  const pugi::xml_node own = LocalCell(address);
  if (own && !FormulaIsInherited(own)) return own;
  const pugi::xml_node inherited = base_ ? base_->FormulaCell(address) : pugi::xml_node();
  return inherited ? inherited : pugi::xml_node();
}

bool Sheet::RowExists(const SectionInfo& section, std::string_view key, bool localOnly) const {
  if (const OwnRow* own = FindOwnRow(section, key)) return !own->isDeleted;
  return !localOnly && base_ && base_->RowExists(section, key, false);
}

pugi::xml_node Sheet::EnsureElement(TreeEditor& editor) {
  if (!element_) element_ = MakeElement(editor);
  return element_;
}

pugi::xml_node Sheet::EnsureSection(TreeEditor& editor, const SectionInfo& section) {
  if (const pugi::xml_node own = SectionElement(section)) return own;
  const pugi::xml_node added = editor.InsertElement(*part_, EnsureElement(editor), "Section", PlaceOfSection(element_, section));
  editor.SetAttribute(*part_, added, "N", section.element);
  if (section.index >= 0) editor.SetAttribute(*part_, added, "IX", std::to_string(section.index));
  return added;
}

pugi::xml_node Sheet::InsertRow(TreeEditor& editor, const SectionInfo& section, std::string_view key) {
  const pugi::xml_node parent = EnsureSection(editor, section);
  if (const pugi::xml_node marker = RowElement(section, key)) editor.Remove(*part_, marker);
  pugi::xml_node before;
  if (!section.rowsHaveNames) {
    const int ix = std::atoi(std::string(key).c_str());
    for (const pugi::xml_node row : parent.children("Row"))
      if (!before && row.attribute("IX").as_int() > ix) before = row;
  }
  const pugi::xml_node row = editor.InsertElement(*part_, parent, "Row", before);
  // A step of a path says what it is also where it only overrides the master's.
  if (section.index >= 0 && base_) editor.SetAttribute(*part_, row, "T", base_->RowElement(section, key).attribute("T").value());
  editor.SetAttribute(*part_, row, section.rowsHaveNames ? "N" : "IX", key);
  RowsChanged();
  return row;
}

pugi::xml_node Sheet::EnsureRow(TreeEditor& editor, const CellAddress& address) {
  if (const pugi::xml_node own = RowElement(*address.section, address.row)) return own;
  // A local row that overrides an inherited one bears the name as the master spells it.
  std::string key = address.row;
  for (const Row& row : Rows(*address.section))
    if (SameKey(*address.section, row.key, key)) key = row.key;
  return InsertRow(editor, *address.section, key);
}

pugi::xml_node Sheet::EnsureCell(TreeEditor& editor, const CellAddress& address) {
  if (const pugi::xml_node own = LocalCell(address)) return own;
  if (!Exists(address)) throw HostError(kHostNoSuchCell, "The cell " + address.cell + " does not exist.");
  const pugi::xml_node inherited = NearestCell(address);
  const pugi::xml_node parent = address.section ? EnsureRow(editor, address) : EnsureElement(editor);
  if (inherited) return editor.InsertCopy(*part_, parent, inherited, FirstBehindCells(parent));
  const pugi::xml_node cell = editor.InsertElement(*part_, parent, "Cell", FirstBehindCells(parent));
  editor.SetAttribute(*part_, cell, "N", address.cell);
  editor.SetAttribute(*part_, cell, "V", DefaultValue(address));
  return cell;
}

void Sheet::WriteFullRow(TreeEditor& editor, const SectionInfo& section, pugi::xml_node row) {
  if (!section.rowType.empty()) editor.SetAttribute(*part_, row, "T", section.rowType);
  for (const ColumnInfo& column : section.columns) {
    const pugi::xml_node cell = editor.InsertElement(*part_, row, "Cell");
    editor.SetAttribute(*part_, cell, "N", column.name);
    editor.SetAttribute(*part_, cell, "V", column.value);
    const bool noValueYet = column.name == section.shortName || column.name == "DataLinked";
    if (section.rowsHaveNames && noValueYet) editor.SetAttribute(*part_, cell, "F", kNoFormula);
  }
}

}  // namespace vardo
