// What one sheet's own element says, without what it inherits. Texts are the drawing's: good until it is edited.
#pragma once

#include "document/XmlNode.h"
#include "picture/CellTable.h"

#include <array>
#include <optional>
#include <string_view>
#include <vector>

namespace vardo::picture {

// By column; of few entries.
class StoredCells {
 public:
  // Empty when there is none.
  std::string_view Find(ColumnName column) const;
  void Set(size_t column, std::string_view value);
  // What the other one says goes before.
  void Overlay(const StoredCells& other);

 private:
  struct Entry {
    size_t column;
    std::string_view value;
  };
  std::vector<Entry> entries_;
};

struct StoredRow {
  std::string_view type;  // of a Geometry row; else empty
  int ix = 0;
  bool deleted = false;
  StoredCells cells;
};

struct StoredSection {
  const SectionKind* kind = nullptr;
  int ix = 0;  // of a Geometry section
  StoredCells cells;
  std::vector<StoredRow> rows;  // by ascending IX, each once
  void Overlay(const StoredSection& other);
};

struct StoredSheet {
  std::array<std::string_view, std::size(kCells)> values{};  // empty: not there
  std::vector<StoredSection> sections;
  std::optional<int> lineStyle, fillStyle, textStyle;
};

StoredSheet ReadSheet(XmlNode element);

// In a formula's place, of a cell that has none of its own.
inline constexpr std::string_view kConstant = "=";

}  // namespace vardo::picture
