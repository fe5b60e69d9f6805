// An XML text, checked before it is parsed: the parser takes much that is no XML, and any amount of it.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace vardo {

// Where a well-formed text has its root element, and what its tree will consist of.
struct XmlOutline {
  size_t begin = 0, end = 0;  // of the root element; comments, instructions and white space stand around it
  size_t nodes = 0;           // of the root element, itself included: elements, texts, comments, ...
  size_t attributes = 0;
  char quote = '"';                         // of the root element's first attribute, else of the declaration
  bool hasCarriageReturnReference = false;  // &#13; or &#xD;
};

// What is wrong with a text: "is not well-formed XML at byte 8 (...)".
struct XmlFault {
  std::string what;
  bool isUnsafe = false;  // well-formed, but nothing to open
};

// Throws XmlFault unless the text is one element of XML 1.0 in UTF-8 with all prefixes declared, without a DOCTYPE, and
// exceeds neither kMaxXmlDepth nor kMaxXmlAttributes.
XmlOutline CheckXml(std::string_view text);

}  // namespace vardo
