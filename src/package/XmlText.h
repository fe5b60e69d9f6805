// The characters of an XML text, checked before it is parsed; the parser takes anything.
#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

namespace vardo {

struct XmlFault {
  size_t at;         // byte
  const char* what;  // "has invalid UTF-8"
};

struct XmlTextFacts {
  std::optional<XmlFault> fault;
  bool hasCarriageReturnReference = false;  // &#13; or &#xD; outside CDATA, comments and instructions
};

// Faults: bytes that are no UTF-8, characters that XML has not (NUL and most control characters), and references other than to
// the five named entities and to such characters.
XmlTextFacts CheckXmlText(std::string_view text);

}  // namespace vardo
