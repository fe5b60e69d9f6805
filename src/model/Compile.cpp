#include "model/Compile.h"

#include "base/Text.h"
#include "model/CompileExpression.h"
#include "model/Outputs.h"
#include "model/Sources.h"

#include <algorithm>
#include <array>
#include <stdexcept>

namespace vardo {
namespace {

constexpr size_t At(EntityAttribute attribute) { return static_cast<size_t>(attribute); }
constexpr EntityAttribute TimeOf(Allocation category) {
  return static_cast<EntityAttribute>(At(EntityAttribute::VATime) + IndexOf(category));
}
constexpr EntityAttribute CostOf(Allocation category) {
  return static_cast<EntityAttribute>(At(EntityAttribute::VACost) + IndexOf(category));
}

template <class Row>
std::uint32_t Last(const std::vector<Row>& rows) {
  return static_cast<std::uint32_t>(rows.size()) - 1;
}

class Compiler {
 public:
  Compiler(const Model& model, const RunSetup& setup, const std::string& file, std::vector<Finding>& findings)
      : model_(model), setup_(setup), findings_(findings), maker_(program_, targets_) {
    program_.file = file;
    program_.hash = HashOf(model);
    program_.modules = static_cast<int>(model.source.modules.size());
    program_.timeUnit = kTimeUnitChoices[static_cast<size_t>(setup.timeUnit)].code;
    program_.unit = SecondsOf(setup.timeUnit);
    counters_.assign(Count(Thing::Counter), kNone);
    tallies_.assign(Count(Thing::Tally), kNone);
    moduleCounters_.assign(model.source.modules.size(), {kNone, kNone});
    processOf_.assign(model.source.modules.size(), kNone);
    placeOf_.assign(model.source.modules.size(), kNone);
    firstStep_.assign(model.graph.nodes.size(), kNone);
    SetTargets();
  }

  std::shared_ptr<const Program> Compile() {
    const size_t before = findings_.size();
    try {
      FindColumns();
      AddVariables();
      AddTypes();
      AddQueues();
      AddResources();
      AddSets();
      AddProcessTables();
      AddNodes();
      AddCapacities();
      AddCourses();
      AddActors();
      LinkSteps();
      AddUntil();
      AddReported();
    } catch (const Stop&) {
    }
    return findings_.size() == before ? std::make_shared<const Program>(std::move(program_)) : nullptr;
  }

 private:
  struct Stop {};
  // A step whose next ones are nodes; the step behind it when the node is that of the module itself.
  struct Road {
    std::uint32_t step = 0;
    int next = -1, other = -1;
  };
  struct Counters {
    std::uint32_t entered = kNone, left = kNone;
  };
  struct Course {
    int schedule = -1;
    CourseUser user = CourseUser::Clock;
    std::uint32_t target = kNone;
    int module = -1;  // the user's
  };

  // --- The model

  size_t Count(Thing thing) const { return model_.names.Of(thing).size(); }
  const Named& NameAt(Thing thing, size_t i) const { return model_.names.Of(thing)[i]; }
  const SourceModule& Module(int i) const { return model_.source.modules[static_cast<size_t>(i)]; }
  const ModuleFields& Fields(int i) const { return model_.fields[static_cast<size_t>(i)]; }
  const FlowNode& Node(int i) const { return model_.graph.nodes[static_cast<size_t>(i)]; }
  int Modules() const { return static_cast<int>(model_.source.modules.size()); }
  bool IsReachable(int module) const { return Node(module).isReachable; }
  bool IsReported(int module, Field field) const { return module < 0 || Fields(module)[field].Is(YesNo::Yes); }

  // --- What cannot be compiled

  [[noreturn]] void Refuse(int module, const FieldValue& value, std::string_view property, std::string_view label,
                           const std::string& sentence) {
    const SourceModule& at = Module(module);
    Finding finding{.severity = Severity::Error, .rule = "field/expression", .order = module};
    finding.page = model_.source.pages[static_cast<size_t>(at.page)].name;
    finding.kind = at.schema->kind;
    finding.module = at.name;
    finding.shape = at.shape;
    finding.field = label;
    finding.property = property;
    finding.text = value.text;
    finding.message = finding.kind + " \"" + InWords(at.name) + "\", " + finding.field + ": " + sentence + ".";
    findings_.push_back(std::move(finding));
    throw Stop();
  }
  [[noreturn]] void Refuse(int module, Field field, const FieldValue& value, const std::string& sentence) {
    const ModuleProperty& property = Module(module).schema->properties[field.place];
    Refuse(module, value, property.field, property.label, sentence);
  }
  template <class Enumeration>
  Enumeration ChoiceOf(int module, Field field, int row = -1) {
    const FieldValue& value = ValueOf(module, field, row);
    if (value.choice < 0) Refuse(module, field, value, "\"" + InWords(value.text) + "\" is none of the choices");
    return value.As<Enumeration>();
  }
  std::uint32_t Referred(int module, Field field, int row = -1) {
    const FieldValue& value = ValueOf(module, field, row);
    if (!value.reference) Refuse(module, field, value, "nothing is called \"" + InWords(value.text) + "\"");
    return static_cast<std::uint32_t>(value.reference.index);
  }

  // --- Fields

