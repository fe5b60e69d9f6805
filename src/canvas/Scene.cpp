#include "canvas/Scene.h"

#include "document/Drawing.h"

namespace vardo {

Scene::Scene(Drawing& drawing, int pageId) : live_(drawing, pageId) { Arrange(); }

void Scene::Arrange() {
  const auto& slices = picture().slices;
  index_.Build(slices.size(), [&](size_t i) { return slices[i].box; });
  parents_.clear();
  slicesOf_.clear();
  drawn_ = {};
  for (const picture::Slice& slice : slices) {
    drawn_.Add(slice.box);
    if (!slice.ofBackground && slice.parent != 0) parents_[slice.shape] = slice.parent;
  }
  for (size_t i = 0; i < slices.size(); ++i)
    if (const auto shape = TopLevelOf(i)) slicesOf_[*shape].push_back(i);
}

Box Scene::Everything() const {
  Box all = Paper();
  all.Add(drawn_);
  return all;
}

Scene::Dirty Scene::Touch(std::span<const TouchedCell> touched) {
  const picture::LivePicture::Change change = live_.Touch(touched);
  Dirty dirty{change.wholly};
  if (change.wholly) {
    Arrange();
    return dirty;
  }
  for (const auto& [number, before] : change.renewed) {
    const Box& now = slice(number).box;
    index_.Move(number, before, now);
    drawn_.Add(now);
    for (const Box& box : {before, now})
      if (!box.empty()) dirty.boxes.push_back(box);
  }
  return dirty;
}

std::vector<size_t> Scene::SlicesOf(int topLevelShape) const {
  const auto found = slicesOf_.find(topLevelShape);
  return found == slicesOf_.end() ? std::vector<size_t>() : found->second;
}

Box Scene::BoxOf(int topLevelShape) const {
  Box box;
  for (const size_t number : SlicesOf(topLevelShape)) box.Add(slice(number).box);
  return box;
}

std::optional<int> Scene::TopLevelOf(size_t number) const {
  const picture::Slice& of = slice(number);
  if (of.ofBackground) return std::nullopt;
  int shape = of.shape;
  for (auto parent = parents_.find(shape); parent != parents_.end(); parent = parents_.find(shape)) shape = parent->second;
  return shape;
}

}  // namespace vardo
