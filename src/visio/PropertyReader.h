// Properties of many shapes of a page in few calls.
#pragma once

#include "addin/host/IVDocument.h"
#include "visio/LateBound.h"

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace vardo {

// The IDs of a page's shapes by their positions, in a few calls; none when the host cannot tell them so. The page is the host's.
std::optional<std::vector<int>> ShapeIdsByPosition(const LateBound& page, IVShapes& shapes);

// The IDs of the shapes on a page that were made from a master, in no order. Throws HostError.
std::vector<int> InstancesOnPage(const LateBound& page, const ComPtr<IDispatch>& master);

// Reads "Prop." + field of shapes. The host's bulk read takes a row's number, which every shape has to itself: the row that one
// shape has the property in is tried on the others, where its label proves whether it is the one. What is not proven is read by
// name.
class PropertyReader {
 public:
  PropertyReader(const LateBound& page, std::span<const int> ids, IVShapes& shapes) : page_(page), ids_(ids), shapes_(shapes) {}
  // Positions are among the IDs. Throws HostError.
  std::vector<std::optional<std::string>> Read(std::span<const int> positions, std::string_view field);

 private:
  using Indexes = std::vector<size_t>;
  struct Row {
    short number;
    std::string label;  // the formula
  };

  static std::optional<Row> RowOf(IVShape& shape, const std::string& cell);
  Indexes ReadRow(std::span<const size_t> indexes, const Row& row);
  bool TryRow(std::span<const size_t> indexes, const Row& row, Indexes& unproven);

  const LateBound& page_;
  std::span<const int> ids_;
  IVShapes& shapes_;
  std::span<const int> positions_;
  std::vector<std::optional<std::string>> formulas_;
};

}  // namespace vardo
