// A model compiled for running: tables and numbers, no names where entities walk. Nobody changes it once it is made, so all
// threads share it. Times are seconds, cost rates are per
// hour.
#pragma once

#include "model/Choices.h"
#include "model/Distribution.h"
#include "model/Names.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vardo {

inline constexpr std::uint32_t kNone = UINT32_MAX;
inline constexpr size_t kEntityAttributeCount = static_cast<size_t>(EntityAttribute::Station) + 1;

// ------------------------------------------------------------------------------------------------------ expressions

enum class Code : std::uint16_t {
  Constant,      // value
  Column,        // of the entity; b: which
  TimeColumn,    // the same in base units
  EntityNumber,  // what every entity has beside its columns
  EntityType,
  EntityPicture,
  EntityCreateTime,
  Variable,  // b: which
  Element,   // a: number of indexes; b: which variable
  // One value in the place of one.
  Negate,
  Not,
  Truth,  // 1 for all but 0
  Abs,
  Round,
  Int,
  Floor,
  Ceil,
  Sqrt,
  Exp,
  Ln,
  Log10,
  Sign,
  // One value in the place of two.
  Add,
  Subtract,
  Multiply,
  Divide,
  Power,
  Mod,
  Min,
  Max,
  Less,
  LessOrEqual,
  Greater,
  GreaterOrEqual,
  Equal,
  NotEqual,
  // b: the instruction to go on at, counted from the first of the expression.
  Jump,
  JumpIfFalse,  // takes the condition
  // a: the distribution; b: an entry of Program::draws.
  Draw,
  // The state of the run; b: of what.
  Now,
  Replication,
  Level,
  Counter,
  TallyMean,
  TallyCount,
  Capacity,
  Free,
  Course,
  Member,  // of a set; takes the index
};

struct Instruction {
  Code code = Code::Constant;
  std::uint16_t a = 0;
  std::uint32_t b = 0;
  double value = 0;
};

// The parameters of a draw: constants, which are good ones, or as many values on the stack.
struct DrawTable {
  std::uint32_t source = kNone;
  std::uint32_t firstConstant = kNone;
  std::uint32_t count = 0;
};

inline constexpr std::uint32_t kStackDepth = 32;

enum class ValueKind : std::uint8_t { Constant, Draw, Code };

// What a field says. Fields are named by their places among Program::values.
struct Value {
  ValueKind kind = ValueKind::Constant;
  Distribution distribution = Distribution::Expo;  // of a Draw
  double constant = 0;
  std::uint32_t first = 0, count = 0;  // instructions; of a Draw, first is its entry of Program::draws
  std::uint32_t place = 0;
};

// Where in the drawing something stands that a sentence may have to name.
struct SourcePlace {
  std::string page, kind, module;
  int shape = -1;
  std::string field, property;
};

// ------------------------------------------------------------------------------------------------------ steps

enum class Op : std::uint8_t {
  Create,
  CourseStep,
  Enter,
  Seize,
  Delay,
  DelayEnd,
  Release,
  Leave,
  Decide,
  Assign,
  Batch,
  Duplicate,
  Split,
  Record,
  EnterSubmodel,
  LeaveSubmodel,
  Dispose,
};

struct Step {
  Op op = Op::Dispose;
  std::uint32_t table = 0;  // the row in the table of its kind
  std::uint32_t next = kNone;
  std::uint32_t otherExit = kNone;  // False, or the duplicates'
  std::uint32_t entered = 0;        // counters of a module's first and of its last step; the first counter is nobody's
  std::uint32_t left = 0;
};

// Rows of a table that belong to one row of another.
struct Rows {
  std::uint32_t first = 0, count = 0;
};

inline constexpr size_t kCategories = 5;  // VA, NVA, Tran, Wait, Other: in the order of Allocation and of the attributes
constexpr size_t IndexOf(Allocation allocation) { return static_cast<size_t>(allocation); }

struct EntityTypeTable {
  std::string name;
  std::uint32_t picture = 0;
  double holdCostRate = 0;
  std::array<double, kCategories> initialCosts = {};
  std::uint32_t in = kNone, out = kNone;  // counters
  std::uint32_t inSystem = kNone;         // level
  std::uint32_t times = kNone;            // the first of six tallies: by category, then the total
  std::uint32_t costs = kNone;            // the same; none in a model without costs
  bool isReported = true;
};

struct CreateTable {
  std::uint32_t type = 0;
  std::uint32_t interval = kNone;       // value; none when a course gives the rate
  double unit = 1;                      // of the interval
  std::uint32_t course = kNone;         // of arrivals per hour
  std::uint32_t workSource = kNone;     // of the draws that use the rate up
  std::uint32_t entities = 0;           // value, per arrival
  std::uint32_t maxArrivals = kNone;    // value; none: without end
  std::uint32_t firstCreation = kNone;  // value
  Rows submodels;                       // that it is inside of
};

