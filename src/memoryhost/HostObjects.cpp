#include "memoryhost/HostObjects.h"

#include "addin/host/HostConstants.h"
#include "addin/host/IVApplication.h"
#include "addin/host/IVDocument.h"
#include "addin/host/IVShape.h"
#include "base/Errors.h"
#include "base/Numbers.h"
#include "base/Text.h"
#include "platform/Platform.h"

namespace vardo {
namespace {

HostError BadIndex(std::string_view what, const std::string& index) {
  return HostError(kHostBadIndex, "There is no " + std::string(what) + " " + InWords(index) + ".");
}

HostError NoSuchCell(std::string_view name) {
  return HostError(kHostNoSuchCell, "The cell " + InWords(name) + " does not exist.");
}

HostError NoSuchCell(short section, short row, short column) {
  return HostError(kHostNoSuchCell, "There is no cell " + std::to_string(column) + " in row " + std::to_string(row) +
                                        " of section " + std::to_string(section) + ".");
}

HostError Guarded(const CellAddress& address) {
  return HostError(kHostGuarded, "The cell " + InWords(address.cell.text()) + " is guarded: its formula stays.");
}

std::string PropertyCell(std::string_view field) { return "Prop." + std::string(field); }

// The sheet that an object stands for, looked up again only when something has gone meanwhile.
class FoundSheet {
 public:
  FoundSheet(DrawingHost& host, const SheetRef& ref) : host_(host), ref_(ref) {}
  const DrawingHost::SheetView& View() {
    if (const std::uint64_t stamp = host_.Stamp(); stamp != stamp_ || !view_.sheet) {
      view_ = host_.Resolve(ref_);
      stamp_ = stamp;
    }
    return view_;
  }
  DrawingHost& host() const { return host_; }
  const SheetRef& ref() const { return ref_; }
  // When it was looked up.
  std::uint64_t stamp() const { return stamp_; }

 private:
  DrawingHost& host_;
  SheetRef ref_;
  DrawingHost::SheetView view_{};
  std::uint64_t stamp_ = 0;
};

class CellObject : public IVCell {
 public:
  CellObject(const FoundSheet& sheet, const CellAddress& address)
      : sheet_(sheet), address_(address), row_(sheet.host().HoldRow(sheet.ref(), address)), stamp_(sheet.stamp()) {}
  std::string Formula() override {
    const DrawingHost::SheetView& view = Existing();
    return sheet_.host().FormulaOf(view, address_);
  }
  void SetFormula(std::string_view formula) override {
    if (IsGuarded(Existing().sheet->Formula(address_))) throw Guarded(address_);
    sheet_.host().WriteFormula(sheet_.ref(), address_, formula);
  }
  void SetResult(double value) override { SetFormula(NumberText(value)); }

 private:
  const DrawingHost::SheetView& Existing() {
    const DrawingHost::SheetView& view = sheet_.View();
    const bool there = row_ ? !row_->gone : stamp_ == sheet_.stamp() || view.sheet->Exists(address_);
    if (!there) throw HostError(kHostObjectGone, "The cell " + InWords(address_.cell.text()) + " has gone with its row.");
    if (row_) address_.row = view.sheet->Rows(*address_.section)[static_cast<size_t>(row_->position)].key;
    stamp_ = sheet_.stamp();
    return view;
  }
  FoundSheet sheet_;
  CellAddress address_;
  std::shared_ptr<const HeldRow> row_;  // null where the address itself stays good
  std::uint64_t stamp_;                 // of the sheet, when the cell was there
};

class MasterObject : public IVMaster {
 public:
  MasterObject(DrawingHost& host, int drawing, int id) : host_(host), drawing_(drawing), id_(id) {}
  std::string Name() override { return Get().Name(); }
  void Delete() override { host_.DeleteMaster(Get().id()); }

