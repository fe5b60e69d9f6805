// A sheet of cells - a shape's, a page's, the document's - over its element in the drawing's tree.
//   What the element does not say is inherited from the sheet it was made from. Writing makes a local cell.
//   Rows are counted from 0 by their position among the rows that are there.
#pragma once

#include "document/CellAddress.h"
#include "document/XmlNode.h"
#include "formula/Formula.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace vardo {

class FormulaIndex;
class TreeEditor;
class XmlPart;

class Sheet {
 public:
  // base: the sheet it inherits from; null for none. part is the tree that holds element.
  Sheet(XmlPart& part, XmlNode element, const Sheet* base);
  virtual ~Sheet();
  Sheet(const Sheet&) = delete;
  Sheet& operator=(const Sheet&) = delete;

  XmlNode element() const { return element_; }
  XmlPart& part() const { return *part_; }
  const Sheet* base() const { return base_; }

  // None when the sheet has no such cell. localOnly leaves out inherited cells.
  std::optional<CellAddress> Find(std::string_view cellName, bool localOnly = false) const;
  std::optional<CellAddress> Find(const ParsedCellName& name, bool localOnly = false) const;
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
  // Which of them read what; made when it is first asked for.
  const FormulaIndex& formulas() const;
  // Whether the cell's formula comes from the master.
  bool InheritsFormula(const CellAddress& address) const;

  struct Row {
    RowKey key;
    XmlNode local, inherited;
  };
  // The rows of a section in order, inherited ones included. Good until a row comes or goes.
  const std::vector<Row>& Rows(const SectionInfo& section) const;
  // The row's name as the file spells it, or its IX.
  std::string RowText(const SectionInfo& section, RowKey row) const;
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

  // The element of that name, this sheet's own or the nearest inherited one; null when there is none.
  XmlNode FindChild(const char* name) const;

  // What the element holds has changed: its rows, or its formulas.
  void ForgetRows() const { rows_.reset(); }
  void ForgetFormulas() const;
  // It has got an element, or lost it.
  void SetElement(XmlNode element);

 protected:
  // Makes the element of a sheet that has none yet, when something is first written to it.
  virtual void MakeElement(TreeEditor&) {}

 private:
  // A row that the element itself says something of.
  struct OwnRow {
    const SectionInfo* section;
    RowKey key;
    XmlNode row;
    bool isDeleted;  // an inherited row that this sheet has not
  };
  struct RowIndex {
    std::vector<OwnRow> own;
    std::unordered_map<CellAddress, size_t, CellAddressHash> places;  // of many rows
    std::vector<std::pair<const SectionInfo*, std::vector<Row>>> all;
  };
  RowIndex& Index() const;
  const OwnRow* FindOwnRow(const SectionInfo& section, RowKey key) const;
  std::vector<Row> GatherRows(const SectionInfo& section) const;

  XmlNode SectionElement(const SectionInfo& section) const;
  XmlNode LocalCell(const CellAddress& address) const;
  // The sheet's own, or the nearest up the line of inheritance.
  XmlNode NearestCell(const CellAddress& address) const;
  bool RowExists(const SectionInfo& section, RowKey key, bool localOnly) const;
  bool CellIsOwn(const CellAddress& address) const;

  void EnsureElement(TreeEditor& editor);
  pugi::xml_node EnsureSection(TreeEditor& editor, const SectionInfo& section);
  pugi::xml_node EnsureRow(TreeEditor& editor, const CellAddress& address);
  pugi::xml_node EnsureCell(TreeEditor& editor, const CellAddress& address);
  pugi::xml_node InsertRow(TreeEditor& editor, const SectionInfo& section, std::string_view key, bool full, bool deleted = false);

  XmlPart* part_;
  XmlNode element_;
  const Sheet* base_;
  mutable std::unique_ptr<RowIndex> rows_;
  mutable std::unique_ptr<FormulaIndex> formulas_;
};

// Whether a cell holds a string even without a unit; what it holds when no one has written it.
bool IsTextCell(const CellAddress& address);
std::string_view DefaultValue(const CellAddress& address);

// Of a Section element; null for one that we do not read the rows of.
const SectionInfo* SectionOfElement(pugi::xml_node section);
// Of a Row element in that section.
RowKey KeyOfRow(const SectionInfo& section, pugi::xml_node row);

}  // namespace vardo
