#include "validate/CheckDataType.h"

#include "base/Characters.h"
#include "base/Errors.h"
#include "base/Text.h"
#include "platform/Platform.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <string>
#include <system_error>

namespace vardo {
namespace {

using Maximum = std::optional<double>;

struct FieldKind {
  std::string_view name;
  bool (*check)(std::string_view text, Maximum maximum);
  std::string_view message;
};

constexpr FieldKind kFieldKinds[] = {
    {"1", nullptr, "Shape names must be unique."},
    {kSymbolName, [](std::string_view text, Maximum) { return IsSymbolName(text); },
     "Invalid symbol name. Symbol names can be alphanumeric strings containing "
     "letters, numbers, embedded spaces, and the special characters: @,_,%,?,#, and <period>. "
     "Symbol names may not contain any other punctuation characters such as <comma> or <colon> "
     "and they must not be reserved words such as COUNT."},
    {kInteger, IsIntegerText, "Invalid integer."},
    {kReal, IsRealText, "Invalid real."},
    {kExpression, [](std::string_view text, Maximum) { return IsBalancedExpression(text); },
     "Parentheses in expression are not balanced."},
};
constexpr FieldKind kUnknownKind = {"", nullptr, ""};

const FieldKind& FindKind(std::string_view kind) {
  const auto found = std::find_if(std::begin(kFieldKinds), std::end(kFieldKinds),
                                  [name = LowerAscii(kind)](const FieldKind& known) { return known.name == name; });
  return found == std::end(kFieldKinds) ? kUnknownKind : *found;
}

bool IsOneOf(std::string_view characters, std::string_view character) { return characters.find(character) != characters.npos; }

// "e" is no sign of a name: it could be an exponent.
bool MarksName(std::string_view character) { return (IsAlphaChar(character) && character != "e") || IsOneOf("@_%?#", character); }

bool Exceeds(double value, Maximum maximum) { return maximum && *maximum < value; }

}  // namespace

bool ValidateField(FieldView& field, std::string_view kind, std::optional<double> maximum) {
  if (!field.Visible()) return true;
  const auto check = FindKind(kind).check;
  if (check && check(field.Text(), maximum)) return true;
  ShowFieldError(kind);
  field.SetFocus();
  return false;
}

void ShowFieldError(std::string_view kind) { ThePlatform().ShowMessage(FindKind(kind).message, kProductTitle, kStyleCritical); }

void ShowFieldError(int kind) { ShowFieldError(std::to_string(kind)); }

bool IsSymbolName(std::string_view text) {
  if (text.empty() || text.starts_with('e')) return true;
  bool isName = false;
  while (!text.empty()) {
    const auto character = FirstCharacter(text);
    text.remove_prefix(character.size());
    if (!IsAlphaNumericChar(character) && !IsOneOf("@_%?#. ", character)) return false;
    isName |= MarksName(character);
  }
  return isName;
}

bool IsIntegerText(std::string_view text, std::optional<double> maximum) {
  if (text.empty()) return true;
  if (text.find_first_not_of("0123456789") != std::string_view::npos) return false;
  if (!maximum) return true;
  std::int32_t value = 0;
  if (std::from_chars(text.data(), text.data() + text.size(), value).ec != std::errc()) throw RuntimeError::Overflow();
  return !Exceeds(value, maximum);
}

bool IsRealText(std::string_view text, std::optional<double> maximum) {
  if (text.empty()) return true;
  const auto value = ThePlatform().ParseReal(text);
  return value && !Exceeds(*value, maximum);
}

bool IsBalancedExpression(std::string_view text) {
  return std::count(text.begin(), text.end(), '(') == std::count(text.begin(), text.end(), ')');
}

bool IsAlphaChar(std::string_view character) { return ThePlatform().IsAnsiAlpha(character); }

bool IsAlphaNumericChar(std::string_view character) { return ThePlatform().IsAnsiAlphaNumeric(character); }

}  // namespace vardo
