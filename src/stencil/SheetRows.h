// What several kinds of sheet have in common.
#pragma once

#include "modules/ModuleProperty.h"
#include "stencil/PartWriter.h"

#include <string_view>

namespace vardo {

// The cells that a page's sheet and a master's begin with; size in inches. sizeType: the host's code for a standard or a custom
// size.
void WritePageCells(PartWriter& writer, double width, double height, std::string_view sizeType);

// A row of shape data; unit: empty for a number.
void WritePropertyRow(PartWriter& writer, const ModuleProperty& property, std::string_view unit = kText);

// A Geometry section, numbered from 0; rows writes what comes after its own cells.
void WriteGeometry(PartWriter& writer, int index, bool filled, const PartWriter::Content& rows);

// A shape's text, with the line end that closes every text in a file.
void WriteShapeText(PartWriter& writer, std::string_view text);

}  // namespace vardo