  const FieldValue& ValueOf(int module, Field field, int row) const {
    return row < 0 ? Fields(module)[field] : Fields(module)(field, row);
  }
  std::uint32_t PlaceOf(int module) {
    std::uint32_t& place = placeOf_[static_cast<size_t>(module)];
    if (place == kNone) {
      const SourceModule& at = Module(module);
      program_.places.push_back(
          {model_.source.pages[static_cast<size_t>(at.page)].name, std::string(at.schema->kind), at.name, at.shape, "", ""});
      place = Last(program_.places);
    }
    return place;
  }
  std::uint32_t PlaceOf(int module, Field field) {
    SourcePlace place = program_.places[PlaceOf(module)];
    const ModuleProperty& property = Module(module).schema->properties[field.place];
    place.field = property.label;
    place.property = property.field;
    program_.places.push_back(std::move(place));
    return Last(program_.places);
  }
  CodeSite SiteOf(int module, Field field, int row = -1, std::uint64_t user = 0) {
    const SourceModule& at = Module(module);
    const auto page = static_cast<std::uint64_t>(model_.source.pages[static_cast<size_t>(at.page)].id);
    const std::uint64_t number = field.place + 1000 * static_cast<std::uint64_t>(row + 1);
    return {PlaceOf(module, field), page, static_cast<std::uint64_t>(at.shape), number, user};
  }
  const Expression& ExpressionOf(int module, Field field, int row = -1) {
    const FieldValue& value = ValueOf(module, field, row);
    if (value.expression < 0) Refuse(module, field, value, "there is no expression");
    const Expression& expression = model_.ExpressionOf(value);
    if (!expression.IsGood()) Refuse(module, field, value, expression.error->sentence);
    return expression;
  }
  std::uint32_t Code(int module, Field field, int row = -1, std::uint64_t user = 0) {
    const Expression& expression = ExpressionOf(module, field, row);
    try {
      return maker_.Of(expression, SiteOf(module, field, row, user));
    } catch (const std::length_error& error) {
      Refuse(module, field, ValueOf(module, field, row), error.what());
    }
  }
  std::uint32_t Constant(double x, int module, Field field) { return maker_.Constant(x, PlaceOf(module, field)); }
  // What an attribute says: one of the model's own, or one that all have.
  std::uint32_t AttributeCode(int module, Field field, int row = -1) {
    return maker_.Of(ExpressionOfAttribute(module, field, row), SiteOf(module, field, row));
  }
  Expression ExpressionOfAttribute(int module, Field field, int row = -1) {
    Referred(module, field, row);
    const Reference& reference = ValueOf(module, field, row).reference;
    ExpressionNode node;
    node.kind = reference.thing == Thing::Attribute ? NodeKind::Attribute : NodeKind::EntityAttribute;
    node.index = reference.index;
    return OneNode(node);
  }
  static Expression OneNode(const ExpressionNode& node) {
    Expression expression;
    expression.nodes.push_back(node);
    expression.root = 0;
    return expression;
  }

  // --- Numbers of statistics

  std::uint32_t Level() { return program_.levels++; }
  std::uint32_t Counter() { return program_.counters++; }
  std::uint32_t Tally(bool hasBuckets = false) {
    program_.bucketsOfTally.push_back(hasBuckets ? program_.buckets++ : kNone);
    return Last(program_.bucketsOfTally);
  }
  std::uint32_t Tallies(size_t count) {
    const std::uint32_t first = Tally();
    for (size_t i = 1; i < count; ++i) Tally();
    return first;
  }
  // Made when somebody first asks for it.
  std::uint32_t CounterOf(int i) {
    std::uint32_t& counter = counters_[static_cast<size_t>(i)];
    if (counter == kNone) counter = Counter();
    return counter;
  }
  std::uint32_t TallyOf(int i) {
    std::uint32_t& tally = tallies_[static_cast<size_t>(i)];
    if (tally == kNone) tally = Tally(true);
    return tally;
  }
  Counters& CountersOf(int module) {
    Counters& counters = moduleCounters_[static_cast<size_t>(module)];
    if (counters.entered != kNone) return counters;
    if (const std::uint32_t process = processOf_[static_cast<size_t>(module)]; process != kNone)
      return counters = {program_.processes[process].in, program_.processes[process].out};
    counters.entered = Counter();
    const bool isEnd = IsKind(Module(module), "Create") || IsKind(Module(module), "Dispose");
    counters.left = isEnd ? counters.entered : Counter();
    return counters;
  }
  std::uint32_t InsideOf(int module) {
    const std::uint32_t process = processOf_[static_cast<size_t>(module)];
    return process == kNone ? NobodysLevel() : program_.processes[process].inside;
  }
  std::uint32_t NobodysLevel() {
    if (nobodysLevel_ == kNone) nobodysLevel_ = Level();
    return nobodysLevel_;
  }
  int ModuleOf(int flowModule) const { return NameAt(Thing::Module, static_cast<size_t>(flowModule)).module; }

  void SetTargets() {
    targets_.lengthOf = [this](int i) { return program_.queues[static_cast<size_t>(i)].length; };
    targets_.inSystemOf = [this](int i) { return program_.types[static_cast<size_t>(i)].inSystem; };
    targets_.insideOf = [this](int i) { return InsideOf(ModuleOf(i)); };
    targets_.enteredOf = [this](int i) { return CountersOf(ModuleOf(i)).entered; };
    targets_.leftOf = [this](int i) { return CountersOf(ModuleOf(i)).left; };
    targets_.counterOf = [this](int i) { return CounterOf(i); };
    targets_.tallyOf = [this](int i) { return TallyOf(i); };
    targets_.courseOf = [this](int i) { return CourseOf(i, CourseUser::Clock, kNone, -1); };
    targets_.columnOf = [this](int i) { return program_.firstUserColumn + static_cast<std::uint32_t>(i); };
  }

  // --- Columns of entities: those that somebody writes or asks for

  void FindColumns() {
    std::array<bool, kEntityAttributeCount> isUsed = {};
    isUsed[At(EntityAttribute::WaitTime)] = true;
    for (const Expression& expression : model_.expressions)
      for (const ExpressionNode& node : expression.nodes)
        if (node.kind == NodeKind::EntityAttribute) isUsed[static_cast<size_t>(node.index)] = true;
    const auto use = [&](const FieldValue& value, size_t, int) {
      if (value.reference.thing == Thing::EntityAttribute && value.reference)
        isUsed[static_cast<size_t>(value.reference.index)] = true;
    };
    for (int i = 0; i < Modules(); ++i) {
      Fields(i).ForEach(use);
      FindCosts(i, isUsed);
      if (IsKind(Module(i), "Process") && Fields(i)[kProcessAllocation].counts)
        isUsed[At(TimeOf(Fields(i)[kProcessAllocation].As<Allocation>()))] = true;
    }
    isUsed[At(EntityAttribute::HoldCostRate)] |= program_.hasCosts;
    program_.hasCosts |= isUsed[At(EntityAttribute::HoldCostRate)];
    for (size_t i = 0; program_.hasCosts && i < kCategories; ++i)
      isUsed[At(CostOf(static_cast<Allocation>(i)))] |= isUsed[At(TimeOf(static_cast<Allocation>(i)))];
    for (const EntityAttribute attribute :
         {EntityAttribute::Number, EntityAttribute::Type, EntityAttribute::Picture, EntityAttribute::CreateTime})
      isUsed[At(attribute)] = false;  // every entity has them
    for (size_t i = 0; i < kEntityAttributeCount; ++i)
      if (isUsed[i]) program_.builtIn[i] = program_.columns++;
    if (program_.hasCosts) program_.processCosts = AddColumns(2);
    program_.firstUserColumn = program_.columns;
    program_.userColumns = static_cast<std::uint32_t>(Count(Thing::Attribute));
    program_.columns += program_.userColumns;
    program_.pictures = static_cast<std::uint32_t>(Count(Thing::Picture));
  }
  void FindCosts(int module, std::array<bool, kEntityAttributeCount>& isUsed) {
    constexpr Field kResourceCosts[] = {kResourceBusyCost, kResourceIdleCost, kResourcePerUse};
    if (IsKind(Module(module), "Resource"))
      for (const Field field : kResourceCosts) program_.hasCosts |= Fields(module)[field].number != 0;
    if (!IsKind(Module(module), "Entity")) return;
    program_.hasCosts |= Fields(module)[kEntityHoldingCost].number != 0;
    for (size_t i = 0; i < kCategories; ++i) {
      if (Fields(module)[kInitialCosts[i]].number == 0) continue;
      program_.hasCosts = true;
      isUsed[At(CostOf(static_cast<Allocation>(i)))] = true;
    }
  }
  std::uint32_t AddColumns(std::uint32_t count) {
    program_.columns += count;
    return program_.columns - count;
  }

