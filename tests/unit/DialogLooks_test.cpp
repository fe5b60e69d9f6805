// How the dialogs look in Qt windows: everything fits, in one size of letters.
#include "DialogHarness.h"
#include "forms/qt/FormWindow.h"
#include "forms/qt/QtSession.h"

#include <gtest/gtest.h>
#include <QComboBox>
#include <QFontMetrics>
#include <QLabel>
#include <QStyleOptionComboBox>

#include <memory>

namespace vardo::test {
namespace {

class QtEnvironment : public testing::Environment {
 public:
  void SetUp() override { session_ = std::make_unique<QtSession>(1, argv_); }
  void TearDown() override { session_.reset(); }

 private:
  char name_[12] = "DialogLooks";
  char* argv_[2] = {name_, nullptr};
  std::unique_ptr<QtSession> session_;
};

[[maybe_unused]] const auto* const kEnvironment = testing::AddGlobalTestEnvironment(new QtEnvironment);

int RoomForText(const QComboBox& combo) {
  QStyleOptionComboBox option;
  option.initFrom(&combo);
  option.subControls = QStyle::SC_All;
  return combo.style()->subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxEditField, &combo).width();
}

class DialogLooks : public TableTest {};

TEST_P(DialogLooks, EveryCaptionFitsInTheUsualLetters) {
  OpenAny(table(), false, [&](Form& form) {
    const FormWindow window(form, nullptr);
    EXPECT_EQ(window.font().pixelSize(), 13);
  });
}

TEST_P(DialogLooks, EveryItemToChooseFitsItsBox) {
  OpenAny(table(), false, [&](Form& form) {
    const FormWindow window(form, nullptr);
    for (const Control* control : form.Controls()) {
      const auto* combo = dynamic_cast<const ComboBox*>(control);
      if (!combo || !combo->PickOnly()) continue;
      const auto& box = static_cast<const QComboBox&>(window.View(*control).widget());
      for (const std::string& item : combo->Items())
        EXPECT_LE(QFontMetrics(box.font()).horizontalAdvance(QString::fromStdString(item)), RoomForText(box)) << item;
    }
  });
}

INSTANTIATE_TEST_SUITE_P(Forms, DialogLooks, testing::ValuesIn(Params({&ModuleTables(), &RowTables()})), ParamName);

}  // namespace
}  // namespace vardo::test
