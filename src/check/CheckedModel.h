// What the rules look at: the model, and what several of them want to know of it, found once.
#pragma once

#include "check/Paths.h"
#include "check/Uses.h"
#include "model/Model.h"
#include "model/RunSetup.h"

#include <memory>

namespace vardo {

class CheckedModel {
 public:
  CheckedModel(const Model& ofModel, const RunSetup& ofSetup, bool isToBeRun)
      : model(ofModel), setup(ofSetup), toBeRun(isToBeRun), uses(ofModel), paths(ofModel) {}

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
    ForEach([&](int i) {
      if (Is(i, kind)) visit(i);
    });
  }
  // Each field that counts of each module that takes part: the module, the value, its place, its row and its meaning.
  template <class Visit>
  void ForEachField(const Visit& visit) const {
    ForEach([&](int i) {
      Fields(i).ForEach([&](const FieldValue& value, size_t place, int row) {
        if (value.counts) visit(FieldPlace{i, place, row}, value, MeaningsOf(*Module(i).schema)[place]);
      });
    });
  }

  // The number that a field of a module always has; none when it depends on something.
  std::optional<double> Constant(const FieldValue& value) const {
    return value.expression < 0 ? std::nullopt : ConstantOf(model.ExpressionOf(value));
  }
  std::optional<double> Mean(const FieldValue& value) const {
    return value.expression < 0 ? std::nullopt : MeanOf(model.ExpressionOf(value));
  }
};

}  // namespace vardo
