// COM's resources, the adapter over Visio's objects and the sink, against a host that counts and tells all that is done to it.
#include "visio/Visio.h"
#include "addin/host/HostConstants.h"
#include "addin/host/IVApplication.h"
#include "addin/host/IVDocument.h"
#include "addin/host/IVEventList.h"
#include "addin/host/IVMenus.h"
#include "addin/host/IVShape.h"
#include "visio/EventSinkDispatch.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>
#include <functional>
#include <map>
#include <new>
#include <optional>
#include <stdexcept>

namespace vardo {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr HRESULT kSomeFailure = static_cast<HRESULT>(0x86DB08A7);

// --- A host that counts

constexpr WORD kGet = DISPATCH_PROPERTYGET, kPut = DISPATCH_PROPERTYPUT, kCall = DISPATCH_METHOD;

// What the host's objects answer: the name of an object's class, or a value. A list's items are told apart by the list's class.
constexpr struct FakeMember {
  const char* owner;
  const char* name;
  WORD kind;
  const char* result;
} kFakeMembers[] = {
    {"Application", "ActiveWindow", kGet, "Window"},
    {"Application", "ActivePage", kGet, "Page"},
    {"Application", "ActiveDocument", kGet, "Document"},
    {"Application", "EventList", kGet, "EventList"},
    {"Application", "CustomMenus", kGet, "UIObject"},
    {"Application", "BuiltInMenus", kGet, "UIObject"},
    {"Application", "SetCustomMenus", kCall, ""},
    {"Application", "WindowHandle32", kGet, "1234"},
    {"Window", "Selection", kGet, "Selection"},
    {"Window", "Page", kGet, "Page"},
    {"Window", "Page", kPut, ""},
    {"Selection", "Count", kGet, "1"},
    {"Selection", "Item", kGet, "Shape"},
    {"Document", "Pages", kGet, "Pages"},
    {"Document", "Masters", kGet, "Masters"},
    {"Document", "Path", kGet, "'C:\\Drawings\\'"},
    {"Pages", "Count", kGet, "1"},
    {"Pages", "Item", kGet, "Page"},
    {"Pages", "Add", kCall, "Page"},
    {"Page", "Name", kGet, "'Page-1'"},
    {"Page", "Name", kPut, ""},
    {"Page", "PageSheet", kGet, "Shape"},
    {"Page", "Shapes", kGet, "Shapes"},
    {"Page", "Delete", kCall, ""},
    {"Shapes", "Count", kGet, "1"},
    {"Shapes", "Item", kGet, "Shape"},
    {"Shapes", "ItemFromID", kGet, "Shape"},
    {"Shape", "Cells", kGet, "Cell"},
    {"Shape", "CellExists", kGet, "-1"},
    {"Shape", "CellsSRC", kGet, "Cell"},
    {"Shape", "Text", kGet, "'Create 1'"},
    {"Shape", "Text", kPut, ""},
    {"Shape", "Name", kGet, "'Create'"},
    {"Shape", "ID", kGet, "7"},
    {"Shape", "Index", kGet, "2"},
    {"Shape", "Type", kGet, "3"},
    {"Shape", "Master", kGet, "Master"},
    {"Shape", "ContainingPage", kGet, "Page"},
    {"Shape", "Shapes", kGet, "Shapes"},
    {"Shape", "RowCount", kGet, "4"},
    {"Shape", "RowExists", kGet, "0"},
    {"Shape", "AddSection", kCall, "0"},
    {"Shape", "AddRow", kCall, "5"},
    {"Shape", "AddNamedRow", kCall, "6"},
    {"Shape", "DeleteRow", kCall, ""},
    {"Shape", "SetFormulas", kCall, "2"},
    {"Shape", "Delete", kCall, ""},
    {"Cell", "Formula", kGet, "'\"x\"'"},
    {"Cell", "Formula", kPut, ""},
    {"Cell", "ResultIU", kPut, ""},
    {"Masters", "Count", kGet, "1"},
    {"Masters", "Item", kGet, "Master"},
    {"Master", "Name", kGet, "'Create'"},
    {"Master", "Delete", kCall, ""},
    {"EventList", "AddAdvise", kCall, "Event"},
    {"EventList", "Count", kGet, "1"},
    {"EventList", "Item", kGet, "Event"},
    {"Event", "Enabled", kPut, ""},
    {"UIObject", "MenuSets", kGet, "MenuSets"},
    {"MenuSets", "ItemAtID", kGet, "MenuSet"},
    {"MenuSet", "Menus", kGet, "Menus"},
    {"Menus", "Count", kGet, "1"},
    {"Menus", "Item", kGet, "Menu"},
    {"Menus", "AddAt", kCall, "Menu"},
    {"Menu", "Caption", kGet, "'&File'"},
    {"Menu", "Caption", kPut, ""},
    {"Menu", "MenuItems", kGet, "MenuItems"},
    {"MenuItems", "AddAt", kCall, "MenuItem"},
    {"MenuItem", "Caption", kPut, ""},
    {"MenuItem", "AddOnName", kPut, ""},
};

// An argument as the host saw it: its type and what it holds.
std::string Seen(const VARIANT& argument) {
  const auto items = [](const SAFEARRAY& array, const auto& text) {
    std::string list;
    for (ULONG i = 0; i < array.rgsabound[0].cElements; ++i) list += (i ? "," : "") + text(i);
    return "{" + list + "}";
  };
  switch (argument.vt) {
    case VT_I2:
      return "I2 " + std::to_string(argument.iVal);
    case VT_I4:
      return "I4 " + std::to_string(argument.lVal);
    case VT_R8:
      return "R8 " + std::to_string(argument.dblVal);
    case VT_BOOL:
      return argument.boolVal == VARIANT_TRUE ? "True" : "False";
    case VT_BSTR:
      return "'" + FromBstr(argument.bstrVal) + "'";
    case VT_DISPATCH:
      return argument.pdispVal ? "object" : "Nothing";
    case VT_BYREF | VT_ARRAY | VT_I2:
      return "ref I2" + items(**argument.pparray,
                              [&](ULONG i) { return std::to_string(static_cast<const SHORT*>((*argument.pparray)->pvData)[i]); });
    case VT_BYREF | VT_ARRAY | VT_VARIANT:
      return "ref Variant" + items(**argument.pparray,
                                   [&](ULONG i) { return Seen(static_cast<const VARIANT*>((*argument.pparray)->pvData)[i]); });
    default:
      return "type " + std::to_string(argument.vt);
  }
}

class FakeObject;

struct FakeHost {
  // What is alive: references to the host's objects, and the sinks that it keeps.
  int references = 0;
  std::vector<ComPtr<IDispatch>> sinks;

