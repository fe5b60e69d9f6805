#include "stencil/PartWriter.h"

#include <charconv>

namespace vardo {
namespace {

// Visio encloses attributes in apostrophes and leaves quotation marks in formulas bare.
std::string Escaped(std::string_view text, bool inAttribute) {
  std::string escaped;
  for (const char c : text) {
    if (c == '&')
      escaped += "&amp;";
    else if (c == '<')
      escaped += "&lt;";
    else if (c == '>')
      escaped += "&gt;";
    else if (c == '\'' && inAttribute)
      escaped += "&apos;";
    else
      escaped += c;
  }
  return escaped;
}

}  // namespace

void PartWriter::Start(std::string_view name, const Attributes& attributes) {
  text_.append("<").append(name);
  for (const auto& [attribute, value] : attributes)
    text_.append(" ").append(attribute).append("='").append(Escaped(value, true)).append("'");
}

void PartWriter::Element(std::string_view name, const Attributes& attributes, const Content& content) {
  Start(name, attributes);
  text_ += '>';
  content();
  text_.append("</").append(name).append(">");
}

void PartWriter::Element(std::string_view name, const Attributes& attributes) {
  Start(name, attributes);
  text_ += "/>";
}

void PartWriter::Element(std::string_view name, const Attributes& attributes, std::string_view text) {
  Element(name, attributes, [&] { text_ += Escaped(text, false); });
}

void PartWriter::Cell(std::string_view name, std::string_view value, std::string_view unit, std::string_view formula) {
  Attributes attributes{{"N", std::string(name)}, {"V", std::string(value)}};
  if (!unit.empty()) attributes.emplace_back("U", unit);
  if (!formula.empty()) attributes.emplace_back("F", formula);
  Element("Cell", attributes);
}

void PartWriter::Cells(std::span<const FileCell> cells) {
  for (const FileCell& cell : cells) Cell(cell.name, cell.value, cell.unit, cell.formula);
}

void PartWriter::Part(std::string_view name, double fraction, std::string_view ofCell, double size) {
  Cell(name, NumberForFile(fraction * size + 0.0), {},  // never a negative zero
       std::string(ofCell) + "*" + NumberForFile(fraction));
}

std::string VisioPart(std::string_view root, const PartWriter::Attributes& attributes,
                      const std::function<void(PartWriter&)>& content) {
  PartWriter writer;
  PartWriter::Attributes all = attributes;
  all.emplace_back("xmlns", "http://schemas.microsoft.com/office/visio/2012/main");
  all.emplace_back("xmlns:r", "http://schemas.openxmlformats.org/officeDocument/2006/relationships");
  all.emplace_back("xml:space", "preserve");
  if (content)
    writer.Element(root, all, [&] { content(writer); });
  else
    writer.Element(root, all);
  return "<?xml version='1.0' encoding='utf-8' ?>\r\n" + writer.text();
}

std::string NumberForFile(double number) {
  char digits[32];
  char* end = digits;
  double read = 0;
  for (const int precision : {15, 16}) {
    end = std::to_chars(digits, digits + sizeof digits, number, std::chars_format::general, precision).ptr;
    std::from_chars(digits, end, read);
    if (read == number) break;
  }
  return std::string(digits, end);
}

}  // namespace vardo
