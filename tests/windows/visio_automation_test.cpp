// The in-memory host as a program that expects Visio meets it: by names, variants and automation's own failures.
#include "automation/HostAutomation.h"

#include "addin/host/HostConstants.h"
#include "addin/host/IVApplication.h"
#include "addin/host/IVDocument.h"
#include "addin/host/IVEventList.h"
#include "addin/host/IVShape.h"
#include "memoryhost/DrawingHost.h"
#include "visio/DispatchObject.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>

namespace vardo {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

constexpr WORD kGet = DISPATCH_PROPERTYGET, kPut = DISPATCH_PROPERTYPUT, kCall = DISPATCH_METHOD;

struct Answer {
  HRESULT code = S_OK;
  Variant value;
  std::int32_t number = 0;
  std::string description;
  UINT wrongArgument = 99;
};

DISPID IdOf(const ComPtr<IDispatch>& object, const wchar_t* name) {
  auto* names = const_cast<OLECHAR*>(name);
  DISPID id = DISPID_UNKNOWN;
  object->GetIDsOfNames(GUID{}, &names, 1, 0, &id);
  return id;
}

// Arguments in calling order.
Answer Invoke(const ComPtr<IDispatch>& object, DISPID id, WORD kind, const std::vector<Variant>& arguments) {
  std::vector<VARIANT> reversed;
  for (auto i = arguments.rbegin(); i != arguments.rend(); ++i) reversed.push_back(i->get());
  DISPID valueOfPut = DISPID_PROPERTYPUT;
  const bool isPut = kind == kPut;
  DISPPARAMS parameters = {reversed.data(), isPut ? &valueOfPut : nullptr, static_cast<UINT>(reversed.size()), isPut ? 1u : 0u};
  Answer answer;
  EXCEPINFO info{};
  answer.code = object->Invoke(id, GUID{}, 0, kind, &parameters, answer.value.Receive(), &info, &answer.wrongArgument);
  answer.number = info.scode;
  answer.description = FromBstr(unique_bstr(info.bstrDescription).get());
  const unique_bstr source(info.bstrSource);
  return answer;
}
Answer Invoke(const ComPtr<IDispatch>& object, const wchar_t* name, WORD kind, const std::vector<Variant>& arguments = {}) {
  return Invoke(object, IdOf(object, name), kind, arguments);
}

// A property, with its indexes; fails the test when it cannot be read.
Variant Get(const ComPtr<IDispatch>& object, const wchar_t* name, const std::vector<Variant>& indexes = {}) {
  Answer answer = Invoke(object, name, kGet | kCall, indexes);
  EXPECT_EQ(answer.code, S_OK) << FromWide(name) << ": " << answer.description;
  return std::move(answer.value);
}
ComPtr<IDispatch> Object(const ComPtr<IDispatch>& object, const wchar_t* name, const std::vector<Variant>& indexes = {}) {
  return AsObject(Get(object, name, indexes).get());
}
std::string Text(const ComPtr<IDispatch>& object, const wchar_t* name, const std::vector<Variant>& indexes = {}) {
  return AsText(Get(object, name, indexes).get());
}

class HostAutomationTest : public testing::Test {
 protected:
  HostAutomationTest() { host.New(); }
  IVShapePtr Drop(std::string_view master = "Create") { return host.Drop(master, host.ActivePage().id(), 1, 1, std::nullopt); }
  ComPtr<IDispatch> App() { return automation->Offer(host.application()); }

