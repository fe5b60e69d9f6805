// How much and how often: numbers of the model that follow from constants.
#pragma once

#include "check/CheckedModel.h"

#include <optional>

namespace vardo {

// How long a Process delays on average, in seconds; none where that is not known.
std::optional<double> MeanDelay(const CheckedModel& checked, int process);

// What a schedule is worth on average over its cycle, and at most; none where that is not known. With the scale factor.
std::optional<double> MeanOfSchedule(const CheckedModel& checked, int schedule);
std::optional<double> MostOfSchedule(const CheckedModel& checked, int schedule);
// It ends with nothing for ever.
bool EndsWithNothing(const CheckedModel& checked, int schedule);

// How many units of a resource there are on average and at most; none where that is not known.
std::optional<double> MeanCapacity(const CheckedModel& checked, int resource);
std::optional<double> MostCapacity(const CheckedModel& checked, int resource);

// The module that defines something; -1 when none does.
int ModuleOf(const CheckedModel& checked, const Reference& reference);

// How many arrivals there are at most; none: they go on, or nobody knows.
std::optional<double> MostArrivals(const CheckedModel& checked, int create);
// Arrivals go on without end, for all that is known.
bool ArrivesForEver(const CheckedModel& checked, int create);

}  // namespace vardo
