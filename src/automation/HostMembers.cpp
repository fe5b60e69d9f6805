// The members on offer, as Visio's reference names them and their parameters. What they take and return follows from the host's
// interfaces.
#include "addin/host/IVApplication.h"
#include "addin/host/IVDocument.h"
#include "addin/host/IVMenus.h"
#include "addin/host/IVShape.h"
#include "automation/HostAutomation.h"
#include "automation/OfferedObjects.h"
#include "automation/SinkCaller.h"

#include <string>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

namespace vardo {
namespace {

// --- Arguments: from variants to what the host's interfaces take.

template <class Value>
Value Read(const VARIANT& argument, OfferedObjects& objects);

template <>
short Read(const VARIANT& argument, OfferedObjects&) {
  return AsInt16(argument);
}
template <>
int Read(const VARIANT& argument, OfferedObjects&) {
  return AsInt32(argument);
}
template <>
double Read(const VARIANT& argument, OfferedObjects&) {
  return AsDouble(argument);
}
template <>
bool Read(const VARIANT& argument, OfferedObjects&) {
  return AsBool(argument);
}
template <>
std::string Read(const VARIANT& argument, OfferedObjects&) {
  return AsText(argument);
}
template <>
std::vector<std::int16_t> Read(const VARIANT& argument, OfferedObjects&) {
  return AsInt16Array(argument);
}
// An empty element stands for the one before it.
template <>
std::vector<std::string> Read(const VARIANT& argument, OfferedObjects&) {
  std::vector<std::string> texts;
  for (const Variant& element : AsVariantArray(argument)) {
    const bool repeats = element.get().vt == VT_EMPTY && !texts.empty();
    texts.push_back(repeats ? std::string(texts.back()) : AsText(element.get()));
  }
  return texts;
}
template <>
IVEventSinkPtr Read(const VARIANT& argument, OfferedObjects& objects) {
  return MakeSinkCaller(AsObject(argument), objects.shared_from_this());
}
template <>
IVUIObjectPtr Read(const VARIANT& argument, OfferedObjects& objects) {
  if (auto menus = objects.HandleOf<IVUIObject>(AsObject(argument).get())) return menus;
  throw RuntimeError::TypeMismatch();
}

// What an argument is kept as during the call.
template <class Parameter>
using Kept = std::conditional_t<std::is_same_v<Parameter, std::string_view>, std::string, std::remove_cvref_t<Parameter>>;

template <class Parameter>
Kept<Parameter> ReadArgument(const CallArguments& arguments, size_t i, OfferedObjects& objects) {
  try {
    return Read<Kept<Parameter>>(*arguments[i], objects);
  } catch (const RuntimeError& error) {
    throw BadCall{error.number() == RuntimeError::Overflow().number() ? DISP_E_OVERFLOW : DISP_E_TYPEMISMATCH, i};
  }
}

// --- Results. Visio's truth values are 16-bit numbers.

Variant Returned(bool value, OfferedObjects&) { return Variant(static_cast<std::int16_t>(value ? VARIANT_TRUE : VARIANT_FALSE)); }
Variant Returned(short value, OfferedObjects&) { return Variant(value); }
Variant Returned(int value, OfferedObjects&) { return Variant(value); }
Variant Returned(const std::string& text, OfferedObjects&) { return Variant(text); }
template <class Interface>
Variant Returned(const std::shared_ptr<Interface>& handle, OfferedObjects& objects) {
  return Variant(objects.Offer(handle));
}

// --- Members: calls of the interfaces' own functions.

template <class Function>
struct Signature;
template <class Class, class Return, class... Parameters>
struct Signature<Return (Class::*)(Parameters...)> {
  using Interface = Class;
  static constexpr size_t kCount = sizeof...(Parameters);

