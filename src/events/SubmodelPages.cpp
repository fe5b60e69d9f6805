#include "events/SubmodelPages.h"

#include "addin/Global_Variables.h"
#include "addin/host/HostConstants.h"
#include "addin/host/IVApplication.h"
#include "addin/host/IVDocument.h"
#include "addin/host/IVShape.h"
#include "base/Characters.h"
#include "base/Errors.h"
#include "base/ScopeExit.h"
#include "base/Text.h"
#include "events/PageRegisters.h"
#include "platform/Platform.h"
#include "props/DrawingLists.h"
#include "props/PropertyCells.h"
#include "props/ShapeKinds.h"

#include <algorithm>
#include <cstddef>
#include <set>

namespace vardo {

std::string PendingParentPage;

namespace {

constexpr std::string_view kProcess = "Process";
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

void AddProcesses(const IVShapePtr& shape, std::vector<IVShapePtr>& processes) {
  if (MasterNameOf(shape) == kProcess) processes.push_back(shape);
  if (shape->Type() != kShapeTypeGroup) return;
  const IVShapesPtr inside = shape->Shapes();
  const int count = inside->Count();
  for (int i = 1; i <= count; ++i) AddProcesses(inside->Item(i), processes);
}

// What the Processes in the groups of a page name; those inside have no place in its register.
void AddLinksInGroups(const IVPagePtr& page, std::vector<std::string>& links) {
  const IVShapesPtr shapes = page->Shapes();
  const int count = shapes->Count();
  for (int i = 1; i <= count; ++i) {
    const IVShapePtr shape = shapes->Item(i);
    if (shape->Type() != kShapeTypeGroup) continue;
    for (const IVShapePtr& process : ProcessesOf(shape))
      if (process->ID() != shape->ID()) links.push_back(SubmodelPageOf(process));
  }
}

// Of all Processes on a page; empty for those that have no submodel page.
std::vector<std::string> LinksOf(const IVPagePtr& page) {
  std::vector<std::string> links;
  CollectPageValues(page, kProcess, CellName(kSubPage), links);
  AddLinksInGroups(page, links);
  return links;
}

template <class Visit>
void ForEachPage(const Visit& visit) {
  const IVPagesPtr pages = AllPages();
  const int count = pages->Count();
  for (int i = 1; i <= count; ++i) visit(pages->Item(i));
}

// The submodel pages below a page, those further in before those they belong to. A page that is named again is not looked at
// again: links may lead in circles.
void AddSubmodelsBelow(const IVPagePtr& page, std::set<std::string>& named, std::vector<IVPagePtr>& submodels) {
  for (const std::string& name : SubmodelPagesOf(page)) {
    if (!named.insert(name).second) continue;
    const IVPagePtr submodel = AllPages()->Item(name);
    AddSubmodelsBelow(submodel, named, submodels);
    submodels.push_back(submodel);
  }
}

// A page that nobody is linked to would stand in the way of the next attempt.
void TakeBack(const IVPagePtr& page, const std::string& parent) try {
  page->Delete(1);
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
  if (PageExists(parent)) return ShowPage(parent);
  if (parent.empty()) return;
  // It has been renamed.
  const std::string name = page->Name();
  std::string linked;
  ForEachPage([&](const IVPagePtr& other) {
    if (!linked.empty()) return;
    const std::vector<std::string> links = LinksOf(other);
    if (std::ranges::find(links, name) != links.end()) linked = other->Name();
  });
  if (!linked.empty()) ShowPage(linked);
}

void DeleteSubmodelPages(const IVPagePtr& page) {
  std::set<std::string> named = {page->Name()};
  // As pages, since those that bear their number as name are renamed when others go.
  std::vector<IVPagePtr> submodels;
  AddSubmodelsBelow(page, named, submodels);
  for (const IVPagePtr& submodel : submodels) submodel->Delete(1);
}

std::vector<std::string> SubmodelPagesOf(const IVPagePtr& page) {
  std::vector<std::string> links = LinksOf(page);
  std::erase_if(links, [](const std::string& name) { return name.empty() || !PageExists(name); });
  return links;
}

std::vector<IVShapePtr> ProcessesOf(const IVShapePtr& shape) {
  std::vector<IVShapePtr> processes;
  AddProcesses(shape, processes);
  return processes;
}

void GiveUpSubmodelPage(const IVShapePtr& process) {
  if (!SubmodelPageOf(process).empty()) SetPropList(process, kSubPage, "");
}

void GiveUpPagesOfOthers(const IVShapePtr& added) {
  for (const IVShapePtr& process : ProcessesOf(added)) {
    const std::string page = SubmodelPageOf(process);
    if (page.empty()) continue;
    auto links = std::ptrdiff_t(0);
    ForEachPage([&](const IVPagePtr& other) { links += std::ranges::count(LinksOf(other), page); });
    if (links > 1) SetPropList(process, kSubPage, "");
  }
}

std::string SubmodelPageOf(const IVShapePtr& process) { return PropText(process, kSubPage); }

std::optional<std::string> WhySubmodelPageStays(const IVShapePtr& process, std::string_view newName) {
  const std::string oldPage = SubmodelPageOf(process);
  if (oldPage.empty() || !PageExists(oldPage)) return std::nullopt;
  const std::string newPage = SubmodelPageName(newName, oldPage);
  if (newPage == oldPage || !PageExists(newPage)) return std::nullopt;
  return "The page \"" + InWords(newPage) + "\" is there already: give the Process another name, or rename that page first.";
}

void RenameSubmodelPage(const IVShapePtr& process, std::string_view newName) {
  const std::string oldPage = SubmodelPageOf(process);
  if (oldPage.empty()) return;
  const std::string newPage = SubmodelPageName(newName, oldPage);
  const auto link = [&](const std::string& page) { SetPropList(process, kSubPage, page); };
  const bool exists = PageExists(oldPage);
  link(newPage);
  if (!exists) return;
  try {
    AllPages()->Item(oldPage)->SetName(newPage);
  } catch (const AutomationError&) {
    // The page keeps its name, as when another page has the new one.
    link(oldPage);
    throw;
  }
  ForEachPage([&](const IVPagePtr& page) {
    if (PropText(page->PageSheet(), kParentPageRow) == oldPage) SetPagePropList(page, kParentPageRow, newPage);
  });
}

}  // namespace vardo
