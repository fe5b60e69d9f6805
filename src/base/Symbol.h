// A name kept once for the whole program, so that comparing two of them is comparing two numbers. Letter case of ASCII does not
// count; text() is as the name was first spelled. For one thread.
#pragma once

#include <compare>
#include <cstdint>
#include <functional>
#include <optional>
#include <string_view>

namespace vardo {

class Symbol {
 public:
  constexpr Symbol() = default;  // the empty name
  explicit Symbol(std::string_view name);
  // Without keeping the name; none when nobody has ever asked for a symbol of it.
  static std::optional<Symbol> Known(std::string_view name);
  static constexpr Symbol FromNumber(std::uint32_t number) { return Symbol(number, 0); }

  std::string_view text() const;
  constexpr std::uint32_t number() const { return number_; }
  constexpr bool empty() const { return number_ == 0; }
  friend constexpr auto operator<=>(Symbol, Symbol) = default;

 private:
  constexpr Symbol(std::uint32_t number, int) : number_(number) {}
  std::uint32_t number_ = 0;
};

}  // namespace vardo

template <>
struct std::hash<vardo::Symbol> {
  size_t operator()(vardo::Symbol symbol) const {
    return static_cast<size_t>(symbol.number() * std::uint64_t{0x9E3779B97F4A7C15});
  }
};
