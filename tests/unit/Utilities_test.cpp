// Where dialogs stand on the screen.
#include "dialogs/Utilities.h"

#include "platform/NativePlatform.h"

#include <gtest/gtest.h>

namespace vardo {
namespace {

class ScreenPlatform : public ForwardingPlatform {
 public:
  using ForwardingPlatform::ForwardingPlatform;
  TwipsSize ScreenSize() override { return screen; }
  TwipsSize screen{};
};

struct Case {
  const char* sentence;
  TwipsSize screen, form;
  double left, top;
};

const Case kCases[] = {
    {"A form stands in the middle.", {19200, 15360}, {5760, 4890}, 6720, 5235},
    {"Halves of a twip are kept.", {10001, 7003}, {5760, 4890}, 2120.5, 1056.5},
    {"A form that is too large hangs over on both sides.", {4001, 3001}, {5760, 4890}, -879.5, -944.5},
};

TEST(Utilities, CenterFormPutsTheFormInTheMiddleOfTheScreen) {
  const std::unique_ptr<Platform> machine = MakeNativePlatform();
  ScreenPlatform platform(*machine);
  Platform* const before = SetPlatform(&platform);
  for (const Case& c : kCases) {
    Form form("frmTest", "Test");
    form.SetSize(c.form.width, c.form.height);
    platform.screen = c.screen;
    CenterForm(form);
    EXPECT_EQ(form.Place().left, c.left) << c.sentence;
    EXPECT_EQ(form.Place().top, c.top) << c.sentence;
  }
  SetPlatform(before);
}

}  // namespace
}  // namespace vardo
