#include "modules/ModuleProperties.h"

namespace vardo {
namespace {

constexpr bool kShown = false;
constexpr bool kHidden = true;

// The columns of a repeat group are hidden, and so is its count: edited by hand, they would fall out of step.

constexpr ModuleProperty kCreate[] = {
    {"CreateName", "Name", "Create 1", kShown, "The module's name, unique in the drawing"},
    {"CreateEntityType", "Entity Type", "Entity 1", kShown, "The type of the entities created"},
    {"CreateType", "Type", "Random", kShown, "Random, Schedule, Constant or Expression"},
    {"CreateValue", "Value", "1", kShown, "The time between arrivals, or its mean"},
    {"CreateUnits", "Units", "Hours", kShown, "The unit of the time between arrivals"},
    {"CreateBatchSize", "Entities per Arrival", "1", kShown, "How many entities arrive at a time"},
    {"CreateMaxBatches", "Max Arrivals", "Infinite", kShown, "After how many arrivals creation ends"},
    {"CreateFirstCreation", "First Creation", "0.0", kShown, "When the first entity arrives"},
    {"CreateExpression", "Expression", "1", kShown, "The time between arrivals when the type is Expression"},
    {"CreateScheduleName", "Schedule Name", "Schedule 1", kShown, "The arrival schedule when the type is Schedule"},
};

constexpr ModuleProperty kProcess[] = {
    {"ProcessName", "Name", "Process 1", kShown, "The module's name, unique in the drawing"},
    {"ProcessType", "Type", "Standard", kShown, "Standard or Submodel"},
    {"ProcessAction", "Action", "D", kShown, "D delay, SD seize and delay, SDR seize, delay and release, DR delay and release"},
    {"ProcessPriority", "Priority", "2", kShown, "1 high, 2 medium, 3 low, or an expression"},
    {"ProcessDelayType", "Delay Type", "Triangular", kShown, "Constant, Normal, Triangular, Uniform or Expression"},
    {"ProcessUnits", "Units", "hours", kShown, "The unit of the delay"},
    {"ProcessAllocation", "Allocation", "VA", kShown, "Where time and cost go: VA, NVA, Tran, Wait or Other"},
    {"ProcessMin", "Minimum", ".5", kShown, "The shortest delay"},
    {"ProcessValue", "Value", "1", kShown, "The delay, its mean or its most likely value"},
    {"ProcessMax", "Maximum", "1.5", kShown, "The longest delay"},
    {"ProcessStdDev", "Std Dev", ".2", kShown, "The standard deviation of a normal delay"},
    {"ProcessExpression", "Expression", "1", kShown, "The delay when its type is Expression"},
    {"ReportStatistics", "Report Statistics", "Yes", kShown, "Yes or No"},
    {"Process_RCount", "Resource Rows", "0", kHidden, ""},
    {"Process_RType", "Resource Row Types", "Resource", kHidden, ""},
    {"Process_RResourceName", "Resource Names", "Resource 1", kHidden, ""},
    {"Process_RSetName", "Resource Set Names", "Set 1", kHidden, ""},
    {"Process_RQuantity", "Resource Quantities", "1", kHidden, ""},
    {"Process_RSelectionRule", "Selection Rules", "CYC", kHidden, ""},
    {"Process_RSaveAttribute", "Save Attributes", "", kHidden, ""},
    {"Process_RInputAttribute", "Set Indexes", "1", kHidden, ""},
    {"VardoSubPage", "Submodel Page", "", kHidden, ""},
};

constexpr ModuleProperty kDecide[] = {
    {"DecideName", "Name", "Decide 1", kShown, "The module's name, unique in the drawing"},
    {"DecideType", "Type", "With", kShown, "With: 2-way by chance, If: 2-way by condition"},
    {"DecidePercentTrue", "Percent True", "50", kShown, "How many of a hundred entities leave by the True exit"},
    {"DecideIf", "If", "Entity Type", kShown, "Variable, Attribute, Entity Type or Expression"},
    {"DecideVariableNamed", "Variable Named", "Variable 1", kShown, "The variable that the condition looks at"},
    {"DecideEntityTypeNamed", "Entity Type Named", "Entity 1", kShown, "The entity type that the condition looks for"},
    {"DecideAttributeNamed", "Attribute Named", "Attribute 1", kShown, "The attribute that the condition looks at"},
    {"DecideIs", "Is", ">=", kShown, ">, >=, ==, <, <= or <>"},
    {"DecideValue", "Value", "1", kShown, "What is compared with, or the whole expression"},
};

constexpr ModuleProperty kAssign[] = {
    {"AssignName", "Name", "Assign 1", kShown, "The module's name, unique in the drawing"},
    {"AssignCount", "Assignments", "0", kHidden, ""},
    {"AssignType", "Assignment Types", "Variable", kHidden, ""},
    {"AssignVariableName", "Variable Names", "Variable 1", kHidden, ""},
    {"AssignAttributeName", "Attribute Names", "Attribute 1", kHidden, ""},
    {"AssignEntityType", "Entity Types", "Entity 1", kHidden, ""},
    {"AssignEntityPicture", "Entity Pictures", "Picture.Report", kHidden, ""},
    {"AssignOther", "Others", "J", kHidden, ""},
    {"AssignNewValue", "New Values", "1", kHidden, ""},
};

constexpr ModuleProperty kBatch[] = {
    {"BatchName", "Name", "Batch 1", kShown, "The module's name, unique in the drawing"},
    {"BatchType", "Type", "Permanent", kShown, "Permanent or Temporary"},
    {"BatchBatchSize", "Batch Size", "2", kShown, "How many entities make a batch"},
    {"BatchSaveCriterion", "Save Criterion", "Last", kShown,
     "How the batch's attributes come about: First, Last, Sum or Product"},
    {"BatchRule", "Rule", "Any Entity", kShown, "Any Entity or By Attribute"},
    {"BatchAttributeName", "Attribute Name", "Attribute 1", kShown, "The attribute that entities of a batch share"},
};

// The number of duplicates is spelled here as the dialog writes it; cell names are found whatever their letter case.
constexpr ModuleProperty kSeparate[] = {
    {"SeparateName", "Name", "Separate 1", kShown, "The module's name, unique in the drawing"},
    {"SeparateType", "Type", "Duplicate", kShown, "Duplicate: duplicate original, Split: split existing batch"},
    {"SeparateCostToDuplicates", "Percent Cost to Duplicates", "50", kShown, "How much of a hundred goes to the duplicates"},
    {"SeparateNumberofDuplicates", "# of Duplicates", "1", kShown, "How many copies are made"},
    {"SeparateMemberAttributes", "Member Attributes", "Retain", kShown, "Retain, All or Specific"},
    {"Separate_ACount", "Attribute Rows", "0", kHidden, ""},
    {"AttributeName", "Attribute Names", "Attribute 1", kHidden, ""},
};

// A counter or tally without a name of its own bears the module's.
constexpr ModuleProperty kRecord[] = {
    {"RecordName", "Name", "Record 1", kShown, "The module's name, unique in the drawing"},
    {"RecordType", "Type", "Count", kShown, "Count, Entity, Interval, Between or Expression"},
    {"RecordValue", "Value", "1", kShown, "What is counted or recorded"},
    {"RecordAttributeName", "Attribute Name", "Attribute 1", kShown, "The attribute that holds the interval's beginning"},
    {"RecordInSet", "Record into Set", "No", kShown, "Yes or No"},
    {"RecordCounterName", "Counter Name", "", kShown, "Empty: the module's name"},
    {"RecordTallyName", "Tally Name", "", kShown, "Empty: the module's name"},
    {"RecordCounterSetName", "Counter Set Name", "Counter Set 1", kShown, "The set when counts go into a set"},
    {"RecordTallySetName", "Tally Set Name", "Tally Set 1", kShown, "The set when tallies go into a set"},
    {"RecordSetIndex", "Set Index", "1", kShown, "Which member of the set"},
};

constexpr ModuleProperty kDispose[] = {
    {"DisposeName", "Name", "Dispose 1", kShown, "The module's name, unique in the drawing"},
    {"EntityStatistics", "Record Entity Statistics", "Yes", kShown, "Yes or No"},
};

constexpr ModuleProperty kEntity[] = {
    {"EntityName", "Entity Type", "Entity 1", kShown, "The entity type's name, unique in the drawing"},
    {"EntityInitialPicture", "Initial Picture", "Picture.Report", kShown, "How its entities look in an animation"},
    {"EntityHoldingCost_Hour", "Holding Cost / Hour", "0.0", kShown, "What an hour in the system costs"},
    {"EntityValueAdded", "Value Added", "0.0", kShown, "Value-added cost at creation"},
    {"EntityNonValueAdded", "Non-Value Added", "0.0", kShown, "Non-value-added cost at creation"},
    {"EntityWaiting", "Waiting", "0.0", kShown, "Waiting cost at creation"},
    {"EntityTransfer", "Transfer", "0.0", kShown, "Transfer cost at creation"},
    {"EntityOther", "Other", "0.0", kShown, "Other cost at creation"},
    {"ReportStatistics", "Report Statistics", "Yes", kShown, "Yes or No"},
};

constexpr ModuleProperty kQueue[] = {
    {"QueueName", "Name", "Queue 1", kShown, "The queue's name, unique in the drawing"},
    {"QueueType", "Type", "FIFO", kShown, "FIFO, LIFO, LVF lowest or HVF highest attribute value"},
    {"QueueAttributeName", "Attribute Name", "Attribute 1", kShown, "The attribute that ranks the entities"},
    {"ReportStatistics", "Report Statistics", "Yes", kShown, "Yes or No"},
};

// The last two hold whichever of capacity and schedule is in force, for those who need not know the type.
constexpr ModuleProperty kResource[] = {
    {"ResourceName", "Name", "Resource 1", kShown, "The resource's name, unique in the drawing"},
    {"ResourceType", "Type", "Capacity", kShown, "Capacity: fixed capacity, Schedule: based on schedule"},
    {"ResourceCapacity", "Capacity", "1", kShown, "How many units there are"},
    {"ResourceScheduleName", "Schedule Name", "Schedule 1", kShown, "The schedule that gives the capacity"},
    {"ResourceScheduleRule", "Schedule Rule", "Wait", kShown, "When capacity falls while busy: Wait, Ignore or Preempt"},
    {"ResourceBusy_Hour", "Busy / Hour", "0.0", kShown, "What a busy hour costs"},
    {"ResourceIdle_Hour", "Idle / Hour", "0.0", kShown, "What an idle hour costs"},
    {"ResourcePerUse", "Per Use", "0.0", kShown, "What each use costs"},
    {"ReportStatistics", "Report Statistics", "Yes", kShown, "Yes or No"},
    {"ResourceCapacityOrSchedule", "Capacity or Schedule", "1", kHidden, ""},
    {"ResourceCapacityOrSchedule2", "Capacity or Schedule (2)", "1", kHidden, ""},
};

constexpr ModuleProperty kSchedule[] = {
    {"ScheduleName", "Name", "Schedule 1", kShown, "The schedule's name, unique in the drawing"},
    {"ScheduleType", "Type", "Capacity", kShown, "Capacity, Arrival or Other"},
    {"ScheduleTimeUnits", "Time Units", "hours", kShown, "The unit of the durations"},
    {"ScheduleScaleFactor", "Scale Factor", "1.0", kShown, "What the values are multiplied by"},
    {"Schedule_DCount", "Duration Rows", "0", kHidden, ""},
    {"Schedule_DurationsValue", "Values", "1", kHidden, ""},
    {"Schedule_DurationsDuration", "Durations", "", kHidden, ""},
};

// Five copies of the members in force, one list a type, and the queues, which no dialog edits but lists of queues gather.
constexpr ModuleProperty kSet[] = {
    {"SetName", "Name", "Set 1", kShown, "The set's name, unique in the drawing"},
    {"SetType", "Type", "Resource", kShown, "Resource, Counter, Tally, Entity Type or Entity Picture"},
    {"SetM_Count", "Member Rows", "0", kHidden, ""},
    {"SetMembers", "Members", "Resource 1", kHidden, ""},
    {"SetMembers2", "Members (2)", "Resource 1", kHidden, ""},
    {"SetMembers3", "Members (3)", "Resource 1", kHidden, ""},
    {"SetMembers4", "Members (4)", "Resource 1", kHidden, ""},
    {"SetMembers5", "Members (5)", "Resource 1", kHidden, ""},
    {"SetResourceMembers", "Resource Members", "Resource 1", kHidden, ""},
    {"SetCounterMembers", "Counter Members", "Counter 1", kHidden, ""},
    {"SetTallyMembers", "Tally Members", "Tally 1", kHidden, ""},
    {"SetEntityMembers", "Entity Type Members", "Entity 1", kHidden, ""},
    {"SetPictureMembers", "Entity Picture Members", "Picture.Report", kHidden, ""},
    {"SetQueueMembers", "Queue Members", "", kHidden, ""},
};

constexpr ModuleProperty kVariable[] = {
    {"VariableName", "Name", "Variable 1", kShown, "The variable's name, unique in the drawing"},
    {"VariableRows", "Rows", "", kShown, "Empty for a single value"},
    {"VariableColumns", "Columns", "", kShown, "Empty for a list"},
    {"VariableStatistics", "Report Statistics", "Yes", kShown, "Yes or No"},
    {"Variable_ICount", "Initial Value Rows", "0", kHidden, ""},
    {"VariableInitialValue", "Initial Values", "0.0", kHidden, ""},
};

constexpr struct {
  std::string_view kind;
  std::span<const ModuleProperty> properties;
} kKinds[] = {
    {"Create", kCreate},     {"Process", kProcess},   {"Decide", kDecide},   {"Assign", kAssign},     {"Batch", kBatch},
    {"Separate", kSeparate}, {"Record", kRecord},     {"Dispose", kDispose}, {"Entity", kEntity},     {"Queue", kQueue},
    {"Resource", kResource}, {"Schedule", kSchedule}, {"Set", kSet},         {"Variable", kVariable},
};

}  // namespace

std::span<const ModuleProperty> PropertiesOf(std::string_view kind) {
  for (const auto& known : kKinds)
    if (known.kind == kind) return known.properties;
  return {};
}

}  // namespace vardo
