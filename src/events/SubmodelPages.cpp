#include "events/SubmodelPages.h"

#include "addin/Global_Variables.h"
#include "addin/host/HostConstants.h"
#include "addin/host/IVApplication.h"
#include "addin/host/IVDocument.h"
#include "addin/host/IVShape.h"
#include "addin/host/SecondTry.h"
#include "base/Characters.h"
#include "base/Errors.h"
#include "base/ScopeExit.h"
#include "events/PageRegisters.h"
#include "platform/Platform.h"
#include "props/DrawingLists.h"
#include "props/PropertyCells.h"
#include "props/StringFunctions.h"

namespace vardo {

std::string PendingParentPage;

namespace {

constexpr std::string_view kSubPage = "VardoSubPage";
constexpr std::string_view kSuffix = " (Submodel)";
constexpr size_t kLongestWholeName = 20;
constexpr size_t kPrefixLength = 18;
constexpr std::string_view kCloseCaption = R"("Close &Submodel")";
constexpr std::string_view kCloseAction =
    R"(RUNADDON("Set t=CreateObject(""VardoBasic.Application""):t.CloseSubmodel Application,ActivePage"))";

// The first characters of a text, at most that many; rest gets what is behind them.
std::string_view Leading(std::string_view text, size_t characters, std::string_view& rest) {
  rest = text;
  for (size_t i = 0; i < characters && !rest.empty(); ++i) rest.remove_prefix(FirstCharacter(rest).size());
  return text.substr(0, text.size() - rest.size());
}

IVPagesPtr AllPages() { return visApp->ActiveDocument()->Pages(); }

void ShowPage(std::string_view name) { visApp->ActiveWindow()->SetPage(name); }

void AddCloseAction(const IVShapePtr& pageSheet) {
  pageSheet->AddSection(kSectionAction);
  pageSheet->AddRow(kSectionAction, 0, kTagDefault);
  pageSheet->CellsSRC(kSectionAction, 0, kCellActionAction)->SetFormula(kCloseAction);
  pageSheet->CellsSRC(kSectionAction, 0, kCellActionMenu)->SetFormula(kCloseCaption);
}

// A page that nobody is linked to would stand in the way of the next attempt.
void TakeBack(const IVPagePtr& page, const std::string& parent) try {
  WithSecondTry([&] { page->Delete(1); });
  ShowPage(parent);
} catch (const AutomationError&) {
  // What was refused in the first place is what the caller is told.
}

}  // namespace

bool PageExists(std::string_view name) {
  const IVPagesPtr pages = AllPages();
  bool found = false;
  for (int i = 1; i <= pages->Count(); ++i) found = found || pages->Item(i)->Name() == name;
  return found;
}

std::string SubmodelPageName(std::string_view name, std::string_view currentPage) {
  std::string_view behind;
  Leading(name, kLongestWholeName, behind);
  if (behind.empty()) return std::string(name) + std::string(kSuffix);
  const std::string_view prefix = Leading(name, kPrefixLength, behind);
  const IVPagesPtr pages = AllPages();
  int alike = 0;
  for (int i = 1; i <= pages->Count(); ++i) {
    const std::string page = pages->Item(i)->Name();
    if (!ThePlatform().EqualTextIgnoringCase(Leading(page, kPrefixLength, behind), prefix)) continue;
    if (ThePlatform().EqualTextIgnoringCase(page, currentPage)) return std::string(currentPage);
    ++alike;
  }
  return std::string(prefix) + std::to_string(alike) + std::string(kSuffix);
}

void OpenSubmodelPage(const IVShapePtr& process) {
  const std::string target = SubmodelPageName(process->Text(), SubmodelPageOf(process));
  if (PageExists(target)) return ShowPage(target);
  const std::string parent = process->ContainingPage()->Name();
  PendingParentPage = parent;
  const AtExit nothingPending([] { PendingParentPage.clear(); });
  const IVPagePtr page = AllPages()->Add();
  try {
    // Unless the listener for new pages has written it.
    if (!PendingParentPage.empty()) SetPagePropList(page, kParentPageRow, parent);
    page->SetName(target);
    AddCloseAction(page->PageSheet());
    SetPropList(process, kSubPage, target);
  } catch (...) {
    TakeBack(page, parent);
    throw;
  }
}

void ShowParentPage(const IVPagePtr& page) {
  const std::string parent = PropText(page->PageSheet(), kParentPageRow);
  if (PageExists(parent)) ShowPage(parent);
}

void DeleteSubmodelPages(const IVPagePtr& page) {
  for (const std::string& name : SubmodelPagesOf(page)) {
    // A page may be named by two Process shapes, or have gone with the submodel of the one before.
    if (!PageExists(name)) continue;
    const IVPagePtr submodel = AllPages()->Item(name);
    DeleteSubmodelPages(submodel);
    submodel->Delete(1);
  }
}

std::vector<std::string> SubmodelPagesOf(const IVPagePtr& page) {
  std::string gathered;
  CollectPageValues(page, "Process", CellName(kSubPage), gathered);
  if (!gathered.empty()) gathered.erase(0, 1);
  std::vector<std::string> existing;
  for (const std::string& name : SplitList(gathered, ";"))
    if (!name.empty() && PageExists(name)) existing.push_back(name);
  return existing;
}

std::string SubmodelPageOf(const IVShapePtr& process) { return PropText(process, kSubPage); }

void RenameSubmodelPage(const IVShapePtr& process, std::string_view newName) {
  const std::string oldPage = SubmodelPageOf(process);
  if (oldPage.empty()) return;
  const std::string newPage = SubmodelPageName(newName, oldPage);
  const auto link = [&](const std::string& page) { WithSecondTry([&] { SetPropList(process, kSubPage, page); }); };
  link(newPage);
  try {
    WithSecondTry([&] {
      if (PageExists(oldPage)) AllPages()->Item(oldPage)->SetName(newPage);
    });
  } catch (const AutomationError&) {
    // The page keeps its name, as when another page has the new one.
    link(oldPage);
    throw;
  }
}

}  // namespace vardo