  DrawingHost host;
  std::optional<HostAutomation> automation{std::in_place};
};

TEST_F(HostAutomationTest, IsReadByNamesWithoutRegardToCase) {
  Drop();
  Drop("Process");
  const ComPtr<IDispatch> shapes = Object(Object(App(), L"activePAGE"), L"SHAPES");
  EXPECT_EQ(AsInt32(Get(shapes, L"Count").get()), 2);
  EXPECT_EQ(Text(Object(shapes, L"Item", {Variant(2)}), L"Name"), "Process");
  EXPECT_EQ(Text(Object(shapes, L"item", {Variant("Process")}), L"text"), "Process 1");
  EXPECT_EQ(Text(Object(shapes, L"Item", {Variant(2.0)}), L"Name"), "Process") << "Basic's numbers may be real";
  const Answer byDefault = Invoke(shapes, DISPID{DISPID_VALUE}, kGet, {Variant(1)});
  EXPECT_EQ(Text(AsObject(byDefault.value.get()), L"Name"), "Create") << "the items are the collection's own value";
}

TEST_F(HostAutomationTest, IsWrittenByPropertyPut) {
  const IVShapePtr shape = Drop();
  const ComPtr<IDispatch> offered = automation->Offer(shape);
  EXPECT_EQ(Invoke(offered, L"Text", kPut, {Variant("Arrivals")}).code, S_OK);
  EXPECT_EQ(shape->Text(), "Arrivals");
  const ComPtr<IDispatch> cell = Object(offered, L"Cells", {Variant("Prop.CreateName")});
  EXPECT_EQ(Invoke(cell, L"Formula", kPut, {Variant("\"x\"")}).code, S_OK);
  EXPECT_EQ(Text(cell, L"Formula"), "\"x\"");
  EXPECT_EQ(Invoke(cell, L"ResultIU", kPut, {Variant(3)}).code, S_OK);
  EXPECT_EQ(Text(cell, L"Formula"), "3");
}

TEST_F(HostAutomationTest, TellsTruthValuesAsVisioDoes) {
  const ComPtr<IDispatch> shape = automation->Offer(Drop());
  const Variant yes = Get(shape, L"CellExists", {Variant("PinX"), Variant(0)});
  const Variant no = Get(shape, L"CellExists", {Variant("Nothing"), Variant(0)});
  EXPECT_EQ(yes.get().vt, VT_I2);
  EXPECT_EQ(yes.get().iVal, -1);
  EXPECT_EQ(no.get().iVal, 0);
}

TEST_F(HostAutomationTest, RefusesCallsThatDoNotFit) {
  const ComPtr<IDispatch> shape = automation->Offer(Drop()), app = App();
  const Variant nothing{ComPtr<IDispatch>()};
  const struct {
    const ComPtr<IDispatch>& object;
    const wchar_t* member;
    WORD kind;
    std::vector<Variant> arguments;
    HRESULT code;
    UINT wrongArgument;
    const char* why;
  } cases[] = {
      {shape, L"CellsSRC", kGet, {Variant(1), Variant(4)}, DISP_E_BADPARAMCOUNT, 99, "one too few"},
      {shape, L"Name", kGet, {Variant(1)}, DISP_E_BADPARAMCOUNT, 99, "one too many"},
      {shape, L"RowCount", kGet, {Variant::Missing()}, DISP_E_PARAMNOTOPTIONAL, 0, "one left out"},
      {shape, L"CellsSRC", kGet, {Variant(1), Variant("x"), Variant(0)}, DISP_E_TYPEMISMATCH, 1, "a text for a number"},
      {shape, L"CellsSRC", kGet, {Variant(70000), Variant(4), Variant(0)}, DISP_E_OVERFLOW, 2, "no 16-bit number"},
      {shape, L"Cells", kGet, {nothing}, DISP_E_TYPEMISMATCH, 0, "an object for a text"},
      {shape, L"SetFormulas", kCall, {Variant(1), Variant(2), Variant(0)}, DISP_E_TYPEMISMATCH, 2, "no arrays"},
      {app, L"SetCustomMenus", kCall, {nothing}, DISP_E_TYPEMISMATCH, 0, "no menus"},
      {app, L"SetCustomMenus", kCall, {Variant(shape)}, DISP_E_TYPEMISMATCH, 0, "another object"},
      {shape, L"Name", kPut, {Variant("x")}, DISP_E_MEMBERNOTFOUND, 99, "a property that is only read"},
      {shape, L"Delete", kGet, {}, DISP_E_MEMBERNOTFOUND, 99, "a method is no property"},
      {shape, L"Formula", kGet, {}, DISP_E_MEMBERNOTFOUND, 99, "another object's member"},
  };
  for (const auto& [object, member, kind, arguments, code, wrongArgument, why] : cases) {
    const Answer answer = Invoke(object, member, kind, arguments);
    EXPECT_EQ(answer.code, code) << why;
    EXPECT_EQ(answer.wrongArgument, wrongArgument) << why << ": counted from the last";
  }
}

TEST_F(HostAutomationTest, TakesArgumentsByName) {
  const ComPtr<IDispatch> shape = automation->Offer(Drop());
  OLECHAR member[] = L"CellExists", local[] = L"fExistsLocally", cell[] = L"localeSpecificCellName";
  OLECHAR* names[] = {member, local, cell};
  DISPID ids[3];
  ASSERT_EQ(shape->GetIDsOfNames(GUID{}, names, 3, 0, ids), S_OK);
  const Variant first(1), second("Prop.CreateName");
  VARIANT arguments[] = {first.get(), second.get()};
  DISPPARAMS parameters = {arguments, &ids[1], 2, 2};
  Variant result;
  ASSERT_EQ(shape->Invoke(ids[0], GUID{}, 0, kGet, &parameters, result.Receive(), nullptr, nullptr), S_OK);
  EXPECT_FALSE(AsBool(result.get())) << "inherited, so not local";

  Variant noNumber("x");
  arguments[0] = noNumber.get();
  UINT wrong = 99;
  EXPECT_EQ(shape->Invoke(ids[0], GUID{}, 0, kGet, &parameters, nullptr, nullptr, &wrong), DISP_E_TYPEMISMATCH);
  EXPECT_EQ(wrong, 0u) << "where it stands among the arguments";
  DISPID unknown[] = {ids[1], 5};
  DISPPARAMS strange = {arguments, unknown, 2, 2};
  EXPECT_EQ(shape->Invoke(ids[0], GUID{}, 0, kGet, &strange, nullptr, nullptr, &wrong), DISP_E_PARAMNOTOPTIONAL)
      << "a parameter that there is not leaves one out";
}

TEST_F(HostAutomationTest, FailsWithTheHostsNumberAndDescription) {
  const ComPtr<IDispatch> shape = automation->Offer(Drop());
  const Answer missing = Invoke(shape, L"Cells", kGet, {Variant("Prop.Gr\xc3\xbcn")});
  EXPECT_EQ(missing.code, DISP_E_EXCEPTION);
  EXPECT_EQ(missing.number, kHostNoSuchCell);
  EXPECT_THAT(missing.description, HasSubstr("Prop.Gr\xc3\xbcn"));

  EXPECT_EQ(Invoke(shape, L"Delete", kCall).code, S_OK);
  const Answer gone = Invoke(shape, L"Text", kGet);
  EXPECT_EQ(gone.code, DISP_E_EXCEPTION);
  EXPECT_EQ(gone.number, kHostObjectGone);
  EXPECT_NE(gone.description, "");

  DISPPARAMS none = {nullptr, nullptr, 0, 0};
  EXPECT_EQ(shape->Invoke(IdOf(shape, L"Text"), GUID{}, 0, kGet, &none, nullptr, nullptr, nullptr), DISP_E_EXCEPTION)
      << "a caller who does not want to know";
}

TEST_F(HostAutomationTest, WritesManyFormulasFromArraysOfEveryForm) {
  const IVShapePtr shape = Drop();
  const ComPtr<IDispatch> offered = automation->Offer(shape);
  Variant cells = Variant::ArrayOf(std::vector<std::int16_t>{243, 0, 0, 243, 1, 0, 243, 2, 0});
  Variant texts = Variant::ArrayOf(std::vector<std::string>{"\"a\"", "x", "\"c\""});
  VARIANT* element = nullptr;
  LONG second = 1;
  SafeArrayPtrOfIndex(texts.get().parray, &second, reinterpret_cast<void**>(&element));
  VariantClear(element);
  const auto values = [&] {
    std::vector<std::string> formulas;
    for (short row = 0; row < 3; ++row) formulas.push_back(shape->CellsSRC(243, row, 0)->Formula());
    return formulas;
  };
  const Answer byReference =
      Invoke(offered, L"SetFormulas", kCall, {Variant::ReferenceTo(cells), Variant::ReferenceTo(texts), Variant(2)});
  EXPECT_EQ(byReference.code, S_OK);
  EXPECT_EQ(AsInt32(byReference.value.get()), 3);
  EXPECT_THAT(values(), ElementsAre("\"a\"", "\"a\"", "\"c\"")) << "an empty one repeats the one before it";

  Variant one = Variant::ArrayOf(std::vector<std::string>{"7"});
  EXPECT_EQ(Invoke(offered, L"SetFormulas", kCall, {cells, one, Variant(0)}).code, S_OK);
  EXPECT_THAT(values(), ElementsAre("7", "7", "7"));
}

TEST_F(HostAutomationTest, ReadsManyFormulasOfAPage) {
  const auto id = static_cast<std::int16_t>(Drop()->ID());
  const auto other = static_cast<std::int16_t>(Drop("Process")->ID());
  const ComPtr<IDispatch> page = Object(App(), L"ActivePage");
  const auto read = [&](const std::vector<std::int16_t>& stream, Variant& texts) {
    Variant cells = Variant::ArrayOf(stream);
    return Invoke(page, L"GetFormulas", kCall, {Variant::ReferenceTo(cells), Variant::ReferenceTo(texts)}).code;
  };
  Variant texts = Variant::NoArray(VT_VARIANT);
  ASSERT_EQ(read({other, 243, 0, 0, -1, 243, 0, 0, id, 255, 0, 0, id, 243, 0, 2}, texts), S_OK);
  const std::vector<Variant> formulas = AsVariantArray(texts.get());
  ASSERT_EQ(formulas.size(), 4u);
  EXPECT_EQ(AsText(formulas[0].get()), "\"Process 1\"");
  EXPECT_EQ(formulas[1].get().vt, VT_EMPTY) << "no sheet is asked";
  EXPECT_EQ(formulas[2].get().vt, VT_EMPTY) << "no section is asked";
  EXPECT_EQ(AsText(formulas[3].get()), "\"Name\"");
  EXPECT_EQ(read({id, 243, 99, 0}, texts), DISP_E_EXCEPTION) << "a row that is not there";
  EXPECT_EQ(read({id, 243, 0}, texts), E_INVALIDARG) << "half a cell";
  EXPECT_EQ(read({}, texts), E_INVALIDARG);
  Variant numbers = Variant::NoArray(VT_I4);
  EXPECT_EQ(read({id, 243, 0, 0}, numbers), DISP_E_TYPEMISMATCH) << "an array of something else";
}

TEST_F(HostAutomationTest, SelectsAllShapesOrThoseOfAMaster) {
  Drop("Process");
  const IVShapePtr create = Drop();
  Drop("Process");
  const ComPtr<IDispatch> page = Object(App(), L"ActivePage");
  const auto idsOf = [&](const std::vector<Variant>& arguments) {
    const ComPtr<IDispatch> selection = Object(page, L"CreateSelection", arguments);
    Variant ids = Variant::NoArray(VT_I4);
    EXPECT_EQ(Invoke(selection, L"GetIDs", kCall, {Variant::ReferenceTo(ids)}).code, S_OK);
    return AsInt32Array(ids.get());
  };
  const Variant master(Object(automation->Offer(create), L"Master"));
  EXPECT_THAT(idsOf({Variant(1), Variant(0x400), Variant::Missing()}), ElementsAre(1, 2, 3));
  EXPECT_THAT(idsOf({Variant(1), Variant(0x400)}), ElementsAre(1, 2, 3)) << "what may be left out";
  EXPECT_THAT(idsOf({Variant(5), Variant(0x400), master}), ElementsAre(2));
  EXPECT_EQ(Invoke(page, L"CreateSelection", kCall, {Variant(5), Variant(0x400)}).code, DISP_E_TYPEMISMATCH);
}

TEST_F(HostAutomationTest, IsOneObjectForOneHandle) {
  const IVShapePtr shape = Drop(), same = shape, other = Drop();
  const ComPtr<IDispatch> offered = automation->Offer(shape);
  EXPECT_TRUE(offered == automation->Offer(same));
  EXPECT_FALSE(offered == automation->Offer(other));
  EXPECT_TRUE(App() == App());
  EXPECT_FALSE(automation->Offer(IVShapePtr()));
}

TEST_F(HostAutomationTest, ObjectsOutliveTheOffer) {
  const ComPtr<IDispatch> page = Object(App(), L"ActivePage");
  automation.reset();
  EXPECT_EQ(Text(page, L"Name"), "Page-1");
  EXPECT_EQ(AsInt32(Get(Object(page, L"Shapes"), L"Count").get()), 0);
}

TEST_F(HostAutomationTest, ObjectsLetGoOfTheirHandles) {
  IVShapePtr shape = Drop();
  const std::weak_ptr<IVShape> handle = shape;
  ComPtr<IDispatch> offered = automation->Offer(shape);
  shape.reset();
  EXPECT_FALSE(handle.expired());
  offered = nullptr;
  EXPECT_TRUE(handle.expired());
}

// --- Sinks

// A program's sink with a number of its own for its member, as any compiler may give it.
class ProgramSink : public DispatchObject {
 public:
  static constexpr DISPID kNumber = 4242;
  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD kind, DISPPARAMS* parameters, VARIANT*, EXCEPINFO*,
                                   UINT*) noexcept override {
    EXPECT_EQ(id, kNumber);
    EXPECT_EQ(kind, DISPATCH_METHOD);
    EXPECT_EQ(parameters->cNamedArgs, 0u);
    arguments.clear();
    for (UINT i = 0; i < parameters->cArgs; ++i) arguments.push_back(Variant::CopyOf(parameters->rgvarg[i]));
    return E_FAIL;
  }
  std::vector<Variant> arguments;  // as they came