  template <auto kFunction>
  static Variant Run(Class& object, const CallArguments& arguments, OfferedObjects& objects) {
    return [&]<size_t... i>(std::index_sequence<i...>) {
      // In braces, so that the arguments are read from the first on.
      [[maybe_unused]] const std::tuple<Kept<Parameters>...> kept{ReadArgument<Parameters>(arguments, i, objects)...};
      if constexpr (std::is_void_v<Return>) {
        (object.*kFunction)(std::get<i>(kept)...);
        return Variant();
      } else {
        return Returned((object.*kFunction)(std::get<i>(kept)...), objects);
      }
    }
    (std::index_sequence_for<Parameters...>());
  }
};

template <auto kFunction, class Of = Signature<decltype(kFunction)>>
constexpr OfferedMember<typename Of::Interface> Member(WORD kind, const wchar_t* name, const ParameterNames& parameters) {
  return {name, kind, parameters, Of::kCount, &Of::template Run<kFunction>};
}
template <auto kFunction>
constexpr auto Get(const wchar_t* name, const ParameterNames& parameters = {}) {
  return Member<kFunction>(DISPATCH_PROPERTYGET, name, parameters);
}
template <auto kFunction>
constexpr auto Put(const wchar_t* name) {
  return Member<kFunction>(DISPATCH_PROPERTYPUT, name, {});
}
template <auto kFunction>
constexpr auto Method(const wchar_t* name, const ParameterNames& parameters = {}) {
  return Member<kFunction>(DISPATCH_METHOD, name, parameters);
}

// A text names an item, anything else numbers it.
template <class Collection>
Variant ItemOf(Collection& collection, const CallArguments& arguments, OfferedObjects& objects) {
  if (Variant::CopyOf(*arguments[0]).get().vt == VT_BSTR)
    return Returned(collection.Item(std::string_view(ReadArgument<std::string>(arguments, 0, objects))), objects);
  return Returned(collection.Item(ReadArgument<int>(arguments, 0, objects)), objects);
}
template <class Collection>
constexpr OfferedMember<Collection> ItemByNameOrNumber() {
  return {L"Item", DISPATCH_PROPERTYGET, {L"NameUIDOrIndex"}, 1, ItemOf<Collection>};
}

// --- Reading in bulk, which hosts of ours answer in another way.

// Puts an array into the caller's variable.
void PutArray(const CallArguments& arguments, size_t i, VARENUM element, Variant array) {
  const VARIANT& variable = *arguments[i];
  if (variable.vt != (VT_BYREF | VT_ARRAY | element)) throw BadCall{DISP_E_TYPEMISMATCH, i};
  SafeArrayDestroy(*variable.pparray);
  *variable.pparray = array.Detach().parray;
}

// A cell that is not there fails the whole call: the reference promises nothing for one.
Variant GetFormulas(IVPage& page, const CallArguments& arguments, OfferedObjects& objects) {
  constexpr size_t kNumbersPerCell = 4;
  constexpr short kNoSheet = -1, kNoSection = 255;
  const auto stream = ReadArgument<std::vector<std::int16_t>>(arguments, 0, objects);
  if (stream.empty() || stream.size() % kNumbersPerCell != 0) throw BadCall{E_INVALIDARG, 0};
  const IVShapesPtr shapes = page.Shapes();
  std::vector<Variant> formulas;
  for (size_t i = 0; i < stream.size(); i += kNumbersPerCell) {
    const short sheet = stream[i], section = stream[i + 1];
    if (sheet == kNoSheet || (section & kNoSection) == kNoSection)
      formulas.emplace_back();
    else
      formulas.emplace_back(shapes->ItemFromID(sheet)->CellsSRC(section, stream[i + 2], stream[i + 3])->Formula());
  }
  PutArray(arguments, 1, VT_VARIANT, Variant::ArrayOf(formulas));
  return {};
}

Variant GetIDs(IVSelection& selection, const CallArguments& arguments, OfferedObjects&) {
  std::vector<std::int32_t> ids;
  const int count = selection.Count();
  for (int i = 1; i <= count; ++i) ids.push_back(selection.Item(i)->ID());
  PutArray(arguments, 0, VT_I4, Variant::ArrayOf(ids));
  return {};
}

class ShapesSelected : public IVSelection {
 public:
  explicit ShapesSelected(IVPage& page) : shapes_(page.Shapes()) {}
  void Add(int position) { positions_.push_back(position); }
  int Count() override { return static_cast<int>(positions_.size()); }
  IVShapePtr Item(int index) override {
    if (index < 1 || index > Count()) throw HostError(kHostBadIndex, "There is no such shape in the selection.");
    return shapes_->Item(positions_[static_cast<size_t>(index - 1)]);
  }

