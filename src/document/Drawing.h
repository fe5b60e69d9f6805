// A drawing in memory: its pages, shapes and masters, held in the trees of its file's parts.
//   The trees are the store; the objects here are views that find their way in them, made anew after an undo. Shapes are known by
//   page and ID, pages by ID: both are never used twice while the drawing is open.
#pragma once

#include "document/Journal.h"
#include "document/Sheet.h"
#include "document/TreeEditor.h"
#include "package/Package.h"

#include <filesystem>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace vardo {

class Drawing;
class DrawingPage;
struct ConnectorEnd;

// The cells of a sheet whose own formulas name a cell, by that cell: "pinx", and of another shape of the page "12!pinx".
using FormulaIndex = std::unordered_map<std::string, std::vector<CellAddress>>;
FormulaIndex IndexFormulas(const Sheet& sheet, DrawingPage* page);

// A shape of a master, or of a page.
class DrawingShape : public Sheet {
 public:
  DrawingShape(XmlPart& part, pugi::xml_node element, const Sheet* base, const DrawingShape* parent)
      : Sheet(part, element, base), id_(element.attribute("ID").as_int()), parent_(parent) {}

  int id() const { return id_; }
  const DrawingShape* parent() const { return parent_; }
  // kShapeType...
  short Type() const;
  // The master it was made from, by the drawing's number; -1 when it has none.
  int MasterId() const;
  // Without the closing line end of the text block.
  std::string Text() const;
  void SetText(TreeEditor& editor, std::string_view text);

 private:
  int id_;
  const DrawingShape* parent_;
};

class DrawingMaster {
 public:
  DrawingMaster(pugi::xml_node entry, std::string partName, XmlPart& part);

  int id() const { return id_; }
  std::string Name() const;
  pugi::xml_node entry() const { return entry_; }
  const std::string& partName() const { return partName_; }
  XmlPart& part() const { return part_; }
  // The one shape that a dropped instance is made from; null in a damaged master.
  const DrawingShape* TopShape() const;
  // A shape inside it, by its number in the master; null when there is none.
  const DrawingShape* FindShape(int id) const;

 private:
  pugi::xml_node entry_;
  int id_;
  std::string partName_;
  XmlPart& part_;
  std::vector<std::unique_ptr<DrawingShape>> shapes_;
};

// A page's own sheet, which a file may leave out.
class SheetOfPage : public Sheet {
 public:
  SheetOfPage(XmlPart& list, pugi::xml_node page) : Sheet(list, page.child("PageSheet"), nullptr), page_(page) {}
  // A new one of the page, with the styles it must name and no cells.
  static pugi::xml_node Insert(TreeEditor& editor, XmlPart& list, pugi::xml_node page);

 private:
  pugi::xml_node MakeElement(TreeEditor& editor) override { return Insert(editor, part(), page_); }
  pugi::xml_node page_;
};

class DrawingPage {
 public:
  DrawingPage(Drawing& drawing, pugi::xml_node entry, std::string partName, XmlPart* contents);

  int id() const { return id_; }
  std::string Name() const;
  void SetName(std::string_view name);
  pugi::xml_node entry() const { return entry_; }
  const std::string& partName() const { return partName_; }
  // Null for the page of a stencil, which has no contents.
  XmlPart* contents() const { return contents_; }
  Sheet& PageSheet() { return *sheet_; }

  // Top-level shapes in drawing order.
  int ShapeCount();
  DrawingShape& ShapeAt(int index);  // 1-based, within 1 .. ShapeCount
  // Any shape of the page, also one inside a group; null when there is none.
  DrawingShape* FindShape(int id);
  DrawingShape* FindShape(std::string_view name);
  // As a formula names it: by name, or as "Sheet.12". Null for what is no shape of the page.
  DrawingShape* FindSheet(std::string_view nameInFormula);
  // The IDs of the shapes whose own formulas name that shape, or the page's sheet, and maybe of some that no longer do.
  static constexpr int kPageSheet = 0;
  const std::vector<int>& ReadersOf(int shapeId);
  // A shape's formulas have been written.
  void NoteReferences(const DrawingShape& reader);
  // Makes the Connect element of a connector's end say what its formulas say.
  void KeepConnect(const DrawingShape& connector, const ConnectorEnd& end);
  // A connection point has been put in (+1) or taken out (-1) at that position: formulas that name points behind it name them
  // anew, and ends that were glued to one taken out stay where they are, loose.
  void RenumberPoints(DrawingShape& shape, int position, int by);
  // 1-based; 0 for a shape inside a group.
  int IndexOf(const DrawingShape& shape);
  std::string NameOf(const DrawingShape& shape);

  // Appends an instance of a master and returns it. x and y are its pin's place; a connector's pin is between its ends.
  DrawingShape& AddInstance(const DrawingMaster& master, double x, double y);
  // Appends a copy of a shape of any page of the drawing. Glue to shapes that were not copied is loosened.
  DrawingShape& AddCopy(const DrawingShape& original, const std::unordered_map<int, int>& newIds, int newId);
  // The glue of the originals that are connectors to others of them, for the copies. from is the originals' page.
  void CopyGlue(DrawingPage& from, const std::vector<int>& originals, const std::unordered_map<int, int>& newIds);
  int TakeNewId();
  // Those that the page has, with all shapes inside them.
  void Remove(const std::vector<int>& shapeIds);
  // The shapes made from a master that is about to go get all they had from it as their own.
  void LetGoOf(const DrawingMaster& master);

