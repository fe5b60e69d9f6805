#include "document/DrawingMaster.h"

#include "package/XmlPart.h"

#include <algorithm>

namespace vardo {
namespace {

std::string NameOf(pugi::xml_node entry) {
  const pugi::xml_attribute name = entry.attribute("NameU");
  return name ? name.value() : entry.attribute("Name").value();
}

}  // namespace

DrawingMaster::DrawingMaster(pugi::xml_node entry, std::string partName, XmlPart& part)
    : entry_(entry.internal_object()),
      id_(entry.attribute("ID").as_int()),
      name_(NameOf(entry)),
      partName_(std::move(partName)),
      part_(part) {
  struct Pending {
    pugi::xml_node element;
    DrawingShape* parent;
  };
  std::vector<Pending> pending{{part.root().child("Shapes").child("Shape"), nullptr}};
  if (!pending[0].element) return;
  for (size_t at = 0; at < pending.size(); ++at) {
    const Pending now = pending[at];
    shapes_.push_back(std::make_unique<DrawingShape>(part, now.element, nullptr, now.parent));
    for (const pugi::xml_node inner : now.element.child("Shapes").children("Shape"))
      pending.push_back({inner, shapes_.back().get()});
  }
}

const DrawingShape* DrawingMaster::FindShape(int id) const {
  const auto found = std::find_if(shapes_.begin(), shapes_.end(), [&](const auto& shape) { return shape->id() == id; });
  return found == shapes_.end() ? nullptr : found->get();
}

}  // namespace vardo
