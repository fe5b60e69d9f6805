#include "document/ListedTally.h"

#include "base/Numbers.h"
#include "document/DrawingPage.h"
#include "platform/Platform.h"

namespace vardo {
namespace {

// Without the quotes around it.
std::string_view TextOf(std::string_view formula) {
  return formula.size() < 2 ? std::string_view() : formula.substr(1, formula.size() - 2);
}

template <class Visit>
bool ForEachItem(std::string_view text, const Visit& visit) {
  for (;;) {
    const size_t end = text.find(';');
    if (!visit(text.substr(0, end))) return false;
    if (end == std::string_view::npos) return true;
    text.remove_prefix(end + 1);
  }
}

}  // namespace

void ListedTally::ValueChanged(const DrawingShape& shape) {
  if (known_ && places_.contains(&shape)) changed_.push_back(&shape);
}

std::optional<ListedTally::Count> ListedTally::CountOf(DrawingPage& page, const std::string& key) {
  if (!Update(page)) {
    Clear();
    return std::nullopt;
  }
  if (formulas_ > 0) return std::nullopt;
  Count count;
  if (const auto found = times_.find(key); found != times_.end()) count.times = found->second;
  if (lacking_ > 0)
    for (const Member& member : members_)
      if (member.lacks) count.lacking.push_back(page.IndexOf(*member.shape));
  return count;
}

void ListedTally::Clear() {
  known_ = listKnown_ = false;
  listText_.clear();
  members_.clear();
  places_.clear();
  times_.clear();
  changed_.clear();
  lacking_ = formulas_ = 0;
}

bool ListedTally::Update(DrawingPage& page) {
  if (!known_) Clear();
  known_ = true;
  for (const DrawingShape* shape : changed_)
    for (const size_t place : places_.at(shape)) Read(page, members_[place]);
  changed_.clear();
  if (listKnown_) return true;
  listKnown_ = true;
  std::string text(TextOf(page.ListOfPositions(list_)));
  if (text == listText_) return true;
  // As a rule the list has grown at its end.
  const bool hasGrown = text.starts_with(listText_) && (listText_.empty() || text[listText_.size()] == ';');
  if (!hasGrown) {
    Clear();
    known_ = listKnown_ = true;
  }
  const std::string_view added = std::string_view(text).substr(listText_.empty() ? 0 : listText_.size() + 1);
  if (!Append(page, added)) return false;
  listText_ = std::move(text);
  return true;
}

bool ListedTally::Append(DrawingPage& page, std::string_view positions) {
  const std::vector<DrawingShape*>& shapes = page.TopLevel();
  return ForEachItem(positions, [&](std::string_view item) {
    const auto position = ParseInteger(item);
    if (!position || *position < 1 || static_cast<size_t>(*position) > shapes.size()) return false;
    DrawingShape* const shape = shapes[static_cast<size_t>(*position) - 1];
    places_[shape].push_back(members_.size());
    Read(page, members_.emplace_back(Member{shape, {}}));
    return true;
  });
}

// Takes what the member counted for back, and counts it anew.
void ListedTally::Read(DrawingPage& page, Member& member) {
  for (const std::string& key : member.keys)
    if (const auto counted = times_.find(key); --counted->second == 0) times_.erase(counted);
  lacking_ -= member.lacks;
  formulas_ -= member.isFormula;
  member.keys.clear();
  const auto formula = page.PropertyColumn(field_).FormulaOf(*member.shape, member.shape->slot());
  member.lacks = !formula;
  member.isFormula = formula && NamesSheet(*formula) && !formula->starts_with('"');
  lacking_ += member.lacks;
  formulas_ += member.isFormula;
  if (!formula) return;
  ForEachItem(TextOf(*formula), [&](std::string_view item) {
    ++times_[member.keys.emplace_back(ThePlatform().CaseFoldKey(item))];
    return true;
  });
}

}  // namespace vardo
