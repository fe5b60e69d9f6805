// The rows that a module keeps as parallel lists: a property a column, and one that counts them.
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <stdexcept>
#include <string_view>

namespace vardo {

struct RowColumn {
  std::string_view field;
  // What rows that do not use the column hold, and the cell of a module without rows; none: the field's default.
  std::optional<std::string_view> unused = {};
};

struct RowGroup {
  std::string_view count = {};              // the counting field; empty for a kind without rows
  std::span<const RowColumn> columns = {};  // in the order of writing, the count behind them

  // A column's place. Throws std::out_of_range for a field that is none; in a constant it does not compile.
  constexpr size_t ColumnOf(std::string_view field) const {
    for (size_t i = 0; i < columns.size(); ++i)
      if (columns[i].field == field) return i;
    throw std::out_of_range("no such column");
  }
};

}  // namespace vardo
