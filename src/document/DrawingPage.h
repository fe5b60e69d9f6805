// A page of the drawing: its shapes, their names, what they are glued to, and which formulas read which sheets.
//   All of that is found in the page's tree when it is first asked for, and kept up by the edits.
#pragma once

#include "document/DrawingShape.h"
#include "document/ListedTally.h"
#include "document/PageReaders.h"
#include "document/PropertyColumns.h"
#include "document/ShapeNames.h"

#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace vardo {

class Drawing;
class DrawingMaster;
struct ConnectorEnd;

// A page's own sheet, which a file may leave out.
class SheetOfPage : public Sheet {
 public:
  SheetOfPage(XmlPart& list, pugi::xml_node page);

 private:
  void MakeElement(TreeEditor& editor) override;
  XmlNode page_;
};

class DrawingPage {
 public:
  DrawingPage(Drawing& drawing, XmlPart& list, pugi::xml_node entry, std::string partName, XmlPart* contents);
  ~DrawingPage();

  int id() const { return id_; }
  std::string Name() const;
  void SetName(std::string_view name);
  // Stands behind other pages, and is no page of the drawing's own.
  bool IsBackground() const;
  // In the list of pages.
  XmlNode entry() const { return entry_; }
  const std::string& partName() const { return partName_; }
  // Null for the page of a stencil, which has no contents.
  XmlPart* contents() const { return contents_; }
  Sheet& PageSheet() { return sheet_; }

  // Top-level shapes in drawing order.
  int ShapeCount();
  DrawingShape& ShapeAt(int index);  // 1-based, within 1 .. ShapeCount
  // Any shape of the page, also one inside a group; null when there is none.
  DrawingShape* FindShape(int id);
  DrawingShape* FindShape(std::string_view name);
  // As a formula names it: "Sheet.12" is the shape of that number, whatever others are called. Null for what is no shape of the
  // page.
  DrawingShape* FindSheet(std::string_view nameInFormula);
  // 1-based; 0 for a shape inside a group.
  int IndexOf(const DrawingShape& shape);
  const std::string& NameOf(const DrawingShape& shape);
  // In a formula that a person sees.
  std::string NameInFormula(const DrawingShape& shape);
  const std::vector<DrawingShape*>& TopLevel();
  // All shapes inside a group, at any depth.
  std::vector<DrawingShape*> InnerShapes(const DrawingShape& group);

  // What the connectors of the page are glued to, as its Connect elements say.
  struct GluedEnd {
    int connector, target;
    bool isBegin;
  };
  std::vector<GluedEnd> GluedEnds();
  // Makes the Connect element of a connector's end say what its formulas say.
  void KeepConnect(const DrawingShape& connector, const ConnectorEnd& end);
  // A connection point has been put in (+1) or taken out (-1) at that position: formulas that name points behind it name them
  // anew, and ends that were glued to one taken out stay where they are, loose.
  void RenumberPoints(DrawingShape& shape, int position, int by);

  // Appends an instance of a master and returns it. x and y are its pin's place; a connector's pin is between its ends.
  DrawingShape& AddInstance(const DrawingMaster& master, double x, double y);
  // Appends copies of shapes of any pages and returns their numbers. Glue among them is theirs, too; glue to shapes that were not
  // copied is loosened.
  struct Original {
    DrawingPage* page;
    int id;
  };
  std::vector<int> AddCopies(const std::vector<Original>& originals);
  // Puts a shape of the page itself before another in drawing order, or last with 0.
  void MoveBefore(int shape, int before);
  // Those that the page has, with all shapes inside them.
  void Remove(const std::vector<int>& shapeIds);
  // The shapes made from a master that is about to go get all they had from it as their own.
  void LetGoOf(const DrawingMaster& master);

  // --- For the recalculation.
  const PageReaders& Readers();
  // What formulas of the page may call a sheet: one that is the page's own, or a shape. Only names that some formula has.
  std::vector<Symbol> CalledAs(const Sheet& sheet);
  // The shapes that inherit from that shape of a master.
  const std::vector<DrawingShape*>& InstancesOf(const Sheet& masterShape);

