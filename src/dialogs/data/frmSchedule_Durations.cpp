#include "dialogs/data/frmSchedule_Durations.h"

#include "dialogs/data/frmSchedule.h"
#include "forms/FormLayout.h"
#include "modules/data/ScheduleModule.h"
#include "validate/CheckDataType.h"

namespace vardo {
namespace {

std::string_view CaptionOfValue(std::string_view type) {
  if (type == "Capacity") return "&Value (Capacity):";
  if (type == "Arrival") return "&Value (Arrival Rate):";
  return "&Value:";
}

}  // namespace

frmSchedule_Durations::frmSchedule_Durations()
    : RowDialog(kScheduleModule, "frmSchedule_Durations", "Durations", "Schedule_Shape_Prompts.htm", RowsOf<frmSchedule>) {
  Field(txtDuration, "Schedule_DurationsDuration").Check(kExpression);
  Field(txtValueCapacity, "Schedule_DurationsValue").Check(kExpression).WhenEmpty();

  FormLayout(*this, 2200, 2600).Row(lblValueCapacity, txtValueCapacity).Row(lblDuration, txtDuration).Buttons(buttons.All());
}

void frmSchedule_Durations::Durations(std::string_view type, std::string_view line) {
  lblValueCapacity.SetCaption(CaptionOfValue(type));
  Open(line);
}

}  // namespace vardo
