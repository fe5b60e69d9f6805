#include "document/EditLog.h"

#include "document/EditObserver.h"
#include "package/Package.h"

#include <algorithm>
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
  if (depth_++ == 0) open_.label = label;
}

void EditLog::EndStep() {
  if (--depth_ > 0) return;
  fresh_.clear();
  noted_.clear();
  if (open_.edits.empty()) {
    open_ = {};
    return;
  }
  DropUndone();
  Seal(open_);
  bytes_ += open_.bytes;
  done_.push_back(std::exchange(open_, {}));
  DropOldest();
}

void EditLog::RollBack() {
  Replay(open_, Direction::Undo);
  for (auto edit = open_.edits.rbegin(); edit != open_.edits.rend(); ++edit) Free(*edit, Direction::Redo);
  open_.edits.clear();
  open_.parts.clear();
  fresh_.clear();
  noted_.clear();
}

void EditLog::Add(Edit edit) {
  if (const auto* inserted = std::get_if<NodeInserted>(&edit)) fresh_.insert(inserted->node);
  open_.edits.push_back(std::move(edit));
}

void EditLog::TouchPart(XmlPart& part) {
  const auto known =
      std::find_if(open_.parts.begin(), open_.parts.end(), [&](const PartState& state) { return state.part == &part; });
  if (known != open_.parts.end()) return;
  open_.parts.push_back({&part, part.state(), ++lastState_});
  part.SetState(lastState_);
}

bool EditLog::IsFresh(pugi::xml_node node) const {
  if (fresh_.empty()) return false;
  for (; node; node = node.parent())
    if (fresh_.contains(node.internal_object())) return true;
  return false;
}

bool EditLog::NoteContent(pugi::xml_node node) { return !noted_.insert(node.internal_object()).second; }

EditLog::Replayed EditLog::Undo() {
  Step step = std::move(done_.back());
  done_.pop_back();
  Replay(step, Direction::Undo);
  undone_.push_back(std::move(step));
  return {undone_.back().label, undone_.back().shownBefore};
}

EditLog::Replayed EditLog::Redo() {
  Step step = std::move(undone_.back());
  undone_.pop_back();
  Replay(step, Direction::Redo);
  done_.push_back(std::move(step));
  return {done_.back().label, done_.back().shownBefore};
}

void EditLog::Replay(Step& step, Direction direction) {
  if (direction == Direction::Undo)
    for (auto edit = step.edits.rbegin(); edit != step.edits.rend(); ++edit) Apply(*edit, direction);
  else
    for (Edit& edit : step.edits) Apply(edit, direction);
  for (const PartState& state : step.parts) state.part->SetState(direction == Direction::Undo ? state.before : state.after);
}

void EditLog::Apply(Edit& edit, Direction direction) {
  const bool forward = direction == Direction::Redo;
  const auto setInPlace = [&](XmlPart& part, XmlNode at, const NodePlace& place, bool inPlace) {
    const pugi::xml_node node(at);
    if (inPlace) {
      PutAt(node, place);
      observer_.Inserted(part, node);
    } else {
      observer_.Removing(part, node);
      PutAside(node);
    }
  };
  std::visit(Overloaded{[&](NodeInserted& e) { setInPlace(*e.part, e.node, e.place, forward); },
                        [&](NodeRemoved& e) { setInPlace(*e.part, e.node, e.place, !forward); },
                        [&](AttributesChanged& e) {
                          const pugi::xml_node node(e.node);
                          observer_.Changing(*e.part, node);
                          SetAttributesFromText(node, e.other.Exchange(AttributesInOneText(node)));
                          observer_.Changed(*e.part, node);
                        },
                        [&](TextChanged& e) {
                          pugi::xml_node node(e.node);
                          observer_.Changing(*e.part, node);
                          node.set_value(e.other.Exchange(node.value()).c_str());
                          observer_.Changed(*e.part, node);
                        },
                        [&](PartPresence& e) { package_.SetPresent(*e.part, e.present == forward); },
                        [&](RowsShifted& e) {
                          observer_.Shifted({e.page, e.shape, e.kind, e.section, e.position, forward ? e.by : -e.by}, true);
                        }},
             edit);
}

// The records of a step that has ended hold no more than what differs.
void EditLog::Seal(Step& step) {
  step.edits.shrink_to_fit();
  step.bytes = sizeof(Step) + step.label.size() + step.edits.size() * sizeof(Edit);
  for (Edit& edit : step.edits) {
    std::visit(Overloaded{[&](AttributesChanged& e) {
                            e.other.Shorten(AttributesInOneText(pugi::xml_node(e.node)));
                            step.bytes += e.other.size();
                          },
                          [&](TextChanged& e) {
                            e.other.Shorten(pugi::xml_node(e.node).value());
                            step.bytes += e.other.size();
                          },
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
