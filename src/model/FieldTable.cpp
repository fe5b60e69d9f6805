#include "model/FieldTable.h"

#include <bit>
#include <initializer_list>
#include <iterator>

namespace vardo {
namespace {

template <class Enumeration>
consteval FieldCondition When(Field field, std::initializer_list<Enumeration> values) {
  FieldCondition condition{field.place, 0};
  for (const Enumeration value : values) condition.choices |= 1U << static_cast<int>(value);
  return condition;
}

constexpr std::uint8_t At(Field field) { return field.place; }
template <class Enumeration>
constexpr int ShownAs(Enumeration value) {
  return static_cast<int>(value);
}

// --- Lines for what many kinds have.

consteval FieldMeaning Line(std::string_view kind, std::string_view property, Meaning meaning) {
  return {.place = Field(kind, property).place, .meaning = meaning};
}
consteval FieldMeaning Ignored(std::string_view kind, std::string_view property) {
  return Line(kind, property, Meaning::Nothing);
}
constexpr FieldMeaning kOwnName{.place = 0, .meaning = Meaning::Name};
consteval FieldMeaning RowCount(std::string_view kind) { return Line(kind, FindModule(kind)->rows.count, Meaning::Rows); }
consteval FieldMeaning Report(Field field) {
  return {.place = field.place, .meaning = Meaning::Choice, .choices = kYesNo, .unknownChoice = ShownAs(YesNo::No)};
}
consteval FieldMeaning Cost(Field field) { return {.place = field.place, .meaning = Meaning::Real}; }

// --- Create

constexpr FieldCondition kNotBySchedule = When(kCreateType, {CreateType::Random, CreateType::Constant, CreateType::Expression});

constexpr FieldMeaning kCreateMeanings[] = {
    kOwnName,
    {.place = At(kCreateEntityType), .meaning = Meaning::Reference, .thing = Thing::EntityType},
    {.place = At(kCreateType), .meaning = Meaning::Choice, .choices = kCreateTypes},
    {.place = At(kCreateValue),
     .meaning = Meaning::Expression,
     .hasEntity = false,
     .when = {When(kCreateType, {CreateType::Random, CreateType::Constant})}},
    {.place = At(kCreateUnits), .meaning = Meaning::Choice, .choices = kTimeUnitChoices, .when = {kNotBySchedule}},
    {.place = At(kCreateBatchSize), .meaning = Meaning::Count, .hasEntity = false},
    {.place = At(kCreateMaxBatches), .meaning = Meaning::Count, .mayBeInfinite = true, .hasEntity = false},
    {.place = At(kCreateFirstCreation), .meaning = Meaning::Expression, .hasEntity = false, .when = {kNotBySchedule}},
    {.place = At(kCreateExpression),
     .meaning = Meaning::Expression,
     .hasEntity = false,
     .when = {When(kCreateType, {CreateType::Expression})}},
    {.place = At(kCreateScheduleName),
     .meaning = Meaning::Reference,
     .thing = Thing::Schedule,
     .when = {When(kCreateType, {CreateType::Schedule})}},
};

// --- Process

constexpr Choice kPriorities[] = {{"1", "High(1)"}, {"2", "Medium(2)"}, {"3", "Low(3)"}};

constexpr FieldCondition kIsStandard = When(kProcessType, {ProcessType::Standard});
constexpr FieldCondition kHasRows =
    When(kProcessAction, {ProcessAction::SeizeDelay, ProcessAction::SeizeDelayRelease, ProcessAction::DelayRelease});
constexpr FieldCondition kSeizes = When(kProcessAction, {ProcessAction::SeizeDelay, ProcessAction::SeizeDelayRelease});
constexpr FieldCondition kHasRange = When(kProcessDelayType, {DelayType::Triangular, DelayType::Uniform});
constexpr FieldCondition kOfResource = When(kProcessRowType, {ResourceRowType::Resource});
constexpr FieldCondition kOfSet = When(kProcessRowType, {ResourceRowType::Set});
constexpr FieldCondition kOfSpecificMember = When(kProcessRowRule, {SelectionRule::SpecificMember});

constexpr FieldMeaning kProcessMeanings[] = {
    kOwnName,
    {.place = At(kProcessType), .meaning = Meaning::Choice, .choices = kProcessTypes},
    {.place = At(kProcessAction), .meaning = Meaning::Choice, .choices = kProcessActions, .when = {kIsStandard}},
    {.place = At(kProcessPriority), .meaning = Meaning::Expression, .choices = kPriorities, .when = {kIsStandard, kSeizes}},
    {.place = At(kProcessDelayType), .meaning = Meaning::Choice, .choices = kDelayTypes, .when = {kIsStandard}},
    {.place = At(kProcessUnits), .meaning = Meaning::Choice, .choices = kTimeUnitChoices, .when = {kIsStandard}},
    {.place = At(kProcessAllocation),
     .meaning = Meaning::Choice,
     .choices = kAllocations,
     .unknownChoice = ShownAs(Allocation::Other),
     .when = {kIsStandard}},
    {.place = At(kProcessMin), .meaning = Meaning::Expression, .when = {kIsStandard, kHasRange}},
    {.place = At(kProcessValue),
     .meaning = Meaning::Expression,
     .when = {kIsStandard, When(kProcessDelayType, {DelayType::Constant, DelayType::Normal, DelayType::Triangular})}},
    {.place = At(kProcessMax), .meaning = Meaning::Expression, .when = {kIsStandard, kHasRange}},
    {.place = At(kProcessStdDev),
     .meaning = Meaning::Expression,
     .when = {kIsStandard, When(kProcessDelayType, {DelayType::Normal})}},
    {.place = At(kProcessExpression),
     .meaning = Meaning::Expression,
     .when = {kIsStandard, When(kProcessDelayType, {DelayType::Expression})}},
    Report(kProcessReport),
    RowCount("Process"),
    {.place = At(kProcessRowType),
     .meaning = Meaning::Choice,
     .choices = kResourceRowTypes,
     .unknownChoice = ShownAs(ResourceRowType::Set),
     .when = {kIsStandard, kHasRows}},
    {.place = At(kProcessRowResource),
     .meaning = Meaning::Reference,
     .thing = Thing::Resource,
     .when = {kIsStandard, kHasRows, kOfResource}},
    {.place = At(kProcessRowSet), .meaning = Meaning::Reference, .thing = Thing::Set, .when = {kIsStandard, kHasRows, kOfSet}},
    {.place = At(kProcessRowQuantity), .meaning = Meaning::Count, .least = 1, .when = {kIsStandard, kHasRows}},
    {.place = At(kProcessRowRule),
     .meaning = Meaning::Choice,
     .choices = kSelectionRules,
     .when = {kIsStandard, kHasRows, kOfSet}},
    {.place = At(kProcessRowSaveAttribute),
     .meaning = Meaning::Reference,
     .thing = Thing::Attribute,
     .mayBeEmpty = true,
     .when = {kIsStandard, kHasRows, kOfSet,
              When(kProcessRowRule, {SelectionRule::Cyclical, SelectionRule::Random, SelectionRule::PreferredOrder,
                                     SelectionRule::LargestRemaining, SelectionRule::SmallestBusy})}},
    {.place = At(kProcessRowIndex),
     .meaning = Meaning::Count,
     .least = 1,
     .when = {kIsStandard, kHasRows, kOfSet, kOfSpecificMember}},
    Ignored("Process", "VardoSubPage"),
};

// --- Decide

constexpr FieldCondition kByCondition = When(kDecideType, {DecideType::Condition});

constexpr FieldMeaning kDecideMeanings[] = {
    kOwnName,
    {.place = At(kDecideType),
     .meaning = Meaning::Choice,
     .choices = kDecideTypes,
     .unknownChoice = ShownAs(DecideType::Condition)},
    {.place = At(kDecidePercentTrue), .meaning = Meaning::Percent, .when = {When(kDecideType, {DecideType::Chance})}},
    {.place = At(kDecideIf), .meaning = Meaning::Choice, .choices = kDecideIfs, .when = {kByCondition}},
    {.place = At(kDecideVariable),
     .meaning = Meaning::Reference,
     .thing = Thing::Variable,
     .when = {kByCondition, When(kDecideIf, {DecideIf::Variable})}},
    {.place = At(kDecideEntityType),
     .meaning = Meaning::Reference,
     .thing = Thing::EntityType,
     .when = {kByCondition, When(kDecideIf, {DecideIf::EntityType})}},
    {.place = At(kDecideAttribute),
     .meaning = Meaning::Reference,
     .thing = Thing::Attribute,
     .when = {kByCondition, When(kDecideIf, {DecideIf::Attribute})}},
    {.place = At(kDecideIs),
     .meaning = Meaning::Choice,
     .choices = kComparisons,
     .when = {kByCondition, When(kDecideIf, {DecideIf::Variable, DecideIf::Attribute})}},
    {.place = At(kDecideValue),
     .meaning = Meaning::Expression,
     .when = {kByCondition, When(kDecideIf, {DecideIf::Variable, DecideIf::Attribute, DecideIf::Expression})}},
};

// --- Assign

constexpr FieldMeaning kAssignMeanings[] = {
    kOwnName,
    RowCount("Assign"),
    {.place = At(kAssignRowType), .meaning = Meaning::Choice, .choices = kAssignTypes},
    {.place = At(kAssignVariable),
     .meaning = Meaning::Reference,
     .thing = Thing::Variable,
     .when = {When(kAssignRowType, {AssignType::Variable})}},
    {.place = At(kAssignAttribute),
     .meaning = Meaning::Reference,
     .thing = Thing::Attribute,
     .when = {When(kAssignRowType, {AssignType::Attribute})}},
    {.place = At(kAssignEntityType),
     .meaning = Meaning::Reference,
     .thing = Thing::EntityType,
     .when = {When(kAssignRowType, {AssignType::EntityType})}},
    {.place = At(kAssignPicture),
     .meaning = Meaning::Reference,
     .thing = Thing::Picture,
     .when = {When(kAssignRowType, {AssignType::EntityPicture})}},
    {.place = At(kAssignOther), .meaning = Meaning::Target, .when = {When(kAssignRowType, {AssignType::Other})}},
    {.place = At(kAssignNewValue),
     .meaning = Meaning::Expression,
     .when = {When(kAssignRowType, {AssignType::Variable, AssignType::Attribute, AssignType::Other})}},
};

// --- Batch

constexpr FieldMeaning kBatchMeanings[] = {
    kOwnName,
    {.place = At(kBatchType), .meaning = Meaning::Choice, .choices = kBatchTypes},
    {.place = At(kBatchSize), .meaning = Meaning::Count, .least = 1},
    {.place = At(kBatchSaveCriterion), .meaning = Meaning::Choice, .choices = kSaveCriteria},
    {.place = At(kBatchRule), .meaning = Meaning::Choice, .choices = kBatchRules},
    {.place = At(kBatchAttribute),
     .meaning = Meaning::Reference,
     .thing = Thing::Attribute,
     .when = {When(kBatchRule, {BatchRule::ByAttribute})}},
};

// --- Separate

constexpr FieldCondition kDuplicates = When(kSeparateType, {SeparateType::Duplicate});
constexpr FieldCondition kSplits = When(kSeparateType, {SeparateType::Split});

constexpr FieldMeaning kSeparateMeanings[] = {
    kOwnName,
    {.place = At(kSeparateType),
     .meaning = Meaning::Choice,
     .choices = kSeparateTypes,
     .unknownChoice = ShownAs(SeparateType::Split)},
    {.place = At(kSeparatePercentCost), .meaning = Meaning::Percent, .when = {kDuplicates}},
    {.place = At(kSeparateDuplicates), .meaning = Meaning::Count, .when = {kDuplicates}},
    {.place = At(kSeparateMembers),
     .meaning = Meaning::Choice,
     .choices = kMemberAttributes,
     .unknownChoice = ShownAs(MemberAttributes::Specific),
     .when = {kSplits}},
    RowCount("Separate"),
    {.place = At(kSeparateAttribute),
     .meaning = Meaning::Reference,
     .thing = Thing::Attribute,
     .when = {kSplits, When(kSeparateMembers, {MemberAttributes::Specific})}},
};

// --- Record

constexpr FieldCondition kCounts = When(kRecordType, {RecordType::Count});
constexpr FieldCondition kTallies =
    When(kRecordType, {RecordType::TimeInterval, RecordType::TimeBetween, RecordType::Expression});
constexpr FieldCondition kOfNoEntity =
    When(kRecordType, {RecordType::Count, RecordType::TimeInterval, RecordType::TimeBetween, RecordType::Expression});
constexpr FieldCondition kIntoSet = When(kRecordInSet, {YesNo::Yes});
constexpr FieldCondition kIntoOne = When(kRecordInSet, {YesNo::No});

constexpr FieldMeaning kRecordMeanings[] = {
    kOwnName,
    {.place = At(kRecordType), .meaning = Meaning::Choice, .choices = kRecordTypes},
    {.place = At(kRecordValue),
     .meaning = Meaning::Expression,
     .when = {When(kRecordType, {RecordType::Count, RecordType::Expression})}},
    {.place = At(kRecordAttribute),
     .meaning = Meaning::Reference,
     .thing = Thing::Attribute,
     .when = {When(kRecordType, {RecordType::TimeInterval})}},
    {.place = At(kRecordInSet),
     .meaning = Meaning::Choice,
     .choices = kYesNo,
     .unknownChoice = ShownAs(YesNo::No),
     .when = {kOfNoEntity}},
    {.place = At(kRecordCounter),
     .meaning = Meaning::Reference,
     .thing = Thing::Counter,
     .mayBeEmpty = true,
     .when = {kCounts, kIntoOne}},
    {.place = At(kRecordTally),
     .meaning = Meaning::Reference,
     .thing = Thing::Tally,
     .mayBeEmpty = true,
     .when = {kTallies, kIntoOne}},
    {.place = At(kRecordCounterSet), .meaning = Meaning::Reference, .thing = Thing::Set, .when = {kCounts, kIntoSet}},
    {.place = At(kRecordTallySet), .meaning = Meaning::Reference, .thing = Thing::Set, .when = {kTallies, kIntoSet}},
    {.place = At(kRecordSetIndex), .meaning = Meaning::Count, .least = 1, .when = {kOfNoEntity, kIntoSet}},
};

constexpr FieldMeaning kDisposeMeanings[] = {kOwnName, Report(kDisposeStatistics)};

// --- Data

constexpr FieldMeaning kEntityMeanings[] = {
    kOwnName,
    {.place = At(kEntityPicture), .meaning = Meaning::Reference, .thing = Thing::Picture},
    Cost(kEntityHoldingCost),
    Cost(kEntityValueAdded),
    Cost(kEntityNonValueAdded),
    Cost(kEntityWaiting),
    Cost(kEntityTransfer),
    Cost(kEntityOther),
    Report(kEntityReport),
};

constexpr FieldMeaning kQueueMeanings[] = {
    kOwnName,
    {.place = At(kQueueType), .meaning = Meaning::Choice, .choices = kQueueTypes},
    {.place = At(kQueueAttribute),
     .meaning = Meaning::Reference,
     .thing = Thing::Attribute,
     .when = {When(kQueueType, {QueueType::LowestValue, QueueType::HighestValue})}},
    Report(kQueueReport),
};

constexpr FieldCondition kOnSchedule = When(kResourceType, {ResourceType::Schedule});

constexpr FieldMeaning kResourceMeanings[] = {
    kOwnName,
    {.place = At(kResourceType),
     .meaning = Meaning::Choice,
     .choices = kResourceTypes,
     .unknownChoice = ShownAs(ResourceType::Schedule)},
    {.place = At(kResourceCapacity), .meaning = Meaning::Integer, .when = {When(kResourceType, {ResourceType::Capacity})}},
    {.place = At(kResourceSchedule), .meaning = Meaning::Reference, .thing = Thing::Schedule, .when = {kOnSchedule}},
    {.place = At(kResourceRule), .meaning = Meaning::Choice, .choices = kScheduleRules, .when = {kOnSchedule}},
    Cost(kResourceBusyCost),
    Cost(kResourceIdleCost),
    Cost(kResourcePerUse),
    Report(kResourceReport),
    Ignored("Resource", "ResourceCapacityOrSchedule"),
    Ignored("Resource", "ResourceCapacityOrSchedule2"),
};

constexpr FieldMeaning kScheduleMeanings[] = {
    kOwnName,
    {.place = At(kScheduleType), .meaning = Meaning::Choice, .choices = kScheduleTypes},
    {.place = At(kScheduleUnits), .meaning = Meaning::Choice, .choices = kTimeUnitChoices},
    {.place = At(kScheduleScale),
     .meaning = Meaning::Real,
     .when = {When(kScheduleType, {ScheduleType::Arrival, ScheduleType::Other})}},
    RowCount("Schedule"),
    {.place = At(kScheduleValue), .meaning = Meaning::Expression, .hasEntity = false},
    {.place = At(kScheduleDuration), .meaning = Meaning::Expression, .mayBeEmpty = true, .hasEntity = false},
};

consteval FieldMeaning Members(SetType type) {
  const auto i = static_cast<size_t>(type);
  return {
      .place = kSetMembers[i].place, .meaning = Meaning::Reference, .thing = kThingsOfSets[i], .when = {When(kSetType, {type})}};
}

constexpr FieldMeaning kSetMeanings[] = {
    kOwnName,
    {.place = At(kSetType), .meaning = Meaning::Choice, .choices = kSetTypes},
    RowCount("Set"),
    Ignored("Set", "SetMembers"),
    Ignored("Set", "SetMembers2"),
    Ignored("Set", "SetMembers3"),
    Ignored("Set", "SetMembers4"),
    Ignored("Set", "SetMembers5"),
    Members(SetType::Resource),
    Members(SetType::Counter),
    Members(SetType::Tally),
    Members(SetType::EntityType),
    Members(SetType::EntityPicture),
    Ignored("Set", "SetQueueMembers"),
};

constexpr FieldMeaning kVariableMeanings[] = {
    kOwnName,
    {.place = At(kVariableRowCount), .meaning = Meaning::Integer, .mayBeEmpty = true, .least = 1},
    {.place = At(kVariableColumnCount), .meaning = Meaning::Integer, .mayBeEmpty = true, .least = 1},
    Report(kVariableReport),
    RowCount("Variable"),
    {.place = At(kVariableInitialValue), .meaning = Meaning::Real},
};

// In the order of kModules.
constexpr std::span<const FieldMeaning> kMeanings[] = {
    kCreateMeanings,   kProcessMeanings,  kDecideMeanings,  kAssignMeanings,   kBatchMeanings,
    kSeparateMeanings, kRecordMeanings,   kDisposeMeanings, kEntityMeanings,   kQueueMeanings,
    kResourceMeanings, kScheduleMeanings, kSetMeanings,     kVariableMeanings,
};

// Every property has its line, at its place.
static_assert([] {
  if (std::size(kMeanings) != std::size(kModules)) return false;
  for (size_t kind = 0; kind < std::size(kMeanings); ++kind) {
    if (kMeanings[kind].size() != kModules[kind].properties.size()) return false;
    for (size_t place = 0; place < kMeanings[kind].size(); ++place)
      if (kMeanings[kind][place].place != place) return false;
  }
  return true;
}());
// A choice is known before what depends on it.
static_assert([] {
  for (size_t kind = 0; kind < std::size(kMeanings); ++kind)
    for (const FieldMeaning& meaning : kMeanings[kind])
      for (const FieldCondition& condition : meaning.when)
        if (condition.choices != ~0U &&
            (condition.place >= meaning.place || kMeanings[kind][condition.place].meaning != Meaning::Choice))
          return false;
  return true;
}());

}  // namespace

std::span<const FieldMeaning> MeaningsOf(const ModuleSchema& schema) { return kMeanings[&schema - kModules]; }

}  // namespace vardo
