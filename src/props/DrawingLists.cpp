#include "props/DrawingLists.h"

#include "addin/Global_Variables.h"
#include "addin/host/IVApplication.h"
#include "addin/host/IVDocument.h"
#include "addin/host/IVShape.h"
#include "base/Text.h"
#include "platform/Platform.h"
#include "props/FoldedTexts.h"
#include "props/PropertyCells.h"

#include <algorithm>
#include <deque>
#include <vector>

namespace vardo {
namespace {

int PositionIn(std::string_view item) {
  constexpr size_t kMostDigits = 9;
  int position = 0;
  if (item.empty() || item.size() > kMostDigits) return LeadingInteger(item);
  for (const char c : item) {
    if (!IsAsciiDigit(c)) return LeadingInteger(item);
    position = position * 10 + (c - '0');
  }
  return position;
}

void CreateProperties(const IVPagePtr& page, const std::vector<int>& positions, std::string_view field) {
  const auto shapes = page->Shapes();
  for (const int position : positions) SetPropList(shapes->Item(position), field, "");
}

// The formulas of a field of the registered shapes. A property that a shape lacks is created first.
BulkTexts ReadField(const IVPagePtr& page, const std::vector<int>& positions, std::string_view field) {
  BulkTexts formulas = page->PropertyFormulas(positions, field);
  std::vector<int> lacking;
  for (size_t i = 0; i < positions.size(); ++i)
    if (!formulas.texts()[i]) lacking.push_back(positions[i]);
  if (lacking.empty()) return formulas;
  CreateProperties(page, lacking, field);
  return page->PropertyFormulas(positions, field);
}

// What has been read stays as long as the items that are views of it.
struct Gathered {
  std::deque<BulkTexts> read;
  std::vector<std::string_view> items;

  void Add(const IVPagePtr& page, std::string_view registerName, std::string_view field) {
    const std::vector<int> positions = RegisteredPositions(page, registerName);
    if (positions.empty()) return;
    for (const auto& formula : read.emplace_back(ReadField(page, positions, field)).texts())
      AddItems(ViewBetweenQuotes(formula.value_or("")));
  }
  void AddItems(std::string_view text) {
    for (size_t end; (end = text.find(kListDelimiter)) != std::string_view::npos; text.remove_prefix(end + 1))
      items.push_back(text.substr(0, end));
    items.push_back(text);
  }
};

StringList UniqueItems(const std::vector<std::string_view>& items) {
  FoldedTexts kept(items.size());
  StringList unique;
  for (size_t i = 0; i + 1 < items.size(); ++i)
    if (!kept.Insert(items[i])) unique.emplace_back(items[i]);
  const auto same = kept.Insert(items.back());
  if (!same || *same != items.back()) unique.emplace_back(items.back());
  return unique;
}

template <class Visit>
void ForEachPage(const Visit& visit) {
  const auto pages = visApp->ActiveDocument()->Pages();
  const int count = pages->Count();
  for (int i = 1; i <= count; ++i) visit(pages->Item(i));
}

}  // namespace

StringList FillComboFromDrawing(const StringList& registers, const StringList& fields, bool unique) {
  Gathered gathered;
  ForEachPage([&](const IVPagePtr& page) {
    for (size_t j = 0; j < registers.size(); ++j) gathered.Add(page, registers[j], fields.at(j));
  });
  if (gathered.items.empty()) return {""};
  return unique ? UniqueItems(gathered.items) : StringList(gathered.items.begin(), gathered.items.end());
}

StringList ValuesInDrawing(const StringList& registers, const StringList& fields) {
  StringList values;
  ForEachPage([&](const IVPagePtr& page) {
    for (size_t j = 0; j < registers.size(); ++j) CollectPageValues(page, registers[j], CellName(fields.at(j)), values);
  });
  return values;
}

std::optional<int> TimesByHostsCount(const StringList& registers, const StringList& fields, std::string_view text) {
  if (text.empty() || text.find(kListDelimiter) != std::string_view::npos) return std::nullopt;
  int found = 0;
  bool counted = true;
  ForEachPage([&](const IVPagePtr& page) {
    for (size_t j = 0; counted && j < registers.size(); ++j) {
      const auto listed = page->CountInListedShapes(registers[j], fields.at(j), text);
      counted = listed.has_value();
      if (!counted) return;
      found += listed->times;
      CreateProperties(page, listed->lacking, fields.at(j));
    }
  });
  return counted ? std::optional(found) : std::nullopt;
}

bool TextOccursAtLeast(const StringList& registers, const StringList& fields, std::string_view text, int times) {
  if (text.find(kListDelimiter) != std::string_view::npos)
    return NameOccursAtLeast(ValuesInDrawing(registers, fields), text, times);
  if (const auto found = TimesByHostsCount(registers, fields, text)) return times >= 1 && *found >= times;
  return NameOccursAtLeast(FillComboFromDrawing(registers, fields, false), text, times);
}

std::vector<int> RegisteredPositions(const IVPagePtr& page, std::string_view registerName) {
  const std::string registered = PropText(page->PageSheet(), registerName);
  std::vector<int> positions;
  std::string_view rest = registered;
  if (rest.substr(0, rest.find(';')).empty()) return positions;
  positions.reserve(static_cast<size_t>(std::count(rest.begin(), rest.end(), ';')) + 1);
  for (;;) {
    const size_t end = rest.find(';');
    const std::string_view item = rest.substr(0, end);
    if (const int position = PositionIn(item); position != 0) positions.push_back(position);
    if (end == std::string_view::npos) return positions;
    rest.remove_prefix(end + 1);
  }
}

void CollectPageValues(const IVPagePtr& page, std::string_view registerName, std::string_view cellName, StringList& values) {
  const std::vector<int> positions = RegisteredPositions(page, registerName);
  if (positions.empty()) return;
  const BulkTexts formulas = ReadField(page, positions, cellName.substr(kPropPrefix.size()));
  for (const auto& formula : formulas.texts()) values.emplace_back(ViewBetweenQuotes(formula.value_or("")));
}

StringList SplitToUniqueList(std::string_view text, std::string_view delimiter, bool unique) {
  StringList items = SplitList(text, delimiter);
  return unique ? UniqueItems({items.begin(), items.end()}) : items;
}

}  // namespace vardo
