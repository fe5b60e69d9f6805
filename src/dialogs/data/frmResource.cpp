#include "dialogs/data/frmResource.h"

#include "dialogs/ItemLists.h"
#include "forms/FormLayout.h"
#include "modules/data/ResourceModule.h"
#include "props/PropertyCells.h"
#include "validate/CheckDataType.h"

namespace vardo {
namespace {

constexpr std::string_view kBasedOnSchedule = "Based on Schedule";
constexpr CodeRow kTypes[] = {{"Capacity", "Fixed Capacity"}, {"Schedule", kBasedOnSchedule}};

}  // namespace

frmResource::frmResource() : ModuleDialog(kResourceModule, "frmResource", "Resource", "Resource_.htm") {
  Name(cboName, NamesOf<NameList::Resources>);
  Field(cboType, "ResourceType").Codes(kTypes, UnknownCode::ShowsLastText);
  Field(txtCapacity, "ResourceCapacity").Check(kInteger).WhenEmpty();
  Field(cboScheduleName, "ResourceScheduleName").Offers(NamesOf<NameList::Schedules>).Check(kSymbolName).WhenEmpty();
  Field(cboScheduleRule, "ResourceScheduleRule").Items({"Wait", "Ignore", "Preempt"});
  Field(txtBusy_Hour, "ResourceBusy_Hour").Check(kReal).WhenEmpty();
  Field(txtIdle_Hour, "ResourceIdle_Hour").Check(kReal).WhenEmpty();
  Field(txtPerUse, "ResourcePerUse").Check(kReal).WhenEmpty();
  Field(chkReportStatistics, "ReportStatistics");
  CheckInOrder({&cboName, &cboScheduleName, &txtBusy_Hour, &txtIdle_Hour, &txtPerUse, &txtCapacity});

  cboType.Click = [this] { cboType_Click(); };

  FormLayout(*this, 1900, 3000)
      .Row(lblName, cboName)
      .BeginFrame(Frame1)
      .Row(lblBusy_Hour, txtBusy_Hour)
      .Row(lblIdle_Hour, txtIdle_Hour)
      .Row(lblPerUse, txtPerUse)
      .EndFrame()
      .Row(chkReportStatistics)
      .Row(lblType, cboType)
      .Row(lblCapacity, txtCapacity)
      .InPlace(lblScheduleName, cboScheduleName)
      .Row(lblScheduleRule, cboScheduleRule)
      .Buttons(buttons.All());
}

bool frmResource::FollowsSchedule() const { return cboType.Text() == kBasedOnSchedule; }

void frmResource::cboType_Click() {
  Show({&lblScheduleName, &cboScheduleName, &lblScheduleRule, &cboScheduleRule}, FollowsSchedule());
  Show({&lblCapacity, &txtCapacity}, !FollowsSchedule());
}

// Whichever of the two is in force, for those who read the shape without looking at its type.
void frmResource::WriteAfterName(const IVShapePtr& shape) {
  const std::string inForce = FollowsSchedule() ? cboScheduleName.Text() : txtCapacity.Text();
  SetPropList(shape, "ResourceCapacityOrSchedule", inForce);
  SetPropList(shape, "ResourceCapacityOrSchedule2", inForce);
}

}  // namespace vardo