  // --- Things

  void AddVariables() {
    for (size_t i = 0; i < Count(Thing::Variable); ++i) {
      const Named& named = NameAt(Thing::Variable, i);
      const VariableSize size = model_.names.SizeOf(static_cast<int>(i));
      VariableTable variable;
      variable.name = named.name;
      variable.first = static_cast<std::uint32_t>(program_.initialValues.size());
      variable.rows = static_cast<std::uint32_t>(size.rows);
      variable.columns = static_cast<std::uint32_t>(size.columns);
      const size_t cells = size_t{std::max(variable.rows, 1u)} * std::max(variable.columns, 1u);
      AddInitialValues(named.module, cells);
      const bool isReported = named.module >= 0 && IsReported(named.module, kVariableReport) && variable.rows == 0;
      if (isReported) {
        variable.level = Level();
        reported_.variables.push_back(static_cast<std::uint32_t>(i));
      }
      program_.variables.push_back(std::move(variable));
    }
    targets_.variableJ = static_cast<std::uint32_t>(program_.variables.size());
    program_.variables.push_back({"J", static_cast<std::uint32_t>(program_.initialValues.size()), 0, 0, kNone});
    program_.initialValues.push_back(0);
  }
  // One value is that of all elements; missing ones are 0.
  void AddInitialValues(int module, size_t cells) {
    const int given = module < 0 ? 0 : Fields(module).rows();
    for (size_t cell = 0; cell < cells; ++cell) {
      const int row = given == 1 ? 0 : static_cast<int>(std::min<size_t>(cell, size_t{1} << 30));
      program_.initialValues.push_back(row < given ? Fields(module)(kVariableInitialValue, row).number : 0);
    }
  }

  static constexpr Field kInitialCosts[] = {kEntityValueAdded, kEntityNonValueAdded, kEntityTransfer, kEntityWaiting,
                                            kEntityOther};

  void AddTypes() {
    for (size_t i = 0; i < Count(Thing::EntityType); ++i) {
      const Named& named = NameAt(Thing::EntityType, i);
      EntityTypeTable type;
      type.name = named.name;
      if (named.module >= 0) {
        const ModuleFields& fields = Fields(named.module);
        type.holdCostRate = fields[kEntityHoldingCost].number;
        for (size_t category = 0; category < kCategories; ++category)
          type.initialCosts[category] = fields[kInitialCosts[category]].number;
        type.picture = static_cast<std::uint32_t>(std::max(fields[kEntityPicture].reference.index, 0));
        type.isReported = IsReported(named.module, kEntityReport);
      }
      type.in = Counter();
      type.out = Counter();
      type.inSystem = Level();
      type.times = Tallies(kCategories);
      Tally(true);
      if (program_.hasCosts) {
        type.costs = Tallies(kCategories);
        Tally(true);
      }
      if (type.isReported) reported_.types.push_back(static_cast<std::uint32_t>(i));
      program_.types.push_back(std::move(type));
    }
  }

  void AddQueues() {
    for (size_t i = 0; i < Count(Thing::Queue); ++i) {
      QueueTable queue;
      queue.name = NameAt(Thing::Queue, i).name;
      queue.wait = Tally(true);
      queue.length = Level();
      queue.waited = Counter();
      program_.queues.push_back(std::move(queue));
    }
    std::vector<bool> isReported(program_.queues.size(), true);
    for (int i = 0; i < Modules(); ++i) {
      if (!IsKind(Module(i), "Queue")) continue;
      const int number = model_.names.Find(Thing::Queue, Module(i).name);
      if (number < 0) continue;
      QueueTable& queue = program_.queues[static_cast<size_t>(number)];
      queue.ranking = ChoiceOf<QueueType>(i, kQueueType);
      queue.isPlain = queue.ranking == QueueType::FirstIn;
      if (queue.ranking == QueueType::LowestValue || queue.ranking == QueueType::HighestValue)
        queue.rank = AttributeCode(i, kQueueAttribute);
      isReported[static_cast<size_t>(number)] = IsReported(i, kQueueReport);
    }
    isQueueReported_ = isReported;
  }
  std::uint32_t QueueOf(int module) const {
    return static_cast<std::uint32_t>(model_.names.Find(Thing::Queue, Module(module).name + ".Queue"));
  }

  void AddResources() {
    for (size_t i = 0; i < Count(Thing::Resource); ++i) {
      const Named& named = NameAt(Thing::Resource, i);
      const int module = named.module;
      ResourceTable resource;
      resource.name = named.name;
      resource.busy = Level();
      resource.scheduled = Level();
      resource.utilisation = Level();
      resource.available = Level();
      resource.seized = Counter();
      resource.place = PlaceOf(module >= 0 ? module : named.mentionedBy);
      if (module >= 0) {
        const ModuleFields& fields = Fields(module);
        resource.busyCostRate = fields[kResourceBusyCost].number;
        resource.idleCostRate = fields[kResourceIdleCost].number;
        resource.perUse = fields[kResourcePerUse].number;
        if (resource.idleCostRate != 0) resource.idle = Level();
        if (resource.perUse != 0) resource.useCost = Counter();
        if (fields[kResourceType].Is(ResourceType::Schedule)) resource.rule = ChoiceOf<ScheduleRule>(module, kResourceRule);
      }
      if (IsReported(module, kResourceReport)) reported_.resources.push_back(static_cast<std::uint32_t>(i));
      program_.resources.push_back(std::move(resource));
    }
  }
  void AddCapacities() {
    for (size_t i = 0; i < program_.resources.size(); ++i) {
      const int module = NameAt(Thing::Resource, i).module;
      ResourceTable& resource = program_.resources[i];
      const bool onSchedule = module >= 0 && Fields(module)[kResourceType].Is(ResourceType::Schedule);
      if (onSchedule)
        resource.course = CourseOf(static_cast<int>(Referred(module, kResourceSchedule)), CourseUser::Resource,
                                   static_cast<std::uint32_t>(i), module);
      else
        resource.capacity = module < 0 ? maker_.Constant(1, resource.place)
                                       : Constant(Fields(module)[kResourceCapacity].number, module, kResourceCapacity);
      resource.seizes.first = static_cast<std::uint32_t>(program_.resourceSeizes.size());
      for (std::uint32_t seize = 0; seize < program_.seizes.size(); ++seize)
        if (MayWant(program_.seizes[seize], static_cast<std::uint32_t>(i))) program_.resourceSeizes.push_back(seize);
      resource.seizes.count = static_cast<std::uint32_t>(program_.resourceSeizes.size()) - resource.seizes.first;
    }
  }
  bool MayWant(const SeizeTable& seize, std::uint32_t resource) const {
    for (std::uint32_t i = seize.rows.first; i < seize.rows.first + seize.rows.count; ++i) {
      const SeizeRow& row = program_.seizeRows[i];
      if (row.resource == resource) return true;
      if (row.set == kNone) continue;
      const Rows members = program_.sets[row.set].members;
      const auto first = program_.setMembers.begin() + members.first;
      if (std::find(first, first + members.count, resource) != first + members.count) return true;
    }
    return false;
  }