 private:
  DrawingMaster& Get() {
    DrawingMaster* master = host_.IsOpen() && host_.serial() == drawing_ ? host_.drawing().FindMaster(id_) : nullptr;
    if (!master) throw HostError(kHostObjectGone, "The master has gone.");
    return *master;
  }
  DrawingHost& host_;
  int drawing_, id_;
};

// Those of a group.
class InnerShapesObject : public IVShapes {
 public:
  InnerShapesObject(DrawingHost& host, const SheetRef& group) : host_(host), group_(group) {}
  int Count() override { return static_cast<int>(Inner().size()); }
  IVShapePtr Item(int index) override {
    const auto inner = Inner();
    if (index < 1 || static_cast<size_t>(index) > inner.size()) throw BadIndex("shape", std::to_string(index));
    return Make(*inner[static_cast<size_t>(index) - 1]);
  }
  IVShapePtr Item(std::string_view name) override {
    return Make(One(std::string(name), [&](const DrawingShape& shape) { return Page().NameOf(shape) == name; }));
  }
  IVShapePtr ItemFromID(int id) override {
    return Make(One(std::to_string(id), [&](const DrawingShape& shape) { return shape.id() == id; }));
  }

 private:
  DrawingPage& Page() { return host_.ResolvePage(group_.drawing, group_.page); }
  std::vector<DrawingShape*> Inner() {
    if (!group_.IsShape()) return {};
    const DrawingShape& group = host_.ResolveShape(group_);
    std::vector<DrawingShape*> inner = Page().InnerShapes(group);
    std::erase_if(inner, [&](const DrawingShape* shape) { return shape->parent() != &group; });
    return inner;
  }
  template <class IsIt>
  DrawingShape& One(const std::string& index, const IsIt& isIt) {
    for (DrawingShape* shape : Inner())
      if (isIt(*shape)) return *shape;
    throw BadIndex("shape", index);
  }
  IVShapePtr Make(const DrawingShape& shape) { return MakeShape(host_, {group_.drawing, group_.page, shape.id()}); }
  DrawingHost& host_;
  SheetRef group_;
};

class ShapeObject : public IVShape {
 public:
  ShapeObject(DrawingHost& host, const SheetRef& ref) : host_(host), ref_(ref), sheet_(host, ref) {}

  IVCellPtr Cells(std::string_view name) override {
    if (auto address = View().Find(name)) return std::make_shared<CellObject>(sheet_, *address);
    throw NoSuchCell(name);
  }
  bool CellExists(std::string_view name, short localOnly) override {
    return View().Find(name, localOnly != kExistsAnywhere).has_value();
  }
  IVCellPtr CellsSRC(short section, short row, short column) override {
    if (auto address = View().Find(section, row, column)) return std::make_shared<CellObject>(sheet_, *address);
    throw NoSuchCell(section, row, column);
  }
  short CellsRowIndex(std::string_view name) override {
    const auto address = View().Find(name);
    if (!address) throw NoSuchCell(name);
    if (!address->section) return FindObjectCell(address->cell.text())->row;
    return static_cast<short>(View().PositionOf(*address).value());
  }

  std::string Text() override { return host_.ResolveShape(ref_).Text(); }
  void SetText(std::string_view text) override { host_.WriteText(ref_, text); }
  std::string Name() override { return host_.SheetName(ref_); }
  int ID() override { return ref_.IsShape() ? host_.ResolveShape(ref_).id() : 0; }
  int Index() override { return ref_.IsShape() ? Page().IndexOf(host_.ResolveShape(ref_)) : 0; }
  short Type() override {
    if (ref_.IsShape()) return host_.ResolveShape(ref_).Type();
    return IsDocumentSheet() ? kShapeTypeDocument : kShapeTypePage;
  }
  IVMasterPtr Master() override {
    if (!ref_.IsShape()) return nullptr;
    const int id = host_.ResolveShape(ref_).MasterId();
    return id < 0 || !host_.drawing().FindMaster(id) ? nullptr : std::make_shared<MasterObject>(host_, ref_.drawing, id);
  }
  IVPagePtr ContainingPage() override {
    if (IsDocumentSheet()) throw HostError(kHostNotAllowed, "The drawing's own sheet stands on no page.");
    return MakePage(host_, ref_.drawing, Page().id());
  }
  IVShapesPtr Shapes() override {
    View();
    return std::make_shared<InnerShapesObject>(host_, ref_);
  }