 private:
  IVShapesPtr shapes_;
  std::vector<int> positions_;
};

// Of all top-level shapes, or of those of a master.
Variant CreateSelection(IVPage& page, const CallArguments& arguments, OfferedObjects& objects) {
  constexpr int kAll = 1, kByMaster = 5;
  const int type = ReadArgument<int>(arguments, 0, objects);
  if (type != kAll && type != kByMaster) throw BadCall{E_NOTIMPL, 0};
  std::string master;
  if (type == kByMaster) {
    const auto handle = IsMissing(arguments[2]) ? nullptr : objects.HandleOf<IVMaster>(AsObject(*arguments[2]).get());
    if (!handle) throw BadCall{DISP_E_TYPEMISMATCH, 2};
    master = handle->Name();
  }
  const auto selection = std::make_shared<ShapesSelected>(page);
  const BulkTexts names = page.MasterNames();
  int position = 0;
  for (const auto& name : names.texts()) {
    ++position;
    if (type == kAll || name == master) selection->Add(position);
  }
  return Returned(IVSelectionPtr(selection), objects);
}

constexpr OfferedMember<IVApplication> kApplication[] = {
    Get<&IVApplication::ActiveWindow>(L"ActiveWindow"),
    Get<&IVApplication::ActivePage>(L"ActivePage"),
    Get<&IVApplication::ActiveDocument>(L"ActiveDocument"),
    Get<&IVApplication::EventList>(L"EventList"),
    Get<&IVApplication::CustomMenus>(L"CustomMenus"),
    Get<&IVApplication::BuiltInMenus>(L"BuiltInMenus"),
    Method<&IVApplication::SetCustomMenus>(L"SetCustomMenus", {L"MenusObject"}),
    Get<&IVApplication::IsUndoingOrRedoing>(L"IsUndoingOrRedoing"),
    Method<&IVApplication::BeginUndoScope>(L"BeginUndoScope", {L"bstrUndoScopeName"}),
    Method<&IVApplication::EndUndoScope>(L"EndUndoScope", {L"nScopeID", L"bCommit"}),
};
constexpr OfferedMember<IVWindow> kWindow[] = {
    Get<&IVWindow::Selection>(L"Selection"),
    Get<&IVWindow::Page>(L"Page"),
    Put<&IVWindow::SetPage>(L"Page"),
};
constexpr OfferedMember<IVSelection> kSelection[] = {
    Get<&IVSelection::Count>(L"Count"),
    Get<&IVSelection::Item>(L"Item", {L"Index"}),
    {L"GetIDs", DISPATCH_METHOD, {L"ShapeIDs"}, 1, GetIDs},
};
constexpr OfferedMember<IVDocument> kDocument[] = {
    Get<&IVDocument::ID>(L"ID"),
    Get<&IVDocument::Pages>(L"Pages"),
    Get<&IVDocument::Masters>(L"Masters"),
    Get<&IVDocument::Path>(L"Path"),
    Get<&IVDocument::DocumentSheet>(L"DocumentSheet"),
};
constexpr OfferedMember<IVPages> kPages[] = {
    Get<&IVPages::Count>(L"Count"),
    ItemByNameOrNumber<IVPages>(),
    Method<&IVPages::Add>(L"Add"),
};
constexpr OfferedMember<IVPage> kPage[] = {
    Get<&IVPage::ID>(L"ID"),
    Get<&IVPage::Name>(L"Name"),
    Put<&IVPage::SetName>(L"Name"),
    Get<&IVPage::PageSheet>(L"PageSheet"),
    Get<&IVPage::Shapes>(L"Shapes"),
    Method<&IVPage::Delete>(L"Delete", {L"fRenumberPages"}),
    {L"GetFormulas", DISPATCH_METHOD, {L"SID_SRCStream", L"formulaArray"}, 2, GetFormulas},
    {L"CreateSelection", DISPATCH_METHOD, {L"SelType", L"IterationMode", L"Data"}, 3, CreateSelection, 1},
};
constexpr OfferedMember<IVShapes> kShapes[] = {
    Get<&IVShapes::Count>(L"Count"),
    ItemByNameOrNumber<IVShapes>(),
    Get<&IVShapes::ItemFromID>(L"ItemFromID", {L"nID"}),
};
constexpr OfferedMember<IVShape> kShape[] = {
    Get<&IVShape::Cells>(L"Cells", {L"localeSpecificCellName"}),
    Get<&IVShape::CellExists>(L"CellExists", {L"localeSpecificCellName", L"fExistsLocally"}),
    Get<&IVShape::CellsSRC>(L"CellsSRC", {L"Section", L"Row", L"Column"}),
    Get<&IVShape::CellsRowIndex>(L"CellsRowIndex", {L"localeSpecificCellName"}),
    Get<&IVShape::Text>(L"Text"),
    Put<&IVShape::SetText>(L"Text"),
    Get<&IVShape::Name>(L"Name"),
    Get<&IVShape::ID>(L"ID"),
    Get<&IVShape::Index>(L"Index"),
    Get<&IVShape::Type>(L"Type"),
    Get<&IVShape::Master>(L"Master"),
    Get<&IVShape::ContainingPage>(L"ContainingPage"),
    Get<&IVShape::Shapes>(L"Shapes"),
    Get<&IVShape::RowCount>(L"RowCount", {L"Section"}),
    Get<&IVShape::RowExists>(L"RowExists", {L"Section", L"Row", L"fExistsLocally"}),
    Method<&IVShape::AddSection>(L"AddSection", {L"Section"}),
    Method<&IVShape::AddRow>(L"AddRow", {L"Section", L"Row", L"RowTag"}),
    Method<&IVShape::AddNamedRow>(L"AddNamedRow", {L"Section", L"RowName", L"RowTag"}),
    Method<&IVShape::DeleteRow>(L"DeleteRow", {L"Section", L"Row"}),
    Method<&IVShape::SetFormulas>(L"SetFormulas", {L"SRCStream", L"formulaArray", L"Flags"}),
    Method<&IVShape::Delete>(L"Delete"),
};
constexpr OfferedMember<IVCell> kCell[] = {
    Get<&IVCell::Formula>(L"Formula"),
    Put<&IVCell::SetFormula>(L"Formula"),
    Put<&IVCell::SetResult>(L"ResultIU"),
};
constexpr OfferedMember<IVMasters> kMasters[] = {
    Get<&IVMasters::Count>(L"Count"),
    Get<&IVMasters::Item>(L"Item", {L"NameUIDOrIndex"}),
};
constexpr OfferedMember<IVMaster> kMaster[] = {
    Get<&IVMaster::Name>(L"Name"),
    Method<&IVMaster::Delete>(L"Delete"),
};
constexpr OfferedMember<IVEventList> kEventList[] = {
    Method<&IVEventList::AddAdvise>(L"AddAdvise", {L"EventCode", L"SinkIUnkOrIDisp", L"IIDSink", L"TargetArgs"}),
    Get<&IVEventList::Count>(L"Count"),
    Get<&IVEventList::Item>(L"Item", {L"Index"}),
};
constexpr OfferedMember<IVEvent> kEvent[] = {Put<&IVEvent::SetEnabled>(L"Enabled")};
constexpr OfferedMember<IVUIObject> kUIObject[] = {Get<&IVUIObject::MenuSets>(L"MenuSets")};
constexpr OfferedMember<IVMenuSets> kMenuSets[] = {Get<&IVMenuSets::ItemAtID>(L"ItemAtID", {L"lID"})};
constexpr OfferedMember<IVMenuSet> kMenuSet[] = {Get<&IVMenuSet::Menus>(L"Menus")};
constexpr OfferedMember<IVMenus> kMenus[] = {
    Get<&IVMenus::Count>(L"Count"),
    Get<&IVMenus::Item>(L"Item", {L"lIndex"}),
    Method<&IVMenus::AddAt>(L"AddAt", {L"lIndex"}),
};
constexpr OfferedMember<IVMenu> kMenu[] = {
    Get<&IVMenu::Caption>(L"Caption"),
    Put<&IVMenu::SetCaption>(L"Caption"),
    Get<&IVMenu::MenuItems>(L"MenuItems"),
};
constexpr OfferedMember<IVMenuItems> kMenuItems[] = {Method<&IVMenuItems::AddAt>(L"AddAt", {L"lIndex"})};
constexpr OfferedMember<IVMenuItem> kMenuItem[] = {
    Put<&IVMenuItem::SetCaption>(L"Caption"),
    Put<&IVMenuItem::SetAddOnName>(L"AddOnName"),
};

}  // namespace

template <>
std::span<const OfferedMember<IVApplication>> MembersOf() {
  return kApplication;
}
template <>
std::span<const OfferedMember<IVWindow>> MembersOf() {
  return kWindow;
}
template <>
std::span<const OfferedMember<IVSelection>> MembersOf() {
  return kSelection;
}
template <>
std::span<const OfferedMember<IVDocument>> MembersOf() {
  return kDocument;
}
template <>
std::span<const OfferedMember<IVPages>> MembersOf() {
  return kPages;
}
template <>
std::span<const OfferedMember<IVPage>> MembersOf() {
  return kPage;
}
template <>
std::span<const OfferedMember<IVShapes>> MembersOf() {
  return kShapes;
}
template <>
std::span<const OfferedMember<IVShape>> MembersOf() {
  return kShape;
}
template <>
std::span<const OfferedMember<IVCell>> MembersOf() {
  return kCell;
}
template <>
std::span<const OfferedMember<IVMasters>> MembersOf() {
  return kMasters;
}
template <>
std::span<const OfferedMember<IVMaster>> MembersOf() {
  return kMaster;
}
template <>
std::span<const OfferedMember<IVEventList>> MembersOf() {
  return kEventList;
}
template <>
std::span<const OfferedMember<IVEvent>> MembersOf() {
  return kEvent;
}
template <>
std::span<const OfferedMember<IVUIObject>> MembersOf() {
  return kUIObject;
}
template <>
std::span<const OfferedMember<IVMenuSets>> MembersOf() {
  return kMenuSets;
}
template <>
std::span<const OfferedMember<IVMenuSet>> MembersOf() {
  return kMenuSet;
}
template <>
std::span<const OfferedMember<IVMenus>> MembersOf() {
  return kMenus;
}
template <>
std::span<const OfferedMember<IVMenu>> MembersOf() {
  return kMenu;
}
template <>
std::span<const OfferedMember<IVMenuItems>> MembersOf() {
  return kMenuItems;
}
template <>
std::span<const OfferedMember<IVMenuItem>> MembersOf() {
  return kMenuItem;
}

HostAutomation::HostAutomation() : objects_(std::make_shared<OfferedObjects>()) {}
ComPtr<IDispatch> HostAutomation::Offer(const IVApplicationPtr& application) const { return objects_->Offer(application); }
ComPtr<IDispatch> HostAutomation::Offer(const IVPagePtr& page) const { return objects_->Offer(page); }
ComPtr<IDispatch> HostAutomation::Offer(const IVShapePtr& shape) const { return objects_->Offer(shape); }
size_t HostAutomation::CallCount() const { return objects_->CallCount(); }

}  // namespace vardo
