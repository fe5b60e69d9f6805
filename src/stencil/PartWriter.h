// Writes the XML of a new drawing's parts the way Visio writes it.
#pragma once

#include "formula/Constant.h"

#include <functional>
#include <initializer_list>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace vardo {

// A cell as a table holds it. value is in internal units, whatever unit is shown; "" for no unit and no formula.
struct FileCell {
  std::string_view name, value, unit = {}, formula = {};
};

inline constexpr std::string_view kText = "STR";

class PartWriter {
 public:
  using Attributes = std::vector<std::pair<std::string_view, std::string>>;
  using Content = std::function<void()>;

  void Element(std::string_view name, const Attributes& attributes, const Content& content);
  void Element(std::string_view name, const Attributes& attributes = {});
  void Element(std::string_view name, const Attributes& attributes, std::string_view text);

  void Cell(std::string_view name, std::string_view value, std::string_view unit = {}, std::string_view formula = {});
  void Cells(std::span<const FileCell> cells);
  void Cells(std::initializer_list<FileCell> cells) { Cells(std::span(cells.begin(), cells.size())); }
  // A cell that is a part of a size: its formula is "Width*0.5" for (0.5, "Width", width).
  void Part(std::string_view name, double fraction, std::string_view ofCell, double size);
  void Section(std::string_view name, const Content& rows) { Element("Section", {{"N", std::string(name)}}, rows); }

  const std::string& text() const { return text_; }

 private:
  void Start(std::string_view name, const Attributes& attributes);
  std::string text_;
};

// A part under visio/: declaration, then the root element with the drawing's namespaces. content: null for an empty element.
std::string VisioPart(std::string_view root, const PartWriter::Attributes& attributes,
                      const std::function<void(PartWriter&)>& content);

// At most 16 digits, as in Visio's own files, and no more than the number needs.
std::string NumberForFile(double number);

}  // namespace vardo
