#include "picture/StoredSheet.h"

#include "base/Numbers.h"

#include <pugixml.hpp>

#include <algorithm>
#include <unordered_map>

namespace vardo::picture {
namespace {

using Names = std::unordered_map<std::string_view, size_t>;

template <size_t count>
Names NamesOf(const CellInfo (&table)[count]) {
  Names names;
  for (size_t i = 0; i < count; ++i) names.emplace(table[i].name, i);
  return names;
}

// A value with a line break is the element's text. A cell without one is not there, but for a formula that is a value by itself.
std::string_view ValueOf(pugi::xml_node cell) {
  const std::string_view value = cell.attribute("V").value();
  if (!value.empty()) return value;
  const std::string_view text = cell.text().get();
  if (!text.empty()) return text;
  const std::string_view formula = cell.attribute("F").value();
  return formula.starts_with("NURBS(") || formula.starts_with("POLYLINE(") ? formula : std::string_view();
}

void ReadCells(pugi::xml_node parent, StoredCells& cells) {
  static const Names columns = NamesOf(kColumns);
  for (const pugi::xml_node cell : parent.children("Cell")) {
    const auto column = columns.find(cell.attribute("N").value());
    if (column != columns.end()) cells.Set(column->second, ValueOf(cell));
  }
}

StoredRow ReadRow(pugi::xml_node element, int position) {
  StoredRow row{element.attribute("T").value(),
                element.attribute("IX").as_int(position),
                std::string_view(element.attribute("Del").value()) == "1",
                {}};
  ReadCells(element, row.cells);
  return row;
}

StoredRow* FindRow(std::vector<StoredRow>& rows, int ix) {
  const auto found = std::find_if(rows.begin(), rows.end(), [&](const StoredRow& row) { return row.ix == ix; });
  return found == rows.end() ? nullptr : &*found;
}

void SortRows(std::vector<StoredRow>& rows) {
  std::stable_sort(rows.begin(), rows.end(), [](const StoredRow& a, const StoredRow& b) { return a.ix < b.ix; });
}

const SectionKind* KindOf(pugi::xml_node section) {
  const auto kind = std::find_if(std::begin(kSections), std::end(kSections),
                                 [&](const SectionKind& k) { return k.name == section.attribute("N").value(); });
  return kind == std::end(kSections) ? nullptr : &*kind;
}

StoredSection ReadSection(pugi::xml_node element, const SectionKind& kind) {
  StoredSection section{&kind, kind.name == "Geometry" ? element.attribute("IX").as_int() : 0, {}, {}};
  ReadCells(element, section.cells);
  int position = 0;
  for (const pugi::xml_node row : element.children("Row")) {
    StoredRow read = ReadRow(row, position++);
    if (!FindRow(section.rows, read.ix)) section.rows.push_back(std::move(read));
  }
  SortRows(section.rows);
  return section;
}

// A formula that is inherited says nothing.
void ReadFormula(pugi::xml_node cell, size_t index, StoredSheet& sheet) {
  const std::string_view formula = cell.attribute("F").value();
  if (formula != "Inh") sheet.values[index] = formula.empty() ? kConstant : formula;
}

std::optional<int> StyleOf(pugi::xml_node element, const char* attribute) {
  return ParseInteger(element.attribute(attribute).value());
}

}  // namespace

std::string_view StoredCells::Find(ColumnName column) const {
  for (const Entry& entry : entries_)
    if (entry.column == column.index()) return entry.value;
  return {};
}

void StoredCells::Set(size_t column, std::string_view value) {
  if (value.empty()) return;
  for (Entry& entry : entries_)
    if (entry.column == column) {
      entry.value = value;
      return;
    }
  entries_.push_back({column, value});
}

void StoredCells::Overlay(const StoredCells& other) {
  for (const Entry& entry : other.entries_) Set(entry.column, entry.value);
}

void StoredSection::Overlay(const StoredSection& other) {
  cells.Overlay(other.cells);
  bool added = false;
  for (const StoredRow& own : other.rows) {
    StoredRow* const row = FindRow(rows, own.ix);
    if (!row || own.deleted || (!own.type.empty() && own.type != row->type)) {
      added = added || !row;
      if (row)
        *row = own;
      else
        rows.push_back(own);
      continue;
    }
    row->cells.Overlay(own.cells);
  }
  std::erase_if(rows, [](const StoredRow& row) { return row.deleted; });
  if (added) SortRows(rows);
}

StoredSheet ReadSheet(XmlNode node) {
  static const Names names = NamesOf(kCells), formulas = [] {
    Names found;
    for (size_t i = 0; i < std::size(kCells); ++i)
      if (kCells[i].name.ends_with(" formula")) found.emplace(kCells[i].name.substr(0, kCells[i].name.find(' ')), i);
    return found;
  }();
  const pugi::xml_node element(node);
  StoredSheet sheet;
  for (const pugi::xml_node child : element.children()) {
    const std::string_view name = child.name();
    if (name == "Cell") {
      const std::string_view cell = child.attribute("N").value();
      const auto known = names.find(cell);
      if (known == names.end()) continue;
      sheet.values[known->second] = ValueOf(child);
      if (const auto formula = formulas.find(cell); formula != formulas.end()) ReadFormula(child, formula->second, sheet);
    } else if (name == "Section") {
      if (const SectionKind* kind = KindOf(child)) sheet.sections.push_back(ReadSection(child, *kind));
    }
  }
  sheet.lineStyle = StyleOf(element, "LineStyle");
  sheet.fillStyle = StyleOf(element, "FillStyle");
  sheet.textStyle = StyleOf(element, "TextStyle");
  return sheet;
}

}  // namespace vardo::picture