  std::map<std::string, int> lookups;
  std::vector<std::string> calls;

  // The call, or the look-up of a number, that fails; counted from 1.
  int failingCall = 0, failingLookup = 0;
  std::function<HRESULT(EXCEPINFO&)> failure = [](EXCEPINFO& info) {
    info.scode = kSomeFailure;
    info.bstrSource = SysAllocString(L"Host");
    info.bstrDescription = ToBstr("Nicht m\xc3\xb6glich.").release();
    return DISP_E_EXCEPTION;
  };
  // What a member returns instead of what the table says.
  std::map<std::string, Variant> answers;

  int lookupCount = 0, callCount = 0;
  ComPtr<IDispatch> Make(const char* className);
};

class FakeObject : public IDispatch {
 public:
  FakeObject(FakeHost& host, const char* className) : host_(host), class_(className) { ++host_.references; }

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override {
    *object = id == __uuidof(IUnknown) || id == __uuidof(IDispatch) ? this : nullptr;
    if (!*object) return E_NOINTERFACE;
    AddRef();
    return S_OK;
  }
  ULONG STDMETHODCALLTYPE AddRef() override {
    ++host_.references;
    return ++count_;
  }
  ULONG STDMETHODCALLTYPE Release() override {
    --host_.references;
    const ULONG left = --count_;
    if (left == 0) delete this;
    return left;
  }
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override {
    *count = 0;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }

  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT, LCID, DISPID* ids) override {
    const std::string name = FromWide(names[0]);
    if (++host_.lookupCount == host_.failingLookup) return DISP_E_UNKNOWNNAME;
    for (const FakeMember& member : kFakeMembers) {
      if (member.owner != class_ || member.name != name) continue;
      ++host_.lookups[class_ + "." + name];
      ids[0] = IdOf(member);
      return S_OK;
    }
    return DISP_E_UNKNOWNNAME;
  }

  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD kind, DISPPARAMS* parameters, VARIANT* result, EXCEPINFO* info,
                                   UINT*) override {
    for (const FakeMember& member : kFakeMembers)
      if (member.owner == class_ && IdOf(member) == id && (member.kind & kind)) return Run(member, *parameters, result, *info);
    return DISP_E_MEMBERNOTFOUND;
  }

 private:
  virtual ~FakeObject() = default;

  // Reading and writing a property are one number, which no other member of any object has.
  static DISPID IdOf(const FakeMember& wanted) {
    DISPID id = 1000;
    for (const FakeMember& member : kFakeMembers) {
      if (std::string(member.owner) == wanted.owner && std::string(member.name) == wanted.name) return id;
      ++id;
    }
    return DISPID_UNKNOWN;
  }

  HRESULT Run(const FakeMember& member, const DISPPARAMS& parameters, VARIANT* result, EXCEPINFO& info) {
    const std::string name = class_ + "." + member.name;
    std::string call = name + "(";
    for (UINT i = parameters.cArgs; i-- > 0;) call += Seen(parameters.rgvarg[i]) + (i ? ", " : "");
    const bool isPut = parameters.cNamedArgs == 1 && parameters.rgdispidNamedArgs[0] == DISPID_PROPERTYPUT;
    host_.calls.push_back((member.kind == kPut && isPut ? "put " : "") + call + ")");
    if (++host_.callCount == host_.failingCall) return host_.failure(info);
    if (name == "EventList.AddAdvise") host_.sinks.emplace_back(parameters.rgvarg[2].pdispVal);
    if (result) *result = Answer(member, name).Detach();
    return S_OK;
  }

  Variant Answer(const FakeMember& member, const std::string& name) {
    if (const auto set = host_.answers.find(name); set != host_.answers.end()) return set->second;
    const std::string answer = member.result;
    if (answer.empty()) return Variant();
    if (answer[0] == '\'') return Variant(std::string_view(answer).substr(1, answer.size() - 2));
    if (answer[0] == '-' || (answer[0] >= '0' && answer[0] <= '9')) return Variant(static_cast<std::int16_t>(std::stoi(answer)));
    return Variant(host_.Make(member.result));
  }

  FakeHost& host_;
  std::string class_;
  ULONG count_ = 1;
};

ComPtr<IDispatch> FakeHost::Make(const char* className) { return ComPtr<IDispatch>::Attach(new FakeObject(*this, className)); }

class SilentSink : public IVEventSink {
 public:
  void VisEventProc(std::int16_t, const IVApplicationPtr&, std::int32_t, std::int32_t, const EventSubject&,
                    std::string_view) override {}
};

// Calls every member that there is.
void UseEverything(IDispatch* application) {
  const IVApplicationPtr app = WrapApplication(application);
  const IVWindowPtr window = app->ActiveWindow();
  window->Page();
  window->SetPage("Page-1");
  const IVSelectionPtr selection = window->Selection();
  selection->Count();
  selection->Item(1);

  const IVDocumentPtr document = app->ActiveDocument();
  const IVPagesPtr pages = document->Pages();
  pages->Count();
  pages->Item(1);
  pages->Item("Page-1");
  pages->Add();
  document->Path();
  const IVMastersPtr masters = document->Masters();
  masters->Count();
  masters->Item(1)->Name();
  masters->Item(1)->Delete();

  const IVPagePtr page = app->ActivePage();
  page->Name();
  page->SetName("Main");
  page->PageSheet();
  page->Delete(1);
  const IVShapesPtr shapes = page->Shapes();
  shapes->Count();
  shapes->Item(1);
  shapes->Item("Create");
  const IVShapePtr shape = shapes->ItemFromID(7);
  shape->CellExists("PinX", kExistsAnywhere);
  shape->Text();
  shape->SetText("x");
  shape->Name();
  shape->ID();
  shape->Index();
  shape->Type();
  shape->Master();
  shape->ContainingPage();
  shape->Shapes();
  shape->RowCount(kSectionProp);
  shape->RowExists(kSectionProp, 0, kExistsLocally);
  shape->AddSection(kSectionUser);
  shape->AddRow(kSectionProp, 0, kTagDefault);
  shape->AddNamedRow(kSectionProp, "Mine", kTagDefault);
  shape->DeleteRow(kSectionProp, 0);
  shape->SetFormulas({243, 0, 0, 243, 1, 0}, {"\"a\"", "\"b\""}, kSetBlastGuards);
  shape->Delete();
  shape->CellsSRC(1, 4, 0);
  const IVCellPtr cell = shape->Cells("Prop.CreateName");
  cell->Formula();
  cell->SetFormula("1");
  cell->SetResult(2.5);

  const IVEventListPtr events = app->EventList();
  events->Count();
  events->Item(1);
  events->AddAdvise(901, std::make_shared<SilentSink>(), "", "Before Selection Delete")->SetEnabled(false);

  const IVUIObjectPtr menus = app->BuiltInMenus();
  app->CustomMenus();
  const IVMenusPtr bar = menus->MenuSets()->ItemAtID(kMenuSetDrawing)->Menus();
  bar->Count();
  bar->Item(0)->Caption();
  const IVMenuPtr menu = bar->AddAt(6);
  menu->SetCaption("&Simulate");
  const IVMenuItemPtr item = menu->MenuItems()->AddAt(0);
  item->SetCaption("&Run");
  item->SetAddOnName("run.exe");
  app->SetCustomMenus(menus);
  MainWindow(app);
}

