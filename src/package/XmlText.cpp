#include "package/XmlText.h"

#include "base/Text.h"
#include "package/Limits.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

namespace vardo {
namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
constexpr size_t kFewAttributes = 8;

// ------------------------------------------------------------------------------------------------------------- characters

constexpr bool IsAscii(char c) { return static_cast<unsigned char>(c) < 0x80; }
constexpr bool IsBlank(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; }

bool IsXmlCharacter(std::uint32_t c) {
  return c == 0x9 || c == 0xA || c == 0xD || (c >= 0x20 && c < 0xD800) || (c >= 0xE000 && c < 0xFFFE) ||
         (c >= 0x10000 && c < 0x110000);
}

struct Range {
  std::uint32_t first, last;
};
constexpr Range kNameStarts[] = {{':', ':'},       {'A', 'Z'},       {'_', '_'},       {'a', 'z'},
                                 {0xC0, 0xD6},     {0xD8, 0xF6},     {0xF8, 0x2FF},    {0x370, 0x37D},
                                 {0x37F, 0x1FFF},  {0x200C, 0x200D}, {0x2070, 0x218F}, {0x2C00, 0x2FEF},
                                 {0x3001, 0xD7FF}, {0xF900, 0xFDCF}, {0xFDF0, 0xFFFD}, {0x10000, 0xEFFFF}};
constexpr Range kFurtherNameCharacters[] = {{'-', '.'}, {'0', '9'}, {0xB7, 0xB7}, {0x300, 0x36F}, {0x203F, 0x2040}};

template <size_t size>
bool IsIn(const Range (&ranges)[size], std::uint32_t c) {
  return std::any_of(ranges, ranges + size, [c](const Range& range) { return c >= range.first && c <= range.last; });
}

struct Character {
  std::uint32_t code;
  size_t length;  // 0: no UTF-8, or no character that XML has
};

Character ReadCharacter(std::string_view text) {
  const auto byte = [&](size_t i) { return static_cast<unsigned char>(text[i]); };
  static constexpr std::array<std::uint32_t, 5> kLowest{0, 0, 0x80, 0x800, 0x10000};
  if (text.empty()) return {0, 0};
  if (byte(0) < 0x80) return {byte(0), IsXmlCharacter(byte(0)) ? size_t{1} : 0};
  const size_t length = byte(0) < 0xC0 ? 0 : byte(0) < 0xE0 ? 2 : byte(0) < 0xF0 ? 3 : byte(0) < 0xF8 ? 4 : 0;
  if (length == 0 || text.size() < length) return {0, 0};
  std::uint32_t c = byte(0) & (0x7F >> length);
  for (size_t i = 1; i < length; ++i) {
    if ((byte(i) & 0xC0) != 0x80) return {0, 0};
    c = c << 6 | (byte(i) & 0x3F);
  }
  return {c, c >= kLowest[length] && IsXmlCharacter(c) ? length : 0};
}

// The character that the reference at the start of `text` stands for, 0 when it is none.
std::uint32_t ReferencedCharacter(std::string_view text) {
  static constexpr std::pair<std::string_view, char> kNamed[] = {
      {"&amp;", '&'}, {"&lt;", '<'}, {"&gt;", '>'}, {"&quot;", '"'}, {"&apos;", '\''}};
  for (const auto& [name, character] : kNamed)
    if (text.starts_with(name)) return static_cast<unsigned char>(character);
  if (!text.starts_with("&#")) return 0;
  const bool hex = text.starts_with("&#x");
  const char* begin = text.data() + (hex ? 3 : 2);
  std::uint32_t c = 0;
  const auto [end, error] = std::from_chars(begin, text.data() + text.size(), c, hex ? 16 : 10);
  return error == std::errc() && end != text.data() + text.size() && *end == ';' && IsXmlCharacter(c) ? c : 0;
}

// ------------------------------------------------------------------------------------------------- runs of characters

using Bytes = std::array<bool, 256>;

constexpr Bytes kAsciiNameCharacters = [] {
  Bytes bytes{};
  for (char c : std::string_view("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789_-."))
    bytes[static_cast<unsigned char>(c)] = true;
  return bytes;
}();

// Whatever is no control character, is ASCII and none of `stops`.
template <char... stops>
constexpr Bytes kPlain = [] {
  Bytes bytes{};
  for (size_t c = 0x20; c < 0x80; ++c) bytes[c] = ((c != stops) && ...);
  return bytes;
}();

// Past those that are in the table, most of which come in runs of a few.
template <const Bytes& table>
const char* SkipRun(const char* at, const char* end) {
  const auto is = [](char c) { return table[static_cast<unsigned char>(c)]; };
  for (; end - at >= 4; at += 4) {
    if (!is(at[0])) return at;
    if (!is(at[1])) return at + 1;
    if (!is(at[2])) return at + 2;
    if (!is(at[3])) return at + 3;
  }
  while (at != end && is(*at)) ++at;
  return at;
}

// ------------------------------------------------------------------------------------------------------------- the checker

// Each Read... takes where a thing begins and returns where it ends. The place travels in a register: the checker is as fast as
// it is because of that.
class Checker {
 public:
  explicit Checker(std::string_view text) : begin_(text.data()), end_(begin_ + text.size()) {}

