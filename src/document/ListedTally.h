// How often each text occurs in a field of the shapes that a list on the page's sheet names by their positions: counted once, and
// kept up from then on.
//   Values and the list are strings whose items are joined by ";". Texts are compared as a user reads them, case aside.
#pragma once

#include "base/Symbol.h"

#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace vardo {

class DrawingPage;
class DrawingShape;

class ListedTally {
 public:
  ListedTally(Symbol list, Symbol field) : list_(list), field_(field) {}

  struct Count {
    int times = 0;
    std::vector<int> lacking;  // the positions of shapes in the list that have no such property
  };
  // None when the list is not made of positions that are there, or a value is no constant. key: of the text, as the platform
  // folds case.
  std::optional<Count> CountOf(DrawingPage& page, const std::string& key);

  // The list may have changed; the shape's value may have; shapes have moved to other positions.
  void ListChanged() { listKnown_ = false; }
  void ValueChanged(const DrawingShape& shape);
  void PositionsChanged() { known_ = false; }

 private:
  struct Member {
    DrawingShape* shape;
    std::vector<std::string> keys;
    bool lacks = false;
    bool isFormula = false;  // which says nothing of its text
  };
  bool Update(DrawingPage& page);
  bool Append(DrawingPage& page, std::string_view positions);
  void Read(DrawingPage& page, Member& member);
  void Clear();

  Symbol list_, field_;
  bool known_ = false, listKnown_ = false;
  std::string listText_;
  std::vector<Member> members_;  // in the list's order
  std::unordered_map<const DrawingShape*, std::vector<size_t>> places_;
  std::unordered_map<std::string, int> times_;
  std::vector<const DrawingShape*> changed_;
  int lacking_ = 0, formulas_ = 0;
};

}  // namespace vardo