TEST(VisioAdapter, ReleasesEveryReference) {
  FakeHost host;
  {
    const ComPtr<IDispatch> application = host.Make("Application");
    UseEverything(application.get());
    EXPECT_EQ(host.references, 1);
  }
  EXPECT_EQ(host.references, 0);
  ASSERT_EQ(host.sinks.size(), 1u);
  host.sinks[0]->AddRef();
  EXPECT_EQ(host.sinks[0]->Release(), 1u) << "the sink is the host's alone";
  EXPECT_EQ(host.calls.size(), static_cast<size_t>(host.callCount));
}

TEST(VisioAdapter, ReleasesEveryReferenceWhereverTheHostFails) {
  int failures = 0;
  for (int call = 1;; ++call) {
    FakeHost host;
    host.failingCall = call;
    {
      const ComPtr<IDispatch> application = host.Make("Application");
      try {
        UseEverything(application.get());
      } catch (const HostError& error) {
        ++failures;
        EXPECT_EQ(error.number(), kSomeFailure);
        EXPECT_EQ(error.description(), "Nicht m\xc3\xb6glich.");
      }
      EXPECT_EQ(host.references, 1) << host.calls.back();
    }
    EXPECT_EQ(host.references, 0) << host.calls.back();
    if (host.callCount < call) break;
  }
  EXPECT_GT(failures, 60);
}

TEST(VisioAdapter, ReleasesEveryReferenceWhereverAMemberIsMissing) {
  int failures = 0;
  for (int lookup = 1;; ++lookup) {
    FakeHost host;
    host.failingLookup = lookup;
    const ComPtr<IDispatch> application = host.Make("Application");
    try {
      UseEverything(application.get());
    } catch (const HostError& error) {
      ++failures;
      EXPECT_EQ(error.number(), DISP_E_UNKNOWNNAME);
      EXPECT_THAT(error.description(), HasSubstr("0x80020006"));
    }
    EXPECT_EQ(host.references, 1) << lookup;
    if (host.lookupCount < lookup) break;
  }
  EXPECT_GT(failures, 50);
}

TEST(VisioAdapter, AsksForEachMembersNumberOnce) {
  FakeHost host;
  const ComPtr<IDispatch> application = host.Make("Application");
  const IVApplicationPtr app = WrapApplication(application.get());
  for (int round = 0; round < 3; ++round) {
    const IVShapePtr shape = app->ActivePage()->Shapes()->Item(1);
    shape->Text();
    shape->SetText("x");
    app->ActiveDocument()->Pages()->Item("Page-1")->PageSheet()->Cells("Prop.Create")->Formula();
    app->ActiveDocument()->Pages()->Item(1)->Shapes()->ItemFromID(7)->Cells("PinX")->SetFormula("1");
  }
  for (const auto& [member, count] : host.lookups) EXPECT_EQ(count, 1) << member;
  EXPECT_EQ(host.lookups.size(), 11u);
}

TEST(VisioAdapter, TheSameHostAgainIsTheOneThatIsKnown) {
  FakeHost host;
  const ComPtr<IDispatch> application = host.Make("Application"), another = host.Make("Application");
  const IVApplicationPtr known = WrapApplication(application.get());
  EXPECT_EQ(WrapApplication(application.get(), known), known);
  const IVApplicationPtr other = WrapApplication(another.get(), known);
  EXPECT_NE(other, known);
  known->ActivePage();
  other->ActivePage();
  EXPECT_EQ(host.lookups["Application.ActivePage"], 2) << "another host may number otherwise";
  EXPECT_TRUE(WrapApplication(application.get(), nullptr));
  EXPECT_FALSE(WrapApplication(nullptr, known));
}

TEST(VisioAdapter, EveryMemberIsOneOfTheHosts) {
  FakeHost host;
  const ComPtr<IDispatch> application = host.Make("Application");
  UseEverything(application.get());
  for (const FakeMember& member : kFakeMembers) {
    const std::string name = std::string(member.owner) + "." + member.name;
    EXPECT_EQ(host.lookups[name], 1) << name;
  }
}

TEST(VisioAdapter, PassesArgumentsAsTheHostDeclaresThem) {
  FakeHost host;
  const ComPtr<IDispatch> shapeObject = host.Make("Shape"), application = host.Make("Application");
  const IVShapePtr shape = WrapShape(shapeObject.get());
  const IVApplicationPtr app = WrapApplication(application.get());
  const IVUIObjectPtr menus = app->BuiltInMenus();
  const IVEventListPtr events = app->EventList();
  const IVWindowPtr window = app->ActiveWindow();
  const struct {
    std::function<void()> call;
    const char* seen;
  } cases[] = {
      {[&] { shape->CellsSRC(1, 4, 0); }, "Shape.CellsSRC(I2 1, I2 4, I2 0)"},
      {[&] {
         shape->CellExists(
             "Prop.Gr\xc3\xb6\xc3\x9f"
             "e",
             0);
       },
       "Shape.CellExists('Prop.Gr\xc3\xb6\xc3\x9f"
       "e', I2 0)"},
      {[&] { shape->AddNamedRow(243, "Mine", 0); }, "Shape.AddNamedRow(I2 243, 'Mine', I2 0)"},
      {[&] { shape->SetText("a\nb"); }, "put Shape.Text('a\nb')"},
      {[&] { shape->Cells("PinX")->SetResult(2.5); }, "put Cell.ResultIU(R8 2.500000)"},
      {[&] {
         shape->SetFormulas({243, -2, 0, 242, 1, 0}, {"\"a\"", ""}, 2);
       },
       "Shape.SetFormulas(ref I2{243,-2,0,242,1,0}, ref Variant{'\"a\"',''}, I2 2)"},
      {[&] { shape->ContainingPage()->Delete(1); }, "Page.Delete(I2 1)"},
      {[&] { shape->ContainingPage()->Shapes()->Item(3); }, "Shapes.Item(I4 3)"},
      {[&] { shape->ContainingPage()->Shapes()->Item("3"); }, "Shapes.Item('3')"},
      {[&] { window->SetPage("Page-1"); }, "put Window.Page('Page-1')"},
      {[&] { events->AddAdvise(-32704, std::make_shared<SilentSink>(), "", "Shape Added"); },
       "EventList.AddAdvise(I2 -32704, object, '', 'Shape Added')"},
      {[&] { events->AddAdvise(1, nullptr, "", ""); }, "EventList.AddAdvise(I2 1, Nothing, '', '')"},
      {[&] { events->Item(4)->SetEnabled(true); }, "put Event.Enabled(True)"},
      {[&] { events->Item(4)->SetEnabled(false); }, "put Event.Enabled(False)"},
      {[&] { app->SetCustomMenus(menus); }, "Application.SetCustomMenus(object)"},
  };
  for (const auto& [call, seen] : cases) {
    call();
    EXPECT_EQ(host.calls.back(), seen);
  }
}

