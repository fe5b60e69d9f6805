// The log of a drawing's edits. A step is everything one command of the user did; it is undone and redone whole, and taken back
// whole when the command fails. The log also tells which parts differ from the file: each edit gives its part a new state, and
// undoing gives the old one back.
//   Without memory a step is not undone or redone: std::bad_alloc is thrown, and all is as it was.
#pragma once

#include "document/Edit.h"

#include <cstdint>
#include <list>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace vardo {

class EditObserver;
class Package;

class EditLog {
 public:
  // How much is kept: beyond either, the oldest steps are dropped, and what they alone could bring back is freed.
  struct Limit {
    size_t steps = 1000;
    size_t bytes = size_t{256} << 20;
  };
  EditLog(Package& package, EditObserver& observer) : package_(package), observer_(observer) {}

  // Scopes nest; the outermost names the step. A step without edits is not kept.
  void BeginStep(std::string_view label);
  void EndStep();
  // Takes back all that the open step has done so far. The step goes on, empty.
  void RollBack();
  bool InStep() const { return depth_ > 0; }
  bool IsOutermost() const { return depth_ == 1; }
  // What the window showed before the open step, for its owner; kept with the step.
  void SetShownBefore(int shown) { open_.back().shownBefore = shown; }

  bool CanUndo() const { return !done_.empty(); }
  bool CanRedo() const { return !undone_.empty(); }
  // What that would take back or do again, in the order of doing.
  const std::vector<Edit>& EditsToUndo() const { return done_.back().edits; }
  const std::vector<Edit>& EditsToRedo() const { return undone_.back().edits; }
  struct Replayed {
    std::string label;
    int shownBefore;
  };
  // The caller has asked whether there is one.
  Replayed Undo();
  Replayed Redo();
  // Oldest first.
  std::vector<std::string> UndoLabels() const;
  std::vector<std::string> RedoLabels() const;

  void SetLimit(Limit limit);
  // Of the steps that are kept, texts and removed nodes included.
  size_t Bytes() const { return bytes_; }

  // --- For who makes the edits; a step is open.
  // Before an edit that is noted when it is done: there is room for its record then.
  void MakeRoom();
  void Add(Edit edit);
  void TouchPart(XmlPart& part);
  // Whether the node has come with this step, so that what happens to it needs no record of its own.
  bool IsFresh(pugi::xml_node node) const;
  // Whether the step has a record of the node's content already.
  bool HasContent(pugi::xml_node node) const;
  // It has one from now on.
  void NoteContent(pugi::xml_node node);

 private:
  struct PartState {
    XmlPart* part;
    std::uint64_t before, after;
  };
  struct Step {
    std::string label;
    std::vector<Edit> edits;
    std::vector<PartState> parts;
    int shownBefore = 0;
    size_t bytes = 0;
  };

  enum class Direction { Undo, Redo };
  void Replay(Step& step, Direction direction);
  static Direction Opposite(Direction direction) { return direction == Direction::Undo ? Direction::Redo : Direction::Undo; }
  void Apply(Edit& edit, Direction direction);
  void SetInPlace(XmlPart& part, XmlNode node, const NodePlace& place, bool inPlace);
  template <class Content>
  void Exchange(Content& content, const std::string& inForce, void (*put)(pugi::xml_node, const std::string&));
  void Seal(Step& step);
  void DropUndone();
  void DropOldest();
  void Free(Edit& edit, Direction lost);

  Package& package_;
  EditObserver& observer_;
  std::list<Step> done_, undone_;              // the latest done or undone is last
  std::list<Step> open_;                       // one at the most
  std::unordered_set<XmlNode> fresh_, noted_;  // of the open step
  int depth_ = 0;
  std::uint64_t lastState_ = 0;
  size_t bytes_ = 0;
  Limit limit_;
};

}  // namespace vardo
