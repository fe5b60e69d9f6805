// The names of a model, and what each of them stands for.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace vardo {

enum class Thing : std::uint8_t {
  Variable,
  Attribute,        // of the model's own
  EntityAttribute,  // one that every entity has
  EntityType,
  Picture,
  Queue,
  Resource,
  Module,  // of the flow
  Counter,
  Tally,
  Set,
  Schedule,
  J,
};
inline constexpr size_t kThingCount = static_cast<size_t>(Thing::J) + 1;
// "variable", "entity type".
std::string_view WordFor(Thing thing);

// The attributes that every entity has.
enum class EntityAttribute : std::uint8_t {
  Number,
  SerialNumber,
  Type,
  Picture,
  CreateTime,
  StartTime,
  VATime,
  NVATime,
  TranTime,
  WaitTime,
  OtherTime,
  VACost,
  NVACost,
  TranCost,
  WaitCost,
  OtherCost,
  HoldCostRate,
  Sequence,
  JobStep,
  Station,
};
bool IsAssignable(EntityAttribute attribute);
bool IsTime(EntityAttribute attribute);
// "Entity.Number".
std::string_view NameOf(EntityAttribute attribute);

// One thing of the model, by its place among those of its kind; an entity attribute's is its number in the enumeration.
struct Reference {
  Thing thing = Thing::Variable;
  int index = -1;
  explicit operator bool() const { return index >= 0; }
  friend bool operator==(const Reference&, const Reference&) = default;
};

struct Named {
  std::string_view name;  // as it is first spelled; the source's
  int module = -1;  // the data module that defines it, or the Process or Batch whose queue it is; -1 when it is only mentioned
  int mentionedBy = -1;  // the first module that speaks of it; -1 for what is always there
};

struct VariableSize {
  int rows = 0, columns = 0;  // 0: not said; without rows a variable is one number
  bool IsArray() const { return rows > 0; }
};

class Names {
 public:
  Names();

  // Keeps a name for a thing and gives its place, the same for the same name. The text must outlive this.
  int Add(Thing thing, std::string_view name, int mentionedBy, int module = -1);
  // A name that stands nowhere as it is.
  int AddMade(Thing thing, std::string name, int mentionedBy, int module);
  void SetSize(int variable, VariableSize size);

  // All of a kind, in the order of their numbers. Entity types and pictures are numbered in expressions from 1.
  const std::vector<Named>& Of(Thing thing) const { return named_[static_cast<size_t>(thing)]; }
  VariableSize SizeOf(int variable) const;
  // The place of that thing; -1 when there is none of the name.
  int Find(Thing thing, std::string_view name) const;

  // All things of one name.
  struct Entry {
    std::array<int, kThingCount> index;
    bool Is(Thing thing) const { return index[static_cast<size_t>(thing)] >= 0; }
    Reference As(Thing thing) const { return {thing, index[static_cast<size_t>(thing)]}; }
  };
  const Entry* Find(std::string_view name) const;
  // The longest name that a text begins with, where neither a letter, digit nor any of "@_%?#." follows; its length in bytes, 0
  // when there is none. A name that reads as a number or as one of the words AND, OR, NOT is none.
  struct Prefix {
    const Entry* entry = nullptr;
    size_t length = 0;
  };
  Prefix LongestPrefix(std::string_view text) const;
  // The known name that is nearest to a misspelt one; empty when none is near.
  std::string_view Nearest(std::string_view name) const;

 private:
  struct Spelling {
    std::string key;
    std::uint64_t letters;  // which of them it has
    std::string_view text;
  };
  Entry& EntryOf(std::string_view name);

  std::array<std::vector<Named>, kThingCount> named_;
  std::vector<VariableSize> sizes_;
  std::unordered_map<std::string, Entry> entries_;  // by NameKey
  std::vector<Spelling> spellings_;
  std::deque<std::string> made_;
};

// Equal for names that are equal: letter case and the number of blanks between words do not count.
std::string NameKey(std::string_view name);
// A character that names are made of, the blank included; every one beyond ASCII is.
bool IsNameCharacter(char c);

}  // namespace vardo
