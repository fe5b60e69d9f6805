// A master of the drawing: what its instances inherit.
#pragma once

#include "document/DrawingShape.h"

#include <memory>
#include <string>
#include <vector>

namespace vardo {

class DrawingMaster {
 public:
  DrawingMaster(pugi::xml_node entry, std::string partName, XmlPart& part);

  int id() const { return id_; }
  const std::string& Name() const { return name_; }
  // In the list of masters.
  XmlNode entry() const { return entry_; }
  const std::string& partName() const { return partName_; }
  XmlPart& part() const { return part_; }
  // The one shape that a dropped instance is made from; null in a damaged master.
  const DrawingShape* TopShape() const { return shapes_.empty() ? nullptr : shapes_.front().get(); }
  // A shape inside it, by its number in the master; null when there is none.
  const DrawingShape* FindShape(int id) const;
  const std::vector<std::unique_ptr<DrawingShape>>& shapes() const { return shapes_; }

 private:
  XmlNode entry_;
  int id_;
  std::string name_;
  std::string partName_;
  XmlPart& part_;
  std::vector<std::unique_ptr<DrawingShape>> shapes_;  // the top shape first
};

}  // namespace vardo
