// How many calls the add-in makes of a host that it reaches by automation only: in a drawing of thousands of modules they are
// what a person waits for.
#include "TestDrawings.h"
#include "TestPlatform.h"
#include "addin/Application.h"
#include "addin/Global_Variables.h"
#include "addin/host/IVApplication.h"
#include "addin/host/IVDocument.h"
#include "addin/host/IVShape.h"
#include "automation/HostAutomation.h"
#include "base/Text.h"
#include "catalog/NameCatalogues.h"
#include "events/CEventSink.h"
#include "forms/Forms.h"
#include "forms/headless/HeadlessPresenter.h"
#include "memoryhost/DrawingHost.h"
#include "modules/ModuleKinds.h"
#include "props/PropertyCells.h"
#include "visio/Visio.h"

#include <functional>
#include <set>
#include <string>
#include <vector>

namespace vardo {
namespace {

// A host of which one member is missing, or has nothing to give.
struct Poor {
  std::wstring member;
  bool hasNothing = false;
  int asked = 0;
};
class PoorObject : public ComObject<IDispatch> {
 public:
  PoorObject(ComPtr<IDispatch> rich, Poor& poor) : rich_(std::move(rich)), poor_(poor) {}

  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) noexcept override { return rich_->GetTypeInfoCount(count); }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT index, LCID language, ITypeInfo** info) noexcept override {
    return rich_->GetTypeInfo(index, language, info);
  }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID id, LPOLESTR* names, UINT count, LCID language, DISPID* ids) noexcept override {
    if (names[0] != poor_.member) return rich_->GetIDsOfNames(id, names, count, language, ids);
    ++poor_.asked;
    if (!poor_.hasNothing) return DISP_E_UNKNOWNNAME;
    *ids = kNothing;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID member, REFIID id, LCID language, WORD kind, DISPPARAMS* arguments, VARIANT* result,
                                   EXCEPINFO* failure, UINT* wrong) noexcept override {
    if (member == kNothing) {
      *result = Variant(ComPtr<IDispatch>()).Detach();
      return S_OK;
    }
    const HRESULT code = rich_->Invoke(member, id, language, kind, arguments, result, failure, wrong);
    if (SUCCEEDED(code) && result && result->vt == VT_DISPATCH && result->pdispVal)
      *result = Variant(MakeCom<PoorObject>(ComPtr<IDispatch>::Attach(result->pdispVal), poor_).As<IDispatch>()).Detach();
    return code;
  }

 private:
  static constexpr DISPID kNothing = 0x7000;
  ComPtr<IDispatch> rich_;
  Poor& poor_;
};

class HostCalls : public testing::Test {
 protected:
  HostCalls() {
    SetFormPresenter(&presenter_);
    BuildNameCatalogues();
    host_.New();
    addin_.SetupEventSink(app_);
  }
  ~HostCalls() override {
    UnloadAllForms();
    SetFormPresenter(nullptr);
    visApp.reset();
    eventSink.reset();
  }

  // One of each kind, and so many more that the listener has not heard of but the register knows.
  void Fill(int modules) {
    host_.New();
    for (const ModuleSchema& module : kModules) Drop(module.kind);
    const DrawingMaster& master = *host_.drawing().BringMaster("Create");
    StringList positions = GetPagePropList(host_.application()->ActivePage(), "Create", "");
    for (int i = 1; i <= modules; ++i) {
      DrawingShape& shape = host_.ActivePage().AddInstance(master, 1, i);
      const std::string name = "Arrivals " + std::to_string(i);
      shape.SetText(host_.drawing().editor(), name);
      test::SetCell(host_.drawing(), shape, "Prop.CreateName", QuoteText(name));
      positions.push_back(std::to_string(host_.ActivePage().ShapeCount()));
    }
    SetPagePropList(host_.application()->ActivePage(), "Create", positions);
  }
  SheetRef Drop(std::string_view kind) {
    const IVShapePtr shape = host_.Drop(kind, host_.ActivePage().id(), 1, 1, std::nullopt);
    return host_.RefTo(host_.ActivePage(), shape->ID());
  }
  std::vector<SheetRef> TheLast(int count) {
    std::vector<SheetRef> shapes;
    const int all = host_.ActivePage().ShapeCount();
    for (int i = all - count + 1; i <= all; ++i)
      shapes.push_back(host_.RefTo(host_.ActivePage(), host_.ActivePage().ShapeAt(i).id()));
    return shapes;
  }
  size_t CallsOf(const std::function<void()>& act) {
    const size_t before = automation_.CallCount();
    act();
    return automation_.CallCount() - before;
  }
  size_t CallsOfPasting(int count, int into) {
    Fill(into);
    const std::vector<SheetRef> originals = TheLast(count);
    return CallsOf([&] { host_.Paste(originals, host_.ActivePage().id()); });
  }

