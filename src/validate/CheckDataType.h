// The checks of what is typed into the fields of a dialog. An empty field passes every check.
#pragma once

#include "forms/FieldView.h"

#include <optional>
#include <string_view>

namespace vardo {

// The kinds of data a field can hold. Callers may write them in any case.
inline constexpr std::string_view kSymbolName = "symbol name";
inline constexpr std::string_view kInteger = "integer";
inline constexpr std::string_view kReal = "real";
inline constexpr std::string_view kExpression = "expression";

// The kind that ShowFieldError knows besides: two shapes bear one name.
inline constexpr int kDuplicateName = 1;

// True when the field is hidden or holds data of the kind (a kind that is none of the four has no data). Otherwise the message
// has been shown and the field been given the focus. What the checks throw is thrown.
bool ValidateField(FieldView& field, std::string_view kind, std::optional<double> maximum = std::nullopt);

// Shows the message that goes with a kind; an empty one when the kind is unknown.
void ShowFieldError(std::string_view kind);
void ShowFieldError(int kind);

// Letters, digits, blanks and "@_%?#.", and more of them than could be read as a number. A text that begins with "e" is not
// looked at.
bool IsSymbolName(std::string_view text);
// Digits only. Throws RuntimeError (overflow) when a maximum is given and the number does not fit 32 bits.
bool IsIntegerText(std::string_view text, std::optional<double> maximum = std::nullopt);
// A number as the user's locale writes it.
bool IsRealText(std::string_view text, std::optional<double> maximum = std::nullopt);
// As many opening as closing parentheses, in whatever order.
bool IsBalancedExpression(std::string_view text);

// Of one character, by the user's ANSI code page.
bool IsAlphaChar(std::string_view character);
bool IsAlphaNumericChar(std::string_view character);

}  // namespace vardo