  // --- Properties in bulk.
  // The formulas of "Prop." + field as they are stored, to be asked of shapes of this page with their slots.
  PropertyColumns::Column& PropertyColumn(Symbol field) { return columns_.Of(field); }
  // Of the page's own sheet; empty when it has no such property.
  std::string ListOfPositions(Symbol field) const;
  std::optional<ListedTally::Count> CountInListedShapes(Symbol list, Symbol field, const std::string& key);

  // --- What the drawing has heard of edits of the page's part, or of its sheet.
  void Inserted(pugi::xml_node node);
  void Removing(pugi::xml_node node);
  void Changing(pugi::xml_node node);
  void Changed(pugi::xml_node node);
  void MasterChanged();
  // The page's element has got a sheet, or lost it; something in that sheet has changed.
  void SetPageSheet(XmlNode element);
  void PageSheetChanged(bool rows, bool formulas);

 private:
  using NewIds = std::unordered_map<int, int>;

  // What is half found, or half kept up, when something fails is forgotten.
  template <class Work>
  decltype(auto) Wholly(const Work& work);
  void EnsureShapes();
  void EnsureOrder();
  void EnsureIndexes();
  void CountIndexes();
  void EnsureNames();
  void EnsureConnects();
  ShapeNames::Claim ClaimOf(const DrawingShape& shape) const;
  void AddShapes(pugi::xml_node element, DrawingShape* parent);
  void RemoveShapes(pugi::xml_node element);
  void AddConnect(pugi::xml_node connect);
  void RemoveConnect(pugi::xml_node connect);
  const Sheet* BaseOf(pugi::xml_node element, const DrawingShape* parent) const;
  DrawingShape* ShapeAround(pugi::xml_node node);
  void NoteFormulas(pugi::xml_node node, int by);
  void NoteReader(pugi::xml_node shape);
  void ForgetProperties(const DrawingShape& shape, pugi::xml_node node);
  void ForgetPositions();
  void ForgetAll();

  pugi::xml_node ShapesElement();
  pugi::xml_node ConnectsElement();
  // The Connect elements that name the shape at either end, in their order.
  std::vector<XmlNode> ConnectsOf(int shapeId);
  int TakeNewId();
  NewIds TakeNewIds(const std::vector<Original>& originals, const DrawingPage* of);
  void AddCopy(const DrawingShape& original, DrawingPage& from, const NewIds& newIds);
  std::optional<std::string> Renumbered(std::string_view formula, const NewIds& newIds);
  void CopyGlue(DrawingPage& from, const NewIds& newIds);
  void KeepNames(const std::vector<std::pair<int, std::string>>& names);
  void TellOfLoss(int shapeId);
  void LoosenGlueTo(const std::set<int>& shapeIds);
  void LoosenEnd(DrawingShape& connector, const ConnectorEnd& end);
  void EnsureMasterRelationship(const DrawingMaster& master);

  Drawing& drawing_;
  XmlNode entry_;
  int id_;
  std::string partName_;
  XmlPart* contents_;
  SheetOfPage sheet_;

  bool shapesKnown_ = false, orderKnown_ = false, indexesKnown_ = false, connectsKnown_ = false, instancesKnown_ = false;
  std::unordered_map<int, std::unique_ptr<DrawingShape>> shapes_;
  std::vector<DrawingShape*> topLevel_;  // null where a shape has gone
  bool hasGaps_ = false;
  ShapeNames names_;
  PageReaders readers_;
  std::unordered_map<int, std::vector<XmlNode>> connects_;  // by both their shapes
  std::unordered_map<const Sheet*, std::vector<DrawingShape*>> instances_;
  PropertyColumns columns_;
  std::vector<std::uint32_t> freeSlots_;
  std::uint32_t slots_ = 0;
  std::map<std::pair<Symbol, Symbol>, ListedTally> tallies_;  // by list and field
  std::string formulaBefore_;                                 // of the cell that is being changed
};

}  // namespace vardo
