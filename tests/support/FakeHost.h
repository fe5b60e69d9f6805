// The little of a drawing host that values in cells need: shapes are maps from cell names to formulas, pages are lists of shapes.
// Every call is counted.
#pragma once

#include "addin/Global_Variables.h"
#include "addin/host/HostConstants.h"
#include "addin/host/IVApplication.h"
#include "addin/host/IVDocument.h"
#include "addin/host/IVShape.h"
#include "base/Characters.h"
#include "base/Errors.h"
#include "base/Text.h"

#include <cstddef>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace vardo::fake {

inline int hostCalls = 0;

[[noreturn]] inline void Refuse(std::int32_t number, const char* what) { throw HostError(number, what); }
[[noreturn]] inline void Unused() { Refuse(kHostNotAllowed, "this host has no such operation"); }

class Cell : public IVCell {
 public:
  Cell(std::string& formula, std::string_view name, std::vector<std::string>& written)
      : formula_(formula), name_(name), written_(written) {}
  std::string Formula() override { return ++hostCalls, formula_; }
  void SetFormula(std::string_view formula) override {
    ++hostCalls;
    formula_ = formula;
    written_.push_back(name_);
  }
  void SetResult(double) override { Unused(); }

 private:
  std::string& formula_;
  std::string name_;
  std::vector<std::string>& written_;
};

class Master : public IVMaster {
 public:
  explicit Master(std::string_view name) : name_(name) {}
  std::string Name() override { return name_; }
  void Delete() override { Unused(); }

 private:
  std::string name_;
};

class Shape : public IVShape {
 public:
  // Formulas by cell name. Tests look at them and change them directly.
  std::optional<std::string> Find(std::string_view name) const {
    const auto found = cells_.find(LowerAscii(name));
    return found == cells_.end() ? std::nullopt : std::optional(found->second);
  }
  void Put(std::string_view name, std::string_view formula) { cells_[LowerAscii(name)] = formula; }
  size_t CellCount() const { return cells_.size(); }
  // The names of the rows added, as written.
  std::vector<std::string> rowsAdded;
  // The cells written through cell objects, one entry a write.
  std::vector<std::string> written;
  std::string master;
  int index = 0;

  IVCellPtr Cells(std::string_view name) override {
    ++hostCalls;
    const auto found = cells_.find(LowerAscii(name));
    if (found == cells_.end()) Refuse(kHostNoSuchCell, "no such cell");
    return std::make_shared<Cell>(found->second, name, written);
  }
  bool CellExists(std::string_view name, short) override { return ++hostCalls, Find(name).has_value(); }
  short AddNamedRow(short section, std::string_view name, short) override {
    ++hostCalls;
    const bool isRowName = name.find_first_of(" .;!") == name.npos;
    if (section != kSectionProp || !isRowName || Find("Prop." + std::string(name))) Refuse(kHostNotAllowed, "no such row name");
    rowsAdded.emplace_back(name);
    for (const char* suffix : {"", ".Label", ".Prompt", ".Type", ".SortKey", ".Format", ".Invisible", ".Verify"}) {
      Put("Prop." + std::string(name) + suffix, "");
    }
    return static_cast<short>(rowsAdded.size() - 1);
  }
  IVMasterPtr Master() override { return std::make_shared<fake::Master>(master); }
  int Index() override { return index; }

  IVCellPtr CellsSRC(short, short, short) override { Unused(); }
  short CellsRowIndex(std::string_view) override { Unused(); }
  std::string Text() override { Unused(); }
  void SetText(std::string_view) override { Unused(); }
  std::string Name() override { Unused(); }
  int ID() override { Unused(); }
  short Type() override { Unused(); }
  IVPagePtr ContainingPage() override { Unused(); }
  IVShapesPtr Shapes() override { Unused(); }
  int RowCount(short) override { Unused(); }
  bool RowExists(short, short, short) override { Unused(); }
  void AddSection(short) override { Unused(); }
  short AddRow(short, short, short) override { Unused(); }
  void DeleteRow(short, short) override { Unused(); }
  int SetFormulas(const std::vector<std::int16_t>&, const std::vector<std::string>&, short) override { Unused(); }
  void Delete() override { Unused(); }

