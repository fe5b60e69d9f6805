// What the properties of the modules mean in a run: one line for each property that counts.
#pragma once

#include "model/Choices.h"
#include "model/Names.h"
#include "modules/ModuleKinds.h"

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

namespace vardo {

enum class Meaning : std::uint8_t {
  Nothing,     // a copy for others, or kept by the add-in for itself
  Name,        // the module's own
  Choice,      // one of the choices
  Expression,  // evaluated again and again
  Count,       // an expression that is rounded to a whole number
  Percent,     // an expression between 0 and 100
  Real,        // a number
  Integer,     // digits
  Reference,   // the name of something
  Target,      // what is assigned to
  Rows,        // how many rows there are
};

// A property of a kind, found when it is compiled.
struct Field {
  consteval Field(std::string_view ofKind, std::string_view ofProperty) : Field(*FindModule(ofKind), ofProperty) {}

  std::uint8_t kind;   // among kModules
  std::uint8_t place;  // among the kind's properties
  friend constexpr bool operator==(const Field&, const Field&) = default;

 private:
  constexpr Field(const ModuleSchema& schema, std::string_view property)
      : kind(static_cast<std::uint8_t>(&schema - kModules)),
        place(static_cast<std::uint8_t>(&schema.Property(property) - schema.properties.data())) {}
};

// A field that counts only while another one, of the same row or of the module, has one of some choices.
struct FieldCondition {
  std::uint8_t place = 0;
  std::uint32_t choices = ~0U;  // a bit for each
};

struct FieldMeaning {
  std::uint8_t place = 0;
  Meaning meaning = Meaning::Nothing;
  std::span<const Choice> choices = {};
  int unknownChoice = -1;         // as which the dialog shows a code that is none of them; -1: as none
  Thing thing = Thing::Variable;  // that a reference names; an attribute's may be one that every entity has
  bool mayBeEmpty = false;        // an empty text means something
  bool mayBeInfinite = false;     // the word Infinite is understood
  bool hasEntity = true;          // while its expression is evaluated
  double least = 0;               // that makes sense for a count
  std::array<FieldCondition, 4> when = {};
};

// One for each of the kind's properties, in their order.
std::span<const FieldMeaning> MeaningsOf(const ModuleSchema& schema);

// --- The fields that are asked for by name.
inline constexpr Field kCreateName{"Create", "CreateName"}, kCreateEntityType{"Create", "CreateEntityType"},
    kCreateType{"Create", "CreateType"}, kCreateValue{"Create", "CreateValue"}, kCreateUnits{"Create", "CreateUnits"},
    kCreateBatchSize{"Create", "CreateBatchSize"}, kCreateMaxBatches{"Create", "CreateMaxBatches"},
    kCreateFirstCreation{"Create", "CreateFirstCreation"}, kCreateExpression{"Create", "CreateExpression"},
    kCreateScheduleName{"Create", "CreateScheduleName"};
inline constexpr Field kProcessName{"Process", "ProcessName"}, kProcessType{"Process", "ProcessType"},
    kProcessAction{"Process", "ProcessAction"}, kProcessPriority{"Process", "ProcessPriority"},
    kProcessDelayType{"Process", "ProcessDelayType"}, kProcessUnits{"Process", "ProcessUnits"},
    kProcessAllocation{"Process", "ProcessAllocation"}, kProcessMin{"Process", "ProcessMin"},
    kProcessValue{"Process", "ProcessValue"}, kProcessMax{"Process", "ProcessMax"}, kProcessStdDev{"Process", "ProcessStdDev"},
    kProcessExpression{"Process", "ProcessExpression"}, kProcessReport{"Process", "ReportStatistics"},
    kProcessRowType{"Process", "Process_RType"}, kProcessRowResource{"Process", "Process_RResourceName"},
    kProcessRowSet{"Process", "Process_RSetName"}, kProcessRowQuantity{"Process", "Process_RQuantity"},
    kProcessRowRule{"Process", "Process_RSelectionRule"}, kProcessRowSaveAttribute{"Process", "Process_RSaveAttribute"},
    kProcessRowIndex{"Process", "Process_RInputAttribute"}, kProcessSubPage{"Process", "VardoSubPage"};
inline constexpr Field kDecideType{"Decide", "DecideType"}, kDecidePercentTrue{"Decide", "DecidePercentTrue"},
    kDecideIf{"Decide", "DecideIf"}, kDecideVariable{"Decide", "DecideVariableNamed"},
    kDecideEntityType{"Decide", "DecideEntityTypeNamed"}, kDecideAttribute{"Decide", "DecideAttributeNamed"},
    kDecideIs{"Decide", "DecideIs"}, kDecideValue{"Decide", "DecideValue"};
inline constexpr Field kAssignRowType{"Assign", "AssignType"}, kAssignVariable{"Assign", "AssignVariableName"},
    kAssignAttribute{"Assign", "AssignAttributeName"}, kAssignEntityType{"Assign", "AssignEntityType"},
    kAssignPicture{"Assign", "AssignEntityPicture"}, kAssignOther{"Assign", "AssignOther"},
    kAssignNewValue{"Assign", "AssignNewValue"};
inline constexpr Field kBatchType{"Batch", "BatchType"}, kBatchSize{"Batch", "BatchBatchSize"},
    kBatchSaveCriterion{"Batch", "BatchSaveCriterion"}, kBatchRule{"Batch", "BatchRule"},
    kBatchAttribute{"Batch", "BatchAttributeName"};
inline constexpr Field kSeparateType{"Separate", "SeparateType"}, kSeparatePercentCost{"Separate", "SeparateCostToDuplicates"},
    kSeparateDuplicates{"Separate", "SeparateNumberofDuplicates"}, kSeparateMembers{"Separate", "SeparateMemberAttributes"},
    kSeparateAttribute{"Separate", "AttributeName"};
inline constexpr Field kRecordType{"Record", "RecordType"}, kRecordValue{"Record", "RecordValue"},
    kRecordAttribute{"Record", "RecordAttributeName"}, kRecordInSet{"Record", "RecordInSet"},
    kRecordCounter{"Record", "RecordCounterName"}, kRecordTally{"Record", "RecordTallyName"},
    kRecordCounterSet{"Record", "RecordCounterSetName"}, kRecordTallySet{"Record", "RecordTallySetName"},
    kRecordSetIndex{"Record", "RecordSetIndex"};
inline constexpr Field kDisposeStatistics{"Dispose", "EntityStatistics"};
inline constexpr Field kEntityPicture{"Entity", "EntityInitialPicture"}, kEntityHoldingCost{"Entity", "EntityHoldingCost_Hour"},
    kEntityValueAdded{"Entity", "EntityValueAdded"}, kEntityNonValueAdded{"Entity", "EntityNonValueAdded"},
    kEntityWaiting{"Entity", "EntityWaiting"}, kEntityTransfer{"Entity", "EntityTransfer"}, kEntityOther{"Entity", "EntityOther"},
    kEntityReport{"Entity", "ReportStatistics"};
inline constexpr Field kQueueType{"Queue", "QueueType"}, kQueueAttribute{"Queue", "QueueAttributeName"},
    kQueueReport{"Queue", "ReportStatistics"};
inline constexpr Field kResourceType{"Resource", "ResourceType"}, kResourceCapacity{"Resource", "ResourceCapacity"},
    kResourceSchedule{"Resource", "ResourceScheduleName"}, kResourceRule{"Resource", "ResourceScheduleRule"},
    kResourceBusyCost{"Resource", "ResourceBusy_Hour"}, kResourceIdleCost{"Resource", "ResourceIdle_Hour"},
    kResourcePerUse{"Resource", "ResourcePerUse"}, kResourceReport{"Resource", "ReportStatistics"};
inline constexpr Field kScheduleType{"Schedule", "ScheduleType"}, kScheduleUnits{"Schedule", "ScheduleTimeUnits"},
    kScheduleScale{"Schedule", "ScheduleScaleFactor"}, kScheduleValue{"Schedule", "Schedule_DurationsValue"},
    kScheduleDuration{"Schedule", "Schedule_DurationsDuration"};
inline constexpr Field kSetType{"Set", "SetType"}, kSetResources{"Set", "SetResourceMembers"},
    kSetCounters{"Set", "SetCounterMembers"}, kSetTallies{"Set", "SetTallyMembers"}, kSetEntityTypes{"Set", "SetEntityMembers"},
    kSetPictures{"Set", "SetPictureMembers"};
inline constexpr Field kVariableRowCount{"Variable", "VariableRows"}, kVariableColumnCount{"Variable", "VariableColumns"},
    kVariableReport{"Variable", "VariableStatistics"}, kVariableInitialValue{"Variable", "VariableInitialValue"};

// Which column holds the members of a set, by the set's type.
inline constexpr Field kSetMembers[] = {kSetResources, kSetCounters, kSetTallies, kSetEntityTypes, kSetPictures};
inline constexpr Thing kThingsOfSets[] = {Thing::Resource, Thing::Counter, Thing::Tally, Thing::EntityType, Thing::Picture};

}  // namespace vardo
