// What a connector may leave and enter, as far as it can be told before it is drawn: for what is lit up while a person draws one.
// The add-in decides when it is there.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vardo {

class DrawingPage;
class DrawingShape;

// Points of a module by which connectors leave it; none for one that nothing leaves.
std::vector<int> ExitsOf(const DrawingShape& shape);
// The point by which they enter it; none for one that nothing enters, and for what is no module.
std::optional<int> EntryOf(const DrawingShape& shape);

inline constexpr std::string_view kPlainConnector = "Dynamic connector";

struct ConnectorStart {
  std::string master;
  std::optional<int> point;  // of the shape that it leaves
};
// The connector that leaves a shape by that point, or without one by the first exit that is still free.
ConnectorStart ChooseConnector(DrawingPage& page, const DrawingShape& begin, std::optional<int> point);

// A sentence that says why a connector of that master may not lead from one to the other; none when it may.
std::optional<std::string> WhyNotConnect(std::string_view master, const DrawingShape* begin, const DrawingShape* end);

}  // namespace vardo
