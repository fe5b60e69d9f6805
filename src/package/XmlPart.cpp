#include "package/XmlPart.h"

#include "base/FileError.h"
#include "base/Text.h"
#include "package/Limits.h"
#include "package/PartNames.h"
#include "package/XmlText.h"

#include <array>
#include <limits>
#include <utility>

namespace vardo {
namespace {

constexpr std::string_view kBlanks = " \t\r\n";
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
// Everything is kept: white space, CDATA, comments, instructions; and, to be found out, what must not stand beside the root
// element.
constexpr unsigned kParseFlags = pugi::parse_cdata | pugi::parse_comments | pugi::parse_pi | pugi::parse_ws_pcdata |
                                 pugi::parse_escapes | pugi::parse_wconv_attribute | pugi::parse_doctype | pugi::parse_fragment;

// ---------------------------------------------------------------------------------------------------------------- reading

// Finds where the root element begins and ends, and refuses what is no plain UTF-8 XML.
class Frame {
 public:
  Frame(const std::string& file, const std::string& part, std::string_view text) : file_(file), part_(part), text_(text) {
    if (text.starts_with("\xFF\xFE") || text.starts_with("\xFE\xFF") || text.substr(0, 2).find('\0') != std::string_view::npos)
      throw Damaged("is in UTF-16 or UTF-32, not in UTF-8");
    SkipProlog();
    SkipEpilog();
  }

  size_t Begin() const { return begin_; }
  size_t End() const { return end_; }

  FileError Damaged(const std::string& what) const { return FileError::Damaged(file_, PartInWords(part_) + " " + what); }
  FileError Unsafe(const std::string& what) const { return FileError::Unsafe(file_, PartInWords(part_) + " " + what); }
  FileError IllFormed(size_t at, const std::string& why) const {
    return Damaged("is not well-formed XML at byte " + std::to_string(at) + " (" + why + ")");
  }

 private:
  void SkipProlog() {
    if (text_.starts_with(kByteOrderMark)) begin_ = kByteOrderMark.size();
    if (text_.substr(begin_).starts_with("<?xml ")) CheckDeclaration();
    while (true) {
      begin_ = text_.find_first_not_of(kBlanks, begin_);
      if (begin_ == std::string_view::npos) throw Damaged("has no XML element");
      const std::string_view rest = text_.substr(begin_);
      if (rest.starts_with("<!DOCTYPE")) throw Unsafe("has a DOCTYPE");
      if (rest.starts_with("<!--"))
        SkipTo("-->", begin_ + 4);
      else if (rest.starts_with("<?"))
        SkipTo("?>", begin_ + 2);
      else
        break;
    }
    if (text_[begin_] != '<') throw IllFormed(begin_, "text before the first element");
  }

  void SkipTo(std::string_view end, size_t from) {
    const size_t at = text_.find(end, from);
    if (at == std::string_view::npos) throw IllFormed(begin_, "it does not end");
    begin_ = at + end.size();
  }

  void CheckDeclaration() {
    const std::string_view declaration = text_.substr(begin_, text_.find("?>", begin_) - begin_);
    const size_t at = declaration.find("encoding");
    if (at == std::string_view::npos) return;
    const size_t open = declaration.find_first_of("'\"", at);
    if (open == std::string_view::npos) return;
    const std::string encoding =
        LowerAscii(declaration.substr(open + 1, declaration.find(declaration[open], open + 1) - open - 1));
    if (encoding != "utf-8" && encoding != "utf8") throw Damaged("says it is in " + encoding + ", not in UTF-8");
  }

  // Comments and instructions after the root element, from the end.
  void SkipEpilog() {
    end_ = text_.size();
    while (true) {
      end_ = text_.find_last_not_of(kBlanks, end_ - 1) + 1;
      const std::string_view before = text_.substr(begin_, end_ - begin_);
      size_t open = std::string_view::npos;
      if (before.ends_with("-->")) open = before.rfind("<!--");
      if (before.ends_with("?>")) open = before.rfind("<?");
      if (open == std::string_view::npos || open == 0) return;
      end_ = begin_ + open;
    }
  }

