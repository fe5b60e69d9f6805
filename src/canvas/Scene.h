// A page as the window has it before it: its picture, and where what is. Keeps up with the drawing.
#pragma once

#include "canvas/Boxes.h"
#include "canvas/PageIndex.h"
#include "picture/LivePicture.h"

#include <functional>
#include <optional>
#include <span>
#include <unordered_map>
#include <vector>

namespace vardo {

class Scene {
 public:
  // The page must be there, and outlive this with its drawing.
  Scene(Drawing& drawing, int pageId);

  const picture::PagePicture& picture() const { return live_.picture(); }
  const picture::Slice& slice(size_t number) const { return picture().slices[number]; }
  const PageIndex& index() const { return index_; }
  int pageId() const { return live_.pageId(); }
  Box Paper() const { return {0, 0, picture().width, picture().height}; }
  // Around the paper and all that is drawn, on it or beside.
  Box Everything() const;

  // Tells what is to be painted again.
  struct Dirty {
    bool wholly = false;
    std::vector<Box> boxes{};
  };
  Dirty Touch(std::span<const TouchedCell> touched);

  // The slices of a shape of the page and of those inside it; none when it has gone.
  std::vector<size_t> SlicesOf(int topLevelShape) const;
  // Around all that the shape shows; empty when it has gone or shows nothing.
  Box BoxOf(int topLevelShape) const;
  // The shape of the page that a slice belongs to; none for one of a page behind.
  std::optional<int> TopLevelOf(size_t slice) const;

 private:
  void Arrange();

  picture::LivePicture live_;
  PageIndex index_;
  Box drawn_;
  std::unordered_map<int, int> parents_;                   // of shapes inside others
  std::unordered_map<int, std::vector<size_t>> slicesOf_;  // by shape of the page
};

}  // namespace vardo