struct SeizeRow {
  std::uint32_t resource = kNone;
  std::uint32_t set = kNone;
  SelectionRule rule = SelectionRule::Cyclical;
  std::uint32_t quantity = 0;    // value
  std::uint32_t index = kNone;   // value, with Specific Member
  std::uint32_t save = kNone;    // the column that gets the index of the member
  std::uint32_t source = kNone;  // with Random
  std::uint32_t place = 0;
};

struct SeizeTable {
  Rows rows;  // of Program::seizeRows
  std::uint32_t queue = 0;
  std::uint32_t priority = 0;                    // value
  Allocation category = Allocation::ValueAdded;  // of what each use costs
  std::uint32_t wants = kNone;  // the first of two columns a row, quantity and index, where not all of them are constant
};

struct ReleaseTable {
  std::uint32_t seize = kNone;  // gives back what that one was granted
  Rows rows;                    // of Program::seizeRows; else what these say
};

struct QueueTable {
  std::string name;
  QueueType ranking = QueueType::FirstIn;
  std::uint32_t rank = kNone;    // value, with LowestValue and HighestValue
  bool isPlain = true;           // all of one priority, first in, first out
  std::uint32_t wait = kNone;    // tally
  std::uint32_t length = kNone;  // level
  std::uint32_t waited = kNone;  // counter
};

struct ProcessTable {
  std::string name;
  std::uint32_t in = kNone, out = kNone;                     // counters
  std::uint32_t inside = kNone;                              // level
  std::uint32_t wait = kNone, delay = kNone, total = kNone;  // tallies
  std::uint32_t waitCost = kNone, delayCost = kNone, totalCost = kNone;
};

struct DelayTable {
  std::uint32_t duration = 0;  // value
  double unit = 1;
  Allocation category = Allocation::ValueAdded;
  std::uint32_t process = 0;
};

struct DecideTable {
  std::uint32_t percent = kNone;  // value; by chance
  std::uint32_t source = kNone;
  std::uint32_t condition = kNone;  // value
};

enum class AssignTarget : std::uint8_t { Column, Variable, Element, Type, Picture, Capacity };

struct AssignRow {
  AssignTarget target = AssignTarget::Column;
  std::uint32_t index = 0;                                // of the column, variable or resource
  std::array<std::uint32_t, 2> indexes = {kNone, kNone};  // values, of an Element
  std::uint32_t value = 0;
  std::uint32_t place = 0;  // of the target
};

struct AssignTable {
  Rows rows;
};

struct BatchTable {
  std::uint32_t queue = 0;
  std::uint32_t size = 0;         // value
  std::uint32_t groupBy = kNone;  // value
  bool isTemporary = false;
  SaveCriterion criterion = SaveCriterion::Last;
  std::uint32_t groups = kNone, members = kNone;  // counters
  Rows submodels;
};

struct DuplicateTable {
  std::uint32_t count = 0, percentCost = 0;  // values
  std::uint32_t duplicates = kNone;          // counter
  Rows submodels;
};

struct SplitTable {
  MemberAttributes attributes = MemberAttributes::Retain;
  Rows specific;                 // of Program::splitAttributes
  std::uint32_t splits = kNone;  // counter
  std::uint32_t place = 0;
};

struct RecordTable {
  RecordType type = RecordType::Count;
  std::uint32_t value = kNone;  // of Count and Expression
  bool fromCreation = false;    // an interval begins when the entity was created, or at the time in a column of that unit
  std::uint32_t column = kNone;
  double columnUnit = 1;
  std::uint32_t target = kNone;  // counter or tally
  std::uint32_t set = kNone;     // or into the member of a set, at an index
  Rows targets;                  // of Program::recordTargets: those of the set's members
  std::uint32_t index = kNone;   // value
};

struct SubmodelTable {
  std::uint32_t process = 0;
  std::uint32_t enteredColumn = kNone;  // when an entity went in
};

struct DisposeTable {
  bool isRecorded = true;
  Rows submodels;
  std::uint32_t place = 0;
};

struct VariableTable {
  std::string name;
  std::uint32_t first = 0;              // of Program::initialValues
  std::uint32_t rows = 0, columns = 0;  // 0 rows: one number
  std::uint32_t level = kNone;
};

// Resources, counters and tallies by their places, entity types and pictures by their numbers.
struct SetTable {
  std::string name;
  Rows members;  // of Program::setMembers
};

struct ResourceTable {
  std::string name;
  std::uint32_t course = kNone;
  std::uint32_t capacity = kNone;  // value, when no course gives it
  ScheduleRule rule = ScheduleRule::Wait;
  double busyCostRate = 0;
  double idleCostRate = 0;
  double perUse = 0;
  Rows seizes;                                           // of Program::resourceSeizes: those who may want it, in drawing order
  std::uint32_t busy = kNone, scheduled = kNone;         // levels
  std::uint32_t utilisation = kNone, available = kNone;  // levels: busy by scheduled units while there are any; whether there are
  std::uint32_t idle = kNone;                            // level; only where idle time costs
  std::uint32_t seized = kNone;                          // counter
  std::uint32_t useCost = kNone;                         // counter; only where uses cost
  std::uint32_t place = 0;
};

