#include "props/StringFunctions.h"

#include "base/Characters.h"
#include "base/Errors.h"
#include "platform/Platform.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <limits>
#include <system_error>

namespace vardo {
namespace {

std::string_view FirstOrNone(std::string_view text) { return text.empty() ? text : FirstCharacter(text); }

// A text in which one character alone is the delimiter.
struct Delimited {
  std::string text;
  std::string_view delimiter;
};

Delimited WithOneDelimiter(std::string_view text, std::string_view delimiters) {
  const auto first = FirstOrNone(delimiters);
  if (first.size() == delimiters.size()) return {std::string(text), first};
  return {TranslateChars(text, delimiters, first), first};
}

size_t FindDelimiter(const Delimited& list, size_t from) {
  return list.delimiter.empty() ? std::string::npos : list.text.find(list.delimiter, from);
}

std::vector<std::string_view> Characters(std::string_view text) {
  std::vector<std::string_view> characters;
  for (; !text.empty(); text.remove_prefix(characters.back().size())) characters.push_back(FirstCharacter(text));
  return characters;
}

}  // namespace

StringList SplitList(std::string_view text, std::string_view delimiters) {
  const auto list = WithOneDelimiter(text, delimiters);
  StringList items;
  size_t start = 0;
  for (size_t end; (end = FindDelimiter(list, start)) != std::string::npos; start = end + list.delimiter.size()) {
    items.push_back(list.text.substr(start, end - start));
  }
  items.push_back(list.text.substr(start));
  return items;
}

std::string JoinList(const StringList& items) {
  std::string text;
  for (size_t i = 0; i < items.size(); ++i) {
    if (i > 0) text += kListDelimiter;
    text += items[i];
  }
  return text;
}

std::string GetListItem(std::string_view text, int n, std::string_view delimiters) {
  if (n < 1) throw RuntimeError::InvalidArgument("list item " + std::to_string(n));
  const auto list = WithOneDelimiter(text, delimiters);
  size_t start = 0;
  size_t end = FindDelimiter(list, start);
  if (end == std::string::npos) return list.text;
  for (int skipped = 1; skipped < n; ++skipped) {
    if (end == std::string::npos) return "";
    start = end + list.delimiter.size();
    end = FindDelimiter(list, start);
  }
  return list.text.substr(start, end - start);
}

int CountOccurrences(std::string_view text, std::string_view search) {
  if (search.empty()) return 0;
  if (search.size() == 1) return static_cast<int>(std::count(text.begin(), text.end(), search.front()));
  int count = 0;
  for (auto at = text.find(search); at != std::string_view::npos; at = text.find(search, at + search.size())) ++count;
  return count;
}

std::string TranslateChars(std::string_view text, std::string_view from, std::string_view to) {
  const auto replaced = Characters(from);
  const auto replacements = Characters(to);
  std::string result;
  result.reserve(text.size());
  while (!text.empty()) {
    const auto character = FirstCharacter(text);
    text.remove_prefix(character.size());
    const auto found = std::find(replaced.begin(), replaced.end(), character);
    if (found == replaced.end()) {
      result += character;
    } else if (!replacements.empty()) {
      result += replacements[std::min<size_t>(found - replaced.begin(), replacements.size() - 1)];
    }
  }
  return result;
}

std::string UnquoteFormula(std::string_view formula) {
  if (formula.starts_with('"')) formula.remove_prefix(1);
  if (formula.ends_with('"')) formula.remove_suffix(1);
  std::string text;
  for (size_t i = 0; i < formula.size(); ++i) {
    if (formula.substr(i).starts_with("\"\"")) ++i;
    text += formula[i];
  }
  return text;
}

bool NameOccursAtLeast(const StringList& list, std::string_view name, int times) {
  const std::string sought = ThePlatform().CaseFoldKey(name);
  int count = 0;
  return std::any_of(list.begin(), list.end(),
                     [&](const std::string& item) { return ThePlatform().CaseFoldKey(item) == sought && ++count == times; });
}

std::string_view TrimBlanks(std::string_view text) {
  const auto first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

int LeadingInteger(std::string_view text) {
  text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
  const bool negative = text.starts_with('-');
  if (negative || text.starts_with('+')) text.remove_prefix(1);
  // Keeps from_chars from reading a second sign, "inf" or "nan".
  if (text.empty() || std::string_view("0123456789.").find(text.front()) == std::string_view::npos) return 0;
  double value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error == std::errc::invalid_argument) return 0;
  value = std::nearbyint(negative ? -value : value);
  if (error == std::errc::result_out_of_range || value > std::numeric_limits<int>::max() ||
      value < std::numeric_limits<int>::min()) {
    throw RuntimeError::Overflow();
  }
  return static_cast<int>(value);
}

}  // namespace vardo
