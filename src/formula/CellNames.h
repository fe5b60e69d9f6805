// Where a cell stands in a sheet: its section, row and column, by the host's numbers and by the names that formulas and files
// use.
//   Numbers as in VisSectionIndices, VisRowIndices and VisCellIndices of the host's published reference.
#pragma once

#include "base/Symbol.h"

#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace vardo {

struct ColumnInfo {
  short column;
  std::string_view name;   // the Cell's N in a file
  std::string_view value;  // V of a cell that no one has written
  bool isText = false;     // holds a string even where the file gives no unit
};

struct SectionInfo {
  short section;
  std::string_view element;    // the Section's N in a file
  std::string_view prefix;     // in a cell's name: "Prop"
  bool rowsHaveNames;          // keyed by N; otherwise by IX
  std::string_view rowType;    // T of a new row; empty for none
  std::string_view shortName;  // the column that a name without a column means
  std::span<const ColumnInfo> columns;
  int index = -1;  // the Section's IX in a file; -1 for a section that a sheet has once
};

// Null for a section that no drawing of ours uses.
const SectionInfo* FindSection(short section);
const SectionInfo* FindSectionByElement(std::string_view element);
// The path of that IX. Its rows are known by formulas, and by no number of the host's. Null beyond what formulas are likely to
// name.
const SectionInfo* FindGeometry(int index);
std::span<const SectionInfo> AllSections();

// A row of the object section and the cells in it. kOnlyOneDimensional rows exist on connectors alone.
struct ObjectCell {
  short row;
  short column;
  std::string_view name;
  std::string_view value;
  bool isText = false;
};
const ObjectCell* FindObjectCell(std::string_view name);
const ObjectCell* FindObjectCell(short row, short column);
bool IsOneDimensionalRow(short row);

// A cell's name taken apart. For the object section only cell is set. A row is known by its name or, as in "Connections.X2", by
// its position, counted from 1.
struct ParsedCellName {
  const SectionInfo* section = nullptr;  // null: the object section
  Symbol row;
  int position = 0;  // 0: the row has a name
  Symbol cell;       // as the file spells it where it is known
};
// None when the text is no cell name at all. Letter case does not count.
std::optional<ParsedCellName> ParseCellName(std::string_view name);

}  // namespace vardo