 private:
  struct Entry {
    std::unique_ptr<DrawingShape> shape;
    int index = 0;
  };
  void EnsureShapes();
  void EnsureIndexes();
  void EnsureNames();
  void EnsureReaders();
  void EnsureConnects();
  DrawingShape* AddView(pugi::xml_node element, const DrawingShape* parent);
  const Sheet* BaseOf(pugi::xml_node element, const DrawingShape* parent) const;
  pugi::xml_node ShapesElement();
  pugi::xml_node ConnectsElement();
  // The Connect elements that name the shape at either end.
  std::vector<pugi::xml_node> ConnectsOf(int shapeId);
  void NoteConnect(pugi::xml_node connect);
  DrawingShape& Adopt(pugi::xml_node element, const std::string& name);
  void AdoptInnerShapes(const DrawingShape& group);
  std::string FreeName(std::string_view wanted, int id);
  void InsertInnerShapes(pugi::xml_node instance, pugi::xml_node original);
  void TellOfLoss(int shapeId);
  void LoosenGlueTo(const std::set<int>& shapeIds);
  void LoosenEnd(DrawingShape& connector, const ConnectorEnd& end);
  void EnsureMasterRelationship(const DrawingMaster& master);

  Drawing& drawing_;
  pugi::xml_node entry_;
  int id_;
  std::string partName_;
  XmlPart* contents_;
  std::unique_ptr<Sheet> sheet_;
  std::vector<DrawingShape*> topLevel_;
  std::unordered_map<int, Entry> shapes_;
  std::unordered_map<int, std::string> names_;
  std::unordered_map<std::string, int> idsByName_;
  std::unordered_map<int, std::vector<int>> readers_;
  std::unordered_map<int, std::vector<pugi::xml_node>> connects_;  // by both their shapes; maybe some that have gone
  bool shapesKnown_ = false, indexesKnown_ = false, namesKnown_ = false, readersKnown_ = false, connectsKnown_ = false;
  int highestId_ = 0;
};

class Drawing {
 public:
  // Throw FileError.
  static std::unique_ptr<Drawing> Open(const std::filesystem::path& file);
  static std::unique_ptr<Drawing> New();
  void Save(const std::filesystem::path& file, Overwrite overwrite = Overwrite::Refuse) { package_->Save(file, overwrite); }
  bool Changed() const { return package_->changed(); }

  Package& package() { return *package_; }
  Journal& journal() { return journal_; }
  TreeEditor& editor() { return editor_; }

  int PageCount() const { return static_cast<int>(pages_.size()); }
  DrawingPage& PageAt(int index) { return *pages_[static_cast<size_t>(index - 1)]; }  // 1-based, within 1 .. PageCount
  DrawingPage* FindPage(int id);
  DrawingPage* FindPage(std::string_view name);
  int IndexOf(const DrawingPage& page) const;  // 1-based
  DrawingPage& AddPage(DrawingPage& sizedLike);
  void RemovePage(DrawingPage& page, bool renumber);

  int MasterCount() const { return static_cast<int>(masters_.size()); }
  DrawingMaster& MasterAt(int index) { return *masters_[static_cast<size_t>(index - 1)]; }  // 1-based
  DrawingMaster* FindMaster(int id) const;
  DrawingMaster* FindMaster(std::string_view name) const;
  // A master of the drawing, brought in from the built-in stencil when the drawing has none of that name; null when that has none
  // either.
  DrawingMaster* BringMaster(std::string_view name);
  void RemoveMaster(DrawingMaster& master);

  // The document's own sheet; null when the file has none.
  Sheet* DocumentSheet() { return documentSheet_.get(); }

  // What the formula of a sheet's cell can refer to; good while page and sheet are.
  FormulaScope ScopeFor(DrawingPage* page, const Sheet& sheet, const CellAddress& address);
  // Of a master's shape, kept.
  const FormulaIndex& FormulasOfMaster(const Sheet& shape);

  std::string Undo();
  std::string Redo();

 private:
  explicit Drawing(std::unique_ptr<Package> package);
  void ReadDocument();
  void ReadMasters();
  void ReadPages();
  void IndexPages();
  // Makes all views anew from the trees.
  void Reread();
  std::string RelatedPart(std::string_view from, std::string_view typeEnding) const;
  XmlPart& EnsureMastersPart();

  // A page's or master's part and the relationship by which the list of pages or masters names it.
  struct ListedPart {
    std::string list, type, part, relationship;
  };
  void SetListed(const ListedPart& listed, bool present);
  void Unlist(const ListedPart& listed);

  std::unique_ptr<Package> package_;
  Journal journal_;
  TreeEditor editor_{journal_};
  std::string pagesPart_, mastersPart_;
  std::vector<std::unique_ptr<DrawingMaster>> masters_;
  std::vector<std::unique_ptr<DrawingPage>> pages_;
  std::unordered_map<int, DrawingPage*> pagesById_;
  std::unordered_map<const Sheet*, FormulaIndex> masterFormulas_;
  std::unordered_map<int, int> highestIds_;  // by page: IDs of deleted shapes are not used again
  int highestPageId_ = -1;
  std::unique_ptr<Sheet> documentSheet_;

  friend class DrawingPage;
};

}  // namespace vardo
