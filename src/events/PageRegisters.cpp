#include "events/PageRegisters.h"

#include "addin/Global_Variables.h"
#include "addin/host/IVApplication.h"
#include "addin/host/IVDocument.h"
#include "props/PropertyCells.h"
#include "props/StringFunctions.h"

namespace vardo {

std::string DrawingKindShapeIndexes(std::string_view kind) {
  std::string joined;
  const IVPagesPtr pages = visApp->ActiveDocument()->Pages();
  const int count = pages->Count();
  for (int i = 1; i <= count; ++i) {
    const StringList indexes = GetPagePropList(pages->Item(i), kind, "");
    if (indexes.front().empty()) continue;
    for (const std::string& index : indexes) joined += (joined.empty() ? "" : ";") + index;
  }
  return joined;
}

int KindShapeCount(std::string_view kind) {
  const std::string indexes = DrawingKindShapeIndexes(kind);
  return indexes.empty() ? 0 : static_cast<int>(SplitList(indexes, ";").size());
}

}  // namespace vardo
