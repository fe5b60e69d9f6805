#include "document/CellText.h"

#include "base/Numbers.h"
#include "base/Text.h"
#include "document/Elements.h"

#include <pugixml.hpp>

namespace vardo {
namespace {

// The attributes of a Cell element, read in one go: that is what most of the time is spent with.
struct CellAttributes {
  explicit CellAttributes(pugi::xml_node cell) {
    for (pugi::xml_attribute attribute = cell.first_attribute(); attribute; attribute = attribute.next_attribute()) {
      const char* name = attribute.name();
      if (name[0] == '\0' || name[1] != '\0') continue;
      if (name[0] == 'V') value = attribute.value();
      if (name[0] == 'U') unit = attribute.value();
      if (name[0] == 'F') formula = attribute.value();
    }
  }
  const char *value = nullptr, *formula = nullptr;  // null: it has none
  std::string_view unit;
};

std::string WithLineFeeds(std::string_view raw) {
  std::string text;
  AppendLines(text, raw);
  return text;
}

std::string TextWithin(pugi::xml_node cell) {
  std::string text;
  for (const pugi::xml_node child : cell.children())
    if (IsText(child)) AppendLines(text, child.value());
  return text;
}

// V, or the element's text where the value has line breaks.
std::string RawValue(pugi::xml_node cell, const CellAttributes& attributes) {
  return attributes.value ? attributes.value : TextWithin(cell);
}
std::string RawValue(pugi::xml_node cell) { return RawValue(cell, CellAttributes(cell)); }

// What a cell is to hold; empty: no such attribute.
struct Content {
  std::string value;
  std::string_view unit, formula, error = {};

  bool GoesInText() const { return value.find('\n') != std::string::npos || value.find('\r') != std::string::npos; }
};

bool Holds(pugi::xml_node cell, const Content& content) {
  const auto is = [&](const char* name, std::string_view value) {
    const pugi::xml_attribute attribute = cell.attribute(name);
    return value == attribute.value() && (attribute || value.empty());
  };
  const bool inText = !cell.attribute("V");
  return inText == content.GoesInText() && RawValue(cell) == content.value && is("U", content.unit) && is("F", content.formula) &&
         is("E", content.error);
}

// V U F E in the order files have them, unless another order is there and can stay.
void PutAttributes(pugi::xml_node cell, const Content& content) {
  const bool sameUnit = cell.attribute("U").value() == content.unit && (!content.unit.empty() || !cell.attribute("U"));
  const bool inPlace = sameUnit && cell.attribute("V");
  if (!inPlace || content.formula.empty()) cell.remove_attribute("F");
  if (!inPlace) cell.remove_attribute("U");
  cell.remove_attribute("E");
  if (content.GoesInText())
    cell.remove_attribute("V");
  else
    SetAttribute(cell, "V", content.value);
  for (const auto& [name, value] : {std::pair("U", content.unit), std::pair("F", content.formula), std::pair("E", content.error)})
    if (!value.empty()) SetAttribute(cell, name, value);
}

// Comments and other elements within the cell stay.
void RemoveTextWithin(TreeEditor& editor, XmlPart& part, pugi::xml_node cell) {
  for (pugi::xml_node child = cell.first_child(); child;) {
    const pugi::xml_node next = child.next_sibling();
    if (IsText(child)) editor.Remove(part, child);
    child = next;
  }
}

void Put(TreeEditor& editor, XmlPart& part, pugi::xml_node cell, const Content& content) {
  if (Holds(cell, content)) return;
  const std::string unit(content.unit), formula(content.formula);  // of the cell itself, perhaps
  const Content kept{content.value, unit, formula, content.error};
  if (cell.first_child()) RemoveTextWithin(editor, part, cell);
  editor.ChangeAttributes(part, cell, [&](pugi::xml_node changed) { PutAttributes(changed, kept); });
  if (kept.GoesInText()) editor.AppendText(part, cell, kept.value);
}

Content Computed(pugi::xml_node cell, const CellValue& value, std::string_view formula, bool isText) {
  if (const auto* text = std::get_if<std::string>(&value)) return {*text, isText ? "" : "STR", formula};
  const std::string_view unit = cell.attribute("U").value();
  return {NumberText(std::get<double>(value)), unit == "STR" ? "" : unit, formula};
}

// What a cell of that content would be read as.
std::string FormulaOf(const std::string& raw, std::string_view unitCode, bool isText) {
  if (isText || unitCode == "STR") return QuoteText(raw);
  const std::optional<double> number = ParseNumber(raw);
  if (!number) return QuoteText(raw);
  if (unitCode == "BOOL") return *number != 0 ? "TRUE" : "FALSE";
  return InUnit(*number, unitCode).value_or(raw);
}

}  // namespace

bool FormulaIsInherited(pugi::xml_node cell) { return cell.attribute("F").value() == kInheritedFormula; }

std::string_view OwnFormulaOf(pugi::xml_node cell) {
  const std::string_view formula = cell.attribute("F").value();
  return formula == kInheritedFormula || formula == kNoFormula ? "" : formula;
}

std::optional<std::string> FormulaText(pugi::xml_node cell, bool isText) {
  const CellAttributes attributes(cell);
  if (!attributes.formula) return FormulaOf(RawValue(cell, attributes), attributes.unit, isText);
  const std::string_view formula = attributes.formula;
  if (formula == kInheritedFormula) return std::nullopt;
  return std::string(formula == kNoFormula ? "" : formula);
}

CellValue StoredValue(pugi::xml_node cell, bool isText) {
  const CellAttributes attributes(cell);
  std::string raw = RawValue(cell, attributes);
  if (isText || attributes.unit == "STR") return raw;
  if (const auto number = ParseNumber(raw)) return *number;
  return raw;
}

void WriteFormula(TreeEditor& editor, XmlPart& part, pugi::xml_node cell, std::string_view formula,
                  const std::function<Evaluation()>& evaluate, bool isText) {
  if (formula.empty()) return Put(editor, part, cell, {isText ? "" : "0", "", kNoFormula});
  if (auto constant = ParseConstant(formula)) {
    const std::string_view unit = isText && constant->unit == "STR" ? std::string_view() : constant->unit;
    // "1.50 in" and a number in a text cell would read back differently from value and unit alone.
    const bool readsBack = FormulaOf(WithLineFeeds(constant->value), unit, isText) == formula;
    return Put(editor, part, cell, {std::move(constant->value), unit, readsBack ? "" : formula});
  }
  const Evaluation evaluation = evaluate();
  const Content content = evaluation.value ? Computed(cell, *evaluation.value, formula, isText)
                                           : Content{RawValue(cell), cell.attribute("U").value(), formula, evaluation.error};
  Put(editor, part, cell, content);
}

void WriteValue(TreeEditor& editor, XmlPart& part, pugi::xml_node cell, const CellValue& value, bool isText) {
  const std::string formula = cell.attribute("F").value();
  Put(editor, part, cell, Computed(cell, value, formula, isText));
}

}  // namespace vardo
