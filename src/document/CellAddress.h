// Where a cell stands in a sheet.
#pragma once

#include "base/Symbol.h"
#include "formula/CellNames.h"

#include <compare>
#include <cstdint>
#include <string>
#include <string_view>

namespace vardo {

// A row of a section: by its name, or by its IX where rows have none. An IX is an identity, not a position; an address with one
// is good until a row of the section comes or goes.
class RowKey {
 public:
  constexpr RowKey() = default;  // of the object section, which has no rows of its own
  static constexpr RowKey Named(Symbol name) { return RowKey(name.number(), true); }
  static constexpr RowKey Numbered(int ix) { return RowKey(static_cast<std::uint32_t>(ix), false); }

  constexpr bool IsNamed() const { return isNamed_; }
  constexpr Symbol name() const { return Symbol::FromNumber(isNamed_ ? value_ : 0); }
  constexpr int ix() const { return isNamed_ ? 0 : static_cast<int>(value_); }
  // The name or the IX.
  std::string Text() const { return isNamed_ ? std::string(name().text()) : std::to_string(ix()); }
  friend constexpr auto operator<=>(const RowKey&, const RowKey&) = default;

 private:
  constexpr RowKey(std::uint32_t value, bool isNamed) : value_(value), isNamed_(isNamed) {}
  std::uint32_t value_ = 0;
  bool isNamed_ = false;
};

struct CellAddress {
  const SectionInfo* section = nullptr;  // null: the object section
  RowKey row;
  Symbol cell;
  friend bool operator==(const CellAddress&, const CellAddress&) = default;
};

// Of the object section.
inline CellAddress ObjectCellAddress(std::string_view cell) { return {nullptr, {}, Symbol(cell)}; }

struct CellAddressHash {
  size_t operator()(const CellAddress& address) const {
    size_t hash = reinterpret_cast<std::uintptr_t>(address.section);
    for (const size_t part :
         {size_t{address.row.IsNamed()},
          size_t{address.row.IsNamed() ? address.row.name().number() : static_cast<std::uint32_t>(address.row.ix())},
          size_t{address.cell.number()}})
      hash = (hash ^ part) * size_t{0x9E3779B97F4A7C15};
    return hash ^ (hash >> 32);
  }
};

}  // namespace vardo
