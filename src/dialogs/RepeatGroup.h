// A repeat group: rows that a shape keeps as parallel lists, one cell a column, and their number in a cell of its own. A dialog
// shows each row as one line.
#pragma once

#include "addin/host/HostFwd.h"
#include "modules/ModuleSchema.h"
#include "props/StringFunctions.h"

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace vardo {

// The fields of a line. The line of a group of one column is its only field, separators and all.
StringList FieldsOf(std::string_view line, size_t columns);

class RepeatGroup {
 public:
  // The columns that a line shows, in its order; the row is by column, as stored, and known as far as those columns that say
  // which others are shown. None: the row makes no line.
  using LineColumns = std::vector<size_t> (*)(const StringList& row);
  using Conversion = std::string (*)(std::string_view text);

  // The rows of a kind's modules. Their lines show all columns, as they are stored.
  explicit RepeatGroup(const ModuleSchema& module) : RepeatGroup(module, module.rows.columns) {}
  // Some of the columns alone.
  RepeatGroup(const ModuleSchema& module, std::span<const RowColumn> columns);

  // A line shows some columns, which depend on the row.
  RepeatGroup& LineShows(LineColumns columns);
  // A line shows another text than the column's cell holds; null: what the line shows is stored as it is.
  RepeatGroup& ColumnShows(size_t column, Conversion toText, Conversion toStored = nullptr);

  // The lines of the rows that a shape holds, 100 000 at most; none when the count is no number. A list that is too short, or
  // missing, goes on with its column's default.
  StringList ReadLines(const IVShapePtr& shape) const;
  // Writes the columns, then the count.
  void WriteLines(const IVShapePtr& shape, const StringList& lines) const;

 private:
  struct Column {
    std::string_view field;
    std::string_view readDefault;
    std::string_view unused;  // what rows that do not use the column hold, and its cell without rows
    Conversion toText = nullptr;
    Conversion toStored = nullptr;
  };

  std::optional<std::string> LineOf(const StringList& row) const;
  StringList RowOf(std::string_view line) const;
  std::vector<size_t> ColumnsShown(const StringList& row) const;

  std::string_view count_;
  std::vector<Column> columns_;
  LineColumns lineColumns_ = nullptr;
};

}  // namespace vardo
