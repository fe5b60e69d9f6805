#include "visio/VisioObjects.h"

#include "addin/host/HostConstants.h"
#include "addin/host/IVApplication.h"
#include "addin/host/IVDocument.h"
#include "addin/host/IVMenus.h"
#include "addin/host/IVShape.h"
#include "visio/EventSinkDispatch.h"
#include "visio/PropertyReader.h"
#include "visio/Visio.h"

#include <algorithm>
#include <unordered_map>

namespace vardo {
namespace {

template <class Wrapper>
std::shared_ptr<Wrapper> WrapObject(ComPtr<IDispatch> object, const DispidTablePtr& dispids) {
  return object ? std::make_shared<Wrapper>(std::move(object), dispids) : nullptr;
}

template <class Interface, HostClass kClass>
class Wrapper : public Interface {
 public:
  Wrapper(ComPtr<IDispatch> object, const DispidTablePtr& dispids) : host_(kClass, std::move(object), dispids) {}
  const LateBound& host() const { return host_; }

 protected:
  // An object that is a property of this one, or null.
  template <class Other, class... Arguments>
  std::shared_ptr<Other> Find(const wchar_t* member, const Arguments&... arguments) const {
    return WrapObject<Other>(host_.Get<ComPtr<IDispatch>>(member, arguments...), host_.dispids());
  }
  // One that must be there: the host returns nothing for what is active when no drawing is open.
  template <class Other, class... Arguments>
  std::shared_ptr<Other> Get(const wchar_t* member, const Arguments&... arguments) const {
    return Existing(member, Find<Other>(member, arguments...));
  }
  // One that a method makes.
  template <class Other, class... Arguments>
  std::shared_ptr<Other> Make(const wchar_t* member, const Arguments&... arguments) const {
    return Existing(member, WrapObject<Other>(host_.Call<ComPtr<IDispatch>>(member, arguments...), host_.dispids()));
  }

 private:
  template <class Other>
  static std::shared_ptr<Other> Existing(const wchar_t* member, std::shared_ptr<Other> object) {
    if (!object) throw HostError(kHostNotAllowed, "The drawing host has nothing for " + FromWide(member) + ".");
    return object;
  }
  LateBound host_;
};

class VisioCell : public Wrapper<IVCell, HostClass::Cell> {
 public:
  using Wrapper::Wrapper;
  std::string Formula() override { return host().Get<std::string>(L"Formula"); }
  void SetFormula(std::string_view formula) override { host().Put(L"Formula", formula); }
  void SetResult(double value) override { host().Put(L"ResultIU", value); }
};

class VisioMaster : public Wrapper<IVMaster, HostClass::Master> {
 public:
  using Wrapper::Wrapper;
  std::string Name() override { return host().Get<std::string>(L"Name"); }
  void Delete() override { host().Call(L"Delete"); }
};

class VisioShape : public Wrapper<IVShape, HostClass::Shape> {
 public:
  using Wrapper::Wrapper;
  IVCellPtr Cells(std::string_view name) override { return Get<VisioCell>(L"Cells", name); }
  bool CellExists(std::string_view name, short localOnly) override { return host().Get<bool>(L"CellExists", name, localOnly); }
  IVCellPtr CellsSRC(short section, short row, short column) override {
    return Get<VisioCell>(L"CellsSRC", section, row, column);
  }
  short CellsRowIndex(std::string_view name) override { return host().Get<short>(L"CellsRowIndex", name); }
  std::string Text() override { return host().Get<std::string>(L"Text"); }
  void SetText(std::string_view text) override { host().Put(L"Text", text); }
  std::string Name() override { return host().Get<std::string>(L"Name"); }
  int ID() override { return host().Get<int>(L"ID"); }
  int Index() override { return host().Get<int>(L"Index"); }
  short Type() override { return host().Get<short>(L"Type"); }
  IVMasterPtr Master() override { return Find<VisioMaster>(L"Master"); }
  IVPagePtr ContainingPage() override;
  IVShapesPtr Shapes() override;
  int RowCount(short section) override { return host().Get<int>(L"RowCount", section); }
  bool RowExists(short section, short row, short localOnly) override {
    return host().Get<bool>(L"RowExists", section, row, localOnly);
  }
  void AddSection(short section) override { host().Call(L"AddSection", section); }
  short AddRow(short section, short row, short tag) override { return host().Call<short>(L"AddRow", section, row, tag); }
  short AddNamedRow(short section, std::string_view name, short tag) override {
    return host().Call<short>(L"AddNamedRow", section, name, tag);
  }
  void DeleteRow(short section, short row) override { host().Call(L"DeleteRow", section, row); }
  int SetFormulas(const std::vector<std::int16_t>& stream, const std::vector<std::string>& formulas, short flags) override {
    Variant cells = Variant::ArrayOf(stream), texts = Variant::ArrayOf(formulas);
    // The host declares both arrays by reference.
    return host().Call<int>(L"SetFormulas", Variant::ReferenceTo(cells), Variant::ReferenceTo(texts), flags);
  }
  void Delete() override { host().Call(L"Delete"); }
};

class VisioShapes : public Wrapper<IVShapes, HostClass::Shapes> {
 public:
  using Wrapper::Wrapper;
  int Count() override { return host().Get<int>(L"Count"); }
  IVShapePtr Item(int index) override { return Get<VisioShape>(L"Item", index); }
  IVShapePtr Item(std::string_view name) override { return Get<VisioShape>(L"Item", name); }
  IVShapePtr ItemFromID(int id) override { return Get<VisioShape>(L"ItemFromID", id); }
};

IVShapesPtr VisioShape::Shapes() { return Get<VisioShapes>(L"Shapes"); }

class VisioPage : public Wrapper<IVPage, HostClass::Page> {
 public:
  using Wrapper::Wrapper;
  int ID() override { return host().Get<int>(L"ID"); }
  std::string Name() override { return host().Get<std::string>(L"Name"); }
  void SetName(std::string_view name) override { host().Put(L"Name", name); }
  IVShapePtr PageSheet() override { return Get<VisioShape>(L"PageSheet"); }
  IVShapesPtr Shapes() override { return Get<VisioShapes>(L"Shapes"); }
  void Delete(short renumber) override { host().Call(L"Delete", renumber); }

