// Every allocation of an opening and of a save fails once. Whatever the program and its libraries allocate is counted here.
#include "FailingMemory.h"
#include "TestFiles.h"
#include "TestPackages.h"
#include "base/FileError.h"
#include "package/Package.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <libdeflate.h>
#include <pugixml.hpp>

#include <functional>

namespace vardo {
namespace {

namespace fs = std::filesystem;
using test::kPagePart;
using test::ReadFile;
using test::TempFolder;

// Runs it again and again, the first, second, third ... allocation failing, until none fails any more. The failed ones must say
// that memory is short, and leave none of theirs. Returns how many they were.
int FailEachAllocation(const std::function<void()>& work, const std::function<void(int)>& look) {
  constexpr std::string_view kEnd = " needs more memory than this machine has free; close other programs and try again.";
  for (int k = 0;; ++k) {
    const long before = alive;
    bool isRight = false;
    allocationsLeft = k;
    try {
      work();
    } catch (const FileError& error) {
      isRight = std::string_view(error.what()).ends_with(kEnd);
    }
    const bool failed = allocationsLeft < 0;
    allocationsLeft = -1;
    if (!failed) return k;
    EXPECT_EQ(alive, before) << "allocation " << k;
    EXPECT_TRUE(isRight) << "allocation " << k;
    look(k);
  }
}

class AllocationFaults : public testing::Test {
 protected:
  AllocationFaults() : file_(folder_ / "drawing.vsdx"), old_(MakeZip(test::DrawingItems())) {
    pugi::set_memory_management_functions(Allocate, Free);
    libdeflate_set_memory_allocator(Allocate, Free);
    test::WriteFile(file_, old_);
  }
  ~AllocationFaults() override { pugi::set_memory_management_functions(take_, give_); }

  const pugi::allocation_function take_ = pugi::get_memory_allocation_function();
  const pugi::deallocation_function give_ = pugi::get_memory_deallocation_function();
  const TempFolder folder_;
  const fs::path file_;
  const std::string old_;
};

TEST_F(AllocationFaults, OpeningSaysThatMemoryIsShort) {
  std::unique_ptr<Package> package;
  const auto open = [&] { package = Package::OpenFile(file_); };
  open();
  package.reset();
  EXPECT_GT(FailEachAllocation(open, [](int) {}), 50);
  EXPECT_TRUE(package->Has(kPagePart));
}

TEST_F(AllocationFaults, SavingSaysThatMemoryIsShortAndLeavesTheFile) {
  const std::unique_ptr<Package> package = Package::OpenFile(file_);
  XmlPart& page = package->Xml(kPagePart);
  page.root().first_child().first_child().attribute("ID").set_value("9");
  page.SetState(page.state() + 1);
  const auto save = [&] { package->Save(file_); };
  const auto look = [&](int k) {
    EXPECT_TRUE(ReadFile(file_) == old_ || !package->changed()) << "allocation " << k;
    EXPECT_EQ(folder_.Names().size(), 1u) << "allocation " << k;
  };
  EXPECT_GT(FailEachAllocation(save, look), 50);
  EXPECT_THAT(Package::OpenFile(file_)->Bytes(kPagePart), testing::HasSubstr("ID='9'"));
}

}  // namespace
}  // namespace vardo
