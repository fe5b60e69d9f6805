#include "Forwarding.h"

#include "addin/host/IVApplication.h"
#include "addin/host/IVDocument.h"
#include "addin/host/IVEventList.h"
#include "addin/host/IVMenus.h"
#include "addin/host/IVShape.h"

#include <memory>
#include <utility>
#include <variant>

namespace vardo {
namespace {

template <class Interface>
class Forwarding : public Interface {
 public:
  Forwarding(std::shared_ptr<Interface> target, HostCallObserver& observer) : target_(std::move(target)), observer_(observer) {}
  const std::shared_ptr<Interface>& target() const { return target_; }

 protected:
  Interface& Call(std::string_view member) {
    observer_.BeforeCall(member);
    return *target_;
  }
  template <class Wrapper, class Result>
  std::shared_ptr<Result> Wrap(std::shared_ptr<Result> result) {
    return result ? std::make_shared<Wrapper>(std::move(result), observer_) : nullptr;
  }
  HostCallObserver& observer() { return observer_; }

 private:
  std::shared_ptr<Interface> target_;
  HostCallObserver& observer_;
};

class ForwardingCell : public Forwarding<IVCell> {
 public:
  using Forwarding::Forwarding;
  std::string Formula() override { return Call("Cell.Formula").Formula(); }
  void SetFormula(std::string_view formula) override { Call("Cell.SetFormula").SetFormula(formula); }
  void SetResult(double value) override { Call("Cell.SetResult").SetResult(value); }
};

class ForwardingMaster : public Forwarding<IVMaster> {
 public:
  using Forwarding::Forwarding;
  std::string Name() override { return Call("Master.Name").Name(); }
  void Delete() override { Call("Master.Delete").Delete(); }
};

class ForwardingShape : public Forwarding<IVShape> {
 public:
  using Forwarding::Forwarding;
  using Stream = std::vector<std::int16_t>;
  using Formulas = std::vector<std::string>;
  IVCellPtr Cells(std::string_view name) override { return Wrap<ForwardingCell>(Call("Shape.Cells").Cells(name)); }
  bool CellExists(std::string_view name, short localOnly) override {
    return Call("Shape.CellExists").CellExists(name, localOnly);
  }
  IVCellPtr CellsSRC(short section, short row, short column) override {
    return Wrap<ForwardingCell>(Call("Shape.CellsSRC").CellsSRC(section, row, column));
  }
  short CellsRowIndex(std::string_view name) override { return Call("Shape.CellsRowIndex").CellsRowIndex(name); }
  std::string Text() override { return Call("Shape.Text").Text(); }
  void SetText(std::string_view text) override { Call("Shape.SetText").SetText(text); }
  std::string Name() override { return Call("Shape.Name").Name(); }
  int ID() override { return Call("Shape.ID").ID(); }
  int Index() override { return Call("Shape.Index").Index(); }
  short Type() override { return Call("Shape.Type").Type(); }
  IVMasterPtr Master() override { return Wrap<ForwardingMaster>(Call("Shape.Master").Master()); }
  IVPagePtr ContainingPage() override;
  IVShapesPtr Shapes() override;
  int RowCount(short section) override { return Call("Shape.RowCount").RowCount(section); }
  bool RowExists(short section, short row, short localOnly) override {
    return Call("Shape.RowExists").RowExists(section, row, localOnly);
  }
  void AddSection(short section) override { Call("Shape.AddSection").AddSection(section); }
  short AddRow(short section, short row, short tag) override { return Call("Shape.AddRow").AddRow(section, row, tag); }
  short AddNamedRow(short section, std::string_view name, short tag) override {
    return Call("Shape.AddNamedRow").AddNamedRow(section, name, tag);
  }
  void DeleteRow(short section, short row) override { Call("Shape.DeleteRow").DeleteRow(section, row); }
  int SetFormulas(const Stream& stream, const Formulas& formulas, short flags) override {
    return Call("Shape.SetFormulas").SetFormulas(stream, formulas, flags);
  }
  void Delete() override { Call("Shape.Delete").Delete(); }
};

class ForwardingShapes : public Forwarding<IVShapes> {
 public:
  using Forwarding::Forwarding;
  int Count() override { return Call("Shapes.Count").Count(); }
  IVShapePtr Item(int index) override { return Wrap<ForwardingShape>(Call("Shapes.Item").Item(index)); }
  IVShapePtr Item(std::string_view name) override { return Wrap<ForwardingShape>(Call("Shapes.Item").Item(name)); }
  IVShapePtr ItemFromID(int id) override { return Wrap<ForwardingShape>(Call("Shapes.ItemFromID").ItemFromID(id)); }
};

IVShapesPtr ForwardingShape::Shapes() { return Wrap<ForwardingShapes>(Call("Shape.Shapes").Shapes()); }

class ForwardingPage : public Forwarding<IVPage> {
 public:
  using Forwarding::Forwarding;
  int ID() override { return Call("Page.ID").ID(); }
  std::string Name() override { return Call("Page.Name").Name(); }
  void SetName(std::string_view name) override { Call("Page.SetName").SetName(name); }
  IVShapePtr PageSheet() override { return Wrap<ForwardingShape>(Call("Page.PageSheet").PageSheet()); }
  IVShapesPtr Shapes() override { return Wrap<ForwardingShapes>(Call("Page.Shapes").Shapes()); }
  void Delete(short renumber) override { Call("Page.Delete").Delete(renumber); }
  BulkTexts PropertyFormulas(std::span<const int> positions, std::string_view field) override {
    return Call("Page.PropertyFormulas").PropertyFormulas(positions, field);
  }
  BulkTexts MasterNames() override { return Call("Page.MasterNames").MasterNames(); }
  std::optional<ListedTexts> CountInListedShapes(std::string_view listField, std::string_view field,
                                                 std::string_view text) override {
    return Call("Page.CountInListedShapes").CountInListedShapes(listField, field, text);
  }
};

IVPagePtr ForwardingShape::ContainingPage() { return Wrap<ForwardingPage>(Call("Shape.ContainingPage").ContainingPage()); }

class ForwardingPages : public Forwarding<IVPages> {
 public:
  using Forwarding::Forwarding;
  int Count() override { return Call("Pages.Count").Count(); }
  IVPagePtr Item(int index) override { return Wrap<ForwardingPage>(Call("Pages.Item").Item(index)); }
  IVPagePtr Item(std::string_view name) override { return Wrap<ForwardingPage>(Call("Pages.Item").Item(name)); }
  IVPagePtr Add() override { return Wrap<ForwardingPage>(Call("Pages.Add").Add()); }
};

class ForwardingMasters : public Forwarding<IVMasters> {
 public:
  using Forwarding::Forwarding;
  int Count() override { return Call("Masters.Count").Count(); }
  IVMasterPtr Item(int index) override { return Wrap<ForwardingMaster>(Call("Masters.Item").Item(index)); }
};

class ForwardingDocument : public Forwarding<IVDocument> {
 public:
  using Forwarding::Forwarding;
  int ID() override { return Call("Document.ID").ID(); }
  IVPagesPtr Pages() override { return Wrap<ForwardingPages>(Call("Document.Pages").Pages()); }
  IVMastersPtr Masters() override { return Wrap<ForwardingMasters>(Call("Document.Masters").Masters()); }
  std::string Path() override { return Call("Document.Path").Path(); }
  IVShapePtr DocumentSheet() override { return Wrap<ForwardingShape>(Call("Document.DocumentSheet").DocumentSheet()); }
};

class ForwardingSelection : public Forwarding<IVSelection> {
 public:
  using Forwarding::Forwarding;
  int Count() override { return Call("Selection.Count").Count(); }
  IVShapePtr Item(int index) override { return Wrap<ForwardingShape>(Call("Selection.Item").Item(index)); }
};

class ForwardingWindow : public Forwarding<IVWindow> {
 public:
  using Forwarding::Forwarding;
  IVSelectionPtr Selection() override { return Wrap<ForwardingSelection>(Call("Window.Selection").Selection()); }
  IVPagePtr Page() override { return Wrap<ForwardingPage>(Call("Window.Page").Page()); }
  void SetPage(std::string_view name) override { Call("Window.SetPage").SetPage(name); }
};

class ForwardingMenuItem : public Forwarding<IVMenuItem> {
 public:
  using Forwarding::Forwarding;
  void SetCaption(std::string_view caption) override { Call("MenuItem.SetCaption").SetCaption(caption); }
  void SetAddOnName(std::string_view name) override { Call("MenuItem.SetAddOnName").SetAddOnName(name); }
};

class ForwardingMenuItems : public Forwarding<IVMenuItems> {
 public:
  using Forwarding::Forwarding;
  IVMenuItemPtr AddAt(int position) override { return Wrap<ForwardingMenuItem>(Call("MenuItems.AddAt").AddAt(position)); }
};

class ForwardingMenu : public Forwarding<IVMenu> {
 public:
  using Forwarding::Forwarding;
  std::string Caption() override { return Call("Menu.Caption").Caption(); }
  void SetCaption(std::string_view caption) override { Call("Menu.SetCaption").SetCaption(caption); }
  IVMenuItemsPtr MenuItems() override { return Wrap<ForwardingMenuItems>(Call("Menu.MenuItems").MenuItems()); }
};

class ForwardingMenus : public Forwarding<IVMenus> {
 public:
  using Forwarding::Forwarding;
  int Count() override { return Call("Menus.Count").Count(); }
  IVMenuPtr Item(int index) override { return Wrap<ForwardingMenu>(Call("Menus.Item").Item(index)); }
  IVMenuPtr AddAt(int position) override { return Wrap<ForwardingMenu>(Call("Menus.AddAt").AddAt(position)); }
};

class ForwardingMenuSet : public Forwarding<IVMenuSet> {
 public:
  using Forwarding::Forwarding;
  IVMenusPtr Menus() override { return Wrap<ForwardingMenus>(Call("MenuSet.Menus").Menus()); }
};

class ForwardingMenuSets : public Forwarding<IVMenuSets> {
 public:
  using Forwarding::Forwarding;
  IVMenuSetPtr ItemAtID(int id) override { return Wrap<ForwardingMenuSet>(Call("MenuSets.ItemAtID").ItemAtID(id)); }
};

class ForwardingUIObject : public Forwarding<IVUIObject> {
 public:
  using Forwarding::Forwarding;
  IVMenuSetsPtr MenuSets() override { return Wrap<ForwardingMenuSets>(Call("UIObject.MenuSets").MenuSets()); }
};

class ForwardingEvent : public Forwarding<IVEvent> {
 public:
  using Forwarding::Forwarding;
  void SetEnabled(bool enabled) override { Call("Event.SetEnabled").SetEnabled(enabled); }
};

// Stands in the host's list for a sink, and gives it wrapped objects. Being called is no call of the host.
class ForwardingSink : public Forwarding<IVEventSink> {
 public:
  using Forwarding::Forwarding;
  void VisEventProc(std::int16_t eventCode, const IVApplicationPtr& source, std::int32_t eventId, std::int32_t eventSeqNum,
                    const EventSubject& subject, std::string_view moreInfo) override {
    const EventSubject wrapped = std::visit([this](const auto& about) { return WrapSubject(about); }, subject);
    target()->VisEventProc(eventCode, ObserveHost(source, observer()), eventId, eventSeqNum, wrapped, moreInfo);
  }

