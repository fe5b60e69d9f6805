#include "document/TreeEditor.h"

#include <optional>

namespace vardo {
namespace {

// Where a node stands, for putting it back.
struct Position {
  pugi::xml_node parent, before;
};

Position PositionOf(pugi::xml_node node) { return {node.parent(), node.next_sibling()}; }

// Behind the tree's root, where it is not saved.
pugi::xml_node Aside(pugi::xml_node node) {
  constexpr const char* kName = "aside";
  pugi::xml_node document = node.root();
  const pugi::xml_node aside = document.child(kName);
  return aside ? aside : document.append_child(kName);
}

void PutAside(pugi::xml_node node) { Aside(node).append_move(node); }

void PutBack(pugi::xml_node node, Position at) {
  if (at.before)
    at.parent.insert_move_before(node, at.before);
  else
    at.parent.append_move(node);
}

// An attribute that is not there goes behind the one of that name, or first.
void WriteAttribute(pugi::xml_node node, const char* name, const std::optional<std::string>& value, const std::string& behind) {
  if (!value) {
    node.remove_attribute(name);
    return;
  }
  pugi::xml_attribute attribute = node.attribute(name);
  if (!attribute)
    attribute = behind.empty() ? node.prepend_attribute(name) : node.insert_attribute_after(name, node.attribute(behind.c_str()));
  attribute.set_value(value->c_str());
}

std::optional<std::string> ReadAttribute(pugi::xml_node node, const char* name) {
  const pugi::xml_attribute attribute = node.attribute(name);
  return attribute ? std::optional<std::string>(attribute.value()) : std::nullopt;
}

}  // namespace

void TreeEditor::SetAttribute(XmlPart& part, pugi::xml_node node, const char* name, std::string_view value) {
  ChangeAttribute(part, node, name, std::string(value));
}

void TreeEditor::RemoveAttribute(XmlPart& part, pugi::xml_node node, const char* name) {
  ChangeAttribute(part, node, name, std::nullopt);
}

void TreeEditor::ChangeAttribute(XmlPart& part, pugi::xml_node node, const std::string& name,
                                 const std::optional<std::string>& after) {
  const std::optional<std::string> before = ReadAttribute(node, name.c_str());
  if (before == after) return;
  const pugi::xml_attribute there = node.attribute(name.c_str());
  const std::string behind = (there ? there.previous_attribute() : node.last_attribute()).name();
  const auto write = [node, name, behind](const std::optional<std::string>& value) {
    WriteAttribute(node, name.c_str(), value, behind);
  };
  Make(
      part, [=] { write(after); }, [=] { write(before); });
}

pugi::xml_node TreeEditor::InsertElement(XmlPart& part, pugi::xml_node parent, const char* name, pugi::xml_node before) {
  const pugi::xml_node node = before ? parent.insert_child_before(name, before) : parent.append_child(name);
  RecordInsertion(part, node);
  return node;
}

pugi::xml_node TreeEditor::InsertCopy(XmlPart& part, pugi::xml_node parent, pugi::xml_node original, pugi::xml_node before) {
  const pugi::xml_node node = before ? parent.insert_copy_before(original, before) : parent.append_copy(original);
  RecordInsertion(part, node);
  return node;
}

void TreeEditor::AppendText(XmlPart& part, pugi::xml_node parent, std::string_view text) {
  pugi::xml_node node = parent.append_child(pugi::node_pcdata);
  node.set_value(std::string(text).c_str());
  RecordInsertion(part, node);
}

void TreeEditor::Remove(XmlPart& part, pugi::xml_node node) {
  const Position position = PositionOf(node);
  Make(
      part, [node] { PutAside(node); }, [node, position] { PutBack(node, position); });
}

void TreeEditor::RecordInsertion(XmlPart& part, pugi::xml_node node) {
  const Position position = PositionOf(node);
  part.Touch(+1);
  Record(
      part, [node, position] { PutBack(node, position); }, [node] { PutAside(node); });
}

void TreeEditor::Make(XmlPart& part, const Journal::Action& edit, const Journal::Action& reverse) {
  edit();
  part.Touch(+1);
  Record(part, edit, reverse);
}

void TreeEditor::Record(XmlPart& part, const Journal::Action& edit, const Journal::Action& reverse) {
  journal_.Record(
      [&part, reverse] {
        reverse();
        part.Touch(-1);
      },
      [&part, edit] {
        edit();
        part.Retouch();
      });
}

}  // namespace vardo