  void AddSets() {
    for (size_t i = 0; i < Count(Thing::Set); ++i) {
      const int module = NameAt(Thing::Set, i).module;
      SetTable set;
      set.name = NameAt(Thing::Set, i).name;
      set.members.first = static_cast<std::uint32_t>(program_.setMembers.size());
      if (module >= 0) {
        const Field members = kSetMembers[static_cast<size_t>(ChoiceOf<SetType>(module, kSetType))];
        for (int row = 0; row < Fields(module).rows(); ++row) program_.setMembers.push_back(Referred(module, members, row));
      }
      set.members.count = static_cast<std::uint32_t>(program_.setMembers.size()) - set.members.first;
      program_.sets.push_back(std::move(set));
    }
  }

  // --- Submodels and Processes

  // The submodels around a page, the outermost first.
  std::vector<int> SubmodelsAround(int page) const {
    std::vector<int> around;
    for (int at = page; around.size() <= model_.graph.submodels.size();) {
      const int submodel = model_.graph.submodelOfPage[static_cast<size_t>(at)];
      if (submodel < 0) break;
      around.push_back(submodel);
      at = Module(model_.graph.submodels[static_cast<size_t>(submodel)].process).page;
    }
    std::reverse(around.begin(), around.end());
    return around;
  }
  Rows InsideOfPage(int page) {
    const std::vector<int> around = SubmodelsAround(page);
    const auto first = static_cast<std::uint32_t>(program_.insideOf.size());
    for (const int submodel : around) program_.insideOf.push_back(static_cast<std::uint32_t>(submodel));
    return {first, static_cast<std::uint32_t>(around.size())};
  }

  // Every Process that is reached, and every submodel, has statistics.
  void AddProcessTables() {
    for (int i = 0; i < Modules(); ++i) {
      if (!IsKind(Module(i), "Process") || !IsReachable(i)) continue;
      const bool isSubmodel = Node(i).submodel >= 0;
      ProcessTable process;
      process.name = Module(i).name;
      process.in = Counter();
      process.out = Counter();
      process.inside = Level();
      if (!isSubmodel) {
        process.wait = Tally();
        process.delay = Tally();
      }
      process.total = Tally(true);
      if (!isSubmodel && program_.hasCosts) {
        process.waitCost = Tally();
        process.delayCost = Tally();
        process.totalCost = Tally();
      }
      program_.processes.push_back(std::move(process));
      processOf_[static_cast<size_t>(i)] = Last(program_.processes);
      if (IsReported(i, kProcessReport)) reported_.processes.push_back(Last(program_.processes));
    }
    for (const Submodel& submodel : model_.graph.submodels) {
      SubmodelTable table;
      table.process = processOf_[static_cast<size_t>(submodel.process)];
      const size_t depth = SubmodelsAround(Module(submodel.process).page).size();
      while (enteredColumns_.size() <= depth) enteredColumns_.push_back(AddColumns(1));
      table.enteredColumn = enteredColumns_[depth];
      program_.submodels.push_back(table);
    }
  }

  // --- Steps

  std::uint32_t AddStep(Op op, std::uint32_t table, int module, Counters counters = {0, 0}) {
    Step step{op, table, kNone, kNone, counters.entered, counters.left};
    step.next = static_cast<std::uint32_t>(program_.steps.size()) + 1;
    program_.steps.push_back(step);
    program_.placeOfStep.push_back(PlaceOf(module));
    return Last(program_.steps);
  }
  void LeadOn(int node) { roads_.push_back({Last(program_.steps), Node(node).next[0], Node(node).next[1]}); }

  void AddNodes() {
    for (int i = 0; i < static_cast<int>(model_.graph.nodes.size()); ++i) {
      const FlowNode& node = Node(i);
      if (!node.isReachable) continue;
      firstStep_[static_cast<size_t>(i)] = static_cast<std::uint32_t>(program_.steps.size());
      if (node.kind == FlowNode::Kind::Module)
        AddModule(node.module);
      else
        AddStep(node.kind == FlowNode::Kind::EnterSubmodel ? Op::EnterSubmodel : Op::LeaveSubmodel,
                static_cast<std::uint32_t>(node.submodel), node.module);
      LeadOn(i);
    }
  }
  void AddModule(int module) {
    constexpr struct {
      std::string_view kind;
      void (Compiler::*add)(int);
    } kKinds[] = {
        {"Create", &Compiler::AddCreate}, {"Process", &Compiler::AddProcess}, {"Decide", &Compiler::AddDecide},
        {"Assign", &Compiler::AddAssign}, {"Batch", &Compiler::AddBatch},     {"Separate", &Compiler::AddSeparate},
        {"Record", &Compiler::AddRecord}, {"Dispose", &Compiler::AddDispose},
    };
    for (const auto& [kind, add] : kKinds)
      if (IsKind(Module(module), kind)) (this->*add)(module);
  }

