#include "drawing/CellText.h"

#include <charconv>
#include <cmath>
#include <cstdio>
#include <numbers>

namespace vardo {
namespace {

struct Unit {
  std::string_view code;    // U
  std::string_view suffix;  // behind the number in a formula
  double perInternal;       // how many of them make one internal unit
};

constexpr Unit kUnits[] = {
    {"IN", " in", 1},
    {"MM", " mm", 25.4},
    {"CM", " cm", 2.54},
    {"M", " m", 0.0254},
    {"FT", " ft", 1.0 / 12},
    {"PT", " pt", 72},
    {"DEG", " deg", 180 / std::numbers::pi},
    {"RAD", " rad", 1},
    {"PER", "%", 100},
};

const Unit* UnitOfCode(std::string_view code) {
  for (const Unit& unit : kUnits)
    if (unit.code == code) return &unit;
  return nullptr;
}

const Unit* UnitOfSuffix(std::string_view suffix) {
  for (const Unit& unit : kUnits)
    if (unit.suffix == suffix || unit.suffix.substr(unit.suffix[0] == ' ') == suffix) return &unit;
  return nullptr;
}

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

std::string ShownNumber(double number) {
  char text[40];
  std::snprintf(text, sizeof text, "%.12g", number);
  return text;
}

std::string Undoubled(std::string_view inner) {
  std::string text;
  for (size_t i = 0; i < inner.size(); ++i) {
    text += inner[i];
    if (inner[i] == '"' && i + 1 < inner.size() && inner[i + 1] == '"') ++i;
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

std::string QuoteText(std::string_view text) {
  std::string quoted = "\"";
  quoted.reserve(text.size() + 2);
  for (size_t quote; (quote = text.find('"')) != std::string_view::npos; text.remove_prefix(quote + 1))
    quoted.append(text.substr(0, quote + 1)) += '"';
  return quoted.append(text) += '"';
}

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
  const Unit* unit = UnitOfCode(unitCode);
  return unit ? ShownNumber(*number * unit->perInternal) + std::string(unit->suffix) : raw;
}

CellValue StoredValue(pugi::xml_node cell, bool isText) {
  const std::string raw = RawValue(cell);
  if (IsString(cell, isText)) return raw;
  if (const auto number = ParseNumber(raw)) return *number;
  return raw;
}

std::optional<Constant> ParseConstant(std::string_view formula) {
  if (formula.size() >= 2 && formula.front() == '"' && formula.back() == '"') {
    const std::string text = Undoubled(formula.substr(1, formula.size() - 2));
    if (QuoteText(text) == formula) return Constant{text, "STR"};
    return std::nullopt;
  }
  if (formula == "TRUE") return Constant{"1", "BOOL"};
  if (formula == "FALSE") return Constant{"0", "BOOL"};
  if (ParseNumber(formula)) return Constant{std::string(formula), ""};
  const size_t end = formula.find_last_of("0123456789.");
  if (end == std::string_view::npos) return std::nullopt;
  std::string_view suffix = formula.substr(end + 1);
  while (!suffix.empty() && suffix.front() == ' ') suffix.remove_prefix(1);
  const Unit* unit = UnitOfSuffix(suffix);
  const std::optional<double> number = ParseNumber(formula.substr(0, end + 1));
  if (!unit || !number) return std::nullopt;
  return Constant{NumberText(*number / unit->perInternal), std::string(unit->code)};
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

std::string NumberText(double value) {
  if (value == 0) return "0";
  char text[40];
  std::snprintf(text, sizeof text, "%.16g", value);
  std::string number = text;
  const size_t exponent = number.find('e');
  if (exponent == std::string::npos) return number;
  // "1e-06" is "1E-6" in the files.
  std::string digits = number.substr(exponent + 2);
  digits.erase(0, std::min(digits.find_first_not_of('0'), digits.size() - 1));
  return number.substr(0, exponent) + "E" + (number[exponent + 1] == '-' ? "-" : "") + digits;
}

std::optional<double> ParseNumber(std::string_view text) {
  if (!text.empty() && text.front() == '+') text.remove_prefix(1);
  double value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc() || end != text.data() + text.size() || !std::isfinite(value)) return std::nullopt;
  return value;
}

}  // namespace vardo