 private:
  std::map<std::string, std::string> cells_;
};

class Shapes : public IVShapes {
 public:
  std::vector<std::shared_ptr<Shape>> all;
  int Count() override { return static_cast<int>(all.size()); }
  IVShapePtr Item(int index) override {
    ++hostCalls;
    if (index < 1 || index > Count()) Refuse(kHostBadIndex, "no such shape");
    return all[index - 1];
  }
  IVShapePtr Item(std::string_view) override { Unused(); }
  IVShapePtr ItemFromID(int) override { Unused(); }
};

class Page : public IVPage {
 public:
  std::shared_ptr<Shape> sheet = std::make_shared<Shape>();
  std::shared_ptr<fake::Shapes> shapes = std::make_shared<fake::Shapes>();
  bool hasSheet = true;

  // A shape of that master with these formulas ("" and "Prop." around them are put on); not entered in any register.
  std::shared_ptr<Shape> Drop(std::string_view master, const std::map<std::string, std::string>& fields = {}) {
    auto shape = std::make_shared<Shape>();
    shape->master = master;
    for (const auto& [field, text] : fields) shape->Put("Prop." + field, '"' + text + '"');
    shapes->all.push_back(shape);
    shape->index = shapes->Count();
    return shape;
  }
  void Register(const std::string& master, const std::string& indexes) { sheet->Put("Prop." + master, '"' + indexes + '"'); }

  IVShapePtr PageSheet() override {
    ++hostCalls;
    if (!hasSheet) Refuse(kHostObjectGone, "the page is gone");
    return sheet;
  }
  IVShapesPtr Shapes() override { return ++hostCalls, shapes; }
  int ID() override { Unused(); }
  std::string Name() override { Unused(); }
  void SetName(std::string_view) override { Unused(); }
  void Delete(short) override { Unused(); }
};

class Pages : public IVPages {
 public:
  std::vector<std::shared_ptr<Page>> all;
  int Count() override { return ++hostCalls, static_cast<int>(all.size()); }
  IVPagePtr Item(int index) override { return ++hostCalls, all.at(index - 1); }
  IVPagePtr Item(std::string_view) override { Unused(); }
  IVPagePtr Add() override { Unused(); }
};

class Document : public IVDocument {
 public:
  std::shared_ptr<fake::Pages> pages = std::make_shared<fake::Pages>();
  int ID() override { Unused(); }
  IVPagesPtr Pages() override { return ++hostCalls, pages; }
  std::string Path() override { Unused(); }
  IVMastersPtr Masters() override { Unused(); }
  IVShapePtr DocumentSheet() override { Unused(); }
};

class Application : public IVApplication {
 public:
  std::shared_ptr<Document> document = std::make_shared<Document>();
  IVPagePtr ActivePage() override { return ++hostCalls, document->pages->all.front(); }
  IVDocumentPtr ActiveDocument() override { return ++hostCalls, document; }
  IVWindowPtr ActiveWindow() override { Unused(); }
  IVEventListPtr EventList() override { Unused(); }
  IVUIObjectPtr CustomMenus() override { Unused(); }
  IVUIObjectPtr BuiltInMenus() override { Unused(); }
  void SetCustomMenus(const IVUIObjectPtr&) override { Unused(); }
  bool IsUndoingOrRedoing() override { Unused(); }
  int BeginUndoScope(std::string_view) override { Unused(); }
  void EndUndoScope(int, bool) override { Unused(); }
};

// A drawing of one page, the add-in's while it lives.
class Drawing {
 public:
  Drawing() {
    AddPage();
    visApp = application_;
  }
  ~Drawing() { visApp = nullptr; }
  Drawing(const Drawing&) = delete;
  Drawing& operator=(const Drawing&) = delete;

  std::shared_ptr<Page> AddPage() {
    pages().push_back(std::make_shared<Page>());
    return pages().back();
  }
  // Counted from 1.
  Page& page(int number = 1) { return *pages().at(number - 1); }
  IVPagePtr pagePtr(int number = 1) { return pages().at(number - 1); }

 private:
  std::vector<std::shared_ptr<Page>>& pages() { return application_->document->pages->all; }
  std::shared_ptr<Application> application_ = std::make_shared<Application>();
};

}  // namespace vardo::fake
