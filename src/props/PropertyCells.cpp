#include "props/PropertyCells.h"

#include "addin/Global_Variables.h"
#include "addin/host/HostConstants.h"
#include "addin/host/IVApplication.h"
#include "addin/host/IVDocument.h"
#include "addin/host/IVShape.h"
#include "base/Characters.h"
#include "base/Errors.h"

namespace vardo {
namespace {

// Where a default is split when it stands in for a cell.
constexpr std::string_view kWordBreaks = " ,.!:;<>?";

constexpr std::string_view kCountField = "Count";

// What a property that the add-in creates has besides its value, by the suffix of the cell's name. The label is the field's name.
struct Trait {
  std::string_view suffix;
  std::string_view formula;
};
constexpr Trait kHidden = {".Invisible", "1"};
constexpr Trait kTraitsBesidesLabel[] = {
    {".Prompt", "\"\""}, {".Type", "0"}, {".SortKey", "\"\""}, {".Format", "\"@\""}, kHidden, {".Verify", "0"},
};

void Write(IVShape& sheet, const std::string& cell, std::string_view formula) { sheet.Cells(cell)->SetFormula(formula); }
void Write(IVShape& sheet, const std::string& cell, const Trait& trait) {
  Write(sheet, cell + std::string(trait.suffix), trait.formula);
}

void CreateShapeProperty(IVShape& shape, std::string_view field) {
  const auto cell = CellName(field);
  shape.AddNamedRow(kSectionProp, field, kTagDefault);
  Write(shape, cell, {".Label", InQuotes(field)});
  for (const Trait& trait : kTraitsBesidesLabel) Write(shape, cell, trait);
}

void CreatePageProperty(IVShape& sheet, std::string_view field) {
  const auto cell = CellName(field);
  sheet.AddNamedRow(kSectionProp, field, kTagDefault);
  Write(sheet, cell, InQuotes(""));
  Write(sheet, cell, kHidden);
}

// The text of a field of the sheet that getSheet gives, or none when it cannot be read.
template <typename GetSheet>
std::optional<std::string> ReadText(const GetSheet& getSheet, std::string_view field) try {
  return TextBetweenQuotes(getSheet()->Cells(CellName(field))->Formula());
} catch (const AutomationError&) {
  return std::nullopt;
}

void WriteText(const IVShapePtr& sheet, std::string_view field, std::string_view text,
               void (*create)(IVShape&, std::string_view)) {
  const auto cell = CellName(field);
  const auto formula = InQuotes(text);
  try {
    Write(*sheet, cell, formula);
    return;
  } catch (const AutomationError&) {
    // As a rule the property is not there yet.
  }
  create(*sheet, field);
  Write(*sheet, cell, formula);
}

std::string JoinSome(const StringList& values) {
  if (values.empty()) throw RuntimeError::InvalidArgument("a list without items");
  return JoinList(values);
}

template <typename GetSheet>
StringList ReadList(const GetSheet& getSheet, std::string_view field, std::string_view defaultText) {
  const auto text = ReadText(getSheet, field);
  return text ? SplitList(*text, kListDelimiter) : SplitList(defaultText, kWordBreaks);
}

}  // namespace

std::string CellName(std::string_view field) { return std::string(kPropPrefix) + std::string(field); }

std::string InQuotes(std::string_view text) { return '"' + std::string(text) + '"'; }

std::optional<std::string> TextBetweenQuotes(std::string_view formula) {
  if (formula.empty() || FirstCharacter(formula).size() == formula.size()) return std::nullopt;
  return std::string(ViewBetweenQuotes(formula));
}

std::string_view ViewBetweenQuotes(std::string_view formula) {
  if (formula.size() >= 2 && formula.front() == '"' && formula.back() == '"') return formula.substr(1, formula.size() - 2);
  if (formula.empty()) return {};
  formula.remove_prefix(FirstCharacter(formula).size());
  if (!formula.empty()) formula.remove_suffix(LastCharacter(formula).size());
  return formula;
}

StringList GetPropList(const IVShapePtr& shape, std::string_view field, std::string_view defaultText) {
  return ReadList([&] { return shape; }, field, defaultText);
}

StringList GetPagePropList(const IVPagePtr& page, std::string_view field, std::string_view defaultText) {
  return ReadList([&] { return page->PageSheet(); }, field, defaultText);
}

std::string PropText(const IVShapePtr& sheet, std::string_view field) {
  const auto cell = CellName(field);
  try {
    return TextBetweenQuotes(sheet->Cells(cell)->Formula()).value_or("");
  } catch (const HostError&) {
    if (sheet->CellExists(cell, kExistsAnywhere)) throw;
  }
  return "";
}

void SetPropList(const IVShapePtr& shape, std::string_view field, std::string_view value) {
  WriteText(shape, field, value, CreateShapeProperty);
}

void SetPropList(const IVShapePtr& shape, std::string_view field, const StringList& values) {
  SetPropList(shape, field, JoinSome(values));
}

void SetPagePropList(const IVPagePtr& page, std::string_view field, std::string_view value) {
  WriteText(page->PageSheet(), field, value, CreatePageProperty);
}

void SetPagePropList(const IVPagePtr& page, std::string_view field, const StringList& values) {
  SetPagePropList(page, field, JoinSome(values));
}

void IncrementPageCount(const IVShapePtr& shape) {
  const auto sheet = visApp->ActivePage()->PageSheet();
  const auto kind = shape->Master()->Name();
  auto registered = PropText(sheet, kind);
  if (!registered.empty()) registered += kListDelimiter;
  registered += std::to_string(shape->Index());
  WriteText(sheet, kind, registered, CreatePageProperty);

  const auto count = LeadingInteger(PropText(sheet, kCountField)) + 1;
  WriteText(sheet, kCountField, std::to_string(count), CreatePageProperty);
}

}  // namespace vardo
