// The drawing's memory of its edits, for undo and redo. A step is everything one command of the user did.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace vardo {

class Journal {
 public:
  using Action = std::function<void()>;

  // Scopes nest; the outermost names the step. A step without edits is not kept.
  void BeginStep(std::string_view label);
  void EndStep();

  // An edit that has just been made, and how to take it back and make it again. Outside any step it is a step of its own.
  void Record(Action undo, Action redo);

  bool CanUndo() const { return !done_.empty(); }
  bool CanRedo() const { return !undone_.empty(); }
  // Each returns the label of the step that it undid or redid; the caller has asked whether there is one.
  std::string Undo();
  std::string Redo();
  bool UndoingOrRedoing() const { return replaying_; }

  void Clear();

 private:
  struct Edit {
    Action undo, redo;
  };
  struct Step {
    std::string label;
    std::vector<Edit> edits;
  };

  std::vector<Step> done_, undone_;
  Step open_;
  int depth_ = 0;
  bool replaying_ = false;
};

// One command of the user: all edits while it lives are one step.
class UndoStep {
 public:
  UndoStep(Journal& journal, std::string_view label) : journal_(journal) { journal_.BeginStep(label); }
  ~UndoStep() { journal_.EndStep(); }
  UndoStep(const UndoStep&) = delete;
  UndoStep& operator=(const UndoStep&) = delete;

 private:
  Journal& journal_;
};

}  // namespace vardo
