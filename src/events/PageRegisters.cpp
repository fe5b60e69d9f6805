#include "events/PageRegisters.h"

#include "addin/Global_Variables.h"
#include "addin/host/IVApplication.h"
#include "addin/host/IVDocument.h"
#include "addin/host/IVShape.h"
#include "props/PropertyCells.h"
#include "props/StringFunctions.h"

#include <algorithm>
#include <iterator>
#include <utility>
#include <vector>

namespace vardo {
namespace {

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
  std::string registers[std::size(kModuleKinds)];
  Kinds kinds;
  int index = 0, gone = 0, kept = 0;
  const BulkTexts masters = page->MasterNames();
  for (const auto& master : masters.texts()) {
    ++index;
    if (goingAway.contains(index)) {
      ++gone;
      continue;
    }
    const size_t at = master ? kinds.RegisterOf(*master) : std::size(kModuleKinds);
    if (at == std::size(kModuleKinds)) continue;
    if (!registers[at].empty()) registers[at] += kListDelimiter;
    registers[at] += std::to_string(index - gone);
    ++kept;
  }
  for (size_t at = 0; at < std::size(kModuleKinds); ++at) SetPagePropList(page, kModuleKinds[at], registers[at]);
  SetPagePropList(page, "Count", std::to_string(kept));
}

}  // namespace vardo
