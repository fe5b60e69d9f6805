#include "document/EditLog.h"

#include "document/EditObserver.h"
#include "package/Package.h"
#include "package/TreeMemory.h"

#include <algorithm>
#include <iterator>
#include <new>
#include <utility>

namespace vardo {
namespace {

template <class... Functions>
struct Overloaded : Functions... {
  using Functions::operator()...;
};

void Destroy(pugi::xml_node node) { node.parent().remove_child(node); }

}  // namespace

void EditLog::BeginStep(std::string_view label) {
  if (depth_ == 0) open_.emplace_back().label = label;
  ++depth_;
}

void EditLog::EndStep() {
  if (--depth_ > 0) return;
  fresh_.clear();
  noted_.clear();
  if (open_.back().edits.empty()) return open_.clear();
  DropUndone();
  Seal(open_.back());
  bytes_ += open_.back().bytes;
  done_.splice(done_.end(), open_);
  DropOldest();
}

void EditLog::RollBack() {
  Step& step = open_.back();
  Replay(step, Direction::Undo);
  for (auto edit = step.edits.rbegin(); edit != step.edits.rend(); ++edit) Free(*edit, Direction::Redo);
  step.edits.clear();
  step.parts.clear();
  fresh_.clear();
  noted_.clear();
}

void EditLog::MakeRoom() {
  std::vector<Edit>& edits = open_.back().edits;
  if (edits.size() == edits.capacity()) edits.reserve(2 * edits.size() + 4);
}

void EditLog::Add(Edit edit) {
  MakeRoom();
  if (const auto* inserted = std::get_if<NodeInserted>(&edit)) fresh_.insert(inserted->node);
  open_.back().edits.push_back(std::move(edit));
}

void EditLog::TouchPart(XmlPart& part) {
  std::vector<PartState>& parts = open_.back().parts;
  const auto known = std::find_if(parts.begin(), parts.end(), [&](const PartState& state) { return state.part == &part; });
  if (known != parts.end()) return;
  parts.push_back({&part, part.state(), ++lastState_});
  part.SetState(lastState_);
}

bool EditLog::IsFresh(pugi::xml_node node) const {
  if (fresh_.empty()) return false;
  for (; node; node = node.parent())
    if (fresh_.contains(node.internal_object())) return true;
  return false;
}

bool EditLog::HasContent(pugi::xml_node node) const { return noted_.contains(node.internal_object()); }
void EditLog::NoteContent(pugi::xml_node node) { noted_.insert(node.internal_object()); }

EditLog::Replayed EditLog::Undo() {
  Step& step = done_.back();
  Replayed undone{step.label, step.shownBefore};
  Replay(step, Direction::Undo);
  undone_.splice(undone_.end(), done_, std::prev(done_.end()));
  return undone;
}

EditLog::Replayed EditLog::Redo() {
  Step& step = undone_.back();
  Replayed redone{step.label, step.shownBefore};
  Replay(step, Direction::Redo);
  done_.splice(done_.end(), undone_, std::prev(undone_.end()));
  return redone;
}

// What has been replayed when one edit cannot be is taken back.
void EditLog::Replay(Step& step, Direction direction) {
  TreesRanOut();  // what has been refused before is another matter
  const size_t count = step.edits.size();
  const auto edit = [&](size_t turn) -> Edit& { return step.edits[direction == Direction::Undo ? count - 1 - turn : turn]; };
  size_t turn = 0;
  try {
    for (; turn < count; ++turn) Apply(edit(turn), direction);
  } catch (...) {
    while (turn > 0) Apply(edit(--turn), Opposite(direction));
    throw;
  }
  for (const PartState& state : step.parts) state.part->SetState(direction == Direction::Undo ? state.before : state.after);
}

void EditLog::Apply(Edit& edit, Direction direction) {
  const bool forward = direction == Direction::Redo;
  std::visit(
      Overloaded{[&](NodeInserted& e) { SetInPlace(*e.part, e.node, e.place, forward); },
                 [&](NodeRemoved& e) { SetInPlace(*e.part, e.node, e.place, !forward); },
                 [&](AttributesChanged& e) { Exchange(e, AttributesInOneText(pugi::xml_node(e.node)), SetAttributesFromText); },
                 [&](TextChanged& e) {
                   Exchange(e, pugi::xml_node(e.node).value(),
                            [](pugi::xml_node node, const std::string& text) { node.set_value(text.c_str()); });
                 },
                 [&](PartPresence& e) { package_.SetPresent(*e.part, e.present == forward); },
                 [&](RowsShifted& e) {
                   observer_.Shifted({e.page, e.shape, e.kind, e.section, e.position, forward ? e.by : -e.by}, true);
                 }},
      edit);
}

void EditLog::SetInPlace(XmlPart& part, XmlNode at, const NodePlace& place, bool inPlace) {
  const pugi::xml_node node(at);
  MakeRoomAside(node);
  if (!inPlace) {
    observer_.Removing(part, node);
    return PutAside(node);
  }
  PutAt(node, place);
  try {
    observer_.Inserted(part, node);
  } catch (...) {
    PutAside(node);
    throw;
  }
}

template <class Content>
void EditLog::Exchange(Content& content, const std::string& inForce, void (*put)(pugi::xml_node, const std::string&)) {
  const pugi::xml_node node(content.node);
  const std::string whole = content.other.Whole(inForce);
  OtherText other(inForce, whole);
  observer_.Changing(*content.part, node);
  try {
    put(node, whole);
    if (TreesRanOut()) throw std::bad_alloc();
    observer_.Changed(*content.part, node);
  } catch (...) {
    put(node, inForce);
    throw;
  }
  content.other = std::move(other);
}

// The records of a step that has ended hold no more than what differs; without memory for that they stay as they are.
void EditLog::Seal(Step& step) {
  step.edits.shrink_to_fit();
  step.bytes = sizeof(Step) + step.label.size() + step.edits.size() * sizeof(Edit);
  const auto shorten = [&](OtherText& other, const auto& inForce) {
    try {
      const std::string now = inForce();
      other = OtherText(other.Whole({}), now);
    } catch (const std::bad_alloc&) {
    }
    step.bytes += other.size();
  };
  for (Edit& edit : step.edits) {
    std::visit(
        Overloaded{[&](AttributesChanged& e) { shorten(e.other, [&] { return AttributesInOneText(pugi::xml_node(e.node)); }); },
                   [&](TextChanged& e) { shorten(e.other, [&] { return std::string(pugi::xml_node(e.node).value()); }); },
                   [&](NodeRemoved& e) { step.bytes += e.size; }, [](auto&) {}},
        edit);
  }
}

// From the last one made: a part goes after all that was put into it.
void EditLog::DropUndone() {
  for (Step& step : undone_) {
    for (auto edit = step.edits.rbegin(); edit != step.edits.rend(); ++edit) Free(*edit, Direction::Redo);
    bytes_ -= step.bytes;
  }
  undone_.clear();
}

void EditLog::DropOldest() {
  while (done_.size() > 1 && (done_.size() > limit_.steps || bytes_ > limit_.bytes)) {
    for (Edit& edit : done_.front().edits) Free(edit, Direction::Undo);
    bytes_ -= done_.front().bytes;
    done_.pop_front();
  }
}

// What only that direction could bring back goes for good.
void EditLog::Free(Edit& edit, Direction lost) {
  std::visit(Overloaded{[&](NodeInserted& e) {
                          if (lost == Direction::Redo) Destroy(pugi::xml_node(e.node));
                        },
                        [&](NodeRemoved& e) {
                          if (lost == Direction::Undo) Destroy(pugi::xml_node(e.node));
                        },
                        [&](PartPresence& e) {
                          if (e.present == (lost == Direction::Redo)) package_.Forget(*e.part);
                        },
                        [](auto&) {}},
             edit);
}

void EditLog::SetLimit(Limit limit) {
  limit_ = limit;
  DropOldest();
}

std::vector<std::string> EditLog::UndoLabels() const {
  std::vector<std::string> labels;
  for (const Step& step : done_) labels.push_back(step.label);
  return labels;
}

std::vector<std::string> EditLog::RedoLabels() const {
  std::vector<std::string> labels;
  for (const Step& step : undone_) labels.push_back(step.label);
  return labels;
}

}  // namespace vardo
