// What the fields that choose one of a few words can hold. A choice's number is its place in its list, which is what the
// enumeration of that list counts.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

namespace vardo {

struct Choice {
  std::string_view code;     // as it is stored
  std::string_view caption;  // as it is shown; empty: the code is
};

enum class CreateType : std::uint8_t { Random, Schedule, Constant, Expression };
inline constexpr Choice kCreateTypes[] = {{"Random", ""}, {"Schedule", ""}, {"Constant", ""}, {"Expression", ""}};

enum class ProcessType : std::uint8_t { Standard, Submodel };
inline constexpr Choice kProcessTypes[] = {{"Standard", ""}, {"Submodel", ""}};

enum class ProcessAction : std::uint8_t { Delay, SeizeDelay, SeizeDelayRelease, DelayRelease };
inline constexpr Choice kProcessActions[] = {
    {"D", "Delay"}, {"SD", "Seize Delay"}, {"SDR", "Seize Delay Release"}, {"DR", "Delay Release"}};

enum class DelayType : std::uint8_t { Constant, Normal, Triangular, Uniform, Expression };
inline constexpr Choice kDelayTypes[] = {
    {"Constant", ""}, {"Normal", ""}, {"Triangular", ""}, {"Uniform", ""}, {"Expression", ""}};

enum class Allocation : std::uint8_t { ValueAdded, NonValueAdded, Transfer, Wait, Other };
inline constexpr Choice kAllocations[] = {
    {"VA", "Value Added"}, {"NVA", "Non-Value Added"}, {"Tran", "Transfer"}, {"Wait", ""}, {"Other", ""}};

// Not all of them are offered everywhere, but each is understood everywhere.
enum class TimeUnit : std::uint8_t { Seconds, Minutes, Quarterhours, Halfhours, Hours, Days };
inline constexpr Choice kTimeUnitChoices[] = {{"Seconds", ""},   {"Minutes", ""}, {"Quarterhours", ""},
                                              {"Halfhours", ""}, {"Hours", ""},   {"Days", ""}};
constexpr double SecondsOf(TimeUnit unit) {
  constexpr double kSeconds[] = {1, 60, 900, 1800, 3600, 86400};
  return kSeconds[static_cast<int>(unit)];
}

enum class ResourceRowType : std::uint8_t { Resource, Set };
inline constexpr Choice kResourceRowTypes[] = {{"Resource", ""}, {"Set", ""}};

enum class SelectionRule : std::uint8_t { Cyclical, Random, PreferredOrder, SpecificMember, LargestRemaining, SmallestBusy };
inline constexpr Choice kSelectionRules[] = {{"CYC", "Cyclical"},
                                             {"RAN", "Random"},
                                             {"POR", "Preferred Order"},
                                             {"SM", "Specific Member"},
                                             {"LRC", "Largest Remaining Capacity"},
                                             {"SNB", "Smallest Number Busy"}};

enum class DecideType : std::uint8_t { Chance, Condition };
inline constexpr Choice kDecideTypes[] = {{"With", "2-way by Chance"}, {"If", "2-way by Condition"}};

enum class DecideIf : std::uint8_t { Variable, Attribute, EntityType, Expression };
inline constexpr Choice kDecideIfs[] = {{"Variable", ""}, {"Attribute", ""}, {"Entity Type", ""}, {"Expression", ""}};

enum class Comparison : std::uint8_t { Greater, GreaterOrEqual, Equal, Less, LessOrEqual, NotEqual };
inline constexpr Choice kComparisons[] = {{">", ""}, {">=", ""}, {"==", ""}, {"<", ""}, {"<=", ""}, {"<>", ""}};

enum class AssignType : std::uint8_t { Variable, Attribute, EntityType, EntityPicture, Other };
inline constexpr Choice kAssignTypes[] = {
    {"Variable", ""}, {"Attribute", ""}, {"Entity Type", ""}, {"Entity Picture", ""}, {"Other", ""}};

enum class BatchType : std::uint8_t { Permanent, Temporary };
inline constexpr Choice kBatchTypes[] = {{"Permanent", ""}, {"Temporary", ""}};

enum class SaveCriterion : std::uint8_t { First, Last, Sum, Product };
inline constexpr Choice kSaveCriteria[] = {{"First", ""}, {"Last", ""}, {"Sum", ""}, {"Product", ""}};

enum class BatchRule : std::uint8_t { AnyEntity, ByAttribute };
inline constexpr Choice kBatchRules[] = {{"Any Entity", ""}, {"By Attribute", ""}};

enum class SeparateType : std::uint8_t { Duplicate, Split };
inline constexpr Choice kSeparateTypes[] = {{"Duplicate", "Duplicate Original"}, {"Split", "Split Existing Batch"}};

enum class MemberAttributes : std::uint8_t { Retain, All, Specific };
inline constexpr Choice kMemberAttributes[] = {{"Retain", "Retain Original Entity Values"},
                                               {"All", "Take All Representative Values"},
                                               {"Specific", "Take Specific Representative Values"}};

enum class RecordType : std::uint8_t { Count, EntityStatistics, TimeInterval, TimeBetween, Expression };
inline constexpr Choice kRecordTypes[] = {{"Count", ""},
                                          {"Entity", "Entity Statistics"},
                                          {"Interval", "Time Interval"},
                                          {"Between", "Time Between"},
                                          {"Expression", ""}};

enum class QueueType : std::uint8_t { FirstIn, LastIn, LowestValue, HighestValue };
inline constexpr Choice kQueueTypes[] = {{"FIFO", "First In First Out"},
                                         {"LIFO", "Last In First Out"},
                                         {"LVF", "Lowest Attribute Value"},
                                         {"HVF", "Highest Attribute Value"}};

enum class ResourceType : std::uint8_t { Capacity, Schedule };
inline constexpr Choice kResourceTypes[] = {{"Capacity", "Fixed Capacity"}, {"Schedule", "Based on Schedule"}};

enum class ScheduleRule : std::uint8_t { Wait, Ignore, Preempt };
inline constexpr Choice kScheduleRules[] = {{"Wait", ""}, {"Ignore", ""}, {"Preempt", ""}};

enum class ScheduleType : std::uint8_t { Capacity, Arrival, Other };
inline constexpr Choice kScheduleTypes[] = {{"Capacity", ""}, {"Arrival", ""}, {"Other", ""}};

enum class SetType : std::uint8_t { Resource, Counter, Tally, EntityType, EntityPicture };
inline constexpr Choice kSetTypes[] = {
    {"Resource", ""}, {"Counter", ""}, {"Tally", ""}, {"Entity Type", ""}, {"Entity Picture", ""}};

enum class YesNo : std::uint8_t { Yes, No };
inline constexpr Choice kYesNo[] = {{"Yes", ""}, {"No", ""}};

}  // namespace vardo