TEST(VisioAdapter, OneObjectListensToAllEvents) {
  FakeHost host;
  const ComPtr<IDispatch> object = host.Make("Application");
  const auto listener = std::make_shared<SilentSink>(), other = std::make_shared<SilentSink>();
  const IVEventListPtr events = WrapApplication(object.get())->EventList();
  for (const std::int16_t code : {1, 901}) events->AddAdvise(code, listener, "", "");
  events->AddAdvise(1, other, "", "");
  ASSERT_EQ(host.sinks.size(), 3u);
  EXPECT_EQ(host.sinks[0], host.sinks[1]);
  EXPECT_FALSE(host.sinks[0] == host.sinks[2]) << "another listener";
}

TEST(VisioAdapter, ReadsWhateverTypeTheHostReturns) {
  FakeHost host;
  const ComPtr<IDispatch> object = host.Make("Shape");
  const IVShapePtr shape = WrapShape(object.get());
  const struct {
    const char* member;
    Variant answer;
    std::function<std::string()> read;
    const char* want;
  } cases[] = {
      {"Shape.ID", Variant(70000), [&] { return std::to_string(shape->ID()); }, "70000"},
      {"Shape.ID", Variant(7.0), [&] { return std::to_string(shape->ID()); }, "7"},
      {"Shape.CellExists", Variant(true), [&] { return std::to_string(shape->CellExists("x", 0)); }, "1"},
      {"Shape.CellExists", Variant(1), [&] { return std::to_string(shape->CellExists("x", 0)); }, "1"},
      {"Shape.CellExists", Variant(std::int16_t{0}), [&] { return std::to_string(shape->CellExists("x", 0)); }, "0"},
      {"Shape.Text", Variant(std::string_view("a\0b", 3)), [&] { return std::to_string(shape->Text().size()); }, "3"},
      {"Shape.Text", Variant(), [&] { return "<" + shape->Text() + ">"; }, "<>"},
      {"Shape.Master", Variant(), [&] { return std::string(shape->Master() ? "master" : "none"); }, "none"},
      {"Shape.Master", Variant(ComPtr<IDispatch>()), [&] { return std::string(shape->Master() ? "master" : "none"); }, "none"},
  };
  for (const auto& [member, answer, read, want] : cases) {
    host.answers = {{member, answer}};
    EXPECT_EQ(read(), want) << member << ", type " << answer.get().vt;
  }
}

TEST(VisioAdapter, CarriesTheHostsNumberAndDescription) {
  const struct {
    std::function<HRESULT(EXCEPINFO&)> failure;
    std::int32_t number;
    const char* description;
  } cases[] = {
      {[](EXCEPINFO& info) {
         info.scode = kSomeFailure;
         info.bstrDescription = SysAllocString(L"No such cell.");
         return DISP_E_EXCEPTION;
       },
       kSomeFailure, "No such cell."},
      {[](EXCEPINFO& info) {
         info.wCode = 1004;
         info.bstrDescription = SysAllocString(L"Numbered as Basic numbers.");
         return DISP_E_EXCEPTION;
       },
       1004, "Numbered as Basic numbers."},
      {[](EXCEPINFO& info) {
         info.pfnDeferredFillIn = [](EXCEPINFO* later) -> HRESULT {
           later->scode = kSomeFailure;
           later->bstrDescription = SysAllocString(L"Told on demand.");
           return S_OK;
         };
         return DISP_E_EXCEPTION;
       },
       kSomeFailure, "Told on demand."},
      {[](EXCEPINFO& info) {
         info.scode = kSomeFailure;
         return DISP_E_EXCEPTION;
       },
       kSomeFailure, "The drawing host failed at Text (0x86DB08A7)."},
      {[](EXCEPINFO&) { return DISP_E_EXCEPTION; }, DISP_E_EXCEPTION, "The drawing host failed at Text (0x80020009)."},
      {[](EXCEPINFO&) { return RPC_E_DISCONNECTED; }, RPC_E_DISCONNECTED, "The drawing host failed at Text (0x80010108)."},
  };
  for (const auto& [failure, number, description] : cases) {
    FakeHost host;
    host.failingCall = 1;
    host.failure = failure;
    const ComPtr<IDispatch> object = host.Make("Shape");
    try {
      WrapShape(object.get())->Text();
      ADD_FAILURE() << "did not fail: " << description;
    } catch (const HostError& error) {
      EXPECT_EQ(error.number(), number) << description;
      EXPECT_EQ(error.description(), description);
    }
  }
}

TEST(VisioAdapter, AsksABusyHostAgain) {
  for (const HRESULT busy : {RPC_E_CALL_REJECTED, RPC_E_SERVERCALL_RETRYLATER}) {
    FakeHost host;
    host.failingCall = 1;
    int refused = 0;
    host.failure = [&](EXCEPINFO&) {
      // Another two calls after this one.
      if (++refused < 3) ++host.failingCall;
      return busy;
    };
    const ComPtr<IDispatch> object = host.Make("Shape");
    PostThreadMessageW(GetCurrentThreadId(), WM_APP, 0, 0);
    WrapShape(object.get())->SetText("x");
    EXPECT_EQ(refused, 3);
    EXPECT_EQ(host.calls, std::vector<std::string>(4, "put Shape.Text('x')"));
    MSG message;
    EXPECT_FALSE(PeekMessageW(&message, nullptr, WM_APP, WM_APP, PM_REMOVE)) << "messages are let through meanwhile";
  }
}

