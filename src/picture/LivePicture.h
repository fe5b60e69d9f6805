// A page's picture that keeps up with the drawing: after each step only what the step has touched is made anew.
#pragma once

#include "picture/PagePicture.h"

#include <memory>
#include <span>
#include <vector>

namespace vardo {
struct TouchedCell;
}

namespace vardo::picture {

class PageBuilder;

class LivePicture {
 public:
  // The page must be there; drawing and page outlive this.
  LivePicture(Drawing& drawing, int pageId);
  ~LivePicture();
  LivePicture(const LivePicture&) = delete;
  LivePicture& operator=(const LivePicture&) = delete;

  // Always equal to one made anew, once it has been told of each step.
  const PagePicture& picture() const { return picture_; }
  int pageId() const { return pageId_; }

  // A slice that is another one now, in its place among the slices; where it was seen before.
  struct Renewed {
    size_t slice;
    Box before;
  };
  struct Change {
    bool wholly = false;  // slices have come, gone or changed places: look at all of them again
    std::vector<Renewed> renewed{};
    bool Any() const { return wholly || !renewed.empty(); }
  };
  Change Touch(std::span<const TouchedCell> touched);

 private:
  // The slices of one shape of the page, with those inside it.
  struct Block {
    int shape = 0;
    size_t first = 0, count = 0;
  };

  DrawingPage& page() const;
  void BuildAll();
  void ForgetNotes(const Block& block);
  bool Renew(Block& block, Change& change);
  void BringInOrder(const std::vector<int>& touched);

  Drawing& drawing_;
  const int pageId_;
  std::unique_ptr<PageBuilder> builder_;
  unsigned structure_ = 0;
  PagePicture picture_;
  std::vector<Block> blocks_;
  size_t background_ = 0;  // slices of pages behind this one, which come first
};

}  // namespace vardo::picture
