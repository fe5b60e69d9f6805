#include "events/CEventSink.h"

#include "addin/Global_Variables.h"
#include "addin/host/HostConstants.h"
#include "addin/host/HostError.h"
#include "addin/host/IVApplication.h"
#include "addin/host/IVDocument.h"
#include "addin/host/IVShape.h"
#include "catalog/NameCatalogues.h"
#include "connect/Glue_Connections.h"
#include "events/PageRegisters.h"
#include "props/PropertyCells.h"
#include "props/StringFunctions.h"
#include "validate/CheckDataType.h"

#include <exception>
#include <utility>

namespace vardo {

std::vector<std::string> PagesToDelete;
std::vector<std::string> PagesToInitialise;

namespace {

std::string Quoted(std::string_view text) { return "\"" + std::string(text) + "\""; }

// Of the master; empty for a shape that has none.
std::string KindOf(const IVShapePtr& shape) {
  const IVMasterPtr master = shape->Master();
  return master ? master->Name() : "";
}

StringList AllModuleNames() { return GatherNames(NameList::AllModules, false); }

// Gives the shape the next number of its kind, in its text and in its name property. A copied Process gives up the submodel page
// that belongs to the original.
void Renumber(const IVShapePtr& shape, const std::string& kind) {
  const std::string number = std::to_string(KindShapeCount(kind) + 1);
  SetPropList(shape, "Count", number);
  shape->SetText(kind + number);
  SetPropList(shape, kind + "Name", shape->Text());
  if (kind == "Process" && !SubmodelPageOf(shape).empty()) SetPropList(shape, "VardoSubPage", "");
}

// Runs something when a block is left, however it is left.
template <class Action>
class AtExit {
 public:
  explicit AtExit(Action action) : action_(std::move(action)) {}
  ~AtExit() { action_(); }
  AtExit(const AtExit&) = delete;
  AtExit& operator=(const AtExit&) = delete;