  int RowCount(short section) override {
    const SectionInfo* info = FindSection(section);
    return info ? static_cast<int>(View().Rows(*info).size()) : 0;
  }
  bool RowExists(short section, short row, short localOnly) override {
    if (section == kSectionObject)
      return !IsOneDimensionalRow(row) ? FindObjectCell(row, 0) != nullptr : View().IsOneDimensional();
    const SectionInfo* info = FindSection(section);
    if (!info || row < 0) return false;
    const std::vector<Sheet::Row>& rows = View().Rows(*info);
    return static_cast<size_t>(row) < rows.size() && (localOnly == kExistsAnywhere || rows[static_cast<size_t>(row)].local);
  }
  void AddSection(short section) override { host_.AddSection(ref_, Known(section)); }
  short AddRow(short section, short row, short) override { return host_.AddRow(ref_, Known(section), row); }
  short AddNamedRow(short section, std::string_view name, short) override {
    return host_.AddNamedRow(ref_, Known(section), name);
  }
  void DeleteRow(short section, short row) override { host_.DeleteRow(ref_, section, row); }

  int SetFormulas(const std::vector<std::int16_t>& stream, const std::vector<std::string>& formulas, short flags) override {
    if (formulas.empty() || stream.size() % 3 != 0)
      throw HostError(kHostNotAllowed, "A list of cells needs three numbers for each cell and a formula.");
    std::vector<CellAddress> cells;
    std::optional<HostError> refused;
    for (size_t i = 0; i + 2 < stream.size() && !refused; i += 3) {
      const auto address = View().Find(stream[i], stream[i + 1], stream[i + 2]);
      if (!address)
        refused = NoSuchCell(stream[i], stream[i + 1], stream[i + 2]);
      else if (!(flags & kSetBlastGuards) && IsGuarded(View().Formula(*address)))
        refused = Guarded(*address);
      else
        cells.push_back(*address);
    }
    host_.WriteFormulas(ref_, cells, formulas, refused);
    return static_cast<int>(cells.size());
  }
  void Delete() override {
    if (!ref_.IsShape()) throw HostError(kHostNotAllowed, "The sheet of a page or of the drawing cannot be deleted.");
    host_.DeleteShape(ref_);
  }

 private:
  bool IsDocumentSheet() const { return ref_.kind == SheetKind::Document; }
  Sheet& View() { return *sheet_.View().sheet; }
  DrawingPage& Page() { return host_.ResolvePage(ref_.drawing, ref_.page); }
  static const SectionInfo& Known(short section) {
    if (const SectionInfo* info = FindSection(section)) return *info;
    throw HostError(kHostNotAllowed, "Section " + std::to_string(section) + " takes no rows.");
  }
  DrawingHost& host_;
  SheetRef ref_;
  FoundSheet sheet_;
};

class ShapesObject : public IVShapes {
 public:
  ShapesObject(DrawingHost& host, int drawing, int pageId) : host_(host), drawing_(drawing), pageId_(pageId) {}
  int Count() override { return Page().ShapeCount(); }
  IVShapePtr Item(int index) override {
    DrawingPage& page = Page();
    if (index < 1 || index > page.ShapeCount()) throw BadIndex("shape", std::to_string(index));
    return Make(page.ShapeAt(index));
  }
  IVShapePtr Item(std::string_view name) override {
    if (DrawingShape* shape = Page().FindShape(name)) return Make(*shape);
    throw BadIndex("shape", std::string(name));
  }
  IVShapePtr ItemFromID(int id) override {
    if (DrawingShape* shape = Page().FindShape(id)) return Make(*shape);
    throw BadIndex("shape with the ID", std::to_string(id));
  }

 private:
  DrawingPage& Page() { return host_.ResolvePage(drawing_, pageId_); }
  IVShapePtr Make(const DrawingShape& shape) { return MakeShape(host_, {drawing_, pageId_, shape.id()}); }
  DrawingHost& host_;
  int drawing_, pageId_;
};

class PageObject : public IVPage {
 public:
  PageObject(DrawingHost& host, int drawing, int id) : host_(host), drawing_(drawing), id_(id) {}
  int ID() override { return Get().id(); }
  std::string Name() override { return Get().Name(); }
  void SetName(std::string_view name) override {
    Get();
    host_.RenamePage(id_, name);
  }
  IVShapePtr PageSheet() override { return MakeShape(host_, host_.RefTo(Get(), SheetKind::Page)); }
  IVShapesPtr Shapes() override {
    Get();
    return std::make_shared<ShapesObject>(host_, drawing_, id_);
  }
  void Delete(short renumber) override {
    Get();
    host_.DeletePage(id_, renumber != 0);
  }