TEST(VisioAdapter, LeavesAHostThatStaysBusy) {
  FakeHost host;
  host.failingCall = 1;
  host.failure = [&](EXCEPINFO&) {
    ++host.failingCall;
    return RPC_E_CALL_REJECTED;
  };
  const ComPtr<IDispatch> object = host.Make("Shape");
  EXPECT_THROW(WrapShape(object.get())->Text(), HostError);
  // One that is to end waits for nobody.
  PostQuitMessage(7);
  host.calls.clear();
  EXPECT_THROW(WrapShape(object.get())->Text(), HostError);
  EXPECT_EQ(host.calls.size(), 1u);
  MSG message;
  ASSERT_TRUE(PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE));
  EXPECT_EQ(message.message, static_cast<UINT>(WM_QUIT)) << "the quit is passed on";
}

TEST(VisioAdapter, AsksOnceForWhatIsRefusedForGood) {
  FakeHost host;
  host.failingCall = 1;
  const ComPtr<IDispatch> object = host.Make("Shape");
  EXPECT_THROW(WrapShape(object.get())->Text(), HostError);
  EXPECT_EQ(host.calls.size(), 1u);
}

TEST(VisioAdapter, RefusesWhatIsNotWhatWasAskedFor) {
  const struct {
    const char* member;
    Variant answer;
    std::int32_t number;
    const char* why;
  } cases[] = {
      {"Application.ActivePage", Variant(ComPtr<IDispatch>()), kHostNotAllowed, "nothing where no drawing is open"},
      {"Application.ActivePage", Variant(), kHostNotAllowed, "not even that"},
      {"Application.ActivePage", Variant("Page-1"), DISP_E_TYPEMISMATCH, "a text for an object"},
      {"Page.Name", Variant(ComPtr<IDispatch>()), DISP_E_TYPEMISMATCH, "an object for a text"},
      {"Shapes.Count", Variant("many"), DISP_E_TYPEMISMATCH, "a text for a number"},
  };
  for (const auto& [member, answer, number, why] : cases) {
    FakeHost host;
    host.answers = {{member, answer}};
    const ComPtr<IDispatch> application = host.Make("Application");
    try {
      const IVPagePtr page = WrapApplication(application.get())->ActivePage();
      page->Name();
      page->Shapes()->Count();
      ADD_FAILURE() << why;
    } catch (const HostError& error) {
      EXPECT_EQ(error.number(), number) << why;
    }
    EXPECT_EQ(host.references, 1) << why;
  }
}

TEST(VisioAdapter, ShowsOnlyMenusOfTheHost) {
  class : public IVUIObject {
    IVMenuSetsPtr MenuSets() override { return nullptr; }
  } foreign;
  FakeHost host;
  const ComPtr<IDispatch> application = host.Make("Application");
  const IVApplicationPtr app = WrapApplication(application.get());
  EXPECT_THROW(app->SetCustomMenus(IVUIObjectPtr(IVUIObjectPtr(), &foreign)), HostError);
  EXPECT_THROW(app->SetCustomMenus(nullptr), HostError);
  EXPECT_THAT(host.calls, IsEmpty());
}

TEST(VisioAdapter, WrapsNullAsNull) {
  EXPECT_FALSE(WrapApplication(nullptr));
  EXPECT_FALSE(WrapPage(nullptr));
  EXPECT_FALSE(WrapShape(nullptr));
}

TEST(VisioAdapter, KnowsTheHostsWindowWhereTheHostTellsIt) {
  FakeHost host;
  const ComPtr<IDispatch> application = host.Make("Application");
  const IVApplicationPtr app = WrapApplication(application.get());
  EXPECT_EQ(MainWindow(app), reinterpret_cast<HWND>(1234));
  EXPECT_EQ(MainWindow(nullptr), nullptr);
  host.failingCall = 2;
  EXPECT_EQ(MainWindow(app), nullptr);
  host.answers = {{"Application.WindowHandle32", Variant("none")}};
  EXPECT_EQ(MainWindow(app), nullptr);
}

// --- The sink

struct ToldEvent {
  std::int16_t code;
  bool hasSource;
  std::int32_t id, sequence;
  size_t subject;
  std::string moreInfo;
};

constexpr size_t kNothing = 0, kDocument = 1, kPage = 2, kShape = 3, kSelection = 4, kWindow = 5;

class ToldSink : public IVEventSink {
 public:
  void VisEventProc(std::int16_t code, const IVApplicationPtr& source, std::int32_t id, std::int32_t sequence,
                    const EventSubject& subject, std::string_view moreInfo) override {
    events.push_back({code, source != nullptr, id, sequence, subject.index(), std::string(moreInfo)});
    if (then) then(subject);
  }
  std::vector<ToldEvent> events;
  std::function<void(const EventSubject&)> then;
};

class SinkDispatch : public testing::Test {
 protected:
  // Arguments in calling order; the host's order is the reverse.
  HRESULT Call(const std::vector<Variant>& arguments, WORD kind = DISPATCH_METHOD, DISPID id = kVisEventProc) {
    std::vector<VARIANT> reversed;
    for (auto i = arguments.rbegin(); i != arguments.rend(); ++i) reversed.push_back(i->get());
    return CallReversed(reversed, kind, id);
  }
  HRESULT CallReversed(std::vector<VARIANT>& reversed, WORD kind = DISPATCH_METHOD, DISPID id = kVisEventProc) {
    DISPPARAMS parameters = {reversed.data(), nullptr, static_cast<UINT>(reversed.size()), 0};
    return dispatch->Invoke(id, GUID{}, 0, kind, &parameters, nullptr, nullptr, nullptr);
  }
  std::vector<Variant> Usual() {
    return {Variant(std::int16_t{-32704}), Variant(host.Make("Application")),       Variant(3), Variant(12),
            Variant(host.Make("Shape")),   Variant("/doc=1 /page=1 /shape=Sheet.3")};
  }
  static Variant Raw(VARTYPE type, void* where = nullptr) {
    VARIANT value;
    VariantInit(&value);
    value.vt = type;
    value.byref = where;
    return Variant::Attach(value);
  }
  static Variant Unsigned(VARTYPE type, ULONG number) {
    VARIANT value;
    VariantInit(&value);
    value.vt = type;
    value.ulVal = number;
    return Variant::Attach(value);
  }

  FakeHost host;
  std::shared_ptr<ToldSink> sink = std::make_shared<ToldSink>();
  ComPtr<IDispatch> dispatch = MakeEventSinkDispatch(sink, std::make_shared<DispidTable>());
};

