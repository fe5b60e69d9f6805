#include "events/PageRegisters.h"

#include "addin/Global_Variables.h"
#include "addin/host/HostConstants.h"
#include "addin/host/IVApplication.h"
#include "addin/host/IVDocument.h"
#include "addin/host/IVShape.h"
#include "props/DrawingLists.h"
#include "props/PropertyCells.h"
#include "props/StringFunctions.h"

#include <algorithm>
#include <iterator>
#include <utility>
#include <vector>

namespace vardo {
namespace {

constexpr std::string_view kCount = "Count";

// The masters of a drawing are few: each is looked up among the kinds once.
class Kinds {
 public:
  // The place in the registers' order; past the last for a name that is no kind.
  size_t RegisterOf(std::string_view master) {
    for (const auto& [name, place] : known_)
      if (name.data() == master.data() && name.size() == master.size()) return place;
    const auto kind = std::find(std::begin(kModuleKinds), std::end(kModuleKinds), master);
    const auto place = static_cast<size_t>(kind - std::begin(kModuleKinds));
    if (known_.size() < kMostKnown) known_.emplace_back(master, place);
    return place;
  }

 private:
  static constexpr size_t kMostKnown = 32;
  std::vector<std::pair<std::string_view, size_t>> known_;
};

// The modules of a page: by kind the positions they have, or will have once some shapes have gone.
struct Modules {
  std::vector<int> positions[std::size(kModuleKinds)];
  int count = 0;
};
Modules CountModules(const IVPagePtr& page, const ShapeIndexes& goingAway) {
  Modules modules;
  Kinds kinds;
  int index = 0, gone = 0;
  const BulkTexts masters = page->MasterNames();
  for (const auto& master : masters.texts()) {
    ++index;
    if (goingAway.contains(index)) {
      ++gone;
      continue;
    }
    const size_t at = master ? kinds.RegisterOf(*master) : std::size(kModuleKinds);
    if (at == std::size(kModuleKinds)) continue;
    modules.positions[at].push_back(index - gone);
    ++modules.count;
  }
  return modules;
}

std::string JoinedNumbers(const std::vector<int>& numbers) {
  std::string joined;
  for (const int number : numbers) {
    if (!joined.empty()) joined += kListDelimiter;
    joined += std::to_string(number);
  }
  return joined;
}

}  // namespace

std::string DrawingKindShapeIndexes(std::string_view kind) {
  std::string joined;
  const IVPagesPtr pages = visApp->ActiveDocument()->Pages();
  const int count = pages->Count();
  for (int i = 1; i <= count; ++i) {
    const std::string indexes = PropText(pages->Item(i)->PageSheet(), kind);
    if (indexes.empty() || indexes.starts_with(kListDelimiter)) continue;
    joined += (joined.empty() ? "" : ";") + indexes;
  }
  return joined;
}

int KindShapeCount(std::string_view kind) {
  const std::string indexes = DrawingKindShapeIndexes(kind);
  return indexes.empty() ? 0 : CountOccurrences(indexes, kListDelimiter) + 1;
}

void CountModuleNames(const IVPagePtr& page, const ShapeIndexes& goingAway) {
  const Modules modules = CountModules(page, goingAway);
  for (size_t at = 0; at < std::size(kModuleKinds); ++at)
    SetPagePropList(page, kModuleKinds[at], JoinedNumbers(modules.positions[at]));
  SetPagePropList(page, kCount, std::to_string(modules.count));
}

std::vector<MendedRegister> MendRegisters(const IVPagePtr& page, const ShapeIndexes& leftOut) {
  const IVShapePtr sheet = page->PageSheet();
  std::vector<size_t> there;
  for (size_t at = 0; at < std::size(kModuleKinds); ++at)
    if (sheet->CellExists(CellName(kModuleKinds[at]), kExistsAnywhere)) there.push_back(at);
  if (there.empty()) return {};
  const Modules modules = CountModules(page, leftOut);
  std::vector<MendedRegister> mended;
  for (const size_t at : there) {
    std::vector<int> registered = RegisteredPositions(page, kModuleKinds[at]);
    std::ranges::sort(registered);
    if (registered == modules.positions[at]) continue;
    mended.push_back({page, kModuleKinds[at], PropText(sheet, kModuleKinds[at])});
    SetPagePropList(page, kModuleKinds[at], JoinedNumbers(modules.positions[at]));
  }
  if (!mended.empty()) SetPagePropList(page, kCount, std::to_string(modules.count));
  return mended;
}

}  // namespace vardo