  void AddCreate(int module) {
    const ModuleFields& fields = Fields(module);
    CreateTable create;
    create.type = Referred(module, kCreateEntityType);
    create.entities = Code(module, kCreateBatchSize);
    if (fields[kCreateMaxBatches].expression >= 0) create.maxArrivals = Code(module, kCreateMaxBatches);
    create.submodels = InsideOfPage(Module(module).page);
    const auto number = static_cast<std::uint32_t>(program_.creates.size());
    const CreateType type = ChoiceOf<CreateType>(module, kCreateType);
    if (type == CreateType::Schedule) {
      create.course = CourseOf(static_cast<int>(Referred(module, kCreateScheduleName)), CourseUser::Create, number, module);
      create.workSource = maker_.Source(SiteOf(module, kCreateScheduleName), 0);
    } else {
      create.unit = SecondsOf(ChoiceOf<TimeUnit>(module, kCreateUnits));
      create.firstCreation = Code(module, kCreateFirstCreation);
      if (type == CreateType::Random)
        create.interval = maker_.OfDraw(Distribution::Expo, {&ExpressionOf(module, kCreateValue)}, SiteOf(module, kCreateValue));
      else
        create.interval = Code(module, type == CreateType::Constant ? kCreateValue : kCreateExpression);
    }
    program_.creates.push_back(create);
    creates_.push_back(AddStep(Op::Create, number, module, {0, CountersOf(module).left}));
  }

  void AddProcess(int module) {
    const std::uint32_t process = processOf_[static_cast<size_t>(module)];
    const ProcessAction action = ChoiceOf<ProcessAction>(module, kProcessAction);
    const bool hasRows = Fields(module).rows() > 0;
    const bool seizes = hasRows && (action == ProcessAction::SeizeDelay || action == ProcessAction::SeizeDelayRelease);
    const bool releases = hasRows && (action == ProcessAction::DelayRelease || action == ProcessAction::SeizeDelayRelease);
    AddStep(Op::Enter, process, module);
    const Rows rows = seizes || releases ? AddSeizeRows(module) : Rows{};
    if (seizes) AddSeize(module, rows);
    AddDelay(module, process);
    if (releases) {
      program_.releases.push_back({seizes ? Last(program_.seizes) : kNone, rows});
      AddStep(Op::Release, Last(program_.releases), module);
    }
    AddStep(Op::Leave, process, module);
  }
  Rows AddSeizeRows(int module) {
    const Rows rows{static_cast<std::uint32_t>(program_.seizeRows.size()), static_cast<std::uint32_t>(Fields(module).rows())};
    for (int i = 0; i < Fields(module).rows(); ++i) {
      SeizeRow row;
      row.quantity = Code(module, kProcessRowQuantity, i);
      row.place = PlaceOf(module, kProcessRowQuantity);
      if (ChoiceOf<ResourceRowType>(module, kProcessRowType, i) == ResourceRowType::Resource) {
        row.resource = Referred(module, kProcessRowResource, i);
      } else {
        row.set = Referred(module, kProcessRowSet, i);
        row.rule = ChoiceOf<SelectionRule>(module, kProcessRowRule, i);
        row.place = PlaceOf(module, kProcessRowSet);
        if (row.rule == SelectionRule::SpecificMember) row.index = Code(module, kProcessRowIndex, i);
        if (row.rule == SelectionRule::Random) row.source = maker_.Source(SiteOf(module, kProcessRowRule, i), 0);
        if (const Reference& save = Fields(module)(kProcessRowSaveAttribute, i).reference) row.save = ColumnOf(save);
      }
      program_.seizeRows.push_back(row);
    }
    return rows;
  }
  std::uint32_t ColumnOf(const Reference& attribute) const {
    return attribute.thing == Thing::Attribute ? program_.firstUserColumn + static_cast<std::uint32_t>(attribute.index)
                                               : program_.builtIn[static_cast<size_t>(attribute.index)];
  }
  bool IsConstant(std::uint32_t value) const { return program_.values[value].kind == ValueKind::Constant; }

  void AddSeize(int module, const Rows& rows) {
    SeizeTable seize;
    seize.rows = rows;
    seize.queue = QueueOf(module);
    seize.priority = Code(module, kProcessPriority);
    seize.category = ChoiceOf<Allocation>(module, kProcessAllocation);
    bool isSame = true;
    for (std::uint32_t i = rows.first; i < rows.first + rows.count; ++i)
      isSame = isSame && IsConstant(program_.seizeRows[i].quantity) && program_.seizeRows[i].index == kNone;
    if (!isSame) {
      // All Processes share the columns: an entity waits in one of them at a time.
      while (wantColumns_.size() < size_t{2} * rows.count) wantColumns_.push_back(kNone);
      program_.seizes.push_back(seize);
      wanting_.push_back(Last(program_.seizes));
    } else {
      program_.seizes.push_back(seize);
    }
    QueueTable& queue = program_.queues[seize.queue];
    queue.isPlain = queue.isPlain && IsConstant(seize.priority);
    if (isQueueReported_[seize.queue]) reported_.queues.push_back(seize.queue);
    AddStep(Op::Seize, Last(program_.seizes), module);
  }

  void AddDelay(int module, std::uint32_t process) {
    DelayTable delay;
    delay.unit = SecondsOf(ChoiceOf<TimeUnit>(module, kProcessUnits));
    delay.category = ChoiceOf<Allocation>(module, kProcessAllocation);
    delay.process = process;
    const auto draw = [&](Distribution distribution, std::initializer_list<Field> fields) {
      std::vector<const Expression*> parameters;
      for (const Field field : fields) parameters.push_back(&ExpressionOf(module, field));
      return maker_.OfDraw(distribution, parameters, SiteOf(module, kProcessDelayType));
    };
    switch (ChoiceOf<DelayType>(module, kProcessDelayType)) {
      case DelayType::Constant:
        delay.duration = Code(module, kProcessValue);
        break;
      case DelayType::Normal:
        delay.duration = draw(Distribution::Norm, {kProcessValue, kProcessStdDev});
        break;
      case DelayType::Triangular:
        delay.duration = draw(Distribution::Tria, {kProcessMin, kProcessValue, kProcessMax});
        break;
      case DelayType::Uniform:
        delay.duration = draw(Distribution::Unif, {kProcessMin, kProcessMax});
        break;
      case DelayType::Expression:
        delay.duration = Code(module, kProcessExpression);
        break;
    }
    program_.delays.push_back(delay);
    AddStep(Op::Delay, Last(program_.delays), module);
    AddStep(Op::DelayEnd, Last(program_.delays), module);
  }

