#include "platform/win32/WideText.h"

#include "base/Utf16.h"

namespace vardo {

std::wstring ToWide(std::string_view text) {
  const auto units = ToUtf16(text);
  return {units.begin(), units.end()};
}

std::string FromWide(std::wstring_view text) { return ToUtf8(std::u16string(text.begin(), text.end())); }

}  // namespace vardo
