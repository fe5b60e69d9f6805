#include "document/PropertyColumns.h"

#include "document/DrawingShape.h"

#include <algorithm>

namespace vardo {
namespace {

constexpr size_t kPiece = 16 * 1024;
// So many texts that nobody sees are let go of with their column.
constexpr size_t kMostForgotten = 100'000;

}  // namespace

const char* PropertyColumns::Texts::Keep(std::string_view text) {
  if (text.size() > left_) {
    left_ = std::max(kPiece, text.size());
    next_ = pieces_.emplace_back(std::make_unique_for_overwrite<char[]>(left_)).get();
  }
  char* const kept = next_;
  text.copy(kept, text.size());
  next_ += text.size();
  left_ -= text.size();
  return kept;
}

std::optional<std::string_view> PropertyColumns::FormulaOf(const DrawingShape& shape, std::uint32_t slot, Symbol field) {
  Column& column = columns_[field];
  if (slot >= column.entries.size()) column.entries.resize(slot + 1 + slot / 2);
  Entry& entry = column.entries[slot];
  if (entry.state == State::Unknown) {
    static const SectionInfo* const properties = FindSectionByElement("Property");
    static const Symbol value("Value");
    const CellAddress address{properties, RowKey::Named(field), value};
    entry.state = shape.Exists(address) ? State::There : State::Missing;
    if (entry.state == State::There) {
      const std::string formula = shape.Formula(address);
      entry.size = static_cast<std::uint32_t>(formula.size());
      entry.text = column.texts.Keep(formula);
    }
  }
  if (entry.state == State::Missing) return std::nullopt;
  return std::string_view(entry.text, entry.size);
}

void PropertyColumns::Forget(Column& column, std::uint32_t slot) {
  if (slot >= column.entries.size() || column.entries[slot].state == State::Unknown) return;
  column.entries[slot] = {};
  if (++column.forgotten > kMostForgotten) column = {};
}

void PropertyColumns::Forget(std::uint32_t slot, Symbol field) {
  if (const auto found = columns_.find(field); found != columns_.end()) Forget(found->second, slot);
}

void PropertyColumns::Forget(std::uint32_t slot) {
  for (auto& [field, column] : columns_) Forget(column, slot);
}

}  // namespace vardo
