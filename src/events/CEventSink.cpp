#include "events/CEventSink.h"

#include "addin/host/HostConstants.h"
#include "addin/host/HostError.h"
#include "addin/host/IVDocument.h"
#include "addin/host/IVShape.h"
#include "catalog/NameCatalogues.h"
#include "events/PageRegisters.h"
#include "props/PropertyCells.h"
#include "props/StringFunctions.h"

#include <algorithm>
#include <exception>
#include <string_view>

namespace vardo {

std::string PendingParentPage;

namespace {

std::string Quoted(std::string_view text) { return "\"" + std::string(text) + "\""; }

bool IsModuleKind(std::string_view name) { return std::find(std::begin(kModuleKinds), std::end(kModuleKinds), name) != std::end(kModuleKinds); }

// Gives the shape the next number of its kind, in its text and in its name property. A copied Process gives up the submodel page
// that belongs to the original.
void Renumber(const IVShapePtr& shape, const std::string& kind) {
  const std::string number = std::to_string(KindShapeCount(kind) + 1);
  SetPropList(shape, "Count", number);
  shape->SetText(kind + number);
  SetPropList(shape, kind + "Name", shape->Text());
  if (kind == "Process" && !GetPropList(shape, "VardoSubPage", "").front().empty()) SetPropList(shape, "VardoSubPage", "");
}

}  // namespace

void CEventSink::VisEventProc(std::int16_t eventCode, const IVApplicationPtr&, std::int32_t, std::int32_t, const EventSubject& subject,
                              std::string_view) {
  try {
    switch (static_cast<std::uint16_t>(eventCode)) {
      case kEventPageAdded: return PageAdded(std::get<IVPagePtr>(subject));
      case kEventShapeAdded: return ShapeAdded(std::get<IVShapePtr>(subject));
      default: return;
    }
  } catch (const std::exception&) {
    // The host must never see a failure of its listener.
  }
}

void CEventSink::PageAdded(const IVPagePtr& page) try {
  const IVShapePtr sheet = page->PageSheet();
  for (const BookkeepingRow& row : kBookkeepingRows) sheet->AddNamedRow(kSectionProp, row.name, kTagDefault);
  for (const BookkeepingRow& row : kBookkeepingRows)
    sheet->Cells("Prop." + std::string(row.name))->SetFormula(row.name == kParentPageRow ? Quoted(PendingParentPage) : std::string(row.formula));
  PendingParentPage.clear();
  for (short row = 0; row < static_cast<short>(std::size(kBookkeepingRows)); ++row)
    sheet->CellsSRC(kSectionProp, row, kCellPropInvisible)->SetFormula("1");
} catch (const AutomationError&) {
  // The page stays as it is: its registers read as empty, and the first write makes them.
}

void CEventSink::ShapeAdded(const IVShapePtr& shape) try {
  if (const short type = shape->Type(); type != kShapeTypeGroup && type != kShapeTypeShape) return;
  const IVMasterPtr master = shape->Master();
  if (!master) return;
  const std::string kind = master->Name();
  if (!IsModuleKind(kind)) return;
  const std::string text = shape->Text();
  if (!text.empty() && NameOccursAtLeast(GatherNames(NameList::AllModules, true), text, 1)) Renumber(shape, kind);
  IncrementPageCount(shape);
} catch (const AutomationError&) {
  // A shape that lacks what a module has is left as it is.
}

}  // namespace vardo