  void AddDecide(int module) {
    DecideTable decide;
    if (ChoiceOf<DecideType>(module, kDecideType) == DecideType::Chance) {
      decide.percent = Code(module, kDecidePercentTrue);
      decide.source = maker_.Source(SiteOf(module, kDecideType), 0);
    } else {
      decide.condition = ConditionOf(module);
    }
    program_.decides.push_back(decide);
    AddStep(Op::Decide, Last(program_.decides), module, CountersOf(module));
  }
  std::uint32_t ConditionOf(int module) {
    const CodeSite site = SiteOf(module, kDecideValue);
    ExpressionNode node;
    switch (ChoiceOf<DecideIf>(module, kDecideIf)) {
      case DecideIf::Expression:
        return Code(module, kDecideValue);
      case DecideIf::Variable:
        node.kind = NodeKind::Variable;
        node.index = static_cast<std::int32_t>(Referred(module, kDecideVariable));
        return maker_.OfComparison(OneNode(node), ChoiceOf<Comparison>(module, kDecideIs), ExpressionOf(module, kDecideValue),
                                   site);
      case DecideIf::Attribute:
        return maker_.OfComparison(ExpressionOfAttribute(module, kDecideAttribute), ChoiceOf<Comparison>(module, kDecideIs),
                                   ExpressionOf(module, kDecideValue), site);
      case DecideIf::EntityType:
        break;
    }
    node.kind = NodeKind::EntityAttribute;
    node.index = static_cast<std::int32_t>(EntityAttribute::Type);
    ExpressionNode type;
    type.kind = NodeKind::EntityType;
    type.index = static_cast<std::int32_t>(Referred(module, kDecideEntityType));
    return maker_.OfComparison(OneNode(node), Comparison::Equal, OneNode(type), site);
  }

  void AddAssign(int module) {
    const auto first = static_cast<std::uint32_t>(program_.assignRows.size());
    for (int row = 0; row < Fields(module).rows(); ++row) {
      program_.assignRows.push_back(AssignRowOf(module, row));
      program_.assigned.emplace_back(TextOfTarget(module, row));
    }
    program_.assigns.push_back({{first, static_cast<std::uint32_t>(Fields(module).rows())}});
    AddStep(Op::Assign, Last(program_.assigns), module, CountersOf(module));
  }
  std::string_view TextOfTarget(int module, int row) {
    switch (ChoiceOf<AssignType>(module, kAssignRowType, row)) {
      case AssignType::Variable:
        return Fields(module)(kAssignVariable, row).text;
      case AssignType::Attribute:
        return Fields(module)(kAssignAttribute, row).text;
      case AssignType::Other:
        return Fields(module)(kAssignOther, row).text;
      case AssignType::EntityType:
        return "Entity.Type";
      case AssignType::EntityPicture:
        break;
    }
    return "Entity.Picture";
  }
  AssignRow AssignRowOf(int module, int row) {
    const AssignType type = ChoiceOf<AssignType>(module, kAssignRowType, row);
    AssignRow assign;
    const auto numbered = [&](AssignTarget target, Field field) {
      assign.target = target;
      assign.value = Constant(Referred(module, field, row) + 1, module, field);
      return assign;
    };
    switch (type) {
      case AssignType::EntityType:
        return numbered(AssignTarget::Type, kAssignEntityType);
      case AssignType::EntityPicture:
        return numbered(AssignTarget::Picture, kAssignPicture);
      case AssignType::Variable:
        assign.target = AssignTarget::Variable;
        assign.index = Referred(module, kAssignVariable, row);
        break;
      case AssignType::Attribute:
        Referred(module, kAssignAttribute, row);
        SetTarget(assign, Fields(module)(kAssignAttribute, row).reference);
        break;
      case AssignType::Other:
        SetTarget(assign, module, row);
        break;
    }
    assign.value = Code(module, kAssignNewValue, row);
    return assign;
  }
  void SetTarget(AssignRow& assign, const Reference& attribute) {
    const bool isBuiltIn = attribute.thing == Thing::EntityAttribute;
    if (isBuiltIn && attribute.index == static_cast<int>(EntityAttribute::Type))
      assign.target = AssignTarget::Type;
    else if (isBuiltIn && attribute.index == static_cast<int>(EntityAttribute::Picture))
      assign.target = AssignTarget::Picture;
    else
      assign.index = ColumnOf(attribute);
  }
  void SetTarget(AssignRow& assign, int module, int row) {
    const Expression& target = ExpressionOf(module, kAssignOther, row);
    const ExpressionNode& root = target.Root();
    const CodeSite site = SiteOf(module, kAssignOther, row);
    assign.place = site.place;
    switch (root.kind) {
      case NodeKind::J:
        assign.target = AssignTarget::Variable;
        assign.index = targets_.variableJ;
        break;
      case NodeKind::Attribute:
        SetTarget(assign, Reference{Thing::Attribute, root.index});
        break;
      case NodeKind::EntityAttribute:
        SetTarget(assign, Reference{Thing::EntityAttribute, root.index});
        break;
      case NodeKind::Function:
        assign.target = AssignTarget::Capacity;
        assign.index = static_cast<std::uint32_t>(target.FirstChild(root)->index);
        break;
      default:
        assign.target = root.firstChild == kNoNode ? AssignTarget::Variable : AssignTarget::Element;
        assign.index = static_cast<std::uint32_t>(root.index);
        AddIndexes(assign, target, root, site);
    }
  }
  void AddIndexes(AssignRow& assign, const Expression& target, const ExpressionNode& root, const CodeSite& site) {
    size_t i = 0;
    for (const ExpressionNode* index = target.FirstChild(root); index != nullptr && i < 2;
         index = target.NextSibling(*index), ++i) {
      Expression alone = target;
      alone.root = static_cast<std::uint32_t>(index - target.nodes.data());
      CodeSite at = site;
      at.field += 500000 * (i + 1);
      assign.indexes[i] = maker_.Of(alone, at);
    }
  }

  void AddBatch(int module) {
    BatchTable batch;
    batch.queue = QueueOf(module);
    batch.size = Code(module, kBatchSize);
    if (ChoiceOf<BatchRule>(module, kBatchRule) == BatchRule::ByAttribute) batch.groupBy = AttributeCode(module, kBatchAttribute);
    batch.isTemporary = ChoiceOf<BatchType>(module, kBatchType) == BatchType::Temporary;
    batch.criterion = ChoiceOf<SaveCriterion>(module, kBatchSaveCriterion);
    batch.groups = Counter();
    batch.members = Counter();
    batch.submodels = InsideOfPage(Module(module).page);
    if (isQueueReported_[batch.queue]) reported_.queues.push_back(batch.queue);
    program_.batches.push_back(batch);
    reported_.batches.push_back(Last(program_.batches));
    reported_.batchNames.push_back(Module(module).name);
    AddStep(Op::Batch, Last(program_.batches), module, CountersOf(module));
  }

