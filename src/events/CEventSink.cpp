#include "events/CEventSink.h"

#include "addin/Global_Variables.h"
#include "addin/host/HostConstants.h"
#include "addin/host/IVApplication.h"
#include "addin/host/IVDocument.h"
#include "addin/host/IVShape.h"
#include "addin/host/UndoScope.h"
#include "base/Errors.h"
#include "base/ScopeExit.h"
#include "connect/Glue_Connections.h"
#include "events/PageRegisters.h"
#include "platform/Platform.h"
#include "props/PropertyCells.h"
#include "props/ShapeKinds.h"
#include "props/StringFunctions.h"
#include "validate/CheckDataType.h"

#include <algorithm>
#include <exception>
#include <iterator>
#include <new>
#include <utility>

namespace vardo {

std::vector<std::string> PagesToDelete;
std::vector<std::string> PagesToInitialise;

namespace {

constexpr std::string_view kProcess = "Process";

// The property that holds the name of a module of that kind.
std::string_view NameField(std::string_view kind) { return FindModule(kind)->Name().field; }

// Gives the shape the next number of its kind, in its text and in its name property. A copied Process gives up the submodel page
// that belongs to the original.
void Renumber(const IVShapePtr& shape, const std::string& kind) {
  const std::string number = std::to_string(KindShapeCount(kind) + 1);
  SetPropList(shape, "Count", number);
  shape->SetText(kind + number);
  SetPropList(shape, NameField(kind), shape->Text());
  if (kind == kProcess) GiveUpSubmodelPage(shape);
}

// The positions of the shape and of all that stand behind it on its page.
ShapeIndexes PositionsFrom(const IVShapePtr& shape) {
  ShapeIndexes positions;
  const int count = shape->ContainingPage()->Shapes()->Count();
  for (int i = shape->Index(); i <= count; ++i) positions.insert(i);
  return positions;
}

bool ReadsRegisters(std::uint16_t eventCode) {
  static constexpr std::uint16_t kReading[] = {kEventBeforeSelectionDelete, kEventShapeAdded, kEventPageDeleted,
                                               kEventTextChanged};
  return std::ranges::find(kReading, eventCode) != std::end(kReading);
}

// What comes between the shapes of a paste: each is selected, and the texts of those that are numbered change.
bool GoesOnWithABurst(std::uint16_t eventCode) {
  return eventCode == kEventShapeAdded || eventCode == kEventWindowChanged || eventCode == kEventTextChanged;
}

bool IsUndone(const MendedRegister& mended) try {
  return PropText(mended.page->PageSheet(), mended.kind) == mended.text;
} catch (const AutomationError&) {
  return false;
}

// What did not fit in a drawing, mended now, but for a shape just added and those behind it.
std::vector<MendedRegister> MendedIn(const IVDocumentPtr& drawing, const IVShapePtr& added) {
  const std::string changing = added ? added->ContainingPage()->Name() : "";
  const ShapeIndexes coming = added ? PositionsFrom(added) : ShapeIndexes();
  std::vector<MendedRegister> all;
  const IVPagesPtr pages = drawing->Pages();
  const int count = pages->Count();
  for (int i = 1; i <= count; ++i) {
    const IVPagePtr page = pages->Item(i);
    auto mended = MendRegisters(page, page->Name() == changing ? coming : ShapeIndexes());
    std::ranges::move(mended, std::back_inserter(all));
  }
  return all;
}

struct Going {
  ShapeIndexes shapes;
  std::vector<std::string> submodelPages;
};
Going WhatGoesWith(const IVSelectionPtr& selection) {
  Going going;
  const int count = selection->Count();
  for (int i = 1; i <= count; ++i) {
    const IVShapePtr shape = selection->Item(i);
    going.shapes.insert(shape->Index());
    for (const IVShapePtr& process : ProcessesOf(shape))
      if (std::string page = SubmodelPageOf(process); !page.empty()) going.submodelPages.push_back(std::move(page));
  }
  return going;
}

void ShowAgain(const IVPagePtr& page) try { visApp->ActiveWindow()->SetPage(page->Name()); } catch (const AutomationError&) {
  // It has gone, too.
}

// A host that refuses to tell refuses what would be done, too.
bool HostIsUndoingOrRedoing() try { return visApp->IsUndoingOrRedoing(); } catch (const std::bad_alloc&) {
  throw;
} catch (const std::exception&) {
  return false;
}

// The host must not see a failure of its listener. That there is no memory it must, for its own operation is in danger.
template <class Work>
void EndSilently(const Work& work) try {
  work();
} catch (const std::bad_alloc&) {
  throw;
} catch (const std::exception&) {
}

std::string TakeFirst(std::vector<std::string>& queue) {
  std::string first = std::move(queue.front());
  queue.erase(queue.begin());
  return first;
}

}  // namespace

void CEventSink::VisEventProc(std::int16_t eventCode, const IVApplicationPtr&, std::int32_t, std::int32_t,
                              const EventSubject& subject, std::string_view moreInfo) {
  // What the host takes back holds what was done here, too.
  const auto code = static_cast<std::uint16_t>(eventCode);
  const bool isUndone = HostIsUndoingOrRedoing();
  if (isUndone || !GoesOnWithABurst(code)) burst_ = {};
  // Taken back is also the deletion, just before, of a Process whose page was put off to this event.
  if (isUndone) return PagesToDelete.clear();
  const UndoScope oneStep(visApp, "Keep Modules");
  std::vector<std::string> toDelete = PagesToDelete, toInitialise = PagesToInitialise;
  try {
    EndSilently([&] {
      if (ReadsRegisters(code)) {
        const auto* shape = std::get_if<IVShapePtr>(&subject);
        MendRegisters(shape && code == kEventShapeAdded ? *shape : nullptr);
      }
      DrainQueues();
    });
    EndSilently([&] { Answer(code, subject, moreInfo); });
  } catch (const std::bad_alloc&) {
    // The host takes its operation back, if it can.
    PagesToDelete.swap(toDelete);
    PagesToInitialise.swap(toInitialise);
    registersInDoubt_ = true;
    throw;
  }
}

void CEventSink::Answer(std::uint16_t eventCode, const EventSubject& subject, std::string_view moreInfo) {
  switch (eventCode) {
    case kEventBeforeSelectionDelete:
      return BeforeSelectionDelete(std::get<IVSelectionPtr>(subject));
    case kEventPageAdded:
      return PageAdded(std::get<IVPagePtr>(subject));
    case kEventShapeAdded:
      return ShapeAdded(std::get<IVShapePtr>(subject));
    case kEventPageDeleted:
      return PageDeleted(std::get<IVPagePtr>(subject));
    case kEventDocumentClosed:
      registersInDoubt_ = false;
      mended_.erase(std::get<IVDocumentPtr>(subject)->ID());
      return;
    case kEventTextChanged:
      if (!puttingText_ && visApp->ActiveWindow()->Selection()->Count() == 0) ShapeTextEdited(moreInfo);
      return;
    default:
      return;
  }
}

void CEventSink::MendRegisters(const IVShapePtr& added) try {
  const IVDocumentPtr drawing = visApp->ActiveDocument();
  const int id = drawing->ID();
  if (const auto seen = mended_.find(id); seen != mended_.end()) {
    if (std::ranges::none_of(seen->second, IsUndone)) return;
    mended_.erase(seen);
  }
  burst_ = {};
  // What a new drawing's registers leave out is not the work of others.
  const bool isFromFile = !drawing->Path().empty();
  mended_.emplace(id, isFromFile ? MendedIn(drawing, added) : std::vector<MendedRegister>());
} catch (const AutomationError&) {
  // They stay to be looked at.
}

void CEventSink::Advised(const IVEventPtr& event, bool isPageDeleted) {
  ++advisedEvents_;
  if (isPageDeleted) pageDeletedEvent_ = event;
}

void CEventSink::DrainQueues() {
  // Deleting a page turns the window's page, which comes back here.
  if (draining_) return;
  if (pageDeletedIsOff_) ListenToPageDeleted(true);
  if (PagesToDelete.empty() && PagesToInitialise.empty()) return;
  draining_ = true;
  const AtExit done([this] { draining_ = false; });
  // As a page: its name may be its number, and pass to another page.
  const IVPagePtr shownBefore = visApp->ActivePage();
  while (!PagesToDelete.empty()) {
    DeleteQueuedPage(TakeFirst(PagesToDelete));
    ShowAgain(shownBefore);
  }
  while (!PagesToInitialise.empty()) {
    const std::string name = TakeFirst(PagesToInitialise);
    const IVPagePtr page = PageExists(name) ? visApp->ActiveDocument()->Pages()->Item(name) : nullptr;
    if (page) PageAdded(page);
  }
}

void CEventSink::ListenToPageDeleted(bool on) {
  if (!pageDeletedEvent_) return;
  pageDeletedEvent_->SetEnabled(on);
  pageDeletedIsOff_ = !on;
}

void CEventSink::DeleteQueuedPage(const std::string& name) try {
  ListenToPageDeleted(false);
  const AtExit switchOn([this] {
    try {
      ListenToPageDeleted(true);
    } catch (const std::exception&) {
      // The next event begins with it.
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
  for (const BookkeepingRow& row : kBookkeepingRows) {
    const std::string formula = row.name == kParentPageRow ? InQuotes(PendingParentPage) : std::string(row.formula);
    sheet->Cells(CellName(row.name))->SetFormula(formula);
  }
  PendingParentPage.clear();
  for (short row = 0; row < static_cast<short>(std::size(kBookkeepingRows)); ++row)
    sheet->CellsSRC(kSectionProp, row, kCellPropInvisible)->SetFormula("1");
} catch (const AutomationError&) {
  // The page stays as it is: its registers read as empty, and the first write makes them.
}

void CEventSink::FollowBurst(const IVShapePtr& added) {
  const IVPagePtr page = added->ContainingPage();
  const int id = page->ID(), shapes = page->Shapes()->Count(), position = added->Index();
  if (id != burst_.page || shapes != burst_.shapes || position <= burst_.last) burst_ = {id, shapes, 0, {}};
  burst_.last = position;
}

void CEventSink::ShapeAdded(const IVShapePtr& shape) try {
  FollowBurst(shape);
  if (const short type = shape->Type(); type != kShapeTypeGroup && type != kShapeTypeShape) return;
  const std::string kind = MasterNameOf(shape);
  if (!IsModuleKind(kind)) return OtherShapeAdded(shape, kind);
  ModuleAdded(shape, kind);
  GiveUpPagesOfOthers(shape);
} catch (const AutomationError&) {
  // A shape that lacks what a module has is left as it is.
  registersInDoubt_ = true;
}

void CEventSink::ModuleAdded(const IVShapePtr& shape, const std::string& kind) {
  if (registersInDoubt_) {
    burst_.names = {};
    Recount(shape->ContainingPage(), PositionsFrom(shape));
  }
  registersInDoubt_ = true;
  if (const std::string text = shape->Text(); !text.empty() && burst_.names.Contains(text)) Renumber(shape, kind);
  IncrementPageCount(shape);
  burst_.names.Entered(shape, kind);
  registersInDoubt_ = false;
}

void CEventSink::OtherShapeAdded(const IVShapePtr& shape, const std::string& master) try {
  const IVShapePtr selected = visApp->ActiveWindow()->Selection()->Item(1);
  // A line that was made from no master is no connector.
  if (!master.empty() && selected->RowExists(kSectionObject, kRowXForm1D, kExistsAnywhere)) return CheckConnector();
  GiveUpPagesOfOthers(shape);
} catch (const AutomationError&) {
  // The connector stays as it has been drawn, and a Process in a group what its original is.
}

void CEventSink::BeforeSelectionDelete(const IVSelectionPtr& selection) try {
  auto [shapes, pages] = WhatGoesWith(selection);
  PagesToDelete.insert(PagesToDelete.end(), pages.begin(), pages.end());
  Recount(visApp->ActivePage(), shapes);
} catch (const AutomationError&) {
  registersInDoubt_ = true;
}

void CEventSink::Recount(const IVPagePtr& page, const ShapeIndexes& goingAway) {
  CountModuleNames(page, goingAway);
  if (!registersInDoubt_) return;
  const std::string counted = page->Name();
  const IVPagesPtr pages = visApp->ActiveDocument()->Pages();
  const int count = pages->Count();
  for (int i = 1; i <= count; ++i)
    if (const IVPagePtr other = pages->Item(i); other->Name() != counted) CountModuleNames(other, {});
  registersInDoubt_ = false;
}

void CEventSink::PageDeleted(const IVPagePtr& page) {
  for (std::string& name : SubmodelPagesOf(page)) PagesToDelete.push_back(std::move(name));
}

void CEventSink::ShapeTextEdited(std::string_view moreInfo) {
  burst_ = {};
  const size_t dot = moreInfo.find('.');
  if (dot == std::string_view::npos) return;
  const int id = LeadingInteger(moreInfo.substr(dot + 1));
  const IVShapePtr shape = visApp->ActivePage()->Shapes()->ItemFromID(id);
  const std::string kind = MasterNameOf(shape);
  if (!IsModuleKind(kind)) return;
  const std::string_view nameField = NameField(kind);
  const std::string stored = PropText(shape, nameField);
  const std::string typed = shape->Text();
  const std::string text(TrimBlanks(typed));
  if (text.empty()) return PutText(shape, stored);
  if (text != typed) PutText(shape, text);
  const int times = text == stored ? 2 : 1;
  if (NameIsUsed(NameList::AllModules, text, times)) {
    ShowFieldError(kDuplicateName);
    return PutText(shape, stored);
  }
  if (const auto why = kind == kProcess ? WhySubmodelPageStays(shape, text) : std::nullopt) {
    ThePlatform().ShowMessage(*why, kProductTitle, kStyleExclamation);
    return PutText(shape, stored);
  }
  SetPropList(shape, nameField, text);
  if (kind == kProcess) RenameSubmodelPage(shape, text);
}

void CEventSink::PutText(const IVShapePtr& shape, std::string_view text) {
  puttingText_ = true;
  const AtExit done([this] { puttingText_ = false; });
  shape->SetText(text);
}

}  // namespace vardo
