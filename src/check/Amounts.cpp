#include "check/Amounts.h"

#include <algorithm>
#include <cmath>

namespace vardo {
namespace {

std::optional<double> Sum(std::initializer_list<std::optional<double>> values) {
  double sum = 0;
  for (const auto& value : values) {
    if (!value) return std::nullopt;
    sum += *value;
  }
  return sum;
}

std::optional<double> Times(const std::optional<double>& value, double factor) {
  return value ? std::optional(*value * factor) : std::nullopt;
}

std::optional<double> MeanInItsUnit(const CheckedModel& checked, const ModuleFields& fields) {
  switch (fields[kProcessDelayType].As<DelayType>()) {
    case DelayType::Constant:
    case DelayType::Normal:
      return checked.Mean(fields[kProcessValue]);
    case DelayType::Triangular:
      return Times(
          Sum({checked.Mean(fields[kProcessMin]), checked.Mean(fields[kProcessValue]), checked.Mean(fields[kProcessMax])}),
          1.0 / 3);
    case DelayType::Uniform:
      return Times(Sum({checked.Mean(fields[kProcessMin]), checked.Mean(fields[kProcessMax])}), .5);
    case DelayType::Expression:
      return checked.Mean(fields[kProcessExpression]);
  }
  return std::nullopt;
}

double ScaleOf(const ModuleFields& schedule) { return schedule[kScheduleScale].counts ? schedule[kScheduleScale].number : 1; }
bool IsEndless(const ModuleFields& schedule, int row) { return schedule(kScheduleDuration, row).text.empty(); }

bool IsFixed(const CheckedModel& checked, int resource, int module) {
  return !checked.uses.CapacityIsAssigned(resource) &&
         (module < 0 || checked.Fields(module)[kResourceType].Is(ResourceType::Capacity));
}

// Of a fixed capacity, or of the schedule that gives it.
std::optional<double> Capacity(const CheckedModel& checked, int resource,
                               std::optional<double> (*ofSchedule)(const CheckedModel& checked, int schedule)) {
  const int module = ModuleOf(checked, {Thing::Resource, resource});
  if (IsFixed(checked, resource, module))
    return module < 0 ? 1 : std::floor(checked.Fields(module)[kResourceCapacity].number + 0.5);
  if (module < 0 || checked.uses.CapacityIsAssigned(resource)) return std::nullopt;
  const int schedule = ModuleOf(checked, checked.Fields(module)[kResourceSchedule].reference);
  return schedule < 0 ? std::nullopt : ofSchedule(checked, schedule);
}

}  // namespace

int ModuleOf(const CheckedModel& checked, const Reference& reference) {
  return reference ? checked.model.names.Of(reference.thing)[static_cast<size_t>(reference.index)].module : -1;
}

std::optional<double> MeanDelay(const CheckedModel& checked, int process) {
  const ModuleFields& fields = checked.Fields(process);
  if (fields[kProcessUnits].choice < 0) return std::nullopt;
  return Times(MeanInItsUnit(checked, fields), SecondsOf(fields[kProcessUnits].As<TimeUnit>()));
}

std::optional<double> MeanOfSchedule(const CheckedModel& checked, int schedule) {
  const ModuleFields& fields = checked.Fields(schedule);
  double time = 0, area = 0;
  for (int row = 0; row < fields.rows(); ++row) {
    const auto value = checked.Mean(fields(kScheduleValue, row)), duration = checked.Constant(fields(kScheduleDuration, row));
    if (!value) return std::nullopt;
    if (IsEndless(fields, row)) return *value * ScaleOf(fields);
    if (!duration) return std::nullopt;
    time += *duration;
    area += *value * *duration;
  }
  return time > 0 ? std::optional(area / time * ScaleOf(fields)) : std::nullopt;
}

std::optional<double> MostOfSchedule(const CheckedModel& checked, int schedule) {
  const ModuleFields& fields = checked.Fields(schedule);
  double most = 0;
  for (int row = 0; row < fields.rows(); ++row) {
    const FieldValue& value = fields(kScheduleValue, row);
    if (value.expression < 0) return std::nullopt;
    most = std::max(most, RangeOf(checked.model.ExpressionOf(value)).most);
    if (IsEndless(fields, row)) break;
  }
  return fields.rows() > 0 && std::isfinite(most) ? std::optional(std::floor(most * ScaleOf(fields) + 0.5)) : std::nullopt;
}

bool EndsWithNothing(const CheckedModel& checked, int schedule) {
  const ModuleFields& fields = checked.Fields(schedule);
  for (int row = 0; row < fields.rows(); ++row)
    if (IsEndless(fields, row)) return checked.Constant(fields(kScheduleValue, row)) == 0;
  return false;
}

std::optional<double> MeanCapacity(const CheckedModel& checked, int resource) {
  return Capacity(checked, resource, MeanOfSchedule);
}
std::optional<double> MostCapacity(const CheckedModel& checked, int resource) {
  return Capacity(checked, resource, MostOfSchedule);
}

std::optional<double> MostArrivals(const CheckedModel& checked, int create) {
  return checked.Constant(checked.Fields(create)[kCreateMaxBatches]);
}

bool ArrivesForEver(const CheckedModel& checked, int create) {
  const ModuleFields& fields = checked.Fields(create);
  if (fields[kCreateMaxBatches].expression >= 0) return false;
  const int schedule = ModuleOf(checked, fields[kCreateScheduleName].reference);
  return schedule < 0 || !EndsWithNothing(checked, schedule);
}

}  // namespace vardo