  const std::string& file_;
  const std::string& part_;
  std::string_view text_;
  size_t begin_ = 0, end_ = 0;
};

// The quotes of the root element's first attribute, else those of the declaration.
char QuoteOf(std::string_view root, std::string_view prolog) {
  size_t at = root.substr(0, root.find('>')).find_first_of("'\"");
  if (at != std::string_view::npos) return root[at];
  at = prolog.find_first_of("'\"");
  return at != std::string_view::npos ? prolog[at] : '"';
}

// Walks the tree without recursion, so a hostile depth costs nothing.
void CheckDepth(pugi::xml_node root, const Frame& frame) {
  size_t depth = 1;
  for (pugi::xml_node node = root;;) {
    if (const pugi::xml_node child = node.first_child()) {
      if (++depth > kMaxXmlDepth && child.type() == pugi::node_element)
        throw frame.Unsafe("is nested deeper than " + std::to_string(kMaxXmlDepth) + " elements");
      node = child;
      continue;
    }
    pugi::xml_node next;
    while (node != root && !(next = node.next_sibling())) {
      node = node.parent();
      --depth;
    }
    if (node == root) return;
    node = next;
  }
}

// ---------------------------------------------------------------------------------------------------------------- writing

// What a character is written as; null: as it is; "": not at all.
using Escapes = std::array<const char*, 256>;

// Text, with carriage returns as they are: a raw one was read raw.
constexpr Escapes TextEscapes() {
  Escapes escapes{};
  for (int c = 0; c < 0x20; ++c) escapes[c] = "";
  escapes['\t'] = escapes['\n'] = escapes['\r'] = nullptr;
  escapes['&'] = "&amp;";
  escapes['<'] = "&lt;";
  escapes['>'] = "&gt;";
  return escapes;
}

constexpr Escapes AttributeEscapes(char quote) {
  Escapes escapes = TextEscapes();
  escapes['\t'] = "&#9;";
  escapes['\n'] = "&#10;";
  escapes['\r'] = "&#13;";
  escapes[static_cast<unsigned char>(quote)] = quote == '"' ? "&quot;" : "&apos;";
  return escapes;
}

// Text that grows by single characters, for which appending to a string is too slow.
class Buffer {
 public:
  explicit Buffer(size_t sizeHint) : text_(sizeHint + 64, '\0'), at_(text_.data()), end_(at_ + text_.size()) {}

  void Put(char c) {
    if (at_ == end_) Grow();
    *at_++ = c;
  }
  void Put(const char* text) {
    while (*text) Put(*text++);
  }
  void Put(std::string_view text) {
    for (char c : text) Put(c);
  }
  std::string Take() {
    text_.resize(static_cast<size_t>(at_ - text_.data()));
    return std::move(text_);
  }

 private:
  void Grow() {
    const size_t size = text_.size();
    text_.resize(size * 2);
    at_ = text_.data() + size;
    end_ = text_.data() + text_.size();
  }

  std::string text_;
  char *at_, *end_;
};

class Writer {
 public:
  Writer(char quote, bool referToCarriageReturns, size_t sizeHint)
      : quote_(quote), text_(TextEscapes()), attribute_(AttributeEscapes(quote)), out_(sizeHint) {
    if (referToCarriageReturns) text_['\r'] = "&#13;";
  }

  void Raw(std::string_view text) { out_.Put(text); }
  void Write(pugi::xml_node top) {
    for (pugi::xml_node node = top;;) {
      const pugi::xml_node child = node.first_child();
      Open(node, !child);
      if (child) {
        node = child;
        continue;
      }
      pugi::xml_node next;
      while (node != top && !(next = node.next_sibling())) {
        node = node.parent();
        Wrap("</", node.name(), ">");
      }
      if (node == top) return;
      node = next;
    }
  }
  std::string Take() { return out_.Take(); }

