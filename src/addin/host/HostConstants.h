// The drawing host's numbers, as its published reference gives them (VisSectionIndices, VisRowIndices, VisCellIndices,
// VisRowTags, VisEventCodes, VisShapeTypes, VisUIObjSets).
#pragma once

#include <cstdint>

namespace vardo {

// Sections.
inline constexpr short kSectionObject = 1;
inline constexpr short kSectionConnectionPts = 7;
inline constexpr short kSectionAction = 240;
inline constexpr short kSectionUser = 242;
inline constexpr short kSectionProp = 243;

// Rows of the object section.
inline constexpr short kRowXFormOut = 1;
inline constexpr short kRowXForm1D = 4;  // the end points; only a connector has this row
inline constexpr short kRowEvent = 5;
inline constexpr short kRowPage = 10;
inline constexpr short kRowMisc = 17;

// Columns of the custom-property section.
inline constexpr short kCellPropValue = 0;
inline constexpr short kCellPropPrompt = 1;
inline constexpr short kCellPropLabel = 2;
inline constexpr short kCellPropFormat = 3;
inline constexpr short kCellPropSortKey = 4;
inline constexpr short kCellPropType = 5;
inline constexpr short kCellPropInvisible = 6;
inline constexpr short kCellPropVerify = 7;

// Columns of the user-cell, action and connection-point sections.
inline constexpr short kCellUserValue = 0;
inline constexpr short kCellActionMenu = 0;
inline constexpr short kCellActionAction = 3;
inline constexpr short kCellConnectionX = 0;
inline constexpr short kCellConnectionY = 1;
inline constexpr short kCellConnectionAutoGen = 5;

// Columns of the end-point row.
inline constexpr short kCell1DBeginX = 0;
inline constexpr short kCell1DBeginY = 1;
inline constexpr short kCell1DEndX = 2;
inline constexpr short kCell1DEndY = 3;

inline constexpr short kTagDefault = 0;

// Shape types.
inline constexpr short kShapeTypePage = 1;
inline constexpr short kShapeTypeGroup = 2;
inline constexpr short kShapeTypeShape = 3;
inline constexpr short kShapeTypeForeign = 4;
inline constexpr short kShapeTypeGuide = 5;
inline constexpr short kShapeTypeDocument = 6;

// CellExists and RowExists: 0 finds local and inherited, 1 local only.
inline constexpr short kExistsAnywhere = 0;
inline constexpr short kExistsLocally = 1;

// SetFormulas flags.
inline constexpr short kSetBlastGuards = 2;

// Event codes: unsigned 16-bit numbers that arrive in a signed one.
inline constexpr std::uint16_t kEventDocumentCreated = 1;
inline constexpr std::uint16_t kEventBeforeSelectionDelete = 901;
inline constexpr std::uint16_t kEventPageAdded = 0x8010;
inline constexpr std::uint16_t kEventPageDeleted = 0x4010;
inline constexpr std::uint16_t kEventShapeAdded = 0x8040;
inline constexpr std::uint16_t kEventPageChanged = 0x2010;
inline constexpr std::uint16_t kEventWindowChanged = 701;
inline constexpr std::uint16_t kEventDocumentClosed = 0x4002;
inline constexpr std::uint16_t kEventTextChanged = 0x2080;

// The menu set of the drawing window.
inline constexpr int kMenuSetDrawing = 2;

}  // namespace vardo