TEST_F(SinkDispatch, IsFoundByNameAndByThePublishedNumber) {
  for (const wchar_t* name : {L"VisEventProc", L"viseventproc", L"VISEVENTPROC"}) {
    auto* names = const_cast<OLECHAR*>(name);
    DISPID id = DISPID_UNKNOWN;
    EXPECT_EQ(dispatch->GetIDsOfNames(GUID{}, &names, 1, 0, &id), S_OK);
    EXPECT_EQ(id, 0x60020000);
  }
  for (const wchar_t* name : {L"VisEventProcs", L"", L"Invoke"}) {
    auto* names = const_cast<OLECHAR*>(name);
    DISPID id = 0;
    EXPECT_EQ(dispatch->GetIDsOfNames(GUID{}, &names, 1, 0, &id), DISP_E_UNKNOWNNAME);
    EXPECT_EQ(id, DISPID_UNKNOWN);
  }
  OLECHAR* none = nullptr;
  DISPID id = 0;
  EXPECT_EQ(dispatch->GetIDsOfNames(GUID{}, &none, 1, 0, &id), DISP_E_UNKNOWNNAME);
  EXPECT_EQ(dispatch->GetIDsOfNames(GUID{}, nullptr, 1, 0, &id), E_INVALIDARG);
  EXPECT_EQ(dispatch->GetIDsOfNames(GUID{}, &none, 0, 0, &id), E_INVALIDARG);
}

TEST_F(SinkDispatch, AnswersNoOtherMember) {
  EXPECT_EQ(Call(Usual(), DISPATCH_METHOD, 0), DISP_E_MEMBERNOTFOUND);
  EXPECT_EQ(Call(Usual(), DISPATCH_METHOD, DISPID_UNKNOWN), DISP_E_MEMBERNOTFOUND);
  EXPECT_EQ(Call(Usual(), DISPATCH_PROPERTYPUT), DISP_E_MEMBERNOTFOUND);
  EXPECT_THAT(sink->events, IsEmpty());
  EXPECT_EQ(Call(Usual(), DISPATCH_METHOD | DISPATCH_PROPERTYGET), S_OK) << "Basic asks so for a function";
  EXPECT_EQ(sink->events.size(), 1u);
}

TEST_F(SinkDispatch, TellsTheListenerInEveryForm) {
  SHORT code16 = -32704;
  LONG number = 12;
  BSTR noText = nullptr;
  const unique_bstr textOwner = ToBstr("/doc=1");
  BSTR text = textOwner.get();
  const ComPtr<IDispatch> shape = host.Make("Shape"), application = host.Make("Application");
  IDispatch* shapePointer = shape.get();
  IDispatch* applicationPointer = application.get();
  IUnknown* unknownPointer = shape.get();
  const Variant codeVariant(std::int16_t{-32704}), textVariant("/doc=2"), refToCode = Raw(VT_BYREF | VT_I2, &code16);
  const auto refTo = [](const Variant& value) { return Raw(VT_BYREF | VT_VARIANT, const_cast<VARIANT*>(&value.get())); };
  Variant itself;
  itself.get().vt = VT_BYREF | VT_VARIANT;
  itself.get().pvarVal = &itself.get();

  const struct {
    const char* why;
    std::vector<Variant> arguments;
    ToldEvent want;
  } cases[] = {
      {"as the host calls", Usual(), {-32704, true, 3, 12, kShape, "/doc=1 /page=1 /shape=Sheet.3"}},
      {"the unsigned code in 32 bits",
       {Variant(0x8040), Variant(application), Variant(3), Variant(12), Variant(shape), Variant()},
       {-32704, true, 3, 12, kShape, ""}},
      {"the signed code in 32 bits", {Variant(-32704)}, {-32704, false, 0, 0, kNothing, ""}},
      {"an unsigned code", {Unsigned(VT_UI2, 0x8040)}, {-32704, false, 0, 0, kNothing, ""}},
      {"an unsigned code in 32 bits", {Unsigned(VT_UI4, 0x8040)}, {-32704, false, 0, 0, kNothing, ""}},
      {"a code as real number", {Variant(901.0)}, {901, false, 0, 0, kNothing, ""}},
      {"a code as text", {Variant("901")}, {901, false, 0, 0, kNothing, ""}},
      {"all by reference",
       {Raw(VT_BYREF | VT_I2, &code16), Raw(VT_BYREF | VT_DISPATCH, &applicationPointer), Raw(VT_BYREF | VT_I4, &number),
        Raw(VT_BYREF | VT_I4, &number), Raw(VT_BYREF | VT_DISPATCH, &shapePointer), Raw(VT_BYREF | VT_BSTR, &text)},
       {-32704, true, 12, 12, kShape, "/doc=1"}},
      {"variants by reference",
       {refTo(codeVariant), Variant(), Variant(1), Variant(2), Variant(shape), refTo(textVariant)},
       {-32704, false, 1, 2, kShape, "/doc=2"}},
      {"a variant by reference that refers on", {refTo(refToCode)}, {-32704, false, 0, 0, kNothing, ""}},
      {"a variant that refers to itself", {itself, itself, itself, itself, itself, itself}, {0, false, 0, 0, kNothing, ""}},
      {"references to nowhere",
       {Raw(VT_BYREF | VT_I2), Raw(VT_BYREF | VT_DISPATCH), Raw(VT_BYREF | VT_I4), Raw(VT_BYREF | VT_VARIANT),
        Raw(VT_BYREF | VT_UNKNOWN), Raw(VT_BYREF | VT_BSTR)},
       {0, false, 0, 0, kNothing, ""}},
      {"an object by its other interface",
       {Variant(0x2080), Raw(VT_BYREF | VT_UNKNOWN, &unknownPointer), Variant(1), Variant(2),
        Raw(VT_BYREF | VT_UNKNOWN, &unknownPointer), Raw(VT_BYREF | VT_BSTR, &noText)},
       {0x2080, true, 1, 2, kShape, ""}},
      {"null objects",
       {Variant(0x2080), Variant(ComPtr<IDispatch>()), Variant(1), Variant(2), Variant(ComPtr<IDispatch>()),
        Variant(ComPtr<IDispatch>())},
       {0x2080, false, 1, 2, kNothing, ""}},
      {"Empty, Null and what is left out",
       {Variant(), Raw(VT_NULL), Variant::Missing(), Raw(VT_NULL), Variant::Missing(), Raw(VT_NULL)},
       {0, false, 0, 0, kNothing, ""}},
      {"wrong types",
       {Variant("no code"), Variant(5), Variant("x"), Variant(shape), Variant("Create"), Variant(shape)},
       {0, false, 0, 0, kNothing, ""}},
      {"numbers too large", {Variant(1 << 20), Variant(), Variant(1e20), Variant(-1e20)}, {0, false, 0, 0, kNothing, ""}},
      {"no arguments", {}, {0, false, 0, 0, kNothing, ""}},
      {"too many",
       {Variant(901), Variant(), Variant(1), Variant(2), Variant(), Variant("x"), Variant("y"), Variant("z")},
       {901, false, 1, 2, kNothing, "x"}},
      {"a subject that its event does not have",
       {Variant(4711), Variant(), Variant(), Variant(), Variant(shape)},
       {4711, false, 0, 0, kNothing, ""}},
  };
  for (const auto& [why, arguments, want] : cases) {
    sink->events.clear();
    EXPECT_EQ(Call(arguments), S_OK) << why;
    ASSERT_EQ(sink->events.size(), 1u) << why;
    const ToldEvent& told = sink->events[0];
    EXPECT_EQ(told.code, want.code) << why;
    EXPECT_EQ(told.hasSource, want.hasSource) << why;
    EXPECT_EQ(told.id, want.id) << why;
    EXPECT_EQ(told.sequence, want.sequence) << why;
    EXPECT_EQ(told.subject, want.subject) << why;
    EXPECT_EQ(told.moreInfo, want.moreInfo) << why;
  }
}

