// The names of a page's shapes. A file need not say them: the first instance of a master, by number, has the master's name,
// further ones that name, "." and their number; a shape without master is "Sheet." and its number. A name that two shapes claim
// is the first one's, and no two shapes have one name: what is made from a number has it once more where that is taken.
#pragma once

#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace vardo {

class DrawingShape;

class ShapeNames {
 public:
  // What the file says of a shape, and what its master is called; empty for none.
  struct Claim {
    int id;
    std::string stored, master;
  };

  bool known() const { return known_; }
  void Forget();
  // Of all shapes of the page.
  void Learn(std::vector<Claim> claims);
  // Of one that has come or is going. May forget all, where other names hang on it.
  void Add(const Claim& claim);
  void Remove(const Claim& claim);

  const std::string& NameOf(int id) const { return names_.at(id); }
  // -1 when there is none.
  int IdOf(std::string_view name) const;
  // For a new shape.
  std::string FreeName(std::string_view wanted, int id) const;
  // Whether names of other shapes change when that one comes or goes.
  bool OthersHangOn(const Claim& claim) const;
  // The shapes that the file does not name, with the names they have.
  std::vector<std::pair<int, std::string>> DerivedNames() const;

 private:
  void GiveName(int id, std::string name);

  bool known_ = false;
  std::unordered_map<int, std::string> names_;
  std::unordered_map<std::string, int> ids_;
  // Of the shapes without a name of their own, unless it is made from their number alone: what theirs is made from.
  std::unordered_map<int, std::string> derived_;
  std::unordered_map<std::string, int> wanted_;  // how many of those would have that name
};

}  // namespace vardo
