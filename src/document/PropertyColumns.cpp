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
    const size_t size = std::max(kPiece, text.size());
    next_ = pieces_.emplace_back(std::make_unique_for_overwrite<char[]>(size)).get();
    left_ = size;
  }
  char* const kept = next_;
  text.copy(kept, text.size());
  next_ += text.size();
  left_ -= text.size();
  return kept;
}

PropertyColumns::Column& PropertyColumns::Of(Symbol field) { return columns_.try_emplace(field, field).first->second; }

void PropertyColumns::Column::Read(const DrawingShape& shape, std::uint32_t slot) {
  static const SectionInfo* const properties = FindSectionByElement("Property");
  static const Symbol value("Value");
  if (slot >= entries_.size()) entries_.resize(slot + 1 + slot / 2);
  Entry& entry = entries_[slot];
  const CellAddress address{properties, RowKey::Named(field_), value};
  if (!shape.Exists(address)) {
    entry.state = State::Missing;
    return;
  }
  const std::string formula = shape.Formula(address);
  entry = {texts_.Keep(formula), static_cast<std::uint32_t>(formula.size()), State::There};
}

void PropertyColumns::Column::Forget(std::uint32_t slot) {
  if (slot >= entries_.size() || entries_[slot].state == State::Unknown) return;
  entries_[slot] = {};
  if (++forgotten_ > kMostForgotten) *this = Column(field_);
}

void PropertyColumns::Forget(std::uint32_t slot, Symbol field) {
  if (const auto found = columns_.find(field); found != columns_.end()) found->second.Forget(slot);
}

void PropertyColumns::Forget(std::uint32_t slot) {
  for (auto& [field, column] : columns_) column.Forget(slot);
}

}  // namespace vardo