  void AddSeparate(int module) {
    if (ChoiceOf<SeparateType>(module, kSeparateType) == SeparateType::Duplicate) {
      program_.duplicates.push_back(
          {Code(module, kSeparateDuplicates), Code(module, kSeparatePercentCost), Counter(), InsideOfPage(Module(module).page)});
      reported_.duplicates.push_back(Last(program_.duplicates));
      reported_.duplicateNames.push_back(Module(module).name);
      AddStep(Op::Duplicate, Last(program_.duplicates), module, CountersOf(module));
      return;
    }
    SplitTable split;
    split.attributes = ChoiceOf<MemberAttributes>(module, kSeparateMembers);
    split.specific.first = static_cast<std::uint32_t>(program_.splitAttributes.size());
    split.splits = Counter();
    split.place = PlaceOf(module);
    if (split.attributes == MemberAttributes::Specific)
      for (int row = 0; row < Fields(module).rows(); ++row) {
        Referred(module, kSeparateAttribute, row);
        Reference attribute = Fields(module)(kSeparateAttribute, row).reference;
        if (attribute.thing == Thing::Attribute) attribute.index = static_cast<int>(ColumnOf(attribute));
        program_.splitAttributes.push_back(attribute);
      }
    split.specific.count = static_cast<std::uint32_t>(program_.splitAttributes.size()) - split.specific.first;
    program_.splits.push_back(split);
    reported_.splits.push_back(Last(program_.splits));
    reported_.splitNames.push_back(Module(module).name);
    AddStep(Op::Split, Last(program_.splits), module, CountersOf(module));
  }

  void AddRecord(int module) {
    RecordTable record;
    record.type = ChoiceOf<RecordType>(module, kRecordType);
    if (record.type == RecordType::Count || record.type == RecordType::Expression) record.value = Code(module, kRecordValue);
    if (record.type == RecordType::TimeInterval) SetInterval(record, module);
    if (record.type != RecordType::EntityStatistics) SetRecordTarget(record, module);
    program_.records.push_back(record);
    AddStep(Op::Record, Last(program_.records), module, CountersOf(module));
  }
  void SetInterval(RecordTable& record, int module) {
    Referred(module, kRecordAttribute);
    const Reference& from = Fields(module)[kRecordAttribute].reference;
    const bool isBuiltIn = from.thing == Thing::EntityAttribute;
    const auto attribute = static_cast<EntityAttribute>(from.index);
    record.fromCreation = isBuiltIn && attribute == EntityAttribute::CreateTime;
    if (record.fromCreation) return;
    record.column = ColumnOf(from);
    record.columnUnit = isBuiltIn && IsTime(attribute) ? 1 : program_.unit;
  }
  void SetRecordTarget(RecordTable& record, int module) {
    const bool isCount = record.type == RecordType::Count;
    const auto targetOf = [&](int i) { return isCount ? CounterOf(i) : TallyOf(i); };
    if (!Fields(module)[kRecordInSet].Is(YesNo::Yes)) {
      record.target = targetOf(static_cast<int>(Referred(module, isCount ? kRecordCounter : kRecordTally)));
      return;
    }
    record.set = Referred(module, isCount ? kRecordCounterSet : kRecordTallySet);
    record.index = Code(module, kRecordSetIndex);
    record.targets.first = static_cast<std::uint32_t>(program_.recordTargets.size());
    const Rows members = program_.sets[record.set].members;
    for (std::uint32_t i = 0; i < members.count; ++i)
      program_.recordTargets.push_back(targetOf(static_cast<int>(program_.setMembers[members.first + i])));
    record.targets.count = members.count;
  }

  void AddDispose(int module) {
    program_.disposes.push_back(
        {Fields(module)[kDisposeStatistics].Is(YesNo::Yes), InsideOfPage(Module(module).page), PlaceOf(module)});
    AddStep(Op::Dispose, Last(program_.disposes), module, {CountersOf(module).entered, 0});
  }

  // --- Schedules

  std::uint32_t CourseOf(int schedule, CourseUser user, std::uint32_t target, int module) {
    for (size_t i = 0; i < courses_.size(); ++i)
      if (courses_[i].schedule == schedule && courses_[i].user == user && courses_[i].target == target)
        return static_cast<std::uint32_t>(i);
    courses_.push_back({schedule, user, target, module});
    return Last(courses_);
  }
  // Durations and values may ask for the value of further schedules.
  void AddCourses() {
    for (size_t i = 0; i < courses_.size(); ++i) {
      const Course course = courses_[i];
      const int module = NameAt(Thing::Schedule, static_cast<size_t>(course.schedule)).module;
      CourseTable table;
      table.user = course.user;
      table.target = course.target;
      table.unit = SecondsOf(ChoiceOf<TimeUnit>(module, kScheduleUnits));
      const ScheduleType type = ChoiceOf<ScheduleType>(module, kScheduleType);
      table.scale = type == ScheduleType::Capacity ? 1 : Fields(module)[kScheduleScale].number;
      table.mayBeNegative = course.user == CourseUser::Clock;
      table.place = PlaceOf(module);
      std::vector<CourseRow> rows;
      for (int row = 0; row < Fields(module).rows(); ++row) {
        const std::uint64_t user = UserOf(course);
        CourseRow at{Code(module, kScheduleValue, row, user), kNone};
        if (Fields(module)(kScheduleDuration, row).expression >= 0) at.duration = Code(module, kScheduleDuration, row, user);
        rows.push_back(at);
      }
      if (rows.empty()) Refuse(module, kScheduleValue, Fields(module)[kScheduleType], "the schedule has no durations");
      table.rows = {static_cast<std::uint32_t>(program_.courseRows.size()), static_cast<std::uint32_t>(rows.size())};
      program_.courseRows.insert(program_.courseRows.end(), rows.begin(), rows.end());
      program_.courses.push_back(table);
    }
  }
  // Each who follows a schedule has draws of his own.
  std::uint64_t UserOf(const Course& course) const {
    if (course.module < 0) return 0;
    const SourceModule& user = Module(course.module);
    return SourceOf(static_cast<std::uint64_t>(model_.source.pages[static_cast<size_t>(user.page)].id),
                    static_cast<std::uint64_t>(user.shape), 0, 0);
  }

  // First the schedules in drawing order, and of one schedule its followers as they stand in the drawing.
  void AddActors() {
    std::vector<std::uint32_t> order(courses_.size());
    for (std::uint32_t i = 0; i < order.size(); ++i) order[i] = i;
    std::stable_sort(order.begin(), order.end(), [&](std::uint32_t a, std::uint32_t b) {
      const auto keyOf = [&](std::uint32_t i) {
        const int schedule = NameAt(Thing::Schedule, static_cast<size_t>(courses_[i].schedule)).module;
        return std::pair(schedule, courses_[i].module);
      };
      return keyOf(a) < keyOf(b);
    });
    for (const std::uint32_t course : order) {
      const int module = NameAt(Thing::Schedule, static_cast<size_t>(courses_[course].schedule)).module;
      program_.actors.push_back(AddStep(Op::CourseStep, course, module));
    }
    program_.actors.insert(program_.actors.end(), creates_.begin(), creates_.end());
  }

