// A drawing as a model: everything read, named and connected, before anything is judged or compiled.
#pragma once

#include "model/Expression.h"
#include "model/FlowGraph.h"
#include "model/ModelFields.h"
#include "model/ModelSource.h"
#include "model/Names.h"

#include <vector>

namespace vardo {

// Its parts refer to the texts of its source. It can be moved, not copied.
struct Model {
  Model() = default;
  Model(Model&&) = default;
  Model& operator=(Model&&) = default;

  ModelSource source;
  std::vector<ModuleFields> fields;  // one of each module
  Names names;
  std::vector<Expression> expressions;  // those of fields that count
  FlowGraph graph;

  // The expression of a field that counts; one with an error when the text is none.
  const Expression& ExpressionOf(const FieldValue& value) const { return expressions[static_cast<size_t>(value.expression)]; }
};

Model MakeModel(ModelSource source);

}  // namespace vardo
