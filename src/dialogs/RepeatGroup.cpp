#include "dialogs/RepeatGroup.h"

#include "platform/Platform.h"
#include "props/PropertyCells.h"

#include <algorithm>
#include <numeric>

namespace vardo {
namespace {

// A count beyond that is damage, and would fill the memory with rows of defaults.
constexpr double kMostRows = 100'000;

// 0 when the cell is missing or holds no number.
int ReadRowCount(const IVShapePtr& shape, std::string_view countField) {
  const double count = ThePlatform().ParseReal(GetPropList(shape, countField, "0").front()).value_or(0);
  return static_cast<int>(std::clamp<double>(count, 0, kMostRows));
}

}  // namespace

StringList FieldsOf(std::string_view line, size_t columns) {
  return columns == 1 ? StringList{std::string(line)} : SplitList(line, kListDelimiter);
}

RepeatGroup::RepeatGroup(const ModuleSchema& module, std::span<const RowColumn> columns) : count_(module.rows.count) {
  for (const RowColumn& column : columns) {
    const std::string_view byDefault = module.Property(column.field).defaultValue;
    columns_.push_back({column.field, byDefault, column.unused.value_or(byDefault)});
  }
}

RepeatGroup& RepeatGroup::LineShows(LineColumns columns) {
  lineColumns_ = columns;
  return *this;
}

RepeatGroup& RepeatGroup::ColumnShows(size_t column, Conversion toText, Conversion toStored) {
  columns_[column].toText = toText;
  columns_[column].toStored = toStored;
  return *this;
}

StringList RepeatGroup::ReadLines(const IVShapePtr& shape) const {
  const auto count = static_cast<size_t>(ReadRowCount(shape, count_));
  StringList lines;
  if (count == 0) return lines;
  std::vector<StringList> stored;
  for (const Column& column : columns_) stored.push_back(GetPropList(shape, column.field, column.readDefault));
  for (size_t i = 0; i < count; ++i) {
    StringList row;
    for (size_t c = 0; c < columns_.size(); ++c)
      row.push_back(i < stored[c].size() ? stored[c][i] : std::string(columns_[c].readDefault));
    if (auto line = LineOf(row)) lines.push_back(std::move(*line));
  }
  return lines;
}

void RepeatGroup::WriteLines(const IVShapePtr& shape, const StringList& lines) const {
  std::vector<StringList> stored(columns_.size());
  for (const std::string& line : lines) {
    StringList row = RowOf(line);
    for (size_t c = 0; c < columns_.size(); ++c) stored[c].push_back(std::move(row[c]));
  }
  for (size_t c = 0; c < columns_.size(); ++c) {
    if (lines.empty()) stored[c].emplace_back(columns_[c].unused);
    SetPropList(shape, columns_[c].field, stored[c]);
  }
  SetPropList(shape, count_, std::to_string(lines.size()));
}

std::optional<std::string> RepeatGroup::LineOf(const StringList& row) const {
  StringList items;
  for (const size_t c : ColumnsShown(row)) items.push_back(columns_[c].toText ? columns_[c].toText(row[c]) : row[c]);
  if (items.empty()) return std::nullopt;
  return JoinList(items);
}

// The first items say which columns the further ones belong to.
StringList RepeatGroup::RowOf(std::string_view line) const {
  StringList row;
  for (const Column& column : columns_) row.emplace_back(column.unused);
  const StringList items = FieldsOf(line, columns_.size());
  for (size_t i = 0; i < std::min(items.size(), ColumnsShown(row).size()); ++i) {
    const size_t c = ColumnsShown(row)[i];
    row[c] = columns_[c].toStored ? columns_[c].toStored(items[i]) : items[i];
  }
  return row;
}

std::vector<size_t> RepeatGroup::ColumnsShown(const StringList& row) const {
  if (lineColumns_) return lineColumns_(row);
  std::vector<size_t> all(columns_.size());
  std::iota(all.begin(), all.end(), size_t{0});
  return all;
}

}  // namespace vardo
