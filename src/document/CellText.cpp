#include "document/CellText.h"

#include "base/Numbers.h"
#include "base/Text.h"

namespace vardo {
namespace {

bool IsString(pugi::xml_node cell, bool isText) { return isText || std::string_view(cell.attribute("U").value()) == "STR"; }

// V, or the element's text where the value has line breaks; those are line feeds to us whatever they are in the file.
std::string RawValue(pugi::xml_node cell) {
  if (const pugi::xml_attribute value = cell.attribute("V")) return value.value();
  std::string text;
  for (const char* at = cell.child_value(); *at; ++at) {
    if (*at != '\r')
      text += *at;
    else if (at[1] != '\n')
      text += '\n';
  }
  return text;
}

void RemoveChildren(TreeEditor& editor, XmlPart& part, pugi::xml_node cell) {
  for (pugi::xml_node child = cell.first_child(); child;) {
    const pugi::xml_node next = child.next_sibling();
    if (child.type() != pugi::node_element) editor.Remove(part, child);
    child = next;
  }
}

// V U F in the order files have them; an attribute that is not wanted goes.
void WriteAttributes(TreeEditor& editor, XmlPart& part, pugi::xml_node cell, const std::string& value, std::string_view unit,
                     std::string_view formula) {
  const bool sameUnit = cell.attribute("U").value() == unit && (!unit.empty() || !cell.attribute("U"));
  const bool inPlace = sameUnit && cell.attribute("V");
  if (!inPlace || formula.empty()) editor.RemoveAttribute(part, cell, "F");
  if (!inPlace) editor.RemoveAttribute(part, cell, "U");
  editor.RemoveAttribute(part, cell, "E");
  RemoveChildren(editor, part, cell);
  if (value.find_first_of("\n\r") != std::string::npos) {
    editor.RemoveAttribute(part, cell, "V");
    editor.AppendText(part, cell, value);
  } else {
    editor.SetAttribute(part, cell, "V", value);
  }
  if (!unit.empty()) editor.SetAttribute(part, cell, "U", unit);
  if (!formula.empty()) editor.SetAttribute(part, cell, "F", formula);
}

void WriteComputed(TreeEditor& editor, XmlPart& part, pugi::xml_node cell, const CellValue& value, std::string_view formula,
                   bool isText) {
  if (const auto* text = std::get_if<std::string>(&value))
    return WriteAttributes(editor, part, cell, *text, isText ? "" : "STR", formula);
  const std::string unit = cell.attribute("U").value();
  WriteAttributes(editor, part, cell, NumberText(std::get<double>(value)), unit == "STR" ? std::string_view() : unit, formula);
}

}  // namespace

bool FormulaIsInherited(pugi::xml_node cell) { return cell.attribute("F").value() == kInherited; }

std::string FormulaText(pugi::xml_node cell, bool isText) {
  const pugi::xml_attribute formula = cell.attribute("F");
  if (formula) return formula.value() == kNoFormula ? "" : formula.value();
  const std::string raw = RawValue(cell);
  if (IsString(cell, isText)) return QuoteText(raw);
  const std::string_view unitCode = cell.attribute("U").value();
  const std::optional<double> number = ParseNumber(raw);
  if (!number) return QuoteText(raw);
  if (unitCode == "BOOL") return *number != 0 ? "TRUE" : "FALSE";
  return InUnit(*number, unitCode).value_or(raw);
}

CellValue StoredValue(pugi::xml_node cell, bool isText) {
  const std::string raw = RawValue(cell);
  if (IsString(cell, isText)) return raw;
  if (const auto number = ParseNumber(raw)) return *number;
  return raw;
}

void WriteFormula(TreeEditor& editor, XmlPart& part, pugi::xml_node cell, std::string_view formula,
                  const std::optional<CellValue>& value, bool isText) {
  if (formula.empty()) return WriteAttributes(editor, part, cell, isText ? "" : "0", "", kNoFormula);
  if (const auto constant = ParseConstant(formula)) {
    const bool unitGoesWithoutSaying = isText && constant->unit == "STR";
    WriteAttributes(editor, part, cell, constant->value, unitGoesWithoutSaying ? "" : constant->unit, "");
    // "1.50 in" and a number in a text cell would read back differently from value and unit alone.
    if (FormulaText(cell, isText) != formula) editor.SetAttribute(part, cell, "F", formula);
    return;
  }
  if (!value) return WriteAttributes(editor, part, cell, RawValue(cell), cell.attribute("U").value(), formula);
  WriteComputed(editor, part, cell, *value, formula, isText);
}

void WriteValue(TreeEditor& editor, XmlPart& part, pugi::xml_node cell, const CellValue& value, bool isText) {
  WriteComputed(editor, part, cell, value, std::string(cell.attribute("F").value()), isText);
}

}  // namespace vardo
