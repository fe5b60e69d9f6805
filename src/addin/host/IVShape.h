// Shapes and their cells.
//   Text is UTF-8. Units are as a cell's formula says. Every call is made on the drawing's own thread.
//   Sections, rows and columns are the numbers of HostConstants.h; rows count from 0 in all sections used here but the object's.
#pragma once

#include "addin/host/HostFwd.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vardo {

class IVShapes {
 public:
  virtual ~IVShapes() = default;
  virtual int Count() = 0;
  // By 1-based position, by name, by ID. Throw HostError(kHostBadIndex) when there is none.
  virtual IVShapePtr Item(int index) = 0;
  virtual IVShapePtr Item(std::string_view name) = 0;
  virtual IVShapePtr ItemFromID(int id) = 0;
};

// One shape of a page, or a page's or the drawing's own sheet.
class IVShape {
 public:
  virtual ~IVShape() = default;

  // The cell of that name, local or inherited; names are found without regard to case.
  // Throws HostError(kHostNoSuchCell) when the shape has no such cell. The cell stays good until its row is deleted.
  virtual IVCellPtr Cells(std::string_view name) = 0;
  // True when Cells(name) would succeed; with kExistsLocally only when the cell is the shape's own.
  virtual bool CellExists(std::string_view name, short localOnly) = 0;
  virtual IVCellPtr CellsSRC(short section, short row, short column) = 0;
  // The number, in its section, of the row that the cell of that name stands in. Throws HostError(kHostNoSuchCell).
  virtual short CellsRowIndex(std::string_view name) = 0;

  // The text shown, without the text block's closing line end. SetText raises the text-changed event.
  virtual std::string Text() = 0;
  virtual void SetText(std::string_view text) = 0;

  virtual std::string Name() = 0;
  // Unique on its page and never given to another shape while the drawing is open.
  virtual int ID() = 0;
  // The 1-based position among the page's shapes; it drops by one when an earlier shape goes. 0 for a sheet that is no shape.
  virtual int Index() = 0;
  // kShapeType...
  virtual short Type() = 0;
  // The master the shape was made from, or null.
  virtual IVMasterPtr Master() = 0;
  // The page the shape stands on. The drawing's sheet stands on none: throws HostError(kHostNotAllowed).
  virtual IVPagePtr ContainingPage() = 0;
  // The shapes that stand in a group itself, not in groups within it; none in any other shape.
  virtual IVShapesPtr Shapes() = 0;

  // Rows of a section, inherited ones included; 0 for a section that is not there.
  virtual int RowCount(short section) = 0;
  virtual bool RowExists(short section, short row, short localOnly) = 0;
  // Makes an empty section. Throws HostError(kHostNotAllowed) when it exists.
  virtual void AddSection(short section) = 0;
  // Adds a row at that position and returns its number; a missing section is made. Sections whose rows bear names ignore the
  // position and append.
  virtual short AddRow(short section, short row, short tag) = 0;
  // Adds a row of that name at the end and returns its number. Throws HostError(kHostNotAllowed) when the section has a row of
  // that name (without regard to case) or the name is no row name: letters, digits and underscores.
  virtual short AddNamedRow(short section, std::string_view name, short tag) = 0;
  // Rows behind it move up by one. A row that is not there is left alone.
  virtual void DeleteRow(short section, short row) = 0;

  // Writes formulas[i] to the cell (stream[3i], stream[3i+1], stream[3i+2]); the last formula serves for all further cells.
  // Returns how many were written; throws at the first that fails, which a guarded one does unless flags have kSetBlastGuards.
  // Inside a command of the user the earlier ones are written then, outside nothing is.
  virtual int SetFormulas(const std::vector<std::int16_t>& stream, const std::vector<std::string>& formulas, short flags) = 0;

  // Takes the shape off its page. On a sheet that is no shape throws HostError(kHostNotAllowed).
  virtual void Delete() = 0;
};

// The formula of a shape's cell; none when the shape has no such cell. Throws HostError when the host refuses to tell, so that
// what is there is not taken for nothing.
std::optional<std::string> FormulaIfThere(IVShape& shape, const std::string& cell);

class IVCell {
 public:
  virtual ~IVCell() = default;
  // The formula as written, a string with its quotes; empty for a cell that has none.
  virtual std::string Formula() = 0;
  // Makes an inherited cell local. Kept as written, also when the host cannot evaluate it. Throws HostError(kHostGuarded) when
  // the formula that is there is guarded.
  virtual void SetFormula(std::string_view formula) = 0;
  // Sets the value as a number in the cell's own units; throws as SetFormula does.
  virtual void SetResult(double value) = 0;
};

}  // namespace vardo