  BulkTexts PropertyFormulas(std::span<const int> positions, std::string_view field) override {
    if (positions.size() < kWorthABulkRead) return IVPage::PropertyFormulas(positions, field);
    const IVShapesPtr shapes = Shapes();
    const auto ids = ShapeIdsByPosition(host(), *shapes);
    const auto isThere = [&](int position) { return position >= 1 && static_cast<size_t>(position) <= ids->size(); };
    if (!ids || !std::all_of(positions.begin(), positions.end(), isThere)) return IVPage::PropertyFormulas(positions, field);
    return Copies(PropertyReader(host(), *ids, *shapes).Read(positions, field));
  }
  // One selection for each master.
  BulkTexts MasterNames() override {
    const IVShapesPtr shapes = Shapes();
    const auto ids = ShapeIdsByPosition(host(), *shapes);
    if (!ids) return IVPage::MasterNames();
    std::unordered_map<int, std::optional<std::string>> names;
    for (size_t i = 0; i < ids->size(); ++i) {
      if (names.contains((*ids)[i])) continue;
      const auto master = std::static_pointer_cast<VisioMaster>(shapes->Item(static_cast<int>(i) + 1)->Master());
      const auto name = master ? std::optional(master->Name()) : std::nullopt;
      names.emplace((*ids)[i], name);
      if (!master) continue;
      for (const int id : InstancesOnPage(host(), master->host().object())) names.emplace(id, name);
    }
    std::vector<std::optional<std::string>> ordered;
    for (const int id : *ids) ordered.push_back(names[id]);
    return Copies(std::move(ordered));
  }

 private:
  // With fewer a call for each costs no more.
  static constexpr size_t kWorthABulkRead = 8;

