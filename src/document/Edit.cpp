#include "document/Edit.h"

#include "package/TreeMemory.h"

#include <pugixml.hpp>

#include <algorithm>
#include <cstring>
#include <new>

namespace vardo {
namespace {

constexpr size_t kNodeSize = 64, kAttributeSize = 40;

// Behind the tree's root.
constexpr const char* kAside = "aside";

std::string_view NextText(std::string_view& rest) {
  const size_t end = rest.find('\0');
  const std::string_view text = rest.substr(0, end);
  rest.remove_prefix(end + 1);
  return text;
}

}  // namespace

OtherText::OtherText(std::string_view whole, std::string_view inForce) {
  const size_t most = std::min(whole.size(), inForce.size());
  const size_t prefix = static_cast<size_t>(
      std::mismatch(whole.begin(), whole.begin() + static_cast<ptrdiff_t>(most), inForce.begin()).first - whole.begin());
  size_t suffix = 0;
  while (suffix < most - prefix && whole[whole.size() - 1 - suffix] == inForce[inForce.size() - 1 - suffix]) ++suffix;
  const std::string_view middle = whole.substr(prefix, whole.size() - prefix - suffix);
  middle_ = middle.empty() ? nullptr : std::make_unique_for_overwrite<char[]>(middle.size());
  middle.copy(middle_.get(), middle.size());
  size_ = static_cast<std::uint32_t>(middle.size());
  prefix_ = static_cast<std::uint32_t>(prefix);
  suffix_ = static_cast<std::uint32_t>(suffix);
}

std::string OtherText::Whole(std::string_view inForce) const {
  std::string whole(inForce.substr(0, prefix_));
  whole.append(middle_.get(), size_);
  whole.append(inForce.substr(inForce.size() - suffix_));
  return whole;
}

std::string AttributesInOneText(pugi::xml_node element) {
  std::string text;
  for (const pugi::xml_attribute attribute : element.attributes())
    text.append(attribute.name()).append(1, '\0').append(attribute.value()).append(1, '\0');
  return text;
}

void SetAttributesFromText(pugi::xml_node element, const std::string& wanted) {
  std::string_view text = wanted;
  pugi::xml_attribute attribute = element.first_attribute();
  while (!text.empty()) {
    const std::string_view name = NextText(text), value = NextText(text);
    if (!attribute) attribute = element.append_attribute("");
    if (name != attribute.name()) attribute.set_name(name.data());
    if (value != attribute.value()) attribute.set_value(value.data());
    attribute = attribute.next_attribute();
  }
  while (attribute) {
    const pugi::xml_attribute next = attribute.next_attribute();
    element.remove_attribute(attribute);
    attribute = next;
  }
}

size_t SizeOf(pugi::xml_node node) {
  size_t size = kNodeSize + std::strlen(node.value());
  for (pugi::xml_attribute attribute = node.first_attribute(); attribute; attribute = attribute.next_attribute())
    size += kAttributeSize + std::strlen(attribute.value());
  for (pugi::xml_node child = node.first_child(); child; child = child.next_sibling()) size += SizeOf(child);
  return size;
}

void MakeRoomAside(pugi::xml_node node) {
  pugi::xml_node document = node.root();
  if (document.child(kAside) || document.append_child(kAside)) return;
  TreesRanOut();
  throw std::bad_alloc();
}

void PutAside(pugi::xml_node node) { node.root().child(kAside).append_move(node); }

void PutAt(pugi::xml_node node, const NodePlace& place) {
  pugi::xml_node parent(place.parent);
  if (place.before)
    parent.insert_move_before(node, pugi::xml_node(place.before));
  else
    parent.append_move(node);
}

NodePlace PlaceOf(pugi::xml_node node) { return {node.parent().internal_object(), node.next_sibling().internal_object()}; }

}  // namespace vardo