 private:
  EventSubject WrapSubject(std::monostate) { return {}; }
  EventSubject WrapSubject(const IVDocumentPtr& document) { return Wrap<ForwardingDocument>(document); }
  EventSubject WrapSubject(const IVPagePtr& page) { return Wrap<ForwardingPage>(page); }
  EventSubject WrapSubject(const IVShapePtr& shape) { return Wrap<ForwardingShape>(shape); }
  EventSubject WrapSubject(const IVSelectionPtr& selection) { return Wrap<ForwardingSelection>(selection); }
  EventSubject WrapSubject(const IVWindowPtr& window) { return Wrap<ForwardingWindow>(window); }
};

class ForwardingEventList : public Forwarding<IVEventList> {
 public:
  using Forwarding::Forwarding;
  IVEventPtr AddAdvise(std::int16_t code, const IVEventSinkPtr& sink, std::string_view iid,
                       std::string_view targetArgs) override {
    IVEventList& events = Call("EventList.AddAdvise");
    return Wrap<ForwardingEvent>(events.AddAdvise(code, Wrap<ForwardingSink>(sink), iid, targetArgs));
  }
  int Count() override { return Call("EventList.Count").Count(); }
  IVEventPtr Item(int index) override { return Wrap<ForwardingEvent>(Call("EventList.Item").Item(index)); }
};

class ForwardingApplication : public Forwarding<IVApplication> {
 public:
  using Forwarding::Forwarding;
  bool IsUndoingOrRedoing() override { return Call("Application.IsUndoingOrRedoing").IsUndoingOrRedoing(); }
  int BeginUndoScope(std::string_view name) override { return Call("Application.BeginUndoScope").BeginUndoScope(name); }
  void EndUndoScope(int scope, bool keep) override { Call("Application.EndUndoScope").EndUndoScope(scope, keep); }
  IVWindowPtr ActiveWindow() override { return Wrap<ForwardingWindow>(Call("Application.ActiveWindow").ActiveWindow()); }
  IVPagePtr ActivePage() override { return Wrap<ForwardingPage>(Call("Application.ActivePage").ActivePage()); }
  IVDocumentPtr ActiveDocument() override {
    return Wrap<ForwardingDocument>(Call("Application.ActiveDocument").ActiveDocument());
  }
  IVEventListPtr EventList() override { return Wrap<ForwardingEventList>(Call("Application.EventList").EventList()); }
  IVUIObjectPtr CustomMenus() override { return Wrap<ForwardingUIObject>(Call("Application.CustomMenus").CustomMenus()); }
  IVUIObjectPtr BuiltInMenus() override { return Wrap<ForwardingUIObject>(Call("Application.BuiltInMenus").BuiltInMenus()); }
  // The host knows its own menus only.
  void SetCustomMenus(const IVUIObjectPtr& menus) override {
    const auto wrapped = std::dynamic_pointer_cast<ForwardingUIObject>(menus);
    Call("Application.SetCustomMenus").SetCustomMenus(wrapped ? wrapped->target() : menus);
  }
};

}  // namespace

IVApplicationPtr ObserveHost(const IVApplicationPtr& application, HostCallObserver& observer) {
  return std::make_shared<ForwardingApplication>(application, observer);
}

}  // namespace vardo
