// The styles of a new drawing.
#pragma once

#include "stencil/PartWriter.h"

#include <string>
#include <string_view>

namespace vardo {

enum class Style { None, Normal, Connector };

inline constexpr std::string_view kLanguage = "en-US";
inline constexpr std::string_view kModuleTextSize = "0.1388888888888889";     // 10 points
inline constexpr std::string_view kConnectorTextSize = "0.1111111111111111";  // 8 points

// As a shape names it in LineStyle, FillStyle and TextStyle.
std::string StyleNumber(Style style);

void WriteStyleSheets(PartWriter& writer);

// The Character section of a style or shape, with this text size in inches.
void WriteCharacter(PartWriter& writer, std::string_view size);

}  // namespace vardo
