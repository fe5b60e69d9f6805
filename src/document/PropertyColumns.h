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
  // The formula, in the form in which the drawing stores it; none when the shape has no such property. Good until the drawing
  // changes. slot: a number of the shape's own on its page, low and reused.
  std::optional<std::string_view> FormulaOf(const DrawingShape& shape, std::uint32_t slot, Symbol field);
  bool empty() const { return columns_.empty(); }
  void Forget(std::uint32_t slot, Symbol field);
  // Of all fields.
  void Forget(std::uint32_t slot);
  void Clear() { columns_.clear(); }

 private:
  enum class State : std::uint32_t { Unknown, Missing, There };
  struct Entry {
    const char* text = nullptr;
    std::uint32_t size = 0;
    State state = State::Unknown;
  };
  // Texts that never move, one behind the other.
  class Texts {
   public:
    const char* Keep(std::string_view text);

   private:
    std::vector<std::unique_ptr<char[]>> pieces_;
    size_t left_ = 0;
    char* next_ = nullptr;
  };
  struct Column {
    std::vector<Entry> entries;  // by slot
    Texts texts;
    size_t forgotten = 0;  // texts that nobody sees any more
  };
  static void Forget(Column& column, std::uint32_t slot);

  std::unordered_map<Symbol, Column> columns_;
};

}  // namespace vardo
