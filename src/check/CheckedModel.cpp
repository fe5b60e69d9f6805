#include "check/CheckedModel.h"

#include "check/Holding.h"

namespace vardo {

CheckedModel::CheckedModel(const Model& ofModel, const RunSetup& ofSetup, bool isToBeRun)
    : model(ofModel), setup(ofSetup), toBeRun(isToBeRun), uses(ofModel), paths(ofModel) {
  ForEach([&](int i) {
    ofKind_[static_cast<size_t>(Module(i).schema - kModules)].push_back(i);
    const std::span<const FieldMeaning> meanings = MeaningsOf(*Module(i).schema);
    Fields(i).ForEach([&](const FieldValue& value, size_t place, int row) {
      if (value.counts) fields_.push_back({{i, place, row}, &value, &meanings[place]});
    });
  });
  for (const CountingField& field : fields_)
    if (field.value->expression >= 0 && model.ExpressionOf(*field.value).error) wrongExpressions_.push_back(&field);
}

CheckedModel::~CheckedModel() = default;

const Holding& CheckedModel::holding() const {
  if (!holding_) holding_ = std::make_unique<Holding>(*this);
  return *holding_;
}

}  // namespace vardo