 private:
  Action action_;
};

std::string TakeFirst(std::vector<std::string>& queue) {
  std::string first = std::move(queue.front());
  queue.erase(queue.begin());
  return first;
}

}  // namespace

void CEventSink::VisEventProc(std::int16_t eventCode, const IVApplicationPtr&, std::int32_t, std::int32_t,
                              const EventSubject& subject, std::string_view moreInfo) {
  // The host must never see a failure of its listener.
  try {
    DrainQueues();
  } catch (const std::exception&) {
  }
  try {
    switch (static_cast<std::uint16_t>(eventCode)) {
      case kEventBeforeSelectionDelete:
        return BeforeSelectionDelete(std::get<IVSelectionPtr>(subject));
      case kEventPageAdded:
        return PageAdded(std::get<IVPagePtr>(subject));
      case kEventShapeAdded:
        return ShapeAdded(std::get<IVShapePtr>(subject));
      case kEventPageDeleted:
        return PageDeleted(std::get<IVPagePtr>(subject));
      case kEventTextChanged:
        if (!puttingText_ && visApp->ActiveWindow()->Selection()->Count() == 0) ShapeTextEdited(moreInfo);
        return;
      default:
        return;
    }
  } catch (const std::exception&) {
  }
}

void CEventSink::DrainQueues() {
  // Deleting a page turns the window's page, which comes back here.
  if (draining_ || (PagesToDelete.empty() && PagesToInitialise.empty())) return;
  draining_ = true;
  const AtExit done([this] { draining_ = false; });
  const std::string shownBefore = visApp->ActivePage()->Name();
  while (!PagesToDelete.empty()) {
    DeleteQueuedPage(TakeFirst(PagesToDelete));
    if (PageExists(shownBefore)) visApp->ActiveWindow()->SetPage(shownBefore);
  }
  while (!PagesToInitialise.empty()) {
    const std::string name = TakeFirst(PagesToInitialise);
    if (PageExists(name)) PageAdded(visApp->ActiveDocument()->Pages()->Item(name));
  }
}

void CEventSink::DeleteQueuedPage(const std::string& name) try {
  const auto enable = [this](bool enabled) {
    if (pageDeletedEvent_) pageDeletedEvent_->SetEnabled(enabled);
  };
  enable(false);
  const AtExit switchOn([&] {
    try {
      enable(true);
    } catch (const AutomationError&) {
    }
  });
  if (!PageExists(name)) return;
  const IVPagePtr page = visApp->ActiveDocument()->Pages()->Item(name);
  DeleteSubmodelPages(page);
  page->Delete(1);
} catch (const AutomationError&) {
  // The other queued pages still go.
}

void CEventSink::PageAdded(const IVPagePtr& page) try {
  const IVShapePtr sheet = page->PageSheet();
  for (const BookkeepingRow& row : kBookkeepingRows) sheet->AddNamedRow(kSectionProp, row.name, kTagDefault);
  for (const BookkeepingRow& row : kBookkeepingRows)
    sheet->Cells(CellName(row.name))
        ->SetFormula(row.name == kParentPageRow ? Quoted(PendingParentPage) : std::string(row.formula));
  PendingParentPage.clear();
  for (short row = 0; row < static_cast<short>(std::size(kBookkeepingRows)); ++row)
    sheet->CellsSRC(kSectionProp, row, kCellPropInvisible)->SetFormula("1");
} catch (const AutomationError&) {
  // The page stays as it is: its registers read as empty, and the first write makes them.
}

void CEventSink::ShapeAdded(const IVShapePtr& shape) try {
  if (const short type = shape->Type(); type != kShapeTypeGroup && type != kShapeTypeShape) return;
  const std::string kind = KindOf(shape);
  if (!IsModuleKind(kind)) {
    const IVShapePtr selected = visApp->ActiveWindow()->Selection()->Item(1);
    if (selected->RowExists(kSectionObject, kRowXForm1D, kExistsAnywhere)) CheckConnector();
    return;
  }
  const std::string text = shape->Text();
  if (!text.empty() && NameOccursAtLeast(AllModuleNames(), text, 1)) Renumber(shape, kind);
  IncrementPageCount(shape);
} catch (const AutomationError&) {
  // A shape that lacks what a module has is left as it is.
}

void CEventSink::BeforeSelectionDelete(const IVSelectionPtr& selection) {
  ShapeIndexes goingAway;
  const int count = selection->Count();
  for (int i = 1; i <= count; ++i) {
    const IVShapePtr shape = selection->Item(i);
    goingAway.insert(shape->Index());
    if (KindOf(shape) != "Process") continue;
    if (std::string page = SubmodelPageOf(shape); !page.empty()) PagesToDelete.push_back(std::move(page));
  }
  CountModuleNames(visApp->ActivePage(), goingAway);
}

void CEventSink::PageDeleted(const IVPagePtr& page) {
  for (std::string& name : SubmodelPagesOf(page)) PagesToDelete.push_back(std::move(name));
}

void CEventSink::ShapeTextEdited(std::string_view moreInfo) {
  const size_t dot = moreInfo.find('.');
  if (dot == std::string_view::npos) return;
  const IVShapePtr shape = visApp->ActivePage()->Shapes()->ItemFromID(LeadingInteger(moreInfo.substr(dot + 1)));
  const std::string kind = KindOf(shape);
  if (!IsModuleKind(kind)) return;
  const std::string nameField = kind + "Name";
  const std::string stored = GetPropList(shape, nameField, "").front();
  const std::string typed = shape->Text();
  const std::string text(TrimBlanks(typed));
  if (text.empty()) return PutText(shape, stored);
  if (text != typed) PutText(shape, text);
  if (NameOccursAtLeast(AllModuleNames(), text, text == stored ? 2 : 1)) {
    ShowFieldError(kDuplicateName);
    return PutText(shape, stored);
  }
  SetPropList(shape, nameField, text);
  if (kind == "Process") RenameSubmodelPage(shape, text);
}

void CEventSink::PutText(const IVShapePtr& shape, std::string_view text) {
  puttingText_ = true;
  const AtExit done([this] { puttingText_ = false; });
  shape->SetText(text);
}

}  // namespace vardo