 private:
  void Open(pugi::xml_node node, bool isEmpty) {
    switch (node.type()) {
      case pugi::node_element:
        OpenElement(node, isEmpty);
        break;
      case pugi::node_cdata:
        Wrap("<![CDATA[", node.value(), "]]>");
        break;
      case pugi::node_comment:
        Wrap("<!--", node.value(), "-->");
        break;
      case pugi::node_pi:
        OpenInstruction(node);
        break;
      default:
        Escaped(node.value(), text_);
    }
  }

  void OpenElement(pugi::xml_node element, bool isEmpty) {
    Wrap("<", element.name(), "");
    for (pugi::xml_attribute attribute = element.first_attribute(); attribute; attribute = attribute.next_attribute()) {
      Wrap(" ", attribute.name(), "=");
      out_.Put(quote_);
      Escaped(attribute.value(), attribute_);
      out_.Put(quote_);
    }
    out_.Put(isEmpty ? "/>" : ">");
  }

  void OpenInstruction(pugi::xml_node instruction) {
    Wrap("<?", instruction.name(), *instruction.value() ? " " : "");
    Wrap("", instruction.value(), "?>");
  }

  void Wrap(const char* before, const char* text, const char* after) {
    out_.Put(before);
    out_.Put(text);
    out_.Put(after);
  }

  void Escaped(const char* text, const Escapes& escapes) {
    for (; *text; ++text) {
      if (const char* escape = escapes[static_cast<unsigned char>(*text)])
        out_.Put(escape);
      else
        out_.Put(*text);
    }
  }

  char quote_;
  Escapes text_, attribute_;
  Buffer out_;
};

}  // namespace

XmlBytes XmlBytes::CopyOf(std::string_view text) {
  XmlBytes copy{std::make_unique_for_overwrite<char[]>(text.size()), text.size()};
  text.copy(copy.data.get(), text.size());
  return copy;
}

XmlPart::XmlPart(const std::string& file, std::string name, XmlBytes text) : name_(std::move(name)), text_(std::move(text)) {
  const std::string_view all = text_.View();
  const Frame frame(file, name_, all);
  const XmlTextFacts facts = CheckXmlText(all);
  if (facts.fault) throw frame.Damaged(std::string(facts.fault->what) + " at byte " + std::to_string(facts.fault->at));

  prolog_ = all.substr(0, frame.Begin());
  epilog_ = all.substr(frame.End());
  const size_t size = frame.End() - frame.Begin();
  quote_ = QuoteOf(all.substr(frame.Begin(), size), prolog_);
  carriageReturnReferences_ = facts.hasCarriageReturnReference;

  // Carriage returns stay as they are in the text; only where some are written as references must those be told from the raw
  // ones.
  const unsigned flags = kParseFlags | (carriageReturnReferences_ ? pugi::parse_eol : 0);
  const pugi::xml_parse_result result =
      document_.load_buffer_inplace(text_.data.get() + frame.Begin(), size, flags, pugi::encoding_utf8);
  if (!result) throw frame.IllFormed(frame.Begin() + static_cast<size_t>(result.offset), result.description());
  root_ = document_.first_child();
  if (root_.type() != pugi::node_element || root_.next_sibling())
    throw frame.Damaged("is not well-formed XML (something stands beside the root element)");
  CheckDepth(root_, frame);
}

std::string XmlPart::Serialise() const {
  Writer writer(quote_, carriageReturnReferences_, text_.size + text_.size / 8);
  writer.Raw(prolog_);
  writer.Write(root_);
  writer.Raw(epilog_);
  return writer.Take();
}

std::string XmlPart::Serialise(pugi::xml_node element) const {
  Writer writer(quote_, carriageReturnReferences_, 0);
  writer.Write(element);
  return writer.Take();
}

}  // namespace vardo