  static BulkTexts Copies(std::vector<std::optional<std::string>> texts) {
    BulkTexts copies;
    copies.Reserve(texts.size());
    for (std::optional<std::string>& text : texts) text ? copies.AddCopy(*std::move(text)) : copies.AddView(std::nullopt);
    return copies;
  }
};

IVPagePtr VisioShape::ContainingPage() { return Get<VisioPage>(L"ContainingPage"); }

class VisioPages : public Wrapper<IVPages, HostClass::Pages> {
 public:
  using Wrapper::Wrapper;
  int Count() override { return host().Get<int>(L"Count"); }
  IVPagePtr Item(int index) override { return Get<VisioPage>(L"Item", index); }
  IVPagePtr Item(std::string_view name) override { return Get<VisioPage>(L"Item", name); }
  IVPagePtr Add() override { return Make<VisioPage>(L"Add"); }
};

class VisioMasters : public Wrapper<IVMasters, HostClass::Masters> {
 public:
  using Wrapper::Wrapper;
  int Count() override { return host().Get<int>(L"Count"); }
  IVMasterPtr Item(int index) override { return Get<VisioMaster>(L"Item", index); }
};

class VisioDocument : public Wrapper<IVDocument, HostClass::Document> {
 public:
  using Wrapper::Wrapper;
  int ID() override { return host().Get<int>(L"ID"); }
  IVPagesPtr Pages() override { return Get<VisioPages>(L"Pages"); }
  IVMastersPtr Masters() override { return Get<VisioMasters>(L"Masters"); }
  std::string Path() override { return host().Get<std::string>(L"Path"); }
  IVShapePtr DocumentSheet() override { return Get<VisioShape>(L"DocumentSheet"); }
};

class VisioSelection : public Wrapper<IVSelection, HostClass::Selection> {
 public:
  using Wrapper::Wrapper;
  int Count() override { return host().Get<int>(L"Count"); }
  IVShapePtr Item(int index) override { return Get<VisioShape>(L"Item", index); }
};

class VisioWindow : public Wrapper<IVWindow, HostClass::Window> {
 public:
  using Wrapper::Wrapper;
  IVSelectionPtr Selection() override { return Get<VisioSelection>(L"Selection"); }
  IVPagePtr Page() override { return Get<VisioPage>(L"Page"); }
  void SetPage(std::string_view name) override { host().Put(L"Page", name); }
};

class VisioMenuItem : public Wrapper<IVMenuItem, HostClass::MenuItem> {
 public:
  using Wrapper::Wrapper;
  void SetCaption(std::string_view caption) override { host().Put(L"Caption", caption); }
  void SetAddOnName(std::string_view name) override { host().Put(L"AddOnName", name); }
};

class VisioMenuItems : public Wrapper<IVMenuItems, HostClass::MenuItems> {
 public:
  using Wrapper::Wrapper;
  IVMenuItemPtr AddAt(int position) override { return Make<VisioMenuItem>(L"AddAt", position); }
};

class VisioMenu : public Wrapper<IVMenu, HostClass::Menu> {
 public:
  using Wrapper::Wrapper;
  std::string Caption() override { return host().Get<std::string>(L"Caption"); }
  void SetCaption(std::string_view caption) override { host().Put(L"Caption", caption); }
  IVMenuItemsPtr MenuItems() override { return Get<VisioMenuItems>(L"MenuItems"); }
};

class VisioMenus : public Wrapper<IVMenus, HostClass::Menus> {
 public:
  using Wrapper::Wrapper;
  int Count() override { return host().Get<int>(L"Count"); }
  IVMenuPtr Item(int index) override { return Get<VisioMenu>(L"Item", index); }
  IVMenuPtr AddAt(int position) override { return Make<VisioMenu>(L"AddAt", position); }
};

class VisioMenuSet : public Wrapper<IVMenuSet, HostClass::MenuSet> {
 public:
  using Wrapper::Wrapper;
  IVMenusPtr Menus() override { return Get<VisioMenus>(L"Menus"); }
};

class VisioMenuSets : public Wrapper<IVMenuSets, HostClass::MenuSets> {
 public:
  using Wrapper::Wrapper;
  IVMenuSetPtr ItemAtID(int id) override { return Get<VisioMenuSet>(L"ItemAtID", id); }
};

class VisioUIObject : public Wrapper<IVUIObject, HostClass::UIObject> {
 public:
  using Wrapper::Wrapper;
  IVMenuSetsPtr MenuSets() override { return Get<VisioMenuSets>(L"MenuSets"); }
};

class VisioEvent : public Wrapper<IVEvent, HostClass::Event> {
 public:
  using Wrapper::Wrapper;
  void SetEnabled(bool enabled) override { host().Put(L"Enabled", enabled); }
};

class VisioEventList : public Wrapper<IVEventList, HostClass::EventList> {
 public:
  using Wrapper::Wrapper;
  IVEventPtr AddAdvise(std::int16_t code, const IVEventSinkPtr& sink, std::string_view iid,
                       std::string_view targetArgs) override {
    if (sink != sink_) {
      object_ = MakeEventSinkDispatch(sink, host().dispids());
      sink_ = sink;
    }
    return Make<VisioEvent>(L"AddAdvise", code, object_, iid, targetArgs);
  }
  int Count() override { return host().Get<int>(L"Count"); }
  IVEventPtr Item(int index) override { return Get<VisioEvent>(L"Item", index); }

