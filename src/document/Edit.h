// The typed edits that a drawing's trees are changed by. Each is a small record that knows its inverse: undoing or redoing it is
// the same act, after which the record holds what is needed for the other direction.
//   A removed node is put aside in its tree, where it is not saved: nodes that come back are the very same.
//   What has no memory throws std::bad_alloc and has changed nothing.
#pragma once

#include "document/SheetKind.h"
#include "document/XmlNode.h"

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <variant>

namespace vardo {

class XmlPart;
struct SectionInfo;

// A text that another one was changed to, or from: kept as what differs.
class OtherText {
 public:
  explicit OtherText(std::string_view whole) : OtherText(whole, {}) {}
  // What tells the whole from the text in force.
  OtherText(std::string_view whole, std::string_view inForce);
  // The whole, from a text that is in force.
  std::string Whole(std::string_view inForce) const;
  size_t size() const { return size_; }

 private:
  std::unique_ptr<char[]> middle_;
  std::uint32_t size_ = 0, prefix_ = 0, suffix_ = 0;  // of the middle; what it shares with the text in force
};

// Where a node stands.
struct NodePlace {
  XmlNode parent = nullptr, before = nullptr;  // before: none for the last
};

struct NodeInserted {
  XmlPart* part;
  XmlNode node;
  NodePlace place;
};
struct NodeRemoved {
  XmlPart* part;
  XmlNode node;
  NodePlace place;
  size_t size = 0;  // of what has been put aside, in bytes
};
// All attributes of an element.
struct AttributesChanged {
  XmlPart* part;
  XmlNode node;
  OtherText other;
};
struct TextChanged {
  XmlPart* part;
  XmlNode node;
  OtherText other;
};
// The part has come into the package, or has been taken out.
struct PartPresence {
  XmlPart* part;
  bool present;
};
// Rows of a sheet have made room at a position (+1), or closed up (-1): nothing in a tree, but those who hold a row need to know.
struct RowsShifted {
  int page, shape;
  SheetKind kind;
  const SectionInfo* section;
  int position, by;
};

using Edit = std::variant<NodeInserted, NodeRemoved, AttributesChanged, TextChanged, PartPresence, RowsShifted>;
static_assert(sizeof(Edit) <= 64);

// The attributes of an element in one text, as AttributesChanged keeps them.
std::string AttributesInOneText(pugi::xml_node element);
void SetAttributesFromText(pugi::xml_node element, const std::string& text);

// What a subtree takes in memory, about.
size_t SizeOf(pugi::xml_node node);

// For a first node of its tree to be put aside, room is made before.
void MakeRoomAside(pugi::xml_node node);
void PutAside(pugi::xml_node node);
void PutAt(pugi::xml_node node, const NodePlace& place);
NodePlace PlaceOf(pugi::xml_node node);

}  // namespace vardo