enum class CourseUser : std::uint8_t { Resource, Create, Clock };

// One schedule as one of its users follows it.
struct CourseTable {
  CourseUser user = CourseUser::Clock;
  std::uint32_t target = kNone;  // the resource or the Create
  Rows rows;                     // of Program::courseRows
  double unit = 1;               // of the durations
  double scale = 1;              // of the values
  bool mayBeNegative = true;
  std::uint32_t place = 0;
};

struct CourseRow {
  std::uint32_t value = 0;
  std::uint32_t duration = kNone;  // none: for ever
};

// ------------------------------------------------------------------------------------------------------ outputs

enum class OutputKind : std::uint8_t {
  Tally,
  Level,
  Counter,
  Area,   // of a level
  Ratio,  // of the areas of two levels
};

// One line of the results. What is shown is the number measured times the factor, by the divisor.
struct Output {
  std::string_view category, statistic;
  std::string of;
  OutputKind kind = OutputKind::Counter;
  std::uint32_t index = 0, other = kNone;
  double factor = 1, divisor = 1;
  std::string_view unit;  // empty for plain numbers
};

struct Program {
  // --- What it came from.
  std::string file;
  std::uint64_t hash = 0;  // of what counts in a run
  int modules = 0;
  std::string_view timeUnit = "Hours";
  double unit = 3600;  // seconds of the base unit

  std::vector<Value> values;
  std::vector<Instruction> instructions;
  std::vector<std::uint32_t> positions;  // of each instruction in its field's text, from 0; none where it has no text of its own
  std::vector<DrawTable> draws;
  std::vector<double> constants;
  std::vector<std::uint64_t> sources;
  std::vector<SourcePlace> places;

  std::vector<Step> steps;
  std::vector<std::uint32_t> placeOfStep;
  std::vector<EntityTypeTable> types;
  std::vector<CreateTable> creates;
  std::vector<SeizeRow> seizeRows;
  std::vector<SeizeTable> seizes;
  std::vector<ReleaseTable> releases;
  std::vector<QueueTable> queues;
  std::vector<ProcessTable> processes;  // submodels, too
  std::vector<DelayTable> delays;
  std::vector<DecideTable> decides;
  std::vector<AssignRow> assignRows;
  std::vector<std::string> assigned;  // what each of the rows assigns to, as its field says
  std::vector<AssignTable> assigns;
  std::vector<BatchTable> batches;
  std::vector<DuplicateTable> duplicates;
  std::vector<SplitTable> splits;
  std::vector<Reference> splitAttributes;  // built-in ones; of the model's own, the index is the column
  std::vector<RecordTable> records;
  std::vector<std::uint32_t> recordTargets;
  std::vector<SubmodelTable> submodels;
  std::vector<std::uint32_t> insideOf;  // submodels, from the outermost; Rows of it say where a module lies
  std::vector<DisposeTable> disposes;
  std::vector<VariableTable> variables;
  std::vector<double> initialValues;
  std::vector<SetTable> sets;
  std::vector<std::uint32_t> setMembers;
  std::vector<ResourceTable> resources;
  std::vector<std::uint32_t> resourceSeizes;
  std::vector<CourseTable> courses;
  std::vector<CourseRow> courseRows;

  // The steps of those who act without being an entity: the courses, then the Creates. Each has a row of its own.
  std::vector<std::uint32_t> actors;

  // --- The columns of an entity's row.
  std::uint32_t columns = 0;
  std::array<std::uint32_t, kEntityAttributeCount> builtIn = NoColumns();  // by EntityAttribute; none for what nobody asks for
  std::uint32_t firstUserColumn = 0, userColumns = 0;

  std::uint32_t processCosts = kNone;  // the first of two: what an entity's wait and its delay in its Process have cost
  bool hasCosts = false;
  std::uint32_t pictures = 1;

  // --- The statistics.
  std::uint32_t levels = 0, counters = 1;
  std::vector<std::uint32_t> bucketsOfTally;  // one of each tally; none where nobody asks for quantiles
  std::uint32_t buckets = 0;
  std::vector<Output> outputs;

  std::uint32_t until = kNone;  // value

  std::uint32_t ColumnOf(EntityAttribute attribute) const { return builtIn[static_cast<size_t>(attribute)]; }
  std::uint32_t timeColumn(Allocation category) const {
    return builtIn[static_cast<size_t>(EntityAttribute::VATime) + IndexOf(category)];
  }
  std::uint32_t costColumn(Allocation category) const {
    return builtIn[static_cast<size_t>(EntityAttribute::VACost) + IndexOf(category)];
  }

 private:
  static constexpr std::array<std::uint32_t, kEntityAttributeCount> NoColumns() {
    std::array<std::uint32_t, kEntityAttributeCount> columns{};
    columns.fill(kNone);
    return columns;
  }
};

}  // namespace vardo
