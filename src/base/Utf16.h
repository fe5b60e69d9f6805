// Between the program's UTF-8 and the UTF-16 of Windows. Whatever UTF-16 comes in goes out the same, unpaired surrogates included
// (each is kept as the three bytes of its code). Bytes that are no UTF-8 become U+FFFD.
#pragma once

#include <string>
#include <string_view>

namespace vardo {

std::u16string ToUtf16(std::string_view utf8);
std::string ToUtf8(std::u16string_view utf16);

}  // namespace vardo
