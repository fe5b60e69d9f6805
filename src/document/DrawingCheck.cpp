#include "document/DrawingCheck.h"

#include "base/FileError.h"
#include "base/Numbers.h"
#include "base/Text.h"
#include "document/DrawingShape.h"
#include "document/Elements.h"
#include "package/Limits.h"
#include "package/XmlPart.h"

#include <pugixml.hpp>

#include <algorithm>
#include <limits>
#include <string>
#include <utility>
#include <vector>

namespace vardo {
namespace {

constexpr std::string_view kDrawingNamespace = "http://schemas.microsoft.com/office/visio/2012/main";

void CheckSection(const std::string& file, const std::string& part, pugi::xml_node section) {
  size_t rows = 0;
  for (pugi::xml_node row = section.first_child(); row && rows <= kMaxRows; row = row.next_sibling()) ++rows;
  if (rows > kMaxRows)
    throw FileError::Unsafe(file, PartInWords(part) + " has a section of more than " + std::to_string(kMaxRows) + " rows");
}

class ShapeCheck {
 public:
  ShapeCheck(const std::string& file, XmlPart& part) : file_(file), part_(part) {}

  void Run() {
    RefusePrefixFor(part_.root());
    for (const pugi::xml_node child : part_.root().children()) RefusePrefixFor(child);
    std::vector<pugi::xml_node> pending{part_.root()};
    while (!pending.empty()) {
      const pugi::xml_node sheet = pending.back();
      pending.pop_back();
      for (const pugi::xml_node shape : ShapesOf(sheet).children()) {
        RefusePrefixFor(shape);
        if (!IsNamed(shape, "Shape") || IsDeleted(shape)) continue;
        shapes_.push_back({NumberOf(shape), shape});
        pending.push_back(shape);
      }
    }
    SettleRepeatedNumbers();
  }

 private:
  // Where shapes are looked for, one with a prefix would be overlooked.
  void RefusePrefixFor(pugi::xml_node element) const {
    for (const pugi::xml_attribute attribute : element.attributes())
      if (std::string_view(attribute.name()).starts_with("xmlns:") && attribute.value() == kDrawingNamespace)
        throw FileError::NotADrawing(file_, "written in a way that is not understood (" + PartInWords(part_.name()) +
                                                " has a prefix for the elements of drawings)");
  }

  // Counts the rows of the sheet on the way: the elements of large drawings are far apart in memory, so each is looked at once.
  pugi::xml_node ShapesOf(pugi::xml_node sheet) const {
    pugi::xml_node shapes;
    for (const pugi::xml_node child : sheet.children()) {
      if (IsNamed(child, "Section")) CheckSection(file_, part_.name(), child);
      if (!IsNamed(child, "Shapes")) continue;
      if (shapes) throw Damaged("has two lists of shapes in one place");
      shapes = child;
    }
    return shapes;
  }

  int NumberOf(pugi::xml_node shape) const {
    const std::string_view text = shape.attribute("ID").value();
    const auto number = ParseInteger(text);
    if (number && *number >= 0) return *number;
    throw Damaged(text.empty() ? "has a shape without an ID" : "has a shape with the ID " + InWords(text));
  }

  // In the order of the tree those of one number stay, as the sort is stable and shapes were met page first, groups later.
  void SettleRepeatedNumbers() {
    const auto byNumber = [](const auto& a, const auto& b) { return a.first < b.first; };
    std::stable_sort(shapes_.begin(), shapes_.end(), byNumber);
    int highest = shapes_.empty() ? 0 : shapes_.back().first;
    for (size_t i = 1; i < shapes_.size(); ++i) {
      const int number = shapes_[i].first;
      if (number != shapes_[i - 1].first) continue;
      if (IsReferredTo(number) || highest == std::numeric_limits<int>::max())
        throw Damaged("has two shapes with the ID " + std::to_string(number));
      shapes_[i].second.attribute("ID").set_value(std::to_string(++highest).c_str());
    }
  }

  bool IsReferredTo(int number) const {
    const std::string text = part_.Serialise(), id = std::to_string(number);
    if (text.find("Sheet." + id + "!") != std::string::npos) return true;
    for (const pugi::xml_node connect : part_.root().child("Connects").children())
      for (const char* end : {"FromSheet", "ToSheet"})
        if (connect.attribute(end).value() == id) return true;
    return false;
  }

  FileError Damaged(const std::string& what) const { return FileError::Damaged(file_, PartInWords(part_.name()) + " " + what); }

  const std::string& file_;
  XmlPart& part_;
  std::vector<std::pair<int, pugi::xml_node>> shapes_;
};

}  // namespace

void CheckRows(const std::string& file, const std::string& part, pugi::xml_node sheet) {
  for (const pugi::xml_node section : sheet.children("Section")) CheckSection(file, part, section);
}

void CheckShapes(const std::string& file, XmlPart& part) { ShapeCheck(file, part).Run(); }

}  // namespace vardo
