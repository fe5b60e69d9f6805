// Which page is whose submodel.
#pragma once

#include <optional>
#include <vector>

namespace vardo {

class Drawing;
class DrawingPage;

// The page that the submodel's Process stands on; none for a page of the model itself.
std::optional<int> ParentPageOf(Drawing& drawing, DrawingPage& page);
// From the model's own page down to this one. Links that lead in a circle are cut.
std::vector<int> PathTo(Drawing& drawing, DrawingPage& page);

}  // namespace vardo
