// The typed edits that a drawing's trees are changed by. Each is a small record that knows its inverse: undoing or redoing it is
// the same act, after which the record holds what is needed for the other direction.
//   A removed node is put aside in its tree, where it is not saved: nodes that come back are the very same.
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
  explicit OtherText(std::string_view whole);
  // Once the text in force is final; holds what tells the whole from it.
  void Shorten(std::string_view inForce);
  // Gives back the whole and keeps the text in force in its place.
  std::string Exchange(std::string_view inForce);
  size_t size() const { return size_; }

 private:
  void Keep(std::string_view whole, std::string_view inForce);
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
void SetAttributesFromText(pugi::xml_node element, std::string_view text);

// What a subtree takes in memory, about.
size_t SizeOf(pugi::xml_node node);

void PutAside(pugi::xml_node node);
void PutAt(pugi::xml_node node, const NodePlace& place);
NodePlace PlaceOf(pugi::xml_node node);

}  // namespace vardo
