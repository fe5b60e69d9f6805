// Pictures as files that Qt makes. An Offscreen must live meanwhile, or another application object of Qt's.
#pragma once

#include "picture/PagePicture.h"

#include <QGuiApplication>

#include <span>
#include <string>

namespace vardo::picture {

// What Qt needs to paint without a display.
class Offscreen {
 public:
  Offscreen();

 private:
  int count_ = 1;
  char name_[6] = "vardo";
  char* names_[2] = {name_, nullptr};
  QGuiApplication application_;
};

inline constexpr int kMostPixels = 16'384;  // a side

// At a scale of 1 an inch is 96 pixels. Throws FileError for what is larger than an image can be.
std::string PngOf(const PagePicture& picture, double scale = 1);
// A page each, of the size on paper times the scale.
std::string PdfOf(std::span<const PagePicture> pictures, double scale = 1);

}  // namespace vardo::picture