 private:
  // One object for all the events that a listener is advised of.
  IVEventSinkPtr sink_;
  ComPtr<IDispatch> object_;
};

class VisioApplication : public Wrapper<IVApplication, HostClass::Application> {
 public:
  using Wrapper::Wrapper;
  IVWindowPtr ActiveWindow() override { return Get<VisioWindow>(L"ActiveWindow"); }
  IVPagePtr ActivePage() override { return Get<VisioPage>(L"ActivePage"); }
  IVDocumentPtr ActiveDocument() override { return Get<VisioDocument>(L"ActiveDocument"); }
  IVEventListPtr EventList() override { return Get<VisioEventList>(L"EventList"); }
  IVUIObjectPtr CustomMenus() override { return Find<VisioUIObject>(L"CustomMenus"); }
  IVUIObjectPtr BuiltInMenus() override { return Get<VisioUIObject>(L"BuiltInMenus"); }
  void SetCustomMenus(const IVUIObjectPtr& menus) override {
    const auto* own = dynamic_cast<const VisioUIObject*>(menus.get());
    if (!own) throw HostError(kHostNotAllowed, "Only menus got from the drawing host can be shown there.");
    host().Call(L"SetCustomMenus", own->host().object());
  }
  bool IsUndoingOrRedoing() override { return host().Has(L"IsUndoingOrRedoing") && host().Get<bool>(L"IsUndoingOrRedoing"); }
  int BeginUndoScope(std::string_view name) override {
    return host().Has(L"BeginUndoScope") ? host().Call<int>(L"BeginUndoScope", name) : 0;
  }
  void EndUndoScope(int scope, bool keep) override {
    if (scope != 0) host().Call(L"EndUndoScope", scope, keep);
  }
};

template <class Wrapper>
EventSubject Subject(ComPtr<IDispatch> object, const DispidTablePtr& dispids) {
  return std::make_shared<Wrapper>(std::move(object), dispids);
}

constexpr struct {
  std::uint16_t code;
  EventSubject (*wrap)(ComPtr<IDispatch>, const DispidTablePtr&);
} kSubjects[] = {
    {kEventDocumentCreated, Subject<VisioDocument>}, {kEventDocumentClosed, Subject<VisioDocument>},
    {kEventPageAdded, Subject<VisioPage>},           {kEventPageDeleted, Subject<VisioPage>},
    {kEventPageChanged, Subject<VisioPage>},         {kEventShapeAdded, Subject<VisioShape>},
    {kEventTextChanged, Subject<VisioShape>},        {kEventBeforeSelectionDelete, Subject<VisioSelection>},
    {kEventWindowChanged, Subject<VisioWindow>},
};

template <class Wrapper>
std::shared_ptr<Wrapper> WrapNew(IDispatch* object) {
  return WrapObject<Wrapper>(ComPtr<IDispatch>(object), std::make_shared<DispidTable>());
}

// By COM's rule: an object always gives out the same IUnknown.
bool IsSameObject(const ComPtr<IDispatch>& a, const ComPtr<IDispatch>& b) {
  const auto identity = a.As<IUnknown>();
  return identity && identity == b.As<IUnknown>();
}

}  // namespace

IVApplicationPtr WrapApplication(ComPtr<IDispatch> application, const DispidTablePtr& dispids) {
  return WrapObject<VisioApplication>(std::move(application), dispids);
}

EventSubject WrapSubject(std::uint16_t eventCode, ComPtr<IDispatch> subject, const DispidTablePtr& dispids) {
  if (!subject) return {};
  for (const auto& [code, wrap] : kSubjects)
    if (code == eventCode) return wrap(std::move(subject), dispids);
  return {};
}

IVApplicationPtr WrapApplication(IDispatch* application) { return WrapNew<VisioApplication>(application); }
IVApplicationPtr WrapApplication(IDispatch* application, const IVApplicationPtr& known) {
  const auto* visio = dynamic_cast<const VisioApplication*>(known.get());
  return visio && IsSameObject(visio->host().object(), ComPtr<IDispatch>(application)) ? known : WrapApplication(application);
}
IVPagePtr WrapPage(IDispatch* page) { return WrapNew<VisioPage>(page); }
IVShapePtr WrapShape(IDispatch* shape) { return WrapNew<VisioShape>(shape); }

HWND MainWindow(const IVApplicationPtr& application) noexcept {
  const auto* visio = dynamic_cast<const VisioApplication*>(application.get());
  if (!visio) return nullptr;
  try {
    return static_cast<HWND>(LongToHandle(visio->host().Get<int>(L"WindowHandle32")));
  } catch (const std::exception&) {
    return nullptr;
  }
}

}  // namespace vardo
