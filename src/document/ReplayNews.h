// What listeners are told of an undo or a redo: the same as when a person had done it, found in the records of the step.
#pragma once

#include "document/Drawing.h"

#include <map>
#include <set>
#include <utility>
#include <vector>

namespace vardo {

enum class ReplayDirection { Undo, Redo };

// Pages by their IDs, shapes by page and ID. What comes or goes with its page is not told of by itself.
struct ReplayNews {
  std::set<int> pagesGoing, pagesComing, pagesChanged;
  std::map<int, std::vector<int>> shapesGoing;  // by page
  std::set<std::pair<int, int>> shapesComing, texts;
};

// To be asked before the step is undone or redone: nothing has come or gone yet.
ReplayNews NewsOfReplay(Drawing& drawing, const std::vector<Edit>& edits, ReplayDirection direction);

}  // namespace vardo