  BulkTexts PropertyFormulas(std::span<const int> positions, std::string_view field) override {
    DrawingPage& page = Get();
    const std::vector<DrawingShape*>& shapes = page.TopLevel();
    PropertyColumns::Column& column = page.PropertyColumn(Symbol(field));
    BulkTexts formulas;
    formulas.Reserve(positions.size());
    for (const int position : positions) {
      if (position < 1 || static_cast<size_t>(position) > shapes.size()) throw BadIndex("shape", std::to_string(position));
      DrawingShape& shape = *shapes[static_cast<size_t>(position) - 1];
      const auto formula = column.FormulaOf(shape, shape.slot());
      // Shapes are named in formulas otherwise than they are stored.
      if (formula && NamesSheet(*formula))
        formulas.AddCopy(host_.FormulaOf({&page, &shape}, *shape.Find(PropertyCell(field))));
      else
        formulas.AddView(formula);
    }
    return formulas;
  }
  BulkTexts MasterNames() override {
    const std::vector<DrawingShape*>& shapes = Get().TopLevel();
    BulkTexts names;
    names.Reserve(shapes.size());
    for (const DrawingShape* shape : shapes)
      names.AddView(shape->master() ? std::optional<std::string_view>(shape->master()->Name()) : std::nullopt);
    return names;
  }
  std::optional<ListedTexts> CountInListedShapes(std::string_view listField, std::string_view field,
                                                 std::string_view text) override {
    auto count = Get().CountInListedShapes(Symbol(listField), Symbol(field), ThePlatform().CaseFoldKey(text));
    if (!count) return std::nullopt;
    return ListedTexts{count->times, std::move(count->lacking)};
  }

 private:
  DrawingPage& Get() { return host_.ResolvePage(drawing_, id_); }
  DrawingHost& host_;
  int drawing_, id_;
};

// The document and its collections name the drawing they were taken from; another one opened since is not theirs.
class OfDrawing {
 protected:
  OfDrawing(DrawingHost& host, int drawing) : host_(host), drawing_(drawing) {}
  Drawing& Get() {
    if (!host_.IsOpen() || host_.serial() != drawing_) throw HostError(kHostObjectGone, "The drawing has been closed.");
    return host_.drawing();
  }
  DrawingHost& host_;
  int drawing_;
};

class PagesObject : public IVPages, OfDrawing {
 public:
  using OfDrawing::OfDrawing;
  PagesObject(DrawingHost& host, int drawing) : OfDrawing(host, drawing) {}
  int Count() override { return Get().PageCount(); }
  IVPagePtr Item(int index) override {
    if (index < 1 || index > Count()) throw BadIndex("page", std::to_string(index));
    return MakePage(host_, drawing_, Get().PageAt(index).id());
  }
  IVPagePtr Item(std::string_view name) override {
    if (const DrawingPage* page = Get().FindPage(name)) return MakePage(host_, drawing_, page->id());
    throw BadIndex("page", std::string(name));
  }
  IVPagePtr Add() override {
    Get();
    return host_.AddPage(std::nullopt);
  }
};

class MastersObject : public IVMasters, OfDrawing {
 public:
  MastersObject(DrawingHost& host, int drawing) : OfDrawing(host, drawing) {}
  int Count() override { return Get().MasterCount(); }
  IVMasterPtr Item(int index) override {
    if (index < 1 || index > Count()) throw BadIndex("master", std::to_string(index));
    return std::make_shared<MasterObject>(host_, drawing_, Get().MasterAt(index).id());
  }
};

class DocumentObject : public IVDocument, OfDrawing {
 public:
  DocumentObject(DrawingHost& host, int drawing) : OfDrawing(host, drawing) {}
  int ID() override {
    Get();
    return drawing_;
  }
  IVPagesPtr Pages() override {
    Get();
    return std::make_shared<PagesObject>(host_, drawing_);
  }
  IVMastersPtr Masters() override {
    Get();
    return std::make_shared<MastersObject>(host_, drawing_);
  }
  std::string Path() override {
    Get();
    if (host_.file().empty()) return "";
    const std::u8string folder = std::filesystem::absolute(host_.file()).parent_path().u8string();
    return {folder.begin(), folder.end()};
  }
  IVShapePtr DocumentSheet() override {
    Get();
    return MakeShape(host_, {drawing_, 0, 0, SheetKind::Document});
  }
};

class SelectionObject : public IVSelection {
 public:
  SelectionObject(DrawingHost& host, int drawing, int pageId, std::vector<int> ids)
      : host_(host), drawing_(drawing), pageId_(pageId), ids_(std::move(ids)) {}
  int Count() override { return static_cast<int>(ids_.size()); }
  IVShapePtr Item(int index) override {
    if (index < 1 || index > Count()) throw BadIndex("selected shape", std::to_string(index));
    return MakeShape(host_, {drawing_, pageId_, ids_[static_cast<size_t>(index - 1)]});
  }

