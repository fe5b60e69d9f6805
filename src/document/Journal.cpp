#include "document/Journal.h"

#include <utility>

namespace vardo {

void Journal::BeginStep(std::string_view label) {
  if (depth_++ == 0) open_.label = label;
}

void Journal::EndStep() {
  if (--depth_ > 0) return;
  if (!open_.edits.empty()) {
    done_.push_back(std::move(open_));
    undone_.clear();
  }
  open_ = {};
}

void Journal::Record(Action undo, Action redo) {
  if (replaying_) return;
  const UndoStep step(*this, "Edit");
  open_.edits.push_back({std::move(undo), std::move(redo)});
}

std::string Journal::Undo() {
  Step step = std::move(done_.back());
  done_.pop_back();
  replaying_ = true;
  for (auto edit = step.edits.rbegin(); edit != step.edits.rend(); ++edit) edit->undo();
  replaying_ = false;
  undone_.push_back(std::move(step));
  return undone_.back().label;
}

std::string Journal::Redo() {
  Step step = std::move(undone_.back());
  undone_.pop_back();
  replaying_ = true;
  for (const Edit& edit : step.edits) edit.redo();
  replaying_ = false;
  done_.push_back(std::move(step));
  return done_.back().label;
}

void Journal::Clear() {
  done_.clear();
  undone_.clear();
}

}  // namespace vardo
