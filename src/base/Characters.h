// UTF-8 text character by character. A byte that belongs to no well-formed character stands for itself.
#pragma once

#include <string>
#include <string_view>

namespace vardo {

// The first and the last character of a text that is not empty.
std::string_view FirstCharacter(std::string_view text);
std::string_view LastCharacter(std::string_view text);

// The code point of a character; U+FFFD when its bytes are not well formed.
char32_t CodePoint(std::string_view character);

// Every character is a blank or a visible ASCII character.
bool IsPrintableAscii(std::string_view text);

}  // namespace vardo