TEST_F(SinkDispatch, SurvivesTypesThatThereAreNot) {
  for (const VARTYPE type : {0x0FFF, 0x7FFF, 77, VT_ARRAY | VT_I2, +VT_ERROR, +VT_RECORD, +VT_VARIANT, +VT_UNKNOWN}) {
    VARIANT strange;
    std::memset(&strange, 0, sizeof strange);
    strange.vt = type;
    std::vector<VARIANT> arguments(6, strange);
    EXPECT_EQ(CallReversed(arguments), S_OK) << type;
    ASSERT_FALSE(sink->events.empty());
    EXPECT_EQ(sink->events.back().code, 0) << type;
    EXPECT_EQ(sink->events.back().moreInfo, "") << type;
  }
  EXPECT_EQ(sink->events.size(), 8u);
}

TEST_F(SinkDispatch, TakesArgumentsByName) {
  OLECHAR procedure[] = L"VisEventProc", code[] = L"nEventCode", info[] = L"VMOREINFO", other[] = L"nothing";
  OLECHAR* names[] = {procedure, info, code};
  DISPID ids[3];
  ASSERT_EQ(dispatch->GetIDsOfNames(GUID{}, names, 3, 0, ids), S_OK);
  Variant values[] = {Variant("x"), Variant(901)};
  VARIANT raw[] = {values[0].get(), values[1].get()};
  DISPPARAMS parameters = {raw, &ids[1], 2, 2};
  EXPECT_EQ(dispatch->Invoke(ids[0], GUID{}, 0, DISPATCH_METHOD, &parameters, nullptr, nullptr, nullptr), S_OK);
  ASSERT_EQ(sink->events.size(), 1u);
  EXPECT_EQ(sink->events[0].code, 901);
  EXPECT_EQ(sink->events[0].moreInfo, "x");

  names[2] = other;
  EXPECT_EQ(dispatch->GetIDsOfNames(GUID{}, names, 3, 0, ids), DISP_E_UNKNOWNNAME);
  EXPECT_EQ(ids[1], 5);
  EXPECT_EQ(ids[2], DISPID_UNKNOWN);
}

TEST_F(SinkDispatch, SurvivesParametersThatAreNone) {
  EXPECT_EQ(dispatch->Invoke(kVisEventProc, GUID{}, 0, DISPATCH_METHOD, nullptr, nullptr, nullptr, nullptr), S_OK);
  DISPPARAMS lies = {nullptr, nullptr, 6, 2};
  EXPECT_EQ(dispatch->Invoke(kVisEventProc, GUID{}, 0, DISPATCH_METHOD, &lies, nullptr, nullptr, nullptr), S_OK);
  Variant code(901), answer("old");
  DISPID strange[] = {-77};
  DISPPARAMS odd = {&code.get(), strange, 1, 1};
  EXPECT_EQ(dispatch->Invoke(kVisEventProc, GUID{}, 0, DISPATCH_METHOD, &odd, answer.Receive(), nullptr, nullptr), S_OK);
  EXPECT_EQ(answer.get().vt, VT_EMPTY);
  EXPECT_EQ(sink->events.size(), 3u);
}

TEST_F(SinkDispatch, EachEventHasASubjectOfItsKind) {
  const struct {
    std::uint16_t code;
    const char* className;
    size_t subject;
  } cases[] = {
      {kEventDocumentCreated, "Document", kDocument},
      {kEventDocumentClosed, "Document", kDocument},
      {kEventPageAdded, "Page", kPage},
      {kEventPageDeleted, "Page", kPage},
      {kEventPageChanged, "Page", kPage},
      {kEventShapeAdded, "Shape", kShape},
      {kEventTextChanged, "Shape", kShape},
      {kEventBeforeSelectionDelete, "Selection", kSelection},
      {kEventWindowChanged, "Window", kWindow},
  };
  for (const auto& [code, className, subject] : cases) {
    Call({Variant(static_cast<std::int16_t>(code)), Variant(), Variant(), Variant(), Variant(host.Make(className))});
    EXPECT_EQ(sink->events.back().subject, subject) << code;
  }
  EXPECT_EQ(host.references, 0);
}

TEST_F(SinkDispatch, LetsNoErrorOutButThatThereIsNoMemory) {
  const std::function<void()> failures[] = {
      [] { throw HostError(kSomeFailure, "refused"); },
      [] { throw RuntimeError::Overflow(); },
      [] { throw std::runtime_error("other"); },
      [] { throw 7; },
  };
  for (const auto& failure : failures) {
    sink->then = [&](const EventSubject&) { failure(); };
    EXPECT_EQ(Call(Usual()), S_OK);
  }
  sink->then = [](const EventSubject&) { throw std::bad_alloc(); };
  EXPECT_EQ(Call(Usual()), E_OUTOFMEMORY);
  host.failingCall = 1;
  sink->then = [](const EventSubject& subject) { std::get<IVShapePtr>(subject)->Text(); };
  EXPECT_EQ(Call(Usual()), S_OK) << "the host fails while it is listened to";
  EXPECT_EQ(host.calls.size(), 1u);
  EXPECT_EQ(host.references, 0);
}

TEST_F(SinkDispatch, LivesThroughItsOwnRelease) {
  const std::weak_ptr<ToldSink> listener = sink;
  IDispatch* last = dispatch.Detach();
  bool wasAlive = false;
  sink->then = [&, last](const EventSubject&) {
    last->Release();
    wasAlive = !listener.expired();
  };
  sink.reset();
  Variant code(901);
  DISPPARAMS parameters = {&code.get(), nullptr, 1, 0};
  EXPECT_EQ(last->Invoke(kVisEventProc, GUID{}, 0, DISPATCH_METHOD, &parameters, nullptr, nullptr, nullptr), S_OK);
  EXPECT_TRUE(wasAlive);
  EXPECT_TRUE(listener.expired());
}

