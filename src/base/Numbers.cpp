#include "base/Numbers.h"

#include <charconv>
#include <cmath>
#include <system_error>

namespace vardo {
namespace {

constexpr int kDigitsOfFiles = 16;

std::string_view WithoutPlus(std::string_view text) {
  if (text.starts_with('+')) text.remove_prefix(1);
  return text;
}

template <class Number>
bool ReadWhole(std::string_view text, Number& number) {
  const char* const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, number);
  return error == std::errc() && stop == end;
}

}  // namespace

std::string NumberText(double value) { return NumberText(value, kDigitsOfFiles); }

std::string NumberText(double value, int digits) {
  if (value == 0) return "0";
  char text[48];
  char* end = std::to_chars(text, text + sizeof text, value, std::chars_format::general, digits).ptr;
  const std::string_view number(text, static_cast<size_t>(end - text));
  const size_t exponent = number.find('e');
  if (exponent == std::string_view::npos) return std::string(number);
  // "1e-06" is "1E-6" in the files.
  std::string_view power = number.substr(exponent + 2);
  while (power.size() > 1 && power.front() == '0') power.remove_prefix(1);
  std::string result(number.substr(0, exponent));
  result += number[exponent + 1] == '-' ? "E-" : "E";
  return result += power;
}

std::optional<double> ParseNumber(std::string_view text) {
  double value = 0;
  if (!ReadWhole(WithoutPlus(text), value) || !std::isfinite(value)) return std::nullopt;
  return value;
}

std::optional<int> ParseInteger(std::string_view text) {
  int value = 0;
  return ReadWhole(WithoutPlus(text), value) ? std::optional(value) : std::nullopt;
}

}  // namespace vardo
