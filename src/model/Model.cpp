#include "model/Model.h"

#include "base/Text.h"

#include <utility>

namespace vardo {
namespace {

constexpr std::string_view kQueueSuffix = ".Queue", kInfinite = "Infinite";

class ModelMaker {
 public:
  explicit ModelMaker(ModelSource source) { model_.source = std::move(source); }

  Model Make() {
    model_.fields.reserve(model_.source.modules.size());
    for (const SourceModule& module : model_.source.modules) model_.fields.emplace_back(module);
    model_.graph = MakeFlowGraph(model_.source, model_.fields);
    for (size_t i = 0; i < model_.fields.size(); ++i) NameModule(static_cast<int>(i));
    for (size_t i = 0; i < model_.fields.size(); ++i)
      if (model_.graph.nodes[i].takesPart) NameWhatItMentions(static_cast<int>(i));
    for (size_t i = 0; i < model_.fields.size(); ++i)
      if (model_.graph.nodes[i].takesPart) Resolve(static_cast<int>(i));
    return std::move(model_);
  }

 private:
  const SourceModule& Module(int i) const { return model_.source.modules[static_cast<size_t>(i)]; }
  ModuleFields& Fields(int i) { return model_.fields[static_cast<size_t>(i)]; }

  // --- Names

  // Only modules define schedules and sets, and variables with rows; whatever else is defined has its number by where it is first
  // spoken of.
  void NameModule(int i) {
    const SourceModule& module = Module(i);
    if (module.name.empty()) return;
    if (IsFlowKind(*module.schema)) {
      model_.names.Add(Thing::Module, module.name, i, i);
      const bool waits =
          IsKind(module, "Batch") || (IsKind(module, "Process") && Fields(i)[kProcessType].Is(ProcessType::Standard));
      if (waits) model_.names.AddMade(Thing::Queue, module.name + std::string(kQueueSuffix), i, i);
    } else if (const auto thing = ThingDefinedBy(module)) {
      const int index = model_.names.Add(*thing, module.name, i, i);
      if (*thing == Thing::Variable) model_.names.SetSize(index, SizeOf(Fields(i)));
    }
  }
  static std::optional<Thing> ThingDefinedBy(const SourceModule& module) {
    constexpr struct {
      std::string_view kind;
      Thing thing;
    } kThings[] = {{"Entity", Thing::EntityType},
                   {"Resource", Thing::Resource},
                   {"Schedule", Thing::Schedule},
                   {"Set", Thing::Set},
                   {"Variable", Thing::Variable}};
    for (const auto& [kind, thing] : kThings)
      if (IsKind(module, kind)) return thing;
    return std::nullopt;
  }
  static VariableSize SizeOf(const ModuleFields& variable) {
    const auto whole = [&](Field field) {
      return std::max(0, static_cast<int>(std::min(variable[field].number + 0.5, kMostCells)));
    };
    VariableSize size{whole(kVariableRowCount), whole(kVariableColumnCount)};
    if (size.rows == 0) size.columns = 0;
    return size;
  }

  void NameWhatItMentions(int i) {
    Fields(i).ForEach([&](const FieldValue& value, size_t place, int) {
      const FieldMeaning& meaning = MeaningsOf(*Module(i).schema)[place];
      if (meaning.meaning == Meaning::Reference && value.counts && Defines(Module(i), meaning)) Mention(i, value, meaning.thing);
    });
  }
  // A Decide finds a variable, it does not make one.
  static bool Defines(const SourceModule& module, const FieldMeaning& meaning) {
    if (meaning.thing == Thing::Set || meaning.thing == Thing::Schedule) return false;
    return meaning.thing != Thing::Variable || !IsKind(module, "Decide");
  }
  void Mention(int i, const FieldValue& value, Thing thing) {
    const std::string_view name = NameIn(i, value, thing);
    if (name.empty()) return;
    if (thing == Thing::Attribute && model_.names.Find(Thing::EntityAttribute, name) >= 0) return;
    model_.names.Add(thing, name, i);
  }
  // A counter or tally without a name bears the module's.
  std::string_view NameIn(int i, const FieldValue& value, Thing thing) const {
    const bool isOwn = value.text.empty() && (thing == Thing::Counter || thing == Thing::Tally);
    return isOwn ? std::string_view(Module(i).name) : value.text;
  }

  // --- References and expressions

  void Resolve(int i) {
    Fields(i).ForEach([&](FieldValue& value, size_t place, int) {
      if (!value.counts) return;
      const FieldMeaning& meaning = MeaningsOf(*Module(i).schema)[place];
      switch (meaning.meaning) {
        case Meaning::Reference:
          value.reference = ReferenceIn(i, value, meaning.thing);
          break;
        case Meaning::Expression:
        case Meaning::Count:
        case Meaning::Percent:
          if (meaning.mayBeInfinite && EqualAsciiIgnoringCase(value.text, kInfinite)) break;
          if (meaning.mayBeEmpty && value.text.empty()) break;
          Keep(value, ParseExpression(value.text, model_.names, meaning.hasEntity));
          break;
        case Meaning::Target:
          Keep(value, ParseTarget(value.text, model_.names));
          break;
        default:
          break;
      }
    });
  }
  void Keep(FieldValue& value, Expression expression) {
    value.expression = static_cast<std::int32_t>(model_.expressions.size());
    model_.expressions.push_back(std::move(expression));
  }
  Reference ReferenceIn(int i, const FieldValue& value, Thing thing) const {
    const std::string_view name = NameIn(i, value, thing);
    const Names::Entry* entry = name.empty() ? nullptr : model_.names.Find(name);
    if (!entry) return {thing, -1};
    if (thing == Thing::Attribute && entry->Is(Thing::EntityAttribute)) return entry->As(Thing::EntityAttribute);
    return entry->As(thing);
  }

  static constexpr double kMostCells = 1e9;
  Model model_;
};

}  // namespace

Model MakeModel(ModelSource source) { return ModelMaker(std::move(source)).Make(); }

}  // namespace vardo
