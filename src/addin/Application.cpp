#include "addin/Application.h"

#include "addin/Global_Variables.h"
#include "addin/Registry.h"
#include "addin/Vardo_Visio_Link_Module.h"
#include "addin/host/HostConstants.h"
#include "addin/host/IVApplication.h"
#include "addin/host/IVDocument.h"
#include "addin/host/IVEventList.h"
#include "addin/host/IVMenus.h"
#include "addin/host/IVShape.h"
#include "base/Errors.h"
#include "catalog/NameCatalogues.h"
#include "events/CEventSink.h"
#include "platform/Platform.h"

#include <iterator>
#include <new>
#include <string>
#include <utility>
#include <vector>

namespace vardo {
namespace {

constexpr struct {
  std::uint16_t code;
  std::string_view description;
} kAdvisedEvents[] = {
    {kEventDocumentCreated, "Document Created...."},
    {kEventBeforeSelectionDelete, "Before Selection Delete"},
    {kEventPageAdded, "Add Page"},
    {kEventPageDeleted, "Delete Page"},
    {kEventShapeAdded, "Shape Added"},
    {kEventPageChanged, "Page Modified"},
    {kEventWindowChanged, "Window Changed"},
    {kEventDocumentClosed, "Document Closed"},
    {kEventTextChanged, "Text Modified"},
};

constexpr std::string_view kMenuCaption = "&Simulate";
constexpr int kMenuPosition = 6;

void AddItem(IVMenuItems& items, int position, std::string_view caption, std::string_view runs) {
  const IVMenuItemPtr item = items.AddAt(position);
  item->SetCaption(caption);
  item->SetAddOnName(runs);
}

bool HasVardoMenu(IVMenus& menus) {
  const int count = menus.Count();
  for (int i = 0; i < count; ++i)
    if (menus.Item(i)->Caption() == kMenuCaption) return true;
  return false;
}

void AddMenuItems(IVMenuItems& items) {
  AddItem(items, 0, "&Check Drawing", R"(set t = CreateObject("VardoFlowchart.Addon"):t.ShowStartupForm Application)");
  if (!GetRegistryString(R"(Software\Brennick Software)", "RecentVardoEngineRoot", "").empty())
    AddItem(items, 1, "&Simulate Drawing", "XR_Simulate.exe");
  AddItem(items, 2, "&About Vardo", "XR_AboutVardo.exe");
}

void ShowMenuFailure(const AutomationError& error) {
  ThePlatform().ShowMessage("Error in AddVardoMenu\n" + std::to_string(error.number()) + "\n" + error.description(),
                            kProductTitle, kStyleExclamation);
}

void EmptyProperties(IVShape& sheet) {
  const int rows = sheet.RowCount(kSectionProp);
  if (rows < 1) return;
  std::vector<std::int16_t> stream;
  for (int row = 0; row < rows; ++row)
    stream.insert(stream.end(), {kSectionProp, static_cast<std::int16_t>(row), kCellPropValue});
  sheet.SetFormulas(stream, std::vector<std::string>(static_cast<size_t>(rows), "\"\""), kSetBlastGuards);
}

template <class Collection>
void DeleteFromLastToFirst(Collection& collection) {
  for (int i = collection.Count(); i >= 1; --i) collection.Item(i)->Delete();
}

class HostForThisCall {
 public:
  explicit HostForThisCall(const IVApplicationPtr& application) : before_(std::exchange(visApp, application)) {}
  ~HostForThisCall() { visApp = before_; }
  HostForThisCall(const HostForThisCall&) = delete;
  HostForThisCall& operator=(const HostForThisCall&) = delete;

 private:
  IVApplicationPtr before_;
};

}  // namespace

void Application::AddVardoMenu() {
  if (!visApp) return;
  try {
    IVUIObjectPtr userInterface = visApp->CustomMenus();
    if (!userInterface) userInterface = visApp->BuiltInMenus();
    const IVMenusPtr menus = userInterface->MenuSets()->ItemAtID(kMenuSetDrawing)->Menus();
    if (HasVardoMenu(*menus)) return;
    const IVMenuPtr menu = menus->AddAt(kMenuPosition);
    menu->SetCaption(kMenuCaption);
    AddMenuItems(*menu->MenuItems());
    visApp->SetCustomMenus(userInterface);
    BuildNameCatalogues();
  } catch (const AutomationError& error) {
    ShowMenuFailure(error);
  } catch (const std::bad_alloc&) {
    ShowMenuFailure(RuntimeError::OutOfMemory());
  }
}

void Application::InitializePage() {
  if (!visApp) return;
  try {
    const IVPagePtr page = visApp->ActivePage();
    EmptyProperties(*page->PageSheet());
    DeleteFromLastToFirst(*page->Shapes());
    DeleteFromLastToFirst(*visApp->ActiveDocument()->Masters());
  } catch (const std::bad_alloc&) {
    // Whoever called takes back what has been done so far, if it can.
    throw;
  } catch (const std::exception&) {
    ThePlatform().ShowMessage("Error in procedure InititalizePage", kProductTitle, kStyleExclamation);
  }
}

void Application::SetupEventSink(const IVApplicationPtr& application) {
  visApp = application;
  const IVEventListPtr events = application->EventList();
  if (!eventSink) eventSink = std::make_shared<CEventSink>();
  // Goes on where an earlier call was refused; nothing is registered twice.
  while (eventSink->AdvisedEvents() < std::size(kAdvisedEvents)) {
    const auto& event = kAdvisedEvents[eventSink->AdvisedEvents()];
    eventSink->Advised(events->AddAdvise(static_cast<std::int16_t>(event.code), eventSink, "", event.description),
                       event.code == kEventPageDeleted);
  }
}

void Application::ShowEditor(const IVApplicationPtr& application, const IVShapePtr& shape) {
  visApp = application;
  if (eventSink) eventSink->MendRegisters();
  OpenModuleDialog(shape);
}

void Application::Submodel(const IVApplicationPtr& application, const IVShapePtr& shape) {
  const HostForThisCall host(application);
  OpenSubmodelPage(shape);
}

void Application::CloseSubmodel(const IVApplicationPtr& application, const IVPagePtr& page) {
  const HostForThisCall host(application);
  ShowParentPage(page);
}

void Application::CopyAndPaste(const EventSubject&) {}

}  // namespace vardo
