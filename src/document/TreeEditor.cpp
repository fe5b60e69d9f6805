#include "document/TreeEditor.h"

#include "document/EditObserver.h"
#include "document/Elements.h"
#include "document/UndoStep.h"
#include "package/Package.h"
#include "package/TreeMemory.h"

#include <new>

namespace vardo {
namespace {

constexpr std::string_view kLabelOfLoneEdit = "Edit";

}  // namespace

pugi::xml_node TreeEditor::Insert(XmlPart& part, pugi::xml_node parent, const char* name, Attributes attributes,
                                  pugi::xml_node before, const Change& fill) {
  const pugi::xml_node node = before ? parent.insert_child_before(name, before) : parent.append_child(name);
  NoteInsertion(part, node, [&](pugi::xml_node added) {
    for (const auto& [attribute, value] : attributes) vardo::SetAttribute(added, attribute, value);
    if (fill) fill(added);
  });
  return node;
}

pugi::xml_node TreeEditor::Insert(XmlPart& part, pugi::xml_node parent, const char* name, Attributes attributes) {
  return Insert(part, parent, name, attributes, {});
}

pugi::xml_node TreeEditor::InsertCopy(XmlPart& part, pugi::xml_node parent, pugi::xml_node original, pugi::xml_node before,
                                      const Change& adapt) {
  const pugi::xml_node node = before ? parent.insert_copy_before(original, before) : parent.append_copy(original);
  NoteInsertion(part, node, adapt);
  return node;
}

void TreeEditor::AppendText(XmlPart& part, pugi::xml_node parent, std::string_view text) {
  NoteInsertion(part, parent.append_child(pugi::node_pcdata),
                [&](pugi::xml_node node) { node.set_value(std::string(text).c_str()); });
}

// A node that cannot be recorded does not stay.
void TreeEditor::NoteInsertion(XmlPart& part, pugi::xml_node node, const Change& fill) {
  const UndoStep step(log_, kLabelOfLoneEdit);
  try {
    if (node && fill) fill(node);
    if (TreesRanOut() || !node) throw std::bad_alloc();
    log_.TouchPart(part);
    if (!log_.IsFresh(node.parent())) log_.Add(NodeInserted{&part, node.internal_object(), PlaceOf(node)});
  } catch (...) {
    node.parent().remove_child(node);
    throw;
  }
  observer_.Inserted(part, node);
}

void TreeEditor::Remove(XmlPart& part, pugi::xml_node node) {
  const UndoStep step(log_, kLabelOfLoneEdit);
  log_.TouchPart(part);
  log_.MakeRoom();
  MakeRoomAside(node);
  observer_.Removing(part, node);
  if (log_.IsFresh(node.parent())) {
    node.parent().remove_child(node);
    return;
  }
  log_.Add(NodeRemoved{&part, node.internal_object(), PlaceOf(node), SizeOf(node)});
  PutAside(node);
}

void TreeEditor::ChangeAttributes(XmlPart& part, pugi::xml_node element, const Change& change) {
  const UndoStep step(log_, kLabelOfLoneEdit);
  NoteContent(part, element, [&] {
    return AttributesChanged{&part, element.internal_object(), OtherText(AttributesInOneText(element))};
  });
  observer_.Changing(part, element);
  change(element);
  observer_.Changed(part, element);
  if (TreesRanOut()) throw std::bad_alloc();
}

void TreeEditor::SetText(XmlPart& part, pugi::xml_node node, std::string_view text) {
  if (text == node.value()) return;
  const UndoStep step(log_, kLabelOfLoneEdit);
  NoteContent(part, node, [&] { return TextChanged{&part, node.internal_object(), OtherText(node.value())}; });
  observer_.Changing(part, node);
  node.set_value(std::string(text).c_str());
  observer_.Changed(part, node);
  if (TreesRanOut()) throw std::bad_alloc();
}

void TreeEditor::NoteContent(XmlPart& part, pugi::xml_node node, const std::function<Edit()>& record) {
  log_.TouchPart(part);
  if (log_.IsFresh(node) || log_.HasContent(node)) return;
  log_.Add(record());
  log_.NoteContent(node);
}

void TreeEditor::SetAttribute(XmlPart& part, pugi::xml_node element, const char* name, std::string_view value) {
  if (const pugi::xml_attribute there = element.attribute(name); there && value == there.value()) return;
  ChangeAttributes(part, element, [&](pugi::xml_node changed) { vardo::SetAttribute(changed, name, value); });
}

void TreeEditor::RemoveAttribute(XmlPart& part, pugi::xml_node element, const char* name) {
  if (!element.attribute(name)) return;
  ChangeAttributes(part, element, [&](pugi::xml_node changed) { changed.remove_attribute(name); });
}

XmlPart& TreeEditor::AddPart(std::string name, std::string_view xml, const Change& adapt) {
  const UndoStep step(log_, kLabelOfLoneEdit);
  XmlPart& part = package_.Add(std::move(name), xml);
  try {
    if (adapt) {
      adapt(part.root());
      log_.TouchPart(part);
    }
    SetPresent(part, true);
  } catch (...) {
    package_.Forget(part);
    throw;
  }
  return part;
}

void TreeEditor::RemovePart(XmlPart& part) {
  const UndoStep step(log_, kLabelOfLoneEdit);
  SetPresent(part, false);
}

void TreeEditor::SetPresent(XmlPart& part, bool present) {
  log_.MakeRoom();
  package_.SetPresent(part, present);
  log_.Add(PartPresence{&part, present});
}

void TreeEditor::NoteRowsShifted(const RowsShifted& rows) {
  const UndoStep step(log_, kLabelOfLoneEdit);
  log_.MakeRoom();
  observer_.Shifted(rows, false);
  log_.Add(rows);
}

}  // namespace vardo
