#include "dialogs/data/frmSchedule.h"

#include "dialogs/ItemLists.h"
#include "dialogs/data/frmSchedule_Durations.h"
#include "forms/FormLayout.h"
#include "modules/data/ScheduleModule.h"
#include "validate/CheckDataType.h"

namespace vardo {

frmSchedule::frmSchedule() : ModuleDialog(kScheduleModule, "frmSchedule", "Schedule", "Schedule_.htm") {
  Name(cboName, NamesOf<NameList::Schedules>);
  Field(cboType, "ScheduleType").Items({"Capacity", "Arrival", "Other"});
  Field(cboTimeUnits, "ScheduleTimeUnits").Items({"Seconds", "Minutes", "Quarterhours", "Halfhours", "Hours", "Days"});
  Field(txtScaleFactor, "ScheduleScaleFactor").Check(kReal).WhenEmpty();
  Rows(rows, [this](std::string_view line) { DefaultForm<frmSchedule_Durations>().Durations(cboType.Text(), line); });

  cboType.Click = [this] { cboType_Click(); };

  FormLayout(*this, 1500, 3200)
      .Row(lblName, cboName)
      .Row(lblType, cboType)
      .Row(lblTimeUnits, cboTimeUnits)
      .List(rows.label, rows.list, rows.Buttons(), 6)
      .Row(lblScaleFactor, txtScaleFactor)
      .Buttons(buttons.All());
}

void frmSchedule::cboType_Click() { Show({&lblScaleFactor, &txtScaleFactor}, cboType.Text() != "Capacity"); }

void frmSchedule::UnloadRowDialog() { UnloadIfLoaded<frmSchedule_Durations>(); }

}  // namespace vardo