  XmlOutline Run() {
    const char* at = begin_;
    if (Is(at, "\xFF\xFE") || Is(at, "\xFE\xFF") || From(at).substr(0, 2).find('\0') != std::string_view::npos)
      throw XmlFault{"is in UTF-16 or UTF-32, not in UTF-8"};
    if (Is(at, kByteOrderMark)) at += kByteOrderMark.size();
    if (Is(at, "<?xml") && IsBlank(At(at + 5))) at = ReadDeclaration(at + 5);
    at = SkipBesideRoot(at);
    if (at == end_) throw XmlFault{"has no XML element"};
    if (*at != '<') throw IllFormed("text before the first element", at);
    outline_.begin = static_cast<size_t>(at - begin_);
    at = ReadRoot(at);
    outline_.end = static_cast<size_t>(at - begin_);
    if (at = SkipBesideRoot(at); at != end_) throw IllFormed("something stands beside the root element", at);
    return outline_;
  }

 private:
  struct Attribute {
    std::string_view name, value;
  };
  struct Declared {
    std::string_view prefix;
    size_t depth;
  };

  // What stands there; NUL, which no text has, at the end.
  char At(const char* at) const { return at < end_ ? *at : '\0'; }
  std::string_view From(const char* at) const { return {at, static_cast<size_t>(end_ - at)}; }
  bool Is(const char* at, std::string_view text) const { return From(at).starts_with(text); }
  static std::string_view Between(const char* from, const char* to) { return {from, static_cast<size_t>(to - from)}; }

  XmlFault Fault(const std::string& what, const char* at) const { return {what + " at byte " + std::to_string(at - begin_)}; }
  XmlFault IllFormed(const std::string& why, const char* at) const {
    return {Fault("is not well-formed XML", at).what + " (" + why + ")"};
  }
  XmlFault Repeated(const Attribute& attribute) const {
    return IllFormed("the attribute " + InWords(attribute.name) + " twice", attribute.name.data());
  }

  const char* SkipBlanks(const char* at) const {
    while (at != end_ && IsBlank(*at)) ++at;
    return at;
  }
  const char* Expect(char c, const char* why, const char* at) const {
    if (At(at) != c) throw IllFormed(why, at);
    return at + 1;
  }

  // --- Beside the root element.

  const char* ReadDeclaration(const char* at) {
    std::string encoding = "utf-8";
    while (At(at = SkipBlanks(at)) != '?') {
      Attribute attribute;
      at = ReadAttribute(at, attribute);
      outline_.quote = attribute.value.data()[-1];
      if (attribute.name == "encoding") encoding = LowerAscii(attribute.value);
    }
    if (encoding != "utf-8" && encoding != "utf8") throw XmlFault{"says it is in " + InWords(encoding) + ", not in UTF-8"};
    return Expect('>', "the XML declaration does not end", at + 1);
  }

  const char* SkipBesideRoot(const char* at) {
    while (true) {
      at = SkipBlanks(at);
      if (Is(at, "<!--") || Is(at, "<?"))
        at = ReadMarkup(at + 1);
      else if (Is(at, "<!DOCTYPE"))
        throw XmlFault{"has a DOCTYPE", true};
      else
        return at;
    }
  }

  // --- Elements.

  const char* ReadRoot(const char* at) {
    while (true) {
      switch (At(++at)) {
        case '/':
          at = ReadEndTag(at + 1);
          break;
        case '!':
        case '?':
          at = ReadMarkup(at);
          ++outline_.nodes;
          break;
        default:
          at = ReadStartTag(at);
          ++outline_.nodes;
      }
      if (depth_ == 0) return at;
      at = ReadText(at);
    }
  }

