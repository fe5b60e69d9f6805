// A drawing in memory: its pages, shapes and masters, held in the trees of its file's parts.
//   The trees are the store. The objects here find their way in them; they are told of every edit and keep up with it. Shapes are
//   known by page and ID, pages by ID: neither is ever used twice while the drawing is open.
#pragma once

#include "document/DrawingMaster.h"
#include "document/DrawingPage.h"
#include "document/EditObserver.h"
#include "document/TreeEditor.h"
#include "document/UndoStep.h"
#include "platform/FileSystem.h"

#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace vardo {

// Who wants to know what a step has touched: a shape or a page's own sheet, and the cell if it is one.
struct TouchedCell {
  int page = 0, shape = 0;
  SheetKind kind = SheetKind::Shape;
  CellAddress cell;  // of no cell: the shape itself, which has come, gone or changed
  friend bool operator==(const TouchedCell&, const TouchedCell&) = default;
};

struct TouchedCellHash {
  size_t operator()(const TouchedCell& touched) const {
    return CellAddressHash()(touched.cell) ^ (static_cast<size_t>(touched.page) << 40) ^
           (static_cast<size_t>(touched.shape) << 8);
  }
};

class Drawing : private EditObserver {
 public:
  // Throw FileError.
  static std::unique_ptr<Drawing> Open(const std::filesystem::path& file);
  static std::unique_ptr<Drawing> New();
  ~Drawing() override;
  // As the package saves.
  void Save(const std::filesystem::path& file, Overwrite overwrite = Overwrite::Refuse);
  bool Changed() const;
  // The file that a save would write. Throws FileError.
  std::string FileBytes() const;

  Package& package() { return *package_; }
  EditLog& log() { return log_; }
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

  // The document's own sheet, empty when the file has none.
  Sheet& DocumentSheet() { return *documentSheet_; }

  // Counts up whenever pages, shapes, rows or masters go: until then, what has been found is good.
  unsigned structure() const { return structure_; }

  // What edits have touched since it was last asked for, each once; only while it is wanted.
  void WantTouched(bool wanted);
  std::vector<TouchedCell> TakeTouched();

  // --- For the pages.
  void NoteStructure() { ++structure_; }
  int HighestShapeId(int page) const;
  void NoteShapeId(int page, int shape);
  // The shapes of masters that have a formula which makes that call.
  const std::vector<const Sheet*>& MasterShapesCalling(const CellCall& call);

 private:
  explicit Drawing(std::unique_ptr<Package> package);
  void ReadDocument();
  void ReadMasters();
  void ReadPages();
  void IndexPages();
  std::string RelatedPart(std::string_view from, std::string_view typeEnding) const;
  XmlPart& EnsureMastersPart();
  void LoosenFromBackground(const DrawingPage& background);

  void Inserted(XmlPart& part, pugi::xml_node node) override;
  void Removing(XmlPart& part, pugi::xml_node node) override;
  void Changing(XmlPart& part, pugi::xml_node node) override;
  void Changed(XmlPart& part, pugi::xml_node node) override;
  void Shifted(const RowsShifted& rows, bool again) override;
  void PageListed(XmlPart& list, pugi::xml_node entry);
  void Unlist(const DrawingPage& page);
  void MasterListed(pugi::xml_node entry);
  // formulas: some of them may be other ones now.
  void SheetEdited(XmlPart& part, pugi::xml_node node, bool isThere, bool formulas);
  void NoteCallsOf(const DrawingMaster& master);
  DrawingPage* PageOf(const XmlPart& part) const;
  DrawingPage* PageAround(pugi::xml_node node) const;
  void NoteTouched(XmlPart& part, pugi::xml_node node);

  std::unique_ptr<Package> package_;
  EditLog log_;
  TreeEditor editor_;
  std::string pagesPart_, mastersPart_;
  std::vector<std::unique_ptr<DrawingMaster>> masters_;
  std::vector<std::unique_ptr<DrawingPage>> pages_;
  std::unordered_map<int, DrawingPage*> pagesById_;
  std::unordered_map<const XmlPart*, DrawingPage*> pagesByPart_;
  std::unordered_map<XmlNode, DrawingPage*> pagesByEntry_;
  std::unordered_map<int, int> highestIds_;  // by page
  int highestPageId_ = -1;
  std::unique_ptr<Sheet> documentSheet_;
  std::unordered_map<CellCall, std::vector<const Sheet*>, CellCallHash> callsOfMasters_;
  bool callsOfMastersKnown_ = false;
  unsigned structure_ = 0;
  std::string formulaBefore_;  // of a page's or the document's own cell that is being changed
  bool wantsTouched_ = false;
  std::vector<TouchedCell> touched_;
  std::unordered_set<TouchedCell, TouchedCellHash> touchedOnce_;

 public:
  // Who hears of rows that have shifted, besides the drawing itself; null for nobody.
  std::function<void(const RowsShifted&, bool again)> onRowsShifted;
};

}  // namespace vardo
