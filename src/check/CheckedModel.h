// What the rules look at: the model, and what several of them want to know of it, found once.
#pragma once

#include "check/Paths.h"
#include "check/Uses.h"
#include "model/Model.h"
#include "model/RunSetup.h"

#include <array>
#include <memory>
#include <vector>

namespace vardo {

class Holding;

// A field that counts of a module that takes part.
struct CountingField {
  FieldPlace at;
  const FieldValue* value;
  const FieldMeaning* meaning;
};

class CheckedModel {
 public:
  CheckedModel(const Model& ofModel, const RunSetup& ofSetup, bool isToBeRun);
  ~CheckedModel();

  const Model& model;
  const RunSetup& setup;
  const bool toBeRun;
  const Uses uses;
  const Paths paths;

  int Count() const { return static_cast<int>(model.source.modules.size()); }
  const SourceModule& Module(int i) const { return model.source.modules[static_cast<size_t>(i)]; }
  const ModuleFields& Fields(int i) const { return model.fields[static_cast<size_t>(i)]; }
  const FlowNode& Node(int i) const { return model.graph.nodes[static_cast<size_t>(i)]; }
  const SourcePage& Page(int i) const { return model.source.pages[static_cast<size_t>(i)]; }
  bool Is(int i, std::string_view kind) const { return IsKind(Module(i), kind); }

  // Each module that takes part; of a kind, where one is given.
  template <class Visit>
  void ForEach(const Visit& visit) const {
    for (int i = 0; i < Count(); ++i)
      if (Node(i).takesPart) visit(i);
  }
  template <class Visit>
  void ForEach(std::string_view kind, const Visit& visit) const {
    for (const int i : ofKind_[static_cast<size_t>(FindModule(kind) - kModules)]) visit(i);
  }
  // visit(at, value, meaning)
  template <class Visit>
  void ForEachField(const Visit& visit) const {
    for (const CountingField& field : fields_) visit(field.at, *field.value, *field.meaning);
  }
  // visit(at, expression)
  template <class Visit>
  void ForEachExpression(const Visit& visit) const {
    for (const CountingField& field : fields_)
      if (field.value->expression >= 0) visit(field.at, model.ExpressionOf(*field.value));
  }
  // Those that are none.
  template <class Visit>
  void ForEachWrongExpression(const Visit& visit) const {
    for (const CountingField* field : wrongExpressions_) visit(field->at, model.ExpressionOf(*field->value));
  }

  // The number that a field of a module always has; none when it depends on something.
  std::optional<double> Constant(const FieldValue& value) const {
    return value.expression < 0 ? std::nullopt : ConstantOf(model.ExpressionOf(value));
  }
  std::optional<double> Mean(const FieldValue& value) const {
    return value.expression < 0 ? std::nullopt : MeanOf(model.ExpressionOf(value));
  }

  // Found when it is first asked for.
  const Holding& holding() const;

 private:
  std::array<std::vector<int>, std::size(kModules)> ofKind_;  // those that take part
  std::vector<CountingField> fields_;
  std::vector<const CountingField*> wrongExpressions_;
  mutable std::unique_ptr<Holding> holding_;
};

}  // namespace vardo