 private:
  DrawingHost& host_;
  int drawing_, pageId_;
  std::vector<int> ids_;
};

class WindowObject : public IVWindow, OfDrawing {
 public:
  WindowObject(DrawingHost& host, int drawing) : OfDrawing(host, drawing) {}
  IVSelectionPtr Selection() override {
    Get();
    return MakeSelection(host_, drawing_, host_.ActivePage().id(), host_.selection());
  }
  IVPagePtr Page() override {
    Get();
    return MakePage(host_, drawing_, host_.ActivePage().id());
  }
  void SetPage(std::string_view name) override {
    const DrawingPage* page = Get().FindPage(name);
    if (!page) throw BadIndex("page", std::string(name));
    host_.ShowPage(page->id());
  }
};

class EventListObject : public IVEventList {
 public:
  explicit EventListObject(DrawingHost& host) : host_(host) {}
  IVEventPtr AddAdvise(std::int16_t code, const IVEventSinkPtr& sink, std::string_view iid,
                       std::string_view targetArgs) override {
    if (!iid.empty() || !sink) throw HostError(kHostNotAllowed, "An event needs a sink and an empty interface identifier.");
    return host_.Advise(code, sink, targetArgs);
  }
  int Count() override { return host_.AdviseCount(); }
  IVEventPtr Item(int index) override {
    if (index < 1 || index > Count()) throw BadIndex("event", std::to_string(index));
    return host_.AdviseAt(index);
  }

 private:
  DrawingHost& host_;
};

class ApplicationObject : public IVApplication {
 public:
  explicit ApplicationObject(DrawingHost& host) : host_(host) {}
  IVWindowPtr ActiveWindow() override {
    host_.drawing();
    return MakeWindow(host_, host_.serial());
  }
  IVPagePtr ActivePage() override { return MakePage(host_, host_.serial(), host_.ActivePage().id()); }
  IVDocumentPtr ActiveDocument() override {
    host_.drawing();
    return MakeDocument(host_, host_.serial());
  }
  IVEventListPtr EventList() override { return std::make_shared<EventListObject>(host_); }
  IVUIObjectPtr CustomMenus() override { return host_.menus().CustomMenus(); }
  IVUIObjectPtr BuiltInMenus() override { return host_.menus().BuiltInMenus(); }
  void SetCustomMenus(const IVUIObjectPtr& menus) override { host_.menus().SetCustomMenus(menus); }
  bool IsUndoingOrRedoing() override { return host_.IsUndoingOrRedoing(); }
  int BeginUndoScope(std::string_view name) override { return host_.BeginUndoScope(name); }
  void EndUndoScope(int scope, bool keep) override { host_.EndUndoScope(scope, keep); }

 private:
  DrawingHost& host_;
};

}  // namespace

IVApplicationPtr MakeApplication(DrawingHost& host) { return std::make_shared<ApplicationObject>(host); }
IVDocumentPtr MakeDocument(DrawingHost& host, int drawing) { return std::make_shared<DocumentObject>(host, drawing); }
IVWindowPtr MakeWindow(DrawingHost& host, int drawing) { return std::make_shared<WindowObject>(host, drawing); }
IVPagePtr MakePage(DrawingHost& host, int drawing, int pageId) { return std::make_shared<PageObject>(host, drawing, pageId); }
IVShapePtr MakeShape(DrawingHost& host, const SheetRef& ref) { return std::make_shared<ShapeObject>(host, ref); }
IVSelectionPtr MakeSelection(DrawingHost& host, int drawing, int pageId, std::vector<int> shapeIds) {
  return std::make_shared<SelectionObject>(host, drawing, pageId, std::move(shapeIds));
}

}  // namespace vardo
