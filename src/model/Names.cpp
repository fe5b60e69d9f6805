#include "model/Names.h"

#include "base/Characters.h"
#include "base/Numbers.h"
#include "base/Text.h"
#include "modules/Pictures.h"
#include "platform/Platform.h"

#include <algorithm>
#include <bit>
#include <iterator>
#include <numeric>

namespace vardo {
namespace {

constexpr std::string_view kWords[] = {"variable", "attribute", "attribute", "entity type", "picture",  "queue",   "resource",
                                       "module",   "counter",   "tally",     "set",         "schedule", "variable"};
static_assert(std::size(kWords) == kThingCount);

struct EntityAttributeInfo {
  std::string_view name;
  bool isAssignable, isTime;
};
// In the order of the enumeration.
constexpr EntityAttributeInfo kEntityAttributes[] = {
    {"Entity.Number", false, false},    {"Entity.SerialNumber", false, false}, {"Entity.Type", true, false},
    {"Entity.Picture", true, false},    {"Entity.CreateTime", false, true},    {"Entity.StartTime", false, true},
    {"Entity.VATime", false, true},     {"Entity.NVATime", false, true},       {"Entity.TranTime", false, true},
    {"Entity.WaitTime", false, true},   {"Entity.OtherTime", false, true},     {"Entity.VACost", false, false},
    {"Entity.NVACost", false, false},   {"Entity.TranCost", false, false},     {"Entity.WaitCost", false, false},
    {"Entity.OtherCost", false, false}, {"Entity.HoldCostRate", true, false},  {"Entity.Sequence", true, false},
    {"Entity.JobStep", true, false},    {"Entity.Station", true, false},
};
static_assert(std::size(kEntityAttributes) == static_cast<size_t>(EntityAttribute::Station) + 1);

constexpr struct {
  std::string_view name;
  EntityAttribute attribute;
} kOtherNames[] = {
    {"Picture", EntityAttribute::Picture},
    {"Entity.TransferTime", EntityAttribute::TranTime},
    {"Entity.TransferCost", EntityAttribute::TranCost},
};

const EntityAttributeInfo& InfoOf(EntityAttribute attribute) { return kEntityAttributes[static_cast<size_t>(attribute)]; }

constexpr std::string_view kNameSigns = "@_%?#.";

// How many characters have to be put in, left out or changed to make one of the other; more than the limit as limit + 1.
size_t Distance(std::string_view a, std::string_view b, size_t limit) {
  if (std::max(a.size(), b.size()) - std::min(a.size(), b.size()) > limit) return limit + 1;
  std::vector<size_t> row(b.size() + 1);
  std::iota(row.begin(), row.end(), size_t{0});
  for (size_t i = 0; i < a.size(); ++i) {
    size_t diagonal = row[0]++;
    for (size_t j = 0; j < b.size(); ++j) {
      const size_t changed = diagonal + (a[i] != b[j]);
      diagonal = row[j + 1];
      row[j + 1] = std::min({changed, diagonal + 1, row[j] + 1});
    }
  }
  return std::min(row.back(), limit + 1);
}

constexpr size_t kLettersToOneMistake = 3;

std::uint64_t LettersOf(std::string_view key) {
  std::uint64_t letters = 0;
  for (const char c : key) letters |= std::uint64_t{1} << (static_cast<unsigned char>(c) % 64);
  return letters;
}

// What an expression takes for something else wherever it stands.
bool IsNoName(std::string_view text) {
  if (IsAsciiDigit(text.front()) || text.front() == '.') return ParseNumber(text).has_value();
  return text.size() <= 3 &&
         (EqualAsciiIgnoringCase(text, "AND") || EqualAsciiIgnoringCase(text, "OR") || EqualAsciiIgnoringCase(text, "NOT"));
}

}  // namespace

std::string_view WordFor(Thing thing) { return kWords[static_cast<size_t>(thing)]; }

bool IsAssignable(EntityAttribute attribute) { return InfoOf(attribute).isAssignable; }
bool IsTime(EntityAttribute attribute) { return InfoOf(attribute).isTime; }
std::string_view NameOf(EntityAttribute attribute) { return InfoOf(attribute).name; }

bool IsNameCharacter(char c) {
  return IsAsciiLetter(c) || IsAsciiDigit(c) || c == ' ' || static_cast<unsigned char>(c) >= 0x80 ||
         kNameSigns.find(c) != std::string_view::npos;
}

std::string NameKey(std::string_view name) {
  std::string key;
  key.reserve(name.size());
  for (const char c : name)
    if (c != ' ' || (!key.empty() && key.back() != ' ')) key += LowerAscii(c);
  if (key.ends_with(' ')) key.pop_back();
  return IsPrintableAscii(key) ? key : ThePlatform().CaseFoldKey(key);
}

Names::Names() {
  constexpr int kAlways = -1;
  for (const EntityAttributeInfo& attribute : kEntityAttributes) Add(Thing::EntityAttribute, attribute.name, kAlways);
  for (const auto& [name, attribute] : kOtherNames) {
    EntryOf(name).index[static_cast<size_t>(Thing::EntityAttribute)] = static_cast<int>(attribute);
  }
  for (const std::string_view picture : kPictures) Add(Thing::Picture, picture, kAlways);
  Add(Thing::J, "J", kAlways);
}

int Names::Add(Thing thing, std::string_view name, int mentionedBy, int module) {
  int& index = EntryOf(name).index[static_cast<size_t>(thing)];
  std::vector<Named>& all = named_[static_cast<size_t>(thing)];
  if (index < 0) {
    index = static_cast<int>(all.size());
    all.push_back({name, module, mentionedBy});
  } else if (all[static_cast<size_t>(index)].module < 0) {
    all[static_cast<size_t>(index)].module = module;
  }
  return index;
}

int Names::AddMade(Thing thing, std::string name, int mentionedBy, int module) {
  return Add(thing, made_.emplace_back(std::move(name)), mentionedBy, module);
}

void Names::SetSize(int variable, VariableSize size) {
  if (sizes_.size() <= static_cast<size_t>(variable)) sizes_.resize(static_cast<size_t>(variable) + 1);
  sizes_[static_cast<size_t>(variable)] = size;
}

VariableSize Names::SizeOf(int variable) const {
  return static_cast<size_t>(variable) < sizes_.size() ? sizes_[static_cast<size_t>(variable)] : VariableSize{};
}

Names::Entry& Names::EntryOf(std::string_view name) {
  std::string key = NameKey(name);
  const auto [found, isNew] = entries_.try_emplace(key);
  if (isNew) {
    found->second.index.fill(-1);
    const std::uint64_t letters = LettersOf(key);
    spellings_.push_back({std::move(key), letters, name});
  }
  return found->second;
}

const Names::Entry* Names::Find(std::string_view name) const {
  const auto found = entries_.find(NameKey(name));
  return found == entries_.end() ? nullptr : &found->second;
}

int Names::Find(Thing thing, std::string_view name) const {
  const Entry* entry = Find(name);
  return entry ? entry->As(thing).index : -1;
}

Names::Prefix Names::LongestPrefix(std::string_view text) const {
  size_t end = 0;
  while (end < text.size() && IsNameCharacter(text[end])) ++end;
  while (end > 0) {
    while (end > 0 && text[end - 1] == ' ') --end;
    if (end == 0) break;
    const std::string_view name = text.substr(0, end);
    if (const Entry* entry = IsNoName(name) ? nullptr : Find(name)) return {entry, end};
    while (end > 0 && text[end - 1] != ' ') --end;
  }
  return {};
}

std::string_view Names::Nearest(std::string_view name) const {
  const std::string key = NameKey(name);
  const std::uint64_t letters = LettersOf(key);
  size_t limit = key.size() / kLettersToOneMistake;
  std::string_view nearest;
  for (const Spelling& spelling : spellings_) {
    // Each mistake takes one letter away or brings one in, or both.
    if (static_cast<size_t>(std::popcount(letters ^ spelling.letters)) > 2 * limit) continue;
    const size_t distance = Distance(key, spelling.key, limit);
    if (distance > limit || (distance == limit && !nearest.empty())) continue;
    nearest = spelling.text;
    limit = distance;
  }
  return nearest;
}

}  // namespace vardo