  TestPlatform platform_;
  HeadlessPresenter presenter_{[this](Form&) { opened_ = automation_.CallCount(); }};
  size_t opened_ = 0;
  DrawingHost host_;
  HostAutomation automation_;
  IVApplicationPtr app_ = WrapApplication(automation_.Offer(host_.application()).get());
  Application addin_;
};

TEST_F(HostCalls, OpeningADialogTakesLessThanATenthOfACallAModule) {
  constexpr int kModulesThere = 5000;
  Fill(kModulesThere);
  for (const ModuleSchema& module : kModules) {
    host_.Select({Drop(module.kind).shape});
    const size_t before = automation_.CallCount();
    addin_.ShowEditor(app_, app_->ActiveWindow()->Selection()->Item(1));
    EXPECT_GT(opened_, before) << module.kind;
    EXPECT_LT(opened_ - before, kModulesThere / 10u) << module.kind;
  }
}

TEST_F(HostCalls, ATypedNameTakesAsManyCallsInADrawingOfAnySize) {
  const auto typing = [&](int modules) {
    Fill(modules);
    const SheetRef shape = Drop("Create");
    return CallsOf([&] { host_.TypeText(shape, "Another name", false); });
  };
  EXPECT_EQ(typing(100), typing(1000));
}

TEST_F(HostCalls, ADroppedModuleTakesAsManyCallsInADrawingOfAnySize) {
  const auto dropping = [&](int modules) {
    Fill(modules);
    return CallsOf([&] { Drop("Create"); });
  };
  EXPECT_EQ(dropping(100), dropping(1000));
}

TEST_F(HostCalls, APasteReadsTheDrawingOnce) {
  const size_t ten = CallsOfPasting(10, 100), twenty = CallsOfPasting(20, 100), thirty = CallsOfPasting(30, 100);
  EXPECT_EQ(thirty - twenty, twenty - ten) << "each pasted module takes the same";
  EXPECT_LT((twenty - ten) / 10, 80u);
  EXPECT_EQ(CallsOfPasting(10, 1000), ten) << "whatever is there already";
}

TEST_F(HostCalls, AHostThatCannotReadInBulkIsAskedShapeByShape) {
  Fill(30);
  const std::vector<int> positions = {20, 19, 18, 17, 16, 23, 24, 25, 26, 27};
  const auto read = [&](IVPage& page) {
    StringList texts;
    const BulkTexts formulas = page.PropertyFormulas(positions, "CreateName");
    for (const auto& text : formulas.texts()) texts.emplace_back(text.value_or("none"));
    return texts;
  };
  const StringList wanted = read(*host_.application()->ActivePage());
  const struct {
    Poor poor;
    int mostAsked;
  } hosts[] = {{{L"CreateSelection"}, 1},
               {{L"CreateSelection", true}, 1},
               {{L"GetIDs"}, 1},
               {{L"CellsRowIndex"}, static_cast<int>(positions.size())},
               {{L"GetFormulas"}, 1}};
  for (auto [poor, mostAsked] : hosts) {
    const auto page = MakeCom<PoorObject>(automation_.Offer(host_.application()->ActivePage()), poor);
    EXPECT_EQ(read(*WrapPage(page.get())), wanted) << FromWide(poor.member);
    EXPECT_GT(poor.asked, 0) << FromWide(poor.member);
    EXPECT_LE(poor.asked, mostAsked) << FromWide(poor.member);
  }
}

TEST_F(HostCalls, EachPastedModuleHasANameOfItsOwn) {
  Fill(20);
  host_.Paste(TheLast(10), host_.ActivePage().id());
  host_.Paste(TheLast(10), host_.ActivePage().id());
  host_.TypeText(host_.RefTo(host_.ActivePage(), 1), "Create32", false);
  Drop("Create");
  const IVPagePtr page = host_.application()->ActivePage();
  std::set<std::string> names;
  for (int i = 1; i <= page->Shapes()->Count(); ++i) names.insert(page->Shapes()->Item(i)->Text());
  EXPECT_EQ(static_cast<int>(names.size()), page->Shapes()->Count());
}

TEST_F(HostCalls, DeletingTakesAsManyCallsInADrawingOfAnySize) {
  const auto deleting = [&](int modules) {
    Fill(modules);
    host_.Select({host_.ActivePage().ShapeAt(1).id()});
    return CallsOf([&] { host_.DeleteSelection(); });
  };
  EXPECT_EQ(deleting(100), deleting(1000));
}

}  // namespace
}  // namespace vardo