  const char* ReadStartTag(const char* at) {
    const char* const name = at;
    bool hasPrefix = false;
    at = ReadName(at, hasPrefix);
    const std::string_view element = Between(name, at);
    attributes_.clear();
    while (true) {
      const char* const next = SkipBlanks(at);
      if (At(next) == '>' || At(next) == '/') {
        at = next;
        break;
      }
      if (next == at) throw IllFormed("a tag does not end", at);
      if (attributes_.size() == kMaxXmlAttributes)
        throw XmlFault{Fault("has an element of more than " + std::to_string(kMaxXmlAttributes) + " attributes", name).what,
                       true};
      Attribute& attribute = attributes_.emplace_back();
      at = ReadAttribute(next, attribute, hasPrefix);
    }
    if (depth_ == kMaxXmlDepth) throw XmlFault{"is nested deeper than " + std::to_string(kMaxXmlDepth) + " elements", true};
    if (depth_ == 0 && !attributes_.empty()) outline_.quote = attributes_[0].value.data()[-1];
    outline_.attributes += attributes_.size();
    CheckNoRepetition();
    open_[depth_++] = element;
    if (hasPrefix) CheckPrefixes(element);
    if (*at == '/') {
      ++at;
      Close();
    }
    return Expect('>', "a tag does not end", at);
  }

  const char* ReadEndTag(const char* at) {
    const std::string_view element = open_[depth_ - 1];
    const char* const end = at + element.size();
    if (!Is(at, element) || !(At(end) == '>' || IsBlank(At(end))))
      throw IllFormed("the end of an element other than " + InWords(element), at);
    Close();
    return Expect('>', "a tag does not end", SkipBlanks(end));
  }

  void Close() {
    while (!declared_.empty() && declared_.back().depth == depth_) {
      const auto prefix = prefixes_.find(declared_.back().prefix);
      if (--prefix->second == 0) prefixes_.erase(prefix);
      declared_.pop_back();
    }
    --depth_;
  }

  void CheckNoRepetition() const {
    if (attributes_.size() > kFewAttributes) {
      std::unordered_set<std::string_view> names;
      for (const Attribute& attribute : attributes_)
        if (!names.insert(attribute.name).second) throw Repeated(attribute);
      return;
    }
    for (size_t i = 1; i < attributes_.size(); ++i)
      for (size_t j = 0; j < i; ++j)
        if (attributes_[i].name[0] == attributes_[j].name[0] && attributes_[i].name == attributes_[j].name)
          throw Repeated(attributes_[i]);
  }

  // Of the element just opened. A prefix may be declared behind its first use.
  void CheckPrefixes(std::string_view element) {
    constexpr std::string_view kDeclaration = "xmlns:";
    for (const Attribute& attribute : attributes_) {
      if (!attribute.name.starts_with(kDeclaration)) continue;
      const std::string_view prefix = attribute.name.substr(kDeclaration.size());
      declared_.push_back({prefix, depth_});
      ++prefixes_[prefix];
    }
    CheckPrefix(element);
    for (const Attribute& attribute : attributes_) CheckPrefix(attribute.name);
  }

  void CheckPrefix(std::string_view name) const {
    const size_t colon = name.find(':');
    if (colon == std::string_view::npos) return;
    const std::string_view prefix = name.substr(0, colon);
    if (prefix == "xml" || prefix == "xmlns") return;
    if (!prefixes_.contains(prefix)) throw IllFormed("the prefix " + InWords(prefix) + " is not declared", name.data());
  }

  // --- Parts of tags.

  const char* ReadName(const char* at, bool& hasPrefix) const {
    const char* const end = SkipRun<kAsciiNameCharacters>(at, end_);
    const bool isCommon = (IsAsciiLetter(At(at)) || At(at) == '_') && At(end) != ':' && IsAscii(At(end));
    return isCommon ? end : ReadUncommonName(at, hasPrefix);
  }

  // One with a prefix, in other letters than ASCII's, or none at all.
  const char* ReadUncommonName(const char* at, bool& hasPrefix) const {
    bool isStart = true, hasColon = false;
    while (true) {
      const Character c = ReadCharacter(From(at));
      if (c.code == ':' && !isStart && !hasColon)
        isStart = hasColon = hasPrefix = true;
      else if (c.code != ':' && (IsIn(kNameStarts, c.code) || (!isStart && IsIn(kFurtherNameCharacters, c.code))))
        isStart = false;
      else
        break;
      at += c.length;
    }
    if (!IsAscii(At(at))) ReadOne(at);
    if (isStart || At(at) == ':') throw IllFormed("no name where one must stand", at);
    return at;
  }

