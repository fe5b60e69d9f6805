#include "package/XmlPart.h"

#include "base/FileError.h"
#include "package/Limits.h"
#include "package/TreeMemory.h"
#include "package/XmlText.h"
#include "platform/Memory.h"

#include <algorithm>
#include <array>
#include <limits>
#include <new>
#include <utility>

namespace vardo {
namespace {

// Everything is kept: white space, CDATA, comments, instructions.
constexpr unsigned kParseFlags = pugi::parse_cdata | pugi::parse_comments | pugi::parse_pi | pugi::parse_ws_pcdata |
                                 pugi::parse_escapes | pugi::parse_wconv_attribute;

// What the parser makes of a text.
constexpr std::uint64_t kNodeBytes = 64, kAttributeBytes = 40;

std::uint64_t TreeBytes(const XmlOutline& outline) {
  const std::uint64_t bytes = outline.nodes * kNodeBytes + outline.attributes * kAttributeBytes;
  return (bytes / kTreePage + 1) * kTreePageBytes;
}

// Before main, so that no tree is older.
[[maybe_unused]] const bool kTreesUseTheirMemory = (pugi::set_memory_management_functions(TakeTreePage, GiveTreePage), true);

XmlOutline OutlineOf(const std::string& file, const std::string& part, std::string_view text) {
  try {
    return CheckXml(text);
  } catch (const XmlFault& fault) {
    const std::string what = PartInWords(part) + " " + fault.what;
    throw fault.isUnsafe ? FileError::Unsafe(file, what) : FileError::Damaged(file, what);
  }
}

// ---------------------------------------------------------------------------------------------------------------- writing

// What a character is written as; null: as it is; "": not at all. NUL ends a text.
using Escapes = std::array<const char*, 256>;

constexpr Escapes kNoEscapes = [] {
  Escapes escapes{};
  escapes['\0'] = "";
  return escapes;
}();

// Text, with carriage returns as they are: a raw one was read raw.
constexpr Escapes TextEscapes() {
  Escapes escapes = kNoEscapes;
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

// The memory that a text is written to. Its writer keeps the place where it is.
class Buffer {
 public:
  explicit Buffer(size_t sizeHint) {
    text_.reserve(sizeHint + kRoom);
    ExpectUseOf(text_.data(), text_.capacity());
    text_.resize(text_.capacity());
  }

  char* Begin() { return text_.data(); }
  // The place, moved with all before it where there was not as much room.
  char* Room(char* at, size_t size = kRoom) {
    return static_cast<size_t>(text_.data() + text_.size() - at) >= size ? at : Grow(at, size);
  }
  std::string Take(const char* end) {
    text_.resize(static_cast<size_t>(end - text_.data()));
    return std::move(text_);
  }

  static constexpr size_t kRoom = 256;

 private:
  [[gnu::noinline]] char* Grow(const char* at, size_t size) {
    const size_t used = static_cast<size_t>(at - text_.data());
    text_.resize(used + std::max(used / 2, size));
    return text_.data() + used;
  }

  std::string text_;
};

// The place travels through the functions, in a register.
class Writer {
 public:
  Writer(char quote, bool referToCarriageReturns, size_t sizeHint)
      : quote_(quote), text_(TextEscapes()), attribute_(AttributeEscapes(quote)), out_(sizeHint), end_(out_.Begin()) {
    if (referToCarriageReturns) text_['\r'] = "&#13;";
  }

  void Raw(std::string_view text) { end_ = Put(text, end_); }
  void Write(pugi::xml_node top) {
    char* at = end_;
    for (pugi::xml_node node = top;;) {
      const pugi::xml_node child = node.first_child();
      at = Open(node, !child, at);
      if (child) {
        node = child;
        continue;
      }
      pugi::xml_node next;
      while (node != top && !(next = node.next_sibling())) {
        node = node.parent();
        at = Put(">", Escaped(node.name(), kNoEscapes, Put("</", at)));
      }
      if (node == top) break;
      node = next;
    }
    end_ = at;
  }
  std::string Take() { return out_.Take(end_); }

 private:
  char* Open(pugi::xml_node node, bool isEmpty, char* at) {
    switch (node.type()) {
      case pugi::node_element:
        return OpenElement(node, isEmpty, at);
      case pugi::node_cdata:
        return Put("]]>", Escaped(node.value(), kNoEscapes, Put("<![CDATA[", at)));
      case pugi::node_comment:
        return Put("-->", Escaped(node.value(), kNoEscapes, Put("<!--", at)));
      case pugi::node_pi:
        at = Put(*node.value() ? " " : "", Escaped(node.name(), kNoEscapes, Put("<?", at)));
        return Put("?>", Escaped(node.value(), kNoEscapes, at));
      default:
        return Escaped(node.value(), text_, at);
    }
  }

  char* OpenElement(pugi::xml_node element, bool isEmpty, char* at) {
    at = Escaped(element.name(), kNoEscapes, Put("<", at));
    for (pugi::xml_attribute attribute = element.first_attribute(); attribute; attribute = attribute.next_attribute()) {
      at = Put("=", Escaped(attribute.name(), kNoEscapes, Put(" ", at)));
      at = Put({&quote_, 1}, Escaped(attribute.value(), attribute_, Put({&quote_, 1}, at)));
    }
    return Put(isEmpty ? "/>" : ">", at);
  }

  char* Put(std::string_view text, char* at) {
    at = out_.Room(at, text.size());
    return std::copy(text.begin(), text.end(), at);
  }

  // In pieces that have room for certain.
  char* Escaped(const char* text, const Escapes& escapes, char* at) {
    while (true) {
      at = out_.Room(at);
      for (char* const end = at + Buffer::kRoom / 2; at != end && !escapes[static_cast<unsigned char>(*text)];) *at++ = *text++;
      const char* escape = escapes[static_cast<unsigned char>(*text)];
      if (!escape) continue;
      if (!*text) return at;
      while (*escape) *at++ = *escape++;
      ++text;
    }
  }

  char quote_;
  Escapes text_, attribute_;
  Buffer out_;
  char* end_;
};

}  // namespace

XmlPart::XmlPart(const std::string& file, std::string name, ByteArray text, std::uint64_t memoryOfOthers)
    : name_(std::move(name)), text_(std::move(text)) {
  const std::string_view all = text_.View();
  const XmlOutline outline = OutlineOf(file, name_, all);
  memory_ = all.size() + TreeBytes(outline);
  CheckMemory(memoryOfOthers + memory_, file, name_);

  prolog_ = all.substr(0, outline.begin);
  epilog_ = all.substr(outline.end);
  quote_ = outline.quote;
  carriageReturnReferences_ = outline.hasCarriageReturnReference;

  // Carriage returns stay as they are in the text; only where some are written as references must those be told from the raw
  // ones.
  const unsigned flags = kParseFlags | (carriageReturnReferences_ ? pugi::parse_eol : 0);
  const pugi::xml_parse_result result =
      document_.load_buffer_inplace(text_.data.get() + outline.begin, outline.end - outline.begin, flags, pugi::encoding_utf8);
  if (result.status == pugi::status_out_of_memory) {
    TreesRanOut();
    throw std::bad_alloc();
  }
  if (!result) throw FileError::Damaged(file, PartInWords(name_) + " cannot be read as XML (" + result.description() + ")");
  root_ = document_.first_child();
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
