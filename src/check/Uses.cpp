#include "check/Uses.h"

#include <algorithm>
#include <optional>

namespace vardo {
namespace {

// What a node of an expression stands for; none for plain numbers and operations.
std::optional<Reference> ReferenceOf(const ExpressionNode& node) {
  switch (node.kind) {
    case NodeKind::Variable:
      return Reference{Thing::Variable, node.index};
    case NodeKind::Attribute:
      return Reference{Thing::Attribute, node.index};
    case NodeKind::EntityAttribute:
      return Reference{Thing::EntityAttribute, node.index};
    case NodeKind::EntityType:
      return Reference{Thing::EntityType, node.index};
    case NodeKind::Picture:
      return Reference{Thing::Picture, node.index};
    case NodeKind::J:
      return Reference{Thing::J, 0};
    case NodeKind::Object:
      return Reference{node.thing, node.index};
    default:
      return std::nullopt;
  }
}

// The fields that make what they name: an entity of a type, a value of an attribute, a number of a counter.
bool Makes(const SourceModule& module, size_t place) {
  constexpr Field kMakers[] = {kCreateEntityType, kAssignVariable,          kAssignAttribute, kAssignEntityType,
                               kAssignPicture,    kProcessRowSaveAttribute, kRecordCounter,   kRecordTally};
  const auto kind = static_cast<std::uint8_t>(module.schema - kModules);
  return std::ranges::any_of(kMakers, [&](Field field) { return field.kind == kind && field.place == place; });
}

}  // namespace

Uses::Uses(const Model& model) {
  for (size_t thing = 0; thing < kThingCount; ++thing) uses_[thing].resize(model.names.Of(static_cast<Thing>(thing)).size());
  capacityAssigned_.resize(model.names.Of(Thing::Resource).size());
  for (size_t i = 0; i < model.fields.size(); ++i)
    if (model.graph.nodes[i].takesPart && !IsKind(model.source.modules[i], "Set")) NoteReferences(model, static_cast<int>(i));
  // Of a set that nobody uses the members are not used, either.
  for (const Named& set : model.names.Of(Thing::Set))
    if (Of(Thing::Set, model.names.Find(Thing::Set, set.name)).IsUsed()) NoteReferences(model, set.module);
}

void Uses::Note(const Reference& reference, const FieldPlace& at, bool isAssigned) {
  Use& use = uses_[static_cast<size_t>(reference.thing)][static_cast<size_t>(reference.index)];
  FieldPlace& first = isAssigned ? use.assigned : use.read;
  if (!first) first = at;
}

void Uses::NoteReferences(const Model& model, int module) {
  const auto i = static_cast<size_t>(module);
  model.fields[i].ForEach([&](const FieldValue& value, size_t place, int row) {
    const FieldPlace at{module, place, row};
    if (value.reference) Note(value.reference, at, Makes(model.source.modules[i], place));
    if (value.expression >= 0 && model.ExpressionOf(value).IsGood()) NoteExpression(model, at, model.ExpressionOf(value));
  });
}

void Uses::NoteExpression(const Model& model, const FieldPlace& at, const Expression& expression) {
  const SourceModule& module = model.source.modules[static_cast<size_t>(at.module)];
  const ExpressionNode& root = expression.Root();
  const bool isTarget = MeaningsOf(*module.schema)[at.place].meaning == Meaning::Target;
  for (const ExpressionNode& node : expression.nodes)
    if (const auto reference = ReferenceOf(node)) Note(*reference, at, isTarget && &node == &root);
  if (isTarget && root.kind == NodeKind::Function)
    capacityAssigned_[static_cast<size_t>(expression.FirstChild(root)->index)] = true;
}

std::vector<int> MembersOf(const Model& model, int setModule) {
  std::vector<int> members;
  const ModuleFields& fields = model.fields[static_cast<size_t>(setModule)];
  const FieldValue& type = fields[kSetType];
  if (type.choice < 0) return members;
  for (int row = 0; row < fields.rows(); ++row)
    if (const Reference member = fields(kSetMembers[type.choice], row).reference) members.push_back(member.index);
  return members;
}

std::vector<int> ResourcesOfRow(const Model& model, int process, int row) {
  const ModuleFields& fields = model.fields[static_cast<size_t>(process)];
  if (const Reference resource = fields(kProcessRowResource, row).reference) return {resource.index};
  const Reference set = fields(kProcessRowSet, row).reference;
  if (!set) return {};
  const int module = model.names.Of(Thing::Set)[static_cast<size_t>(set.index)].module;
  return model.fields[static_cast<size_t>(module)][kSetType].Is(SetType::Resource) ? MembersOf(model, module)
                                                                                   : std::vector<int>();
}

}  // namespace vardo
