#include "package/XmlText.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <utility>

namespace vardo {
namespace {

constexpr size_t kBlock = 32;

bool IsXmlCharacter(std::uint32_t c) {
  return c == 0x9 || c == 0xA || c == 0xD || (c >= 0x20 && c < 0xD800) || (c >= 0xE000 && c < 0xFFFE) ||
         (c >= 0x10000 && c < 0x110000);
}

// Whether the next kBlock bytes need no second look: a loop without branches, which compilers turn into vector instructions.
bool IsPlainBlock(const char* text) {
  unsigned char special = 0;
  for (size_t i = 0; i < kBlock; ++i) {
    const unsigned char c = static_cast<unsigned char>(text[i]);
    special |= static_cast<unsigned char>((c >= 0x80) | (c < 0x20) | (c == '&'));
  }
  return special == 0;
}

// The length of the UTF-8 sequence at the start of `text`, 0 when it is none or stands for no XML character.
size_t SequenceLength(std::string_view text) {
  const auto byte = [&](size_t i) { return static_cast<unsigned char>(text[i]); };
  static constexpr std::array<std::uint32_t, 5> kLowest{0, 0, 0x80, 0x800, 0x10000};
  const size_t length = byte(0) < 0xC0 ? 0 : byte(0) < 0xE0 ? 2 : byte(0) < 0xF0 ? 3 : byte(0) < 0xF8 ? 4 : 0;
  if (length == 0 || text.size() < length) return 0;
  std::uint32_t c = byte(0) & (0x7F >> length);
  for (size_t i = 1; i < length; ++i) {
    if ((byte(i) & 0xC0) != 0x80) return 0;
    c = c << 6 | (byte(i) & 0x3F);
  }
  return c >= kLowest[length] && IsXmlCharacter(c) ? length : 0;
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

class Checker {
 public:
  explicit Checker(std::string_view text) : text_(text) {}

  XmlTextFacts Run() {
    while (at_ < text_.size() && !facts_.fault) {
      if (text_.size() - at_ >= kBlock && IsPlainBlock(text_.data() + at_))
        at_ += kBlock;
      else
        for (const size_t end = std::min(at_ + kBlock, text_.size()); at_ < end && !facts_.fault;) Step();
    }
    return facts_;
  }

 private:
  void Step() {
    const unsigned char c = static_cast<unsigned char>(text_[at_]);
    if (c == '&') {
      StepReference();
    } else if (c >= 0x80) {
      const size_t length = SequenceLength(text_.substr(at_));
      if (length == 0) facts_.fault = {at_, "has text that is not UTF-8"};
      at_ += length;
    } else {
      if (!IsXmlCharacter(c)) facts_.fault = {at_, "has a control character"};
      ++at_;
    }
  }

  void StepReference() {
    const std::uint32_t c = ReferencedCharacter(text_.substr(at_, 16));
    if (c == '\r') facts_.hasCarriageReturnReference = true;
    if (c == 0 && !IsVerbatim()) facts_.fault = {at_, "has an unknown reference (&)"};
    ++at_;
  }

  // Whether at_ lies in CDATA, a comment or an instruction, where "&" is a plain character. Hardly any file has these, so they
  // are looked for only when such a character is met.
  bool IsVerbatim() {
    static constexpr std::pair<std::string_view, std::string_view> kRegions[] = {
        {"<!--", "-->"}, {"<![CDATA[", "]]>"}, {"<?", "?>"}};
    while (verbatimEnd_ <= at_) {
      const size_t open = text_.find('<', verbatimEnd_);
      if (open > at_) return false;
      verbatimEnd_ = open + 1;
      for (const auto& [begin, end] : kRegions) {
        if (!text_.substr(open).starts_with(begin)) continue;
        const size_t close = text_.find(end, open + begin.size());
        verbatimEnd_ = close == std::string_view::npos ? text_.size() : close + end.size();
      }
    }
    return true;
  }

  std::string_view text_;
  size_t at_ = 0, verbatimEnd_ = 0;
  XmlTextFacts facts_;
};

}  // namespace

XmlTextFacts CheckXmlText(std::string_view text) { return Checker(text).Run(); }

}  // namespace vardo
