// How wide characters are, by a table: so that lines break alike on every machine, whatever fonts it has.
#pragma once

#include "picture/TextBlock.h"

namespace vardo::picture {

// In the unit of the font's size.
class TableMeasure {
 public:
  explicit TableMeasure(const Font& font);
  double Advance(char32_t character) const;
  double Ascent() const;
  double Descent() const;

 private:
  size_t family_ = 0;
  double size_, wider_ = 1;
  bool smallCapitals_;
};

}  // namespace vardo::picture
