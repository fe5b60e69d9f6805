// The add-in listens, and memory runs out: every allocation of what a person does fails once. The host is told, nothing is left
// of it, and the same done again is done as if nothing had been.
#include "FailingMemory.h"
#include "TestPlatform.h"
#include "addin/Application.h"
#include "addin/Global_Variables.h"
#include "addin/host/IVApplication.h"
#include "addin/host/IVDocument.h"
#include "addin/host/IVShape.h"
#include "events/CEventSink.h"
#include "memoryhost/DrawingHost.h"
#include "package/Package.h"
#include "props/PropertyCells.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>

namespace vardo {
namespace {

using testing::IsEmpty;

// The sanitizers look at some of the allocations.
#ifdef __SANITIZE_ADDRESS__
constexpr int kStride = 41;
#else
constexpr int kStride = 3;
#endif

using Lines = std::vector<std::string>;

struct Deed {
  const char* name;
  std::function<void()> prepare, act;
};

class ListenerMemory : public testing::Test {
 protected:
  ~ListenerMemory() override {
    PagesToDelete.clear();
    PagesToInitialise.clear();
    visApp.reset();
    eventSink.reset();
  }

  void Prepare(const Deed& deed) {
    host_.New();
    addin_.SetupEventSink(host_.application());
    deed.prepare();
    host_.Select({});
  }
  // Returns whether that allocation was asked for; wasTold says whether the caller has heard of it. Some things can be done
  // without.
  static bool FailAllocation(int which, const std::function<void()>& work, bool& wasTold) {
    allocationsLeft = which;
    try {
      work();
    } catch (const std::bad_alloc&) {
      wasTold = true;
    }
    const bool failed = allocationsLeft < 0;
    allocationsLeft = -1;
    return failed;
  }

  void Drop(const char* master) { host_.Drop(master, host_.ActivePage().id(), 2, 2, std::nullopt); }
  IVShapePtr Shape(int index) { return host_.application()->ActivePage()->Shapes()->Item(index); }
  SheetRef Ref(int index) { return host_.RefTo(host_.ActivePage(), Shape(index)->ID()); }

  // All parts of the drawing, as a file would have them, and the steps.
  Lines Now() {
    const EditLog& log = host_.drawing().log();
    Lines now = {testing::PrintToString(log.UndoLabels())};
    Package& package = host_.drawing().package();
    for (const std::string& part : package.PartNames()) now.push_back(part + ": " + package.Bytes(part));
    return now;
  }

  // What a person sees of it; shapes have other numbers each time.
  Lines Seen() {
    Lines seen = {host_.ActivePage().Name()};
    const IVPagesPtr pages = host_.application()->ActiveDocument()->Pages();
    for (int p = 1; p <= pages->Count(); ++p) {
      const IVShapesPtr shapes = pages->Item(p)->Shapes();
      seen.push_back(pages->Item(p)->Name() + ": " + PropText(pages->Item(p)->PageSheet(), "Count"));
      for (int i = 1; i <= shapes->Count(); ++i) seen.push_back(shapes->Item(i)->Text());
    }
    return seen;
  }

  TestPlatform platform_;
  DrawingHost host_;
  Application addin_;

  // Each is one step.
  const std::vector<Deed> deeds_ = {
      {"a module is dropped", [] {}, [&] { Drop("Create"); }},
      {"one whose name is taken", [&] { Drop("Create"); }, [&] { Drop("Create"); }},
      {"a module is pasted", [&] { Drop("Process"); }, [&] { host_.Paste({Ref(1)}, host_.ActivePage().id()); }},
      {"a name is typed", [&] { Drop("Create"); }, [&] { host_.TypeText(Ref(1), "Arrivals", false); }},
      {"a submodel page is made", [&] { Drop("Process"); },
       [&] { host_.RunCommand("Submodel", [&] { addin_.Submodel(host_.application(), Shape(1)); }); }},
      {"a Process goes with its submodel",
       [&] {
         Drop("Process");
         addin_.Submodel(host_.application(), Shape(1));
         host_.ShowPage(host_.drawing().PageAt(1).id());
       },
       [&] {
         host_.Select({Shape(1)->ID()});
         host_.DeleteSelection();
       }},
      {"the page is initialized", [&] { Drop("Create"); },
       [&] { host_.RunCommand("Initialize", [&] { addin_.InitializePage(); }); }},
  };
};

TEST_F(ListenerMemory, NothingIsLeftOfWhatHadNoMemory) {
  for (const Deed& deed : deeds_) {
    SCOPED_TRACE(deed.name);
    Prepare(deed);
    const Lines before = Now();
    deed.act();
    const Lines after = Seen();
    for (int k = 0;; k += kStride) {
      host_.Undo();
      ASSERT_EQ(Now(), before) << "undone, before allocation " << k;
      bool wasTold = false;
      const bool failed = FailAllocation(k, deed.act, wasTold);
      if (wasTold) {
        // The host has no way to say that it has failed after the event.
        PagesToDelete.clear();
        host_.Select({});
        ASSERT_EQ(Now(), before) << "allocation " << k;
        deed.act();
      }
      ASSERT_EQ(Seen(), after) << "allocation " << k;
      ASSERT_THAT(platform_->messages, IsEmpty()) << "allocation " << k;
      if (!failed) break;
    }
  }
}

TEST_F(ListenerMemory, NothingIsUndoneByHalf) {
  for (const Deed& deed : deeds_) {
    SCOPED_TRACE(deed.name);
    Prepare(deed);
    deed.act();
    const Lines done = Now();
    host_.Undo();
    const Lines undone = Now();
    const std::function<void()> undo = [&] { host_.Undo(); }, redo = [&] { host_.Redo(); };
    const auto sweep = [&](const std::function<void()>& there, const std::function<void()>& back, const Lines& before,
                           const Lines& after) {
      for (int k = 0;; k += kStride) {
        bool wasTold = false;
        const bool failed = FailAllocation(k, there, wasTold);
        // When it is done the listeners are told, and may have no memory either.
        const bool isDone = !wasTold || Now() == after;
        ASSERT_EQ(Now(), isDone ? after : before) << "allocation " << k;
        if (!failed) break;
        if (isDone) back();
      }
    };
    ASSERT_NO_FATAL_FAILURE(sweep(redo, undo, undone, done));
    ASSERT_NO_FATAL_FAILURE(sweep(undo, redo, done, undone));
  }
}

}  // namespace
}  // namespace vardo
