// Between the program's UTF-8 and the wide strings of Windows, losslessly both ways.
#pragma once

#include <string>
#include <string_view>

namespace vardo {

std::wstring ToWide(std::string_view text);
std::string FromWide(std::wstring_view text);

}  // namespace vardo
