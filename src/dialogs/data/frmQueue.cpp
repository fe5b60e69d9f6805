#include "dialogs/data/frmQueue.h"

#include "dialogs/ItemLists.h"
#include "forms/FormLayout.h"
#include "modules/data/QueueModule.h"
#include "validate/CheckDataType.h"

namespace vardo {
namespace {

constexpr std::string_view kFirstIn = "First In First Out";
constexpr std::string_view kLastIn = "Last In First Out";
constexpr CodeRow kTypes[] = {
    {"FIFO", kFirstIn},
    {"LIFO", kLastIn},
    {"LVF", "Lowest Attribute Value"},
    {"HVF", "Highest Attribute Value"},
};

}  // namespace

frmQueue::frmQueue() : ModuleDialog(kQueueModule, "frmQueue", "Queue", "Queue_.htm") {
  Name(cboName, FillQueueCombo);
  Field(cboAttributeName, "QueueAttributeName").Items(kEntityAttributes).Offers(UserAttributes).Check(kSymbolName).WhenEmpty();
  Field(cboType, "QueueType").Codes(kTypes, UnknownCode::ShowsNothing);
  Field(chkReportStatistics, "ReportStatistics");

  cboType.Click = [this] { cboType_Click(); };

  FormLayout(*this, 1700, 3000)
      .Row(lblName, cboName)
      .Row(chkReportStatistics)
      .Row(lblType, cboType)
      .Row(lblAttributeName, cboAttributeName)
      .Buttons(buttons.All());
}

void frmQueue::cboType_Click() {
  const std::string type = cboType.Text();
  Show({&lblAttributeName, &cboAttributeName}, type != kFirstIn && type != kLastIn);
}

}  // namespace vardo