  // --- The end

  void LinkSteps() {
    const auto stepOf = [&](int node) { return node < 0 ? kNone : firstStep_[static_cast<size_t>(node)]; };
    for (const Road& road : roads_) {
      program_.steps[road.step].next = stepOf(road.next);
      program_.steps[road.step].otherExit = stepOf(road.other);
    }
    for (const std::uint32_t seize : wanting_) {
      if (wantColumns_.front() == kNone) wantColumns_.front() = AddColumns(static_cast<std::uint32_t>(wantColumns_.size()));
      program_.seizes[seize].wants = wantColumns_.front();
    }
    for (const Road& road : roads_) {
      const Step& step = program_.steps[road.step];
      const bool isOpen = (step.op != Op::Dispose && step.next == kNone) ||
                          ((step.op == Op::Decide || step.op == Op::Duplicate) && step.otherExit == kNone);
      if (!isOpen) continue;
      const SourcePlace& place = program_.places[program_.placeOfStep[road.step]];
      Finding finding{.severity = Severity::Error, .rule = "structure/dead-end"};
      finding.page = place.page;
      finding.kind = place.kind;
      finding.module = place.module;
      finding.shape = place.shape;
      finding.message = place.kind + " \"" + InWords(place.module) + "\" leads nowhere.";
      findings_.push_back(std::move(finding));
    }
    if (creates_.empty())
      findings_.push_back({.severity = Severity::Error,
                           .rule = "structure/no-create",
                           .message = "Nothing ever arrives: the drawing has no Create module that leads anywhere."});
  }

  void AddUntil() {
    if (setup_.until.empty()) return;
    const Expression expression = ParseExpression(setup_.until, model_.names, false);
    if (!expression.IsGood()) {
      findings_.push_back({.severity = Severity::Error,
                           .rule = "run/setup",
                           .text = setup_.until,
                           .message = "The condition that ends a replication: " + expression.error->sentence + "."});
      return;
    }
    program_.places.push_back({"", "", "", -1, "the condition that ends a replication", ""});
    const size_t courses = courses_.size();
    program_.until = maker_.Of(expression, {Last(program_.places), 0, 0, 1, 0});
    if (courses_.size() != courses)
      findings_.push_back({.severity = Severity::Error,
                           .rule = "run/setup",
                           .text = setup_.until,
                           .message = "The condition that ends a replication asks for a schedule that nothing follows."});
  }

  void AddReported() {
    const auto add = [&](Thing thing, const std::vector<std::uint32_t>& numbers,
                         std::vector<ReportedThings::Recorded>& recorded) {
      for (size_t i = 0; i < numbers.size(); ++i)
        if (numbers[i] != kNone) recorded.push_back({std::string(NameAt(thing, i).name), numbers[i]});
    };
    add(Thing::Counter, counters_, reported_.counters);
    add(Thing::Tally, tallies_, reported_.tallies);
    std::sort(reported_.queues.begin(), reported_.queues.end());
    AddOutputs(reported_, program_);
  }

  const Model& model_;
  const RunSetup& setup_;
  std::vector<Finding>& findings_;
  Program program_;
  NameTargets targets_;
  CodeMaker maker_;
  ReportedThings reported_;
  std::vector<Course> courses_;
  std::vector<std::uint32_t> counters_, tallies_;  // by their names' places
  std::vector<Counters> moduleCounters_;           // by module
  std::vector<std::uint32_t> processOf_, placeOf_;
  std::vector<std::uint32_t> firstStep_;  // by node
  std::vector<Road> roads_;
  std::vector<std::uint32_t> creates_;  // steps
  std::vector<bool> isQueueReported_;
  std::vector<std::uint32_t> enteredColumns_;  // by depth of a submodel
  std::vector<std::uint32_t> wantColumns_;     // how many there are; the first says which they are
  std::vector<std::uint32_t> wanting_;         // seizes
  std::uint32_t nobodysLevel_ = kNone;
};

class Hash {
 public:
  void Add(std::string_view text) {
    for (const char c : text) Byte(static_cast<unsigned char>(c));
    Byte(0xff);
  }
  void Add(int number) { Add(std::to_string(number)); }
  std::uint64_t value() const { return value_; }

 private:
  void Byte(unsigned char byte) { value_ = (value_ ^ byte) * 0x100000001b3u; }
  std::uint64_t value_ = 0xcbf29ce484222325u;
};

}  // namespace

std::shared_ptr<const Program> Compile(const Model& model, const RunSetup& setup, const std::string& file,
                                       std::vector<Finding>& findings) {
  return Compiler(model, setup, file, findings).Compile();
}

std::uint64_t HashOf(const Model& model) {
  std::vector<int> order(model.source.modules.size());
  for (size_t i = 0; i < order.size(); ++i) order[i] = static_cast<int>(i);
  const auto keyOf = [&](int i) {
    const SourceModule& module = model.source.modules[static_cast<size_t>(i)];
    return std::pair(model.source.pages[static_cast<size_t>(module.page)].id, module.shape);
  };
  std::sort(order.begin(), order.end(), [&](int a, int b) { return keyOf(a) < keyOf(b); });
  Hash hash;
  for (const int i : order) {
    const SourceModule& module = model.source.modules[static_cast<size_t>(i)];
    hash.Add(keyOf(i).first);
    hash.Add(module.shape);
    hash.Add(module.schema->kind);
    hash.Add(module.name);
    model.fields[static_cast<size_t>(i)].ForEach([&](const FieldValue& value, size_t place, int row) {
      if (!value.counts) return;
      hash.Add(static_cast<int>(place));
      hash.Add(row);
      hash.Add(value.text);
    });
    // Where its exits lead; behind the modules come the nodes that leave submodels.
    for (const int next : model.graph.nodes[static_cast<size_t>(i)].next) {
      if (next < 0) {
        hash.Add(next);
        continue;
      }
      const FlowNode& node = model.graph.nodes[static_cast<size_t>(next)];
      hash.Add(static_cast<int>(node.kind));
      hash.Add(keyOf(node.module).first);
      hash.Add(keyOf(node.module).second);
    }
  }
  return hash.value();
}

}  // namespace vardo