  const char* ReadAttribute(const char* at, Attribute& attribute, bool& hasPrefix) {
    const char* const name = at;
    at = ReadName(at, hasPrefix);
    attribute.name = Between(name, at);
    at = SkipBlanks(Expect('=', "an attribute without a value", SkipBlanks(at)));
    const char* const value = at + 1;
    at = At(at) == '\'' ? ReadValue<'\''>(value) : At(at) == '"' ? ReadValue<'"'>(value) : nullptr;
    if (!at) throw IllFormed("an attribute's value without quotes", value - 1);
    attribute.value = Between(value, at);
    return at + 1;
  }
  const char* ReadAttribute(const char* at, Attribute& attribute) {
    bool hasPrefix = false;
    return ReadAttribute(at, attribute, hasPrefix);
  }

  // Returns where the quote stands that ends it.
  template <char quote>
  const char* ReadValue(const char* at) {
    while (true) {
      at = SkipRun<kPlain<'<', '&', quote>>(at, end_);
      const char c = At(at);
      if (c == quote) return at;
      if (c == '<') throw IllFormed("\"<\" in an attribute", at);
      at = ReadSpecial(at);
    }
  }

  // --- Texts.

  // Up to the next tag.
  const char* ReadText(const char* at) {
    const char* const from = at;
    while (true) {
      at = SkipRun<kPlain<'<', '&', '>'>>(at, end_);
      const char c = At(at);
      if (c == '<') break;
      if (c == '>' && Between(from, at).ends_with("]]")) throw IllFormed("\"]]>\" in a text", at);
      at = c == '>' ? at + 1 : ReadSpecial(at);
    }
    if (at != from) ++outline_.nodes;
    return at;
  }

  // A reference, a control character, or one that is not ASCII.
  const char* ReadSpecial(const char* at) { return At(at) == '&' ? ReadReference(at) : ReadOne(at); }

  const char* ReadOne(const char* at) const {
    if (at == end_) throw IllFormed("it does not end", at);
    const size_t length = ReadCharacter(From(at)).length;
    if (length == 0) throw Fault(IsAscii(*at) ? "has a control character" : "has text that is not UTF-8", at);
    return at + length;
  }

  const char* ReadReference(const char* at) {
    const std::uint32_t c = ReferencedCharacter(From(at).substr(0, 16));
    if (c == 0) throw Fault("has an unknown reference (&)", at);
    if (c == '\r') outline_.hasCarriageReturnReference = true;
    return at + 1;
  }

  // A comment, CDATA or an instruction.
  const char* ReadMarkup(const char* at) {
    if (Is(at, "!--")) return Expect('>', "\"--\" in a comment", ReadVerbatim<'-'>("--", at + 3));
    if (Is(at, "![CDATA[")) return ReadVerbatim<']'>("]]>", at + 8);
    if (Is(at, "!DOCTYPE")) throw XmlFault{"has a DOCTYPE", true};
    if (!Is(at, "?")) throw IllFormed("a tag that is none", at);
    const char* const target = at + 1;
    bool hasPrefix = false;
    at = ReadName(target, hasPrefix);
    if (EqualAsciiIgnoringCase(Between(target, at), "xml"))
      throw IllFormed("an XML declaration that is not at the beginning", target);
    if (!IsBlank(At(at)) && !Is(at, "?>")) throw IllFormed("no name where one must stand", at);
    return ReadVerbatim<'?'>("?>", at);
  }

  // Up to and including `ending`, which begins with `first`.
  template <char first>
  const char* ReadVerbatim(std::string_view ending, const char* at) const {
    while (true) {
      at = SkipRun<kPlain<first>>(at, end_);
      if (Is(at, ending)) return at + ending.size();
      at = ReadOne(at);
    }
  }

  const char* const begin_;
  const char* const end_;
  XmlOutline outline_;
  std::array<std::string_view, kMaxXmlDepth> open_;
  size_t depth_ = 0;
  std::vector<Attribute> attributes_;  // of the tag being read
  std::vector<Declared> declared_;
  std::unordered_map<std::string_view, int> prefixes_;  // how many of the open elements declare each
};

}  // namespace

XmlOutline CheckXml(std::string_view text) { return Checker(text).Run(); }

}  // namespace vardo