 protected:
  std::optional<Signature> FindMember(const wchar_t* name) const noexcept override {
    static constexpr ParameterNames kNone = {};
    if (!IsSameName(name, L"VisEventProc")) return std::nullopt;
    return Signature{kNumber, &kNone};
  }
};

TEST_F(HostAutomationTest, CallsASinkAsVisioDoes) {
  const auto sink = MakeCom<ProgramSink>();
  const ComPtr<IDispatch> events = Object(App(), L"EventList");
  const auto advise = [&](int code) {
    return Invoke(events, L"AddAdvise", kCall, {Variant(code), Variant(sink.As<IDispatch>()), Variant(""), Variant("told")});
  };
  ASSERT_EQ(advise(0x8040).code, S_OK) << "the code as Basic writes &H8040&";
  ASSERT_EQ(advise(kEventTextChanged).code, S_OK);

  const IVShapePtr shape = Drop();
  ASSERT_EQ(sink->arguments.size(), 6u);
  EXPECT_EQ(sink->arguments[5].get().vt, VT_I2);
  EXPECT_EQ(sink->arguments[5].get().iVal, -32704);
  EXPECT_EQ(sink->arguments[4].get().vt, VT_DISPATCH);
  EXPECT_EQ(sink->arguments[4].get().pdispVal, App().get()) << "the source is the application that was given out";
  EXPECT_EQ(sink->arguments[3].get().vt, VT_I4);
  EXPECT_EQ(sink->arguments[2].get().vt, VT_I4);
  EXPECT_EQ(Text(AsObject(sink->arguments[1].get()), L"Name"), "Create");
  EXPECT_EQ(sink->arguments[0].get().vt, VT_DISPATCH) << "Nothing, for no more information";
  EXPECT_EQ(sink->arguments[0].get().pdispVal, nullptr);

  shape->SetText("Arrivals");
  EXPECT_EQ(AsText(sink->arguments[0].get()), "/doc=1 /page=1 /shape=Sheet." + std::to_string(shape->ID()));
  sink->arguments.clear();

  const ComPtr<IDispatch> event = Object(events, L"Item", {Variant(1)});
  EXPECT_EQ(Invoke(event, L"Enabled", kPut, {Variant(false)}).code, S_OK);
  Drop();
  EXPECT_TRUE(sink->arguments.empty());
}

TEST_F(HostAutomationTest, RefusesASinkThatIsNone) {
  const ComPtr<IDispatch> events = Object(App(), L"EventList");
  const auto advise = [&](const Variant& sink, const char* iid) {
    return Invoke(events, L"AddAdvise", kCall, {Variant(901), sink, Variant(iid), Variant("")});
  };
  EXPECT_EQ(advise(Variant(ComPtr<IDispatch>()), "").number, kHostNotAllowed) << "nothing";
  EXPECT_EQ(advise(Variant(events), "").number, kHostNotAllowed) << "an object without VisEventProc";
  EXPECT_EQ(advise(Variant(MakeCom<ProgramSink>().As<IDispatch>()), "{000D0728}").number, kHostNotAllowed) << "an interface";
  EXPECT_EQ(advise(Variant("sink"), "").code, DISP_E_TYPEMISMATCH) << "a text";
  EXPECT_EQ(AsInt32(Get(events, L"Count").get()), 0);
}

}  // namespace
}  // namespace vardo