TEST_F(SinkDispatch, IsAnAutomationObjectAndNothingElse) {
  void* object = nullptr;
  for (const GUID& id : {__uuidof(IUnknown), __uuidof(IDispatch)}) {
    ASSERT_EQ(dispatch->QueryInterface(id, &object), S_OK);
    dispatch->Release();
  }
  EXPECT_EQ(dispatch->QueryInterface(__uuidof(IErrorInfo), &object), E_NOINTERFACE);
  EXPECT_EQ(object, nullptr);
  EXPECT_EQ(dispatch->QueryInterface(__uuidof(IUnknown), nullptr), E_POINTER);
  UINT count = 9;
  EXPECT_EQ(dispatch->GetTypeInfoCount(&count), S_OK);
  EXPECT_EQ(count, 0u);
  EXPECT_FALSE(MakeEventSinkDispatch(nullptr, std::make_shared<DispidTable>()));
}

// --- COM's resources

TEST(ComPtr, OwnsOneReference) {
  FakeHost host;
  {
    ComPtr<IDispatch> a = host.Make("Shape");
    EXPECT_EQ(host.references, 1);
    ComPtr<IDispatch> b = a;
    EXPECT_EQ(host.references, 2);
    EXPECT_TRUE(a == b);
    ComPtr<IDispatch> c = std::move(b);
    EXPECT_EQ(host.references, 2);
    EXPECT_FALSE(b);
    c = host.Make("Page");
    EXPECT_EQ(host.references, 2) << "what was held is released";
    c = std::move(a);
    EXPECT_EQ(host.references, 1) << "also when another is moved in";
    ComPtr<IDispatch>& same = c;
    c = same;
    c = std::move(same);
    EXPECT_EQ(host.references, 1) << "assigned to itself";
    ASSERT_TRUE(c);
    *c.Receive() = host.Make("Cell").Detach();
    EXPECT_EQ(host.references, 1) << "an out parameter releases what was held";
    EXPECT_TRUE(c.As<IUnknown>());
    EXPECT_FALSE(c.As<IErrorInfo>());
    EXPECT_EQ(host.references, 1);
    IDispatch* raw = c.Detach();
    EXPECT_EQ(host.references, 1);
    raw->Release();
  }
  EXPECT_EQ(host.references, 0);
}

TEST(Variant, OwnsWhatItHolds) {
  FakeHost host;
  {
    Variant a(host.Make("Shape"));
    Variant b = a;
    EXPECT_EQ(host.references, 2);
    b = std::move(a);
    EXPECT_EQ(host.references, 1);
    *b.Receive() = Variant(host.Make("Page")).Detach();
    EXPECT_EQ(host.references, 1);
    const Variant copy = Variant::CopyOf(b.get());
    EXPECT_EQ(AsObject(copy.get()).get(), b.get().pdispVal);
    EXPECT_EQ(host.references, 2);
  }
  EXPECT_EQ(host.references, 0);
}

TEST(Variant, KeepsTextsWhole) {
  const std::pair<std::string, const char*> cases[] = {
      {"", "empty"},
      {"plain", "ASCII"},
      {std::string("a\0b", 3), "a zero inside"},
      {"Gr\xc3\xbc\xc3\x9f"
       "e \xe6\xbc\xa2\xe5\xad\x97 \xf0\x9f\x98\x80",
       "two, three and four bytes"},
      {"\xed\xa0\xbd"
       "x",
       "half of a surrogate pair"},
      {std::string(1 << 20, 'x'), "a million characters"},
  };
  for (const auto& [text, why] : cases) {
    EXPECT_EQ(AsText(Variant(text).get()), text) << why;
    EXPECT_EQ(FromBstr(ToBstr(text).get()), text) << why;
  }
  EXPECT_EQ(FromBstr(nullptr), "");
}

TEST(Variant, CarriesArrays) {
  const std::vector<std::int16_t> numbers = {243, -32704, 0};
  EXPECT_EQ(AsInt16Array(Variant::ArrayOf(numbers).get()), numbers);
  EXPECT_THAT(AsInt16Array(Variant::ArrayOf(std::vector<std::int16_t>()).get()), IsEmpty());
  Variant texts = Variant::ArrayOf(std::vector<std::string>{"a", ""});
  const std::vector<Variant> read = AsVariantArray(Variant::ReferenceTo(texts).get());
  ASSERT_EQ(read.size(), 2u);
  EXPECT_EQ(AsText(read[0].get()), "a");
  EXPECT_EQ(AsText(read[1].get()), "");
  EXPECT_THROW(AsInt16Array(texts.get()), RuntimeError);
  EXPECT_THROW(AsVariantArray(Variant(1).get()), RuntimeError);
  EXPECT_THROW(AsInt32(texts.get()), RuntimeError);
}

// --- Failures

std::string DescriptionLeft() {
  ComPtr<IErrorInfo> info;
  if (GetErrorInfo(0, info.Receive()) != S_OK) return "none";
  BSTR text = nullptr;
  info->GetDescription(&text);
  return FromBstr(unique_bstr(text).get());
}

TEST(ToHresult, TurnsEveryExceptionIntoAnHresultWithADescription) {
  const struct {
    std::function<void()> action;
    HRESULT code;
    const char* description;
  } cases[] = {
      {[] { throw HostError(kSomeFailure, "Nicht m\xc3\xb6glich."); }, kSomeFailure, "Nicht m\xc3\xb6glich."},
      {[] { throw RuntimeError::Overflow(); }, static_cast<HRESULT>(0x800A0006), "Overflow"},
      {[] { throw RuntimeError::TypeMismatch(); }, static_cast<HRESULT>(0x800A000D), "Type mismatch"},
      {[] { throw AutomationError(0, "no number"); }, E_FAIL, "no number"},
      {[] { throw std::runtime_error("other"); }, E_FAIL, "other"},
      {[] { throw std::bad_alloc(); }, E_OUTOFMEMORY, "Out of memory"},
      {[] { throw 7; }, E_UNEXPECTED, ""},
  };
  for (const auto& [action, code, description] : cases) {
    EXPECT_EQ(ToHresult(action), code) << description;
    EXPECT_EQ(DescriptionLeft(), description);
  }
  EXPECT_EQ(ToHresult([] {}), S_OK);
  EXPECT_EQ(DescriptionLeft(), "none");
}

}  // namespace
}  // namespace vardo
