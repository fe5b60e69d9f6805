// A repeat group: rows that a shape keeps as parallel lists, one cell a column, and their number in a cell of its own. A dialog
// shows each row as one line.
#pragma once

#include "addin/host/HostFwd.h"
#include "props/StringFunctions.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vardo {

// The fields of a line. The line of a group of one column is its only field, separators and all.
StringList FieldsOf(std::string_view line, size_t columns);

struct RowColumn {
  std::string_view property;
  // What a list that is too short, or missing, yields.
  std::string_view readDefault;
  // What rows that do not use the column hold, and the cell of a group without rows.
  std::string_view filler;
  // Between what the cell holds and what the line shows; the same when null.
  std::string (*toText)(std::string_view stored) = nullptr;
  std::string (*toStored)(std::string_view text) = nullptr;
};

class RepeatGroup {
 public:
  // The columns that a line shows, in its order; the row is by column, as stored, and known as far as those columns that say
  // which others are shown. None: the row makes no line.
  using LineColumns = std::vector<size_t> (*)(const StringList& row);

  // Written in the order of the columns, then the count. Without lineColumns a line shows all columns.
  RepeatGroup(std::string_view countProperty, std::vector<RowColumn> columns, LineColumns lineColumns = nullptr);

  // The lines of the rows that a shape holds; none when the count is no number.
  StringList ReadLines(const IVShapePtr& shape) const;
  void WriteLines(const IVShapePtr& shape, const StringList& lines) const;

 private:
  std::optional<std::string> LineOf(const StringList& row) const;
  StringList RowOf(std::string_view line) const;
  std::vector<size_t> ColumnsShown(const StringList& row) const;

  std::string countProperty_;
  std::vector<RowColumn> columns_;
  LineColumns lineColumns_;
};

// The number of rows that a shape says it has, 100 000 at most; 0 when the cell is missing or holds no number.
int ReadRowCount(const IVShapePtr& shape, std::string_view countProperty);

}  // namespace vardo
