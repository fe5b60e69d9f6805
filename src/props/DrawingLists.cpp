#include "props/DrawingLists.h"

#include "addin/Global_Variables.h"
#include "addin/host/HostConstants.h"
#include "addin/host/IVApplication.h"
#include "addin/host/IVDocument.h"
#include "addin/host/IVShape.h"
#include "base/Errors.h"
#include "platform/Platform.h"
#include "props/PropertyCells.h"

#include <algorithm>
#include <cstddef>
#include <unordered_set>

namespace vardo {
namespace {

// The text of a shape's cell; a property that the shape lacks is created. A formula too short for quotes counts as empty and
// stays.
std::string ReadOrCreate(const IVShapePtr& shape, const std::string& cellName) {
  const auto read = [&] { return TextBetweenQuotes(shape->Cells(cellName)->Formula()).value_or(""); };
  try {
    return read();
  } catch (const HostError&) {
    if (shape->CellExists(cellName, kExistsAnywhere)) throw;
  }
  SetPropList(shape, std::string_view(cellName).substr(kPropPrefix.size()), "");
  return read();
}

}  // namespace

StringList FillComboFromDrawing(const StringList& registers, const StringList& fields, bool unique) {
  std::string values;
  const auto pages = visApp->ActiveDocument()->Pages();
  const int pageCount = pages->Count();
  for (int i = 1; i <= pageCount; ++i) {
    const auto page = pages->Item(i);
    for (size_t j = 0; j < registers.size(); ++j) CollectPageValues(page, registers[j], CellName(fields.at(j)), values);
  }
  const auto withoutFirstDelimiter = std::string_view(values).substr(values.empty() ? 0 : kListDelimiter.size());
  return SplitToUniqueList(withoutFirstDelimiter, kListDelimiter, unique);
}

void CollectPageValues(const IVPagePtr& page, std::string_view registerName, std::string_view cellName,
                       std::string& accumulator) {
  const auto registered = SplitList(PropText(page->PageSheet(), registerName), kListDelimiter);
  if (registered.front().empty()) return;
  const auto shapes = page->Shapes();
  const std::string cell(cellName);
  for (const auto& item : registered) {
    const int index = LeadingInteger(item);
    if (index == 0) continue;
    accumulator += kListDelimiter;
    accumulator += ReadOrCreate(shapes->Item(index), cell);
  }
}

StringList SplitToUniqueList(std::string_view text, std::string_view delimiter, bool unique) {
  auto items = SplitList(text, delimiter);
  if (!unique) return items;
  std::string last = std::move(items.back());
  items.pop_back();

  std::unordered_set<std::string> keysKept(items.size());
  std::erase_if(items, [&](const std::string& item) { return !keysKept.insert(ThePlatform().CaseFoldKey(item)).second; });
  if (std::find(items.begin(), items.end(), last) == items.end()) items.push_back(std::move(last));
  return items;
}

}  // namespace vardo
