// A sheet of cells - a shape's, a page's, the document's - over its element in the drawing's tree.
//   What the element does not say is inherited from the sheet it was made from. Writing makes a local cell.
//   All changes of its rows are made through one Sheet, which finds them by a hash of their keys.
//   Rows are counted from 0 by their position among the rows that are there; a file's IX is an identity, not a position.
#pragma once

#include "document/CellNames.h"
#include "document/CellText.h"
#include "document/TreeEditor.h"
#include "formula/Formula.h"

#include <pugixml.hpp>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vardo {

// Names one cell. The row is a name, or an IX for sections whose rows have none; one with an IX is good until a row of the
// section comes or goes.
struct CellAddress {
  const SectionInfo* section = nullptr;  // null: the object section
  std::string row;
  std::string cell;
};

class Sheet {
 public:
  // base: the sheet it inherits from; null for none. part is the tree that holds element.
  Sheet(XmlPart& part, pugi::xml_node element, const Sheet* base) : part_(&part), element_(element), base_(base) {}
  virtual ~Sheet() = default;

  pugi::xml_node element() const { return element_; }
  XmlPart& part() const { return *part_; }
  const Sheet* base() const { return base_; }

  // None when the sheet has no such cell. localOnly leaves out inherited cells.
  std::optional<CellAddress> Find(std::string_view cellName, bool localOnly = false) const;
  // By the host's numbers.
  std::optional<CellAddress> Find(short section, short row, short column) const;

  std::string Formula(const CellAddress& address) const;
  CellValue Value(const CellAddress& address) const;
  // False when the row has gone.
  bool Exists(const CellAddress& address) const;
  void SetFormula(TreeEditor& editor, const CellAddress& address, std::string_view formula, const FormulaScope& scope);
  // Stores what the cell's formula evaluates to now, or why it does not: then the last value stays. An inherited formula stays
  // the master's. False when all was so before.
  bool StoreEvaluation(TreeEditor& editor, const CellAddress& address, const Evaluation& evaluation);
  // The sheet's own formulas; not the inherited ones, nor constants.
  struct OwnFormula {
    CellAddress address;
    std::string_view formula;
  };
  std::vector<OwnFormula> OwnFormulas() const;
  // Whether the cell's formula comes from the master.
  bool InheritsFormula(const CellAddress& address) const;
  // What formulas may call the cell: "Connections.X2", "Prop.Name" and "Prop.Name.Value".
  std::vector<std::string> NamesOf(const CellAddress& address) const;

  struct Row {
    std::string key;  // N or IX
    pugi::xml_node local, inherited;
  };
  // The rows of a section in order, inherited ones included.
  std::vector<Row> Rows(const SectionInfo& section) const;
  // Of the cell's row among them; none when it has gone.
  std::optional<size_t> PositionOf(const CellAddress& address) const;
  bool HasSection(const SectionInfo& section) const;
  // Whether the sheet has end points: only a connector has.
  bool IsOneDimensional() const;

  void AddSection(TreeEditor& editor, const SectionInfo& section);
  // Add a row at the end; return its position. AddRow keeps the rows' order for a position before the end.
  short AddRow(TreeEditor& editor, const SectionInfo& section, short position);
  short AddNamedRow(TreeEditor& editor, const SectionInfo& section, std::string_view name);
  void DeleteRow(TreeEditor& editor, const SectionInfo& section, short position);

  // The element of that name, this sheet's own or the nearest inherited one.
  pugi::xml_node FindChild(const char* name) const;

 protected:
  // Makes the element of a sheet that has none yet, when something is first written to it.
  virtual pugi::xml_node MakeElement(TreeEditor&) { return {}; }

 private:
  // A row that the element itself says something of.
  struct OwnRow {
    const SectionInfo* section;
    std::uint32_t hash;  // of section and key
    bool isDeleted;      // an inherited row that this sheet has not
    std::string_view key;
    pugi::xml_node row;
  };
  const std::vector<OwnRow>& OwnRows() const;
  const OwnRow* FindOwnRow(const SectionInfo& section, std::string_view key) const;
  // Rows have come, gone or been given another key.
  void RowsChanged() { ownRowsKnown_ = false; }

  pugi::xml_node EnsureElement(TreeEditor& editor);
  pugi::xml_node SectionElement(const SectionInfo& section) const;
  pugi::xml_node RowElement(const SectionInfo& section, std::string_view key) const;
  pugi::xml_node LocalCell(const CellAddress& address) const;
  // The nearest cell element up the line of inheritance that holds a formula of its own.
  pugi::xml_node FormulaCell(const CellAddress& address) const;
  pugi::xml_node NearestCell(const CellAddress& address) const;
  bool RowExists(const SectionInfo& section, std::string_view key, bool localOnly) const;

  pugi::xml_node EnsureSection(TreeEditor& editor, const SectionInfo& section);
  pugi::xml_node EnsureRow(TreeEditor& editor, const CellAddress& address);
  pugi::xml_node EnsureCell(TreeEditor& editor, const CellAddress& address);
  pugi::xml_node InsertRow(TreeEditor& editor, const SectionInfo& section, std::string_view key);
  void WriteFullRow(TreeEditor& editor, const SectionInfo& section, pugi::xml_node row);

  XmlPart* part_;
  pugi::xml_node element_;
  const Sheet* base_;
  mutable std::vector<OwnRow> ownRows_;
  mutable bool ownRowsKnown_ = false;
};

// Whether a cell holds a string even without a unit; what it holds when no one has written it.
bool IsTextCell(const CellAddress& address);
std::string_view DefaultValue(const CellAddress& address);

}  // namespace vardo
