#include "events/PageRegisters.h"

#include "addin/Global_Variables.h"
#include "addin/host/IVApplication.h"
#include "addin/host/IVDocument.h"
#include "addin/host/IVShape.h"
#include "props/PropertyCells.h"
#include "props/StringFunctions.h"

#include <algorithm>
#include <iterator>

namespace vardo {
namespace {

// The place in the registers' order; past the last for a name that is no kind.
size_t RegisterOf(std::string_view kind) {
  return static_cast<size_t>(std::find(std::begin(kModuleKinds), std::end(kModuleKinds), kind) - std::begin(kModuleKinds));
}

}  // namespace

std::string DrawingKindShapeIndexes(std::string_view kind) {
  std::string joined;
  const IVPagesPtr pages = visApp->ActiveDocument()->Pages();
  const int count = pages->Count();
  for (int i = 1; i <= count; ++i) {
    const std::string indexes = PropText(pages->Item(i)->PageSheet(), kind);
    if (SplitList(indexes, kListDelimiter).front().empty()) continue;
    joined += (joined.empty() ? "" : ";") + indexes;
  }
  return joined;
}

int KindShapeCount(std::string_view kind) {
  const std::string indexes = DrawingKindShapeIndexes(kind);
  return indexes.empty() ? 0 : static_cast<int>(SplitList(indexes, ";").size());
}

void CountModuleNames(const IVPagePtr& page, const ShapeIndexes& goingAway) {
  std::string registers[std::size(kModuleKinds)];
  int gone = 0, kept = 0;
  const IVShapesPtr shapes = page->Shapes();
  const int count = shapes->Count();
  for (int i = 1; i <= count; ++i) {
    const IVShapePtr shape = shapes->Item(i);
    const int index = shape->Index();
    if (goingAway.contains(index)) {
      ++gone;
      continue;
    }
    const IVMasterPtr master = shape->Master();
    const size_t at = master ? RegisterOf(master->Name()) : std::size(kModuleKinds);
    if (at == std::size(kModuleKinds)) continue;
    registers[at] += (registers[at].empty() ? "" : ";") + std::to_string(index - gone);
    ++kept;
  }
  for (size_t at = 0; at < std::size(kModuleKinds); ++at) SetPagePropList(page, kModuleKinds[at], registers[at]);
  SetPagePropList(page, "Count", std::to_string(kept));
}

}  // namespace vardo
