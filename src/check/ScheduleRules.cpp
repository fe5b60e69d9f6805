#include "check/Rules.h"

#include "base/Text.h"

#include <string>

namespace vardo {
namespace {

// Each schedule that somebody follows.
template <class Visit>
void ForEachUsed(const CheckedModel& checked, const Visit& visit) {
  const std::vector<Named>& schedules = checked.model.names.Of(Thing::Schedule);
  for (size_t i = 0; i < schedules.size(); ++i)
    if (checked.uses.Of(Thing::Schedule, static_cast<int>(i)).IsUsed())
      visit(schedules[i].module, checked.Fields(schedules[i].module));
}

void Empty(const CheckedModel& checked, RuleReport& report) {
  ForEachUsed(checked, [&](int i, const ModuleFields& fields) {
    if (fields.rows() == 0) report.Module(i, "{m} has no durations.");
  });
}

void NoLength(const CheckedModel& checked, RuleReport& report) {
  ForEachUsed(checked, [&](int i, const ModuleFields& fields) {
    int zeros = 0;
    for (int row = 0; row < fields.rows(); ++row) zeros += checked.Constant(fields(kScheduleDuration, row)) == 0;
    if (zeros > 0 && zeros == fields.rows()) report.Module(i, "{m}: all durations are 0.");
  });
}

void RowsAfterEndless(const CheckedModel& checked, RuleReport& report) {
  ForEachUsed(checked, [&](int i, const ModuleFields& fields) {
    for (int row = 0; row + 1 < fields.rows(); ++row)
      if (fields(kScheduleDuration, row).text.empty()) {
        report.Field({i, kScheduleDuration.place, row}, "{m}: the rows after the endless one never come.");
        return;
      }
  });
}

void Negative(const CheckedModel& checked, RuleReport& report) {
  ForEachUsed(checked, [&](int i, const ModuleFields& fields) {
    const bool mayBeNegative = fields[kScheduleType].Is(ScheduleType::Other);
    const double scale = fields[kScheduleScale].counts ? fields[kScheduleScale].number : 1;
    for (int row = 0; row < fields.rows(); ++row) {
      const auto value = checked.Constant(fields(kScheduleValue, row)),
                 duration = checked.Constant(fields(kScheduleDuration, row));
      const std::string begins = "{m}, row " + std::to_string(row + 1) + ": ";
      if (value && !mayBeNegative && *value * scale < 0)
        report.Field({i, kScheduleValue.place, row}, begins + Short(*value * scale) + " is negative.");
      if (duration && *duration < 0) report.Field({i, kScheduleDuration.place, row}, begins + Short(*duration) + " is negative.");
    }
  });
}

void RatePerHour(const CheckedModel& checked, RuleReport& report) {
  ForEachUsed(checked, [&](int i, const ModuleFields& fields) {
    const FieldValue& units = fields[kScheduleUnits];
    if (fields[kScheduleType].Is(ScheduleType::Arrival) && units.choice >= 0 && !units.Is(TimeUnit::Hours))
      report.Module(i, "{m}: the rates are per hour, the durations in " + LowerAscii(kTimeUnitChoices[units.choice].code) + ".");
  });
}

constexpr Rule kRules[] = {
    {"schedule/empty", Severity::Error, Empty},
    {"schedule/no-length", Severity::Error, NoLength},
    {"schedule/rows-after-endless", Severity::Warning, RowsAfterEndless},
    {"schedule/negative", Severity::Error, Negative},
    {"schedule/rate-per-hour", Severity::Note, RatePerHour},
};

}  // namespace

std::span<const Rule> ScheduleRules() { return kRules; }

}  // namespace vardo
