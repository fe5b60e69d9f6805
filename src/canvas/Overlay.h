// What is seen over a page while a person works on it: never a part of the drawing.
#pragma once

#include "canvas/Boxes.h"

#include <cstdint>
#include <string>
#include <vector>

namespace vardo {

enum class Ink : std::uint8_t {
  Hover,
  Selection,
  Handle,
  LockedHandle,
  Guide,
  Band,
  TouchBand,
  Point,
  Legal,
  Illegal,
  Connector,
  Error,
  Warning
};

struct Overlay {
  struct Frame {
    Box box;
    Ink ink;
  };
  struct Line {
    std::vector<PagePoint> points;
    Ink ink;
  };
  struct Spot {
    PagePoint at;
    Ink ink;
    bool isRound = false;
  };
  // A shape as it will be, seen through.
  struct Ghost {
    int shape;
    PagePoint by;
  };
  struct Label {
    PagePoint at;
    std::string text;
  };

  void Append(const Overlay& above) {
    frames.insert(frames.end(), above.frames.begin(), above.frames.end());
    lines.insert(lines.end(), above.lines.begin(), above.lines.end());
    spots.insert(spots.end(), above.spots.begin(), above.spots.end());
    ghosts.insert(ghosts.end(), above.ghosts.begin(), above.ghosts.end());
    labels.insert(labels.end(), above.labels.begin(), above.labels.end());
  }

  std::vector<Frame> frames;
  std::vector<Line> lines;
  std::vector<Spot> spots;
  std::vector<Ghost> ghosts;
  std::vector<Label> labels;
};

}  // namespace vardo
