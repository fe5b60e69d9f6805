// The values of properties, column by column: the formulas of "Prop." cells for a shape and a field, found in the tree when they
// are first asked for and forgotten when an edit touches them.
#pragma once

#include "base/Symbol.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace vardo {

class DrawingShape;

class PropertyColumns {
 public:
  class Column;
  Column& Of(Symbol field);
  bool empty() const { return columns_.empty(); }
  void Forget(std::uint32_t slot, Symbol field);
  // Of all fields.
  void Forget(std::uint32_t slot);
  void Clear() { columns_.clear(); }

 private:
  // Texts that never move, one behind the other.
  class Texts {
   public:
    const char* Keep(std::string_view text);

   private:
    std::vector<std::unique_ptr<char[]>> pieces_;
    size_t left_ = 0;
    char* next_ = nullptr;
  };

  std::unordered_map<Symbol, Column> columns_;
};

class PropertyColumns::Column {
 public:
  explicit Column(Symbol field) : field_(field) {}
  // The formula, in the form in which the drawing stores it; none when the shape has no such property. Good until the drawing
  // changes. slot: a number of the shape's own on its page, low and reused.
  std::optional<std::string_view> FormulaOf(const DrawingShape& shape, std::uint32_t slot) {
    if (slot >= entries_.size() || entries_[slot].state == State::Unknown) Read(shape, slot);
    const Entry& entry = entries_[slot];
    if (entry.state == State::Missing) return std::nullopt;
    return std::string_view(entry.text, entry.size);
  }
  void Forget(std::uint32_t slot);

 private:
  enum class State : std::uint32_t { Unknown, Missing, There };
  struct Entry {
    const char* text = nullptr;
    std::uint32_t size = 0;
    State state = State::Unknown;
  };
  void Read(const DrawingShape& shape, std::uint32_t slot);

  Symbol field_;
  std::vector<Entry> entries_;  // by slot
  Texts texts_;
  size_t forgotten_ = 0;  // texts that nobody sees any more
};

}  // namespace vardo
