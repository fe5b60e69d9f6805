#include "document/Drawing.h"

#include "base/Errors.h"
#include "base/FileError.h"
#include "base/Numbers.h"
#include "base/Text.h"
#include "document/CellText.h"
#include "document/DrawingCheck.h"
#include "document/Elements.h"
#include "document/PackageEdits.h"
#include "document/VisioXml.h"
#include "package/Limits.h"
#include "package/Package.h"
#include "stencil/StencilPackage.h"

#include <pugixml.hpp>

#include <algorithm>
#include <set>

namespace vardo {
namespace {

// The id attribute of an entry's <Rel>, whatever prefix the file gives its namespace.
pugi::xml_attribute RelId(pugi::xml_node entry) {
  for (const pugi::xml_attribute attribute : entry.child("Rel").attributes())
    if (std::string_view(attribute.name()).ends_with(":id")) return attribute;
  return {};
}

std::string Folder(std::string_view part) { return std::string(part.substr(0, part.rfind('/') + 1)); }

// A drawing written with a namespace prefix, or of a later kind, would look empty to us: better to say so.
XmlPart& ExpectRoot(Package& package, const std::string& part, std::string_view root) {
  XmlPart& xml = package.Xml(part);
  if (xml.root().name() != root)
    throw FileError::NotADrawing(package.displayName(), "written in a way that is not understood (" + PartInWords(part) +
                                                            " starts with <" + InWords(xml.root().name()) + ">, not <" +
                                                            std::string(root) + ">)");
  return xml;
}

int PlaceAmong(pugi::xml_node entry) {
  int place = 0;
  for (pugi::xml_node before = entry.previous_sibling(entry.name()); before; before = before.previous_sibling(entry.name()))
    ++place;
  return place;
}

}  // namespace

namespace {

// The document's own sheet, which a file may leave out. It stands behind what it refers to: settings, colours, fonts, styles.
class SheetOfDocument : public Sheet {
 public:
  explicit SheetOfDocument(XmlPart& part) : Sheet(part, part.root().child("DocumentSheet").internal_object(), nullptr) {}

 private:
  void MakeElement(TreeEditor& editor) override {
    const pugi::xml_node root = part().root();
    pugi::xml_node before = root.first_child();
    for (const char* earlier : {"DocumentSettings", "Colors", "FaceNames", "StyleSheets"})
      if (const pugi::xml_node there = root.child(earlier)) before = there.next_sibling();
    editor.Insert(part(), root, "DocumentSheet",
                  {{"NameU", "TheDoc"}, {"LineStyle", "0"}, {"FillStyle", "0"}, {"TextStyle", "0"}}, before);
  }
};

}  // namespace

// ---------------------------------------------------------------------------------------------------------- opening

std::unique_ptr<Drawing> Drawing::Open(const std::filesystem::path& file) {
  return std::unique_ptr<Drawing>(new Drawing(Package::OpenFile(file)));
}

std::unique_ptr<Drawing> Drawing::New() { return std::unique_ptr<Drawing>(new Drawing(MakeNewDrawing())); }

Drawing::Drawing(std::unique_ptr<Package> package)
    : package_(std::move(package)), log_(*package_, *this), editor_(*package_, *this, log_) {
  ReadDocument();
  ReadMasters();
  ReadPages();
}

Drawing::~Drawing() = default;

void Drawing::Save(const std::filesystem::path& file, Overwrite overwrite) { package_->Save(file, overwrite); }

bool Drawing::Changed() const { return package_->changed(); }
std::string Drawing::FileBytes() const { return package_->FileBytes(); }

void Drawing::ReadDocument() {
  const std::string document = package_->MainPart();
  XmlPart& part = ExpectRoot(*package_, document, "VisioDocument");
  pagesPart_ = RelatedPart(document, "/pages");
  mastersPart_ = RelatedPart(document, "/masters");
  if (pagesPart_.empty()) throw FileError::Damaged(package_->displayName(), "it has no list of pages");
  documentSheet_ = std::make_unique<SheetOfDocument>(part);
}

namespace {

// Reads a list of pages or masters: each entry has an ID of its own, and leads to a part of its own.
class ListReader {
 public:
  ListReader(Package& package, const std::string& list) : package_(package), list_(list) {
    for (const Relationship& relationship : package.RelationshipsOf(list))
      if (!relationship.external) targets_.emplace(relationship.id, relationship.target);
  }
  bool LeadsNowhere() const { return targets_.empty(); }

  void CheckId(pugi::xml_node entry, size_t most) {
    if (ids_.size() == most)
      throw FileError::Unsafe(package_.displayName(),
                              PartInWords(list_) + " names more than " + std::to_string(most) + " pages or masters");
    const std::string_view text = entry.attribute("ID").value();
    const auto id = ParseInteger(text);
    if (!id || *id < 0) throw Damaged(What(entry) + (text.empty() ? " without an ID" : " with the ID " + InWords(text)));
    if (!ids_.insert(*id).second) throw Damaged("two entries with the ID " + std::to_string(*id));
  }

  // Empty for an entry that leads to no part, or back to the list.
  std::string PartOf(pugi::xml_node entry) {
    const pugi::xml_attribute id = RelId(entry);
    if (!id) return "";
    const auto target = targets_.find(id.value());
    if (target == targets_.end())
      throw Damaged(What(entry) + " by the relationship " + InWords(id.value()) + ", which is missing");
    if (target->second == list_) return "";
    if (!package_.Has(target->second)) throw Damaged(What(entry) + " in " + PartInWords(target->second) + ", which is missing");
    if (!parts_.insert(LowerAscii(target->second)).second)
      throw Damaged(What(entry) + " in " + PartInWords(target->second) + ", which another one has already");
    return target->second;
  }

  FileError Damaged(const std::string& what) const {
    return FileError::Damaged(package_.displayName(), PartInWords(list_) + " names " + what);
  }

 private:
  static std::string What(pugi::xml_node entry) { return IsNamed(entry, "Page") ? "a page" : "a master"; }

  Package& package_;
  const std::string& list_;
  std::unordered_map<std::string, std::string> targets_;
  std::set<int> ids_;
  std::set<std::string> parts_;
};

}  // namespace

void Drawing::ReadMasters() {
  if (mastersPart_.empty()) return;
  ListReader reader(*package_, mastersPart_);
  for (const pugi::xml_node entry : ExpectRoot(*package_, mastersPart_, "Masters").root().children("Master")) {
    reader.CheckId(entry, kMaxMasters);
    const std::string part = reader.PartOf(entry);
    if (part.empty()) throw reader.Damaged("a master that leads to no part");
    CheckShapes(package_->displayName(), ExpectRoot(*package_, part, "MasterContents"));
    masters_.push_back(std::make_unique<DrawingMaster>(entry, part, package_->Xml(part)));
  }
}

// A stencil's one page has no contents of its own.
void Drawing::ReadPages() {
  ListReader reader(*package_, pagesPart_);
  XmlPart& list = ExpectRoot(*package_, pagesPart_, "Pages");
  for (const pugi::xml_node entry : list.root().children("Page")) {
    reader.CheckId(entry, kMaxPages);
    CheckRows(package_->displayName(), pagesPart_, entry.child("PageSheet"));
    const std::string part = reader.PartOf(entry);
    const bool isStencils = !entry.previous_sibling("Page") && !entry.next_sibling("Page") && reader.LeadsNowhere();
    if (part.empty() && !RelId(entry) && !isStencils) throw reader.Damaged("a page that leads to no part");
    XmlPart* contents = part.empty() ? nullptr : &ExpectRoot(*package_, part, "PageContents");
    if (contents) CheckShapes(package_->displayName(), *contents);
    pages_.push_back(std::make_unique<DrawingPage>(*this, list, entry, part, contents));
  }
  if (pages_.empty()) throw FileError::Damaged(package_->displayName(), "it has no page");
  IndexPages();
}

void Drawing::IndexPages() {
  decltype(pagesById_) byId;
  decltype(pagesByPart_) byPart;
  decltype(pagesByEntry_) byEntry;
  for (const auto& page : pages_) {
    byId.emplace(page->id(), page.get());
    byEntry.emplace(page->entry(), page.get());
    if (page->contents()) byPart.emplace(page->contents(), page.get());
    highestPageId_ = std::max(highestPageId_, page->id());
  }
  pagesById_.swap(byId);
  pagesByPart_.swap(byPart);
  pagesByEntry_.swap(byEntry);
}

std::string Drawing::RelatedPart(std::string_view from, std::string_view typeEnding) const {
  for (const Relationship& relationship : package_->RelationshipsOf(from))
    if (!relationship.external && relationship.type.ends_with(typeEnding)) return relationship.target;
  return "";
}

// ------------------------------------------------------------------------------------------------------------ pages

DrawingPage* Drawing::FindPage(int id) {
  const auto found = pagesById_.find(id);
  return found == pagesById_.end() ? nullptr : found->second;
}

DrawingPage* Drawing::FindPage(std::string_view name) {
  const auto found = std::find_if(pages_.begin(), pages_.end(), [&](const auto& page) { return page->Name() == name; });
  return found == pages_.end() ? nullptr : found->get();
}

int Drawing::IndexOf(const DrawingPage& page) const {
  const auto found = std::find_if(pages_.begin(), pages_.end(), [&](const auto& other) { return other.get() == &page; });
  return static_cast<int>(found - pages_.begin()) + 1;
}

DrawingPage& Drawing::AddPage(DrawingPage& sizedLike) {
  const UndoStep step(log_, "Insert Page");
  PackageEdits parts(*package_, editor_);
  const std::string partName = package_->FreshName(Folder(pagesPart_) + "page", ".xml");
  parts.AddPart(partName, kEmptyPage, kPageContentType);
  const std::string relationship = parts.Relate(pagesPart_, kPageRelationship, partName);
  int number = PageCount() + 1;
  while (FindPage("Page-" + std::to_string(number))) ++number;
  const std::string name = "Page-" + std::to_string(number);
  const int id = ++highestPageId_;
  XmlPart& list = package_->Xml(pagesPart_);
  const pugi::xml_node like(sizedLike.PageSheet().element());
  const pugi::xml_attribute relId = RelId(pugi::xml_node(sizedLike.entry()));
  editor_.Insert(list, list.root(), "Page", {{"ID", std::to_string(id)}, {"NameU", name}, {"Name", name}}, {},
                 [&](pugi::xml_node page) {
                   pugi::xml_node sheet = page.append_child("PageSheet");
                   for (const char* style : {"LineStyle", "FillStyle", "TextStyle"}) sheet.append_attribute(style).set_value("0");
                   for (const pugi::xml_node cell : like.children("Cell")) sheet.append_copy(cell);
                   pugi::xml_node rel = page.append_child("Rel");
                   rel.append_attribute(relId ? relId.name() : "r:id").set_value(relationship.c_str());
                 });
  return *FindPage(id);
}

void Drawing::RemovePage(DrawingPage& page, bool renumber) {
  const UndoStep step(log_, "Delete Page");
  const int index = IndexOf(page);
  const std::string partName = page.partName(), relationship = RelId(pugi::xml_node(page.entry())).value();
  if (page.IsBackground()) LoosenFromBackground(page);
  editor_.Remove(package_->Xml(pagesPart_), pugi::xml_node(page.entry()));
  PackageEdits parts(*package_, editor_);
  if (!partName.empty()) {
    parts.Unrelate(pagesPart_, relationship);
    parts.RemovePart(partName);
  }
  if (!renumber) return;
  for (int at = index; at <= PageCount(); ++at) {
    const std::string numbered = "Page-" + std::to_string(at + 1), wanted = "Page-" + std::to_string(at);
    if (PageAt(at).Name() == numbered && !FindPage(wanted)) PageAt(at).SetName(wanted);
  }
}

// The pages in front of it have no background any more.
void Drawing::LoosenFromBackground(const DrawingPage& background) {
  PackageEdits parts(*package_, editor_);
  for (const auto& page : pages_) {
    const pugi::xml_node entry(page->entry());
    if (entry.attribute("BackPage").as_int(-1) == background.id())
      editor_.RemoveAttribute(package_->Xml(pagesPart_), entry, "BackPage");
    for (const Relationship& relationship : package_->RelationshipsOf(page->partName()))
      if (!relationship.external && EqualAsciiIgnoringCase(relationship.target, background.partName()))
        parts.Unrelate(page->partName(), relationship.id);
  }
}

int Drawing::HighestShapeId(int page) const {
  const auto found = highestIds_.find(page);
  return found == highestIds_.end() ? 0 : found->second;
}

void Drawing::NoteShapeId(int page, int shape) {
  int& highest = highestIds_[page];
  highest = std::max(highest, shape);
}

// ---------------------------------------------------------------------------------------------------------- masters

DrawingMaster* Drawing::FindMaster(int id) const {
  const auto found = std::find_if(masters_.begin(), masters_.end(), [&](const auto& master) { return master->id() == id; });
  return found == masters_.end() ? nullptr : found->get();
}

DrawingMaster* Drawing::FindMaster(std::string_view name) const {
  const auto found = std::find_if(masters_.begin(), masters_.end(), [&](const auto& master) { return master->Name() == name; });
  return found == masters_.end() ? nullptr : found->get();
}

DrawingMaster* Drawing::BringMaster(std::string_view name) {
  if (DrawingMaster* own = FindMaster(name)) return own;
  const std::unique_ptr<Drawing> stencil = Drawing::New();
  const DrawingMaster* original = stencil->FindMaster(name);
  if (!original) return nullptr;

  const UndoStep step(log_, "Drop On Page");
  // The stencil's styles have other numbers here, if they are here at all.
  const auto plainStyles = [](pugi::xml_node sheet) {
    for (const char* style : {"LineStyle", "FillStyle", "TextStyle"})
      if (sheet.attribute(style)) SetAttribute(sheet, style, "0");
  };
  XmlPart& list = EnsureMastersPart();
  PackageEdits parts(*package_, editor_);
  const std::string partName = package_->FreshName(Folder(mastersPart_) + "master", ".xml");
  parts.AddPart(partName, stencil->package().Bytes(original->partName()), kMasterContentType, [&](pugi::xml_node root) {
    for (const pugi::xml_node shape : root.child("Shapes").children("Shape")) plainStyles(shape);
  });
  const std::string relationship = parts.Relate(mastersPart_, kMasterRelationship, partName);
  int id = 1;
  for (const auto& master : masters_) id = std::max(id, master->id() + 1);
  editor_.InsertCopy(list, list.root(), pugi::xml_node(original->entry()), {}, [&](pugi::xml_node entry) {
    entry.attribute("ID").set_value(std::to_string(id).c_str());
    RelId(entry).set_value(relationship.c_str());
    plainStyles(entry.child("PageSheet"));
  });
  return FindMaster(id);
}

void Drawing::RemoveMaster(DrawingMaster& master) {
  const UndoStep step(log_, "Delete Master");
  for (const auto& page : pages_) page->LetGoOf(master);
  const std::string partName = master.partName(), relationship = RelId(pugi::xml_node(master.entry())).value();
  PackageEdits parts(*package_, editor_);
  for (const auto& page : pages_)
    for (const Relationship& related : package_->RelationshipsOf(page->partName()))
      if (!related.external && EqualAsciiIgnoringCase(related.target, partName)) parts.Unrelate(page->partName(), related.id);
  editor_.Remove(package_->Xml(mastersPart_), pugi::xml_node(master.entry()));
  parts.Unrelate(mastersPart_, relationship);
  parts.RemovePart(partName);
}

XmlPart& Drawing::EnsureMastersPart() {
  if (!mastersPart_.empty() && package_->Has(mastersPart_)) return package_->Xml(mastersPart_);
  const std::string document = package_->MainPart();
  PackageEdits parts(*package_, editor_);
  mastersPart_ = Folder(document) + "masters/masters.xml";
  parts.AddPart(mastersPart_, kEmptyMasters, kMastersContentType);
  parts.Relate(document, kMastersRelationship, mastersPart_);
  return package_->Xml(mastersPart_);
}

const std::vector<const Sheet*>& Drawing::MasterShapesCalling(const CellCall& call) {
  if (!callsOfMastersKnown_) {
    callsOfMasters_.clear();
    for (const auto& master : masters_) NoteCallsOf(*master);
    callsOfMastersKnown_ = true;
  }
  static const std::vector<const Sheet*> none;
  const auto found = callsOfMasters_.find(call);
  return found == callsOfMasters_.end() ? none : found->second;
}

// Those of other sheets: what calls its own sheet is found there.
void Drawing::NoteCallsOf(const DrawingMaster& master) {
  for (const auto& shape : master.shapes())
    for (const Sheet::OwnFormula& own : shape->OwnFormulas())
      for (const CellCall& call : CallsOf(Formula(own.formula))) {
        if (call.sheet.empty()) continue;
        std::vector<const Sheet*>& callers = callsOfMasters_[call];
        if (callers.empty() || callers.back() != shape.get()) callers.push_back(shape.get());
      }
}

// ------------------------------------------------------------------------------------------------ what edits have changed

DrawingPage* Drawing::PageOf(const XmlPart& part) const {
  const auto found = pagesByPart_.find(&part);
  return found == pagesByPart_.end() ? nullptr : found->second;
}

// In the list of pages.
DrawingPage* Drawing::PageAround(pugi::xml_node node) const {
  while (node && !IsNamed(node, "Page")) node = node.parent();
  const auto found = pagesByEntry_.find(node.internal_object());
  return found == pagesByEntry_.end() ? nullptr : found->second;
}

void Drawing::Inserted(XmlPart& part, pugi::xml_node node) {
  if (DrawingPage* page = PageOf(part))
    page->Inserted(node);
  else if (part.name() == pagesPart_ && IsNamed(node, "Page"))
    PageListed(part, node);
  else if (part.name() == mastersPart_ && IsNamed(node, "Master"))
    MasterListed(node);
  else
    SheetEdited(part, node, true, true);
  if (wantsTouched_) NoteTouched(part, node);
}

void Drawing::Removing(XmlPart& part, pugi::xml_node node) {
  if (wantsTouched_) NoteTouched(part, node);
  if (DrawingPage* page = PageOf(part)) return page->Removing(node);
  if (part.name() == pagesPart_ && IsNamed(node, "Page")) {
    if (const DrawingPage* page = PageAround(node)) Unlist(*page);
    ++structure_;
  } else if (part.name() == mastersPart_ && IsNamed(node, "Master")) {
    std::erase_if(masters_, [&](const auto& master) { return master->entry() == node.internal_object(); });
    callsOfMasters_.clear();
    callsOfMastersKnown_ = false;
    ++structure_;
  } else {
    SheetEdited(part, node, false, true);
  }
}

void Drawing::Changing(XmlPart& part, pugi::xml_node node) {
  if (DrawingPage* page = PageOf(part)) return page->Changing(node);
  if (IsNamed(node, "Cell")) formulaBefore_ = OwnFormulaOf(node);
}

void Drawing::Changed(XmlPart& part, pugi::xml_node node) {
  if (DrawingPage* page = PageOf(part))
    page->Changed(node);
  else
    SheetEdited(part, node, true, !IsNamed(node, "Cell") || OwnFormulaOf(node) != formulaBefore_);
  if (wantsTouched_) NoteTouched(part, node);
}

void Drawing::Shifted(const RowsShifted& rows, bool again) {
  if (onRowsShifted) onRowsShifted(rows, again);
}

// Its part is there already.
void Drawing::PageListed(XmlPart& list, pugi::xml_node entry) {
  const std::string part = ListReader(*package_, pagesPart_).PartOf(entry);
  XmlPart* contents = part.empty() ? nullptr : &package_->Xml(part);
  const auto page =
      pages_.insert(pages_.begin() + PlaceAmong(entry), std::make_unique<DrawingPage>(*this, list, entry, part, contents));
  try {
    IndexPages();
  } catch (...) {
    pages_.erase(page);
    throw;
  }
}

void Drawing::Unlist(const DrawingPage& page) {
  pagesById_.erase(page.id());
  pagesByPart_.erase(page.contents());
  pagesByEntry_.erase(page.entry());
  std::erase_if(pages_, [&](const auto& listed) { return listed.get() == &page; });
}

void Drawing::MasterListed(pugi::xml_node entry) {
  const std::string part = ListReader(*package_, mastersPart_).PartOf(entry);
  const auto master =
      masters_.insert(masters_.begin() + PlaceAmong(entry), std::make_unique<DrawingMaster>(entry, part, package_->Xml(part)));
  try {
    if (callsOfMastersKnown_) NoteCallsOf(**master);
  } catch (...) {
    callsOfMastersKnown_ = false;
    masters_.erase(master);
    throw;
  }
}

// The sheet of a page or of the document: its own cells, or the whole of it.
void Drawing::SheetEdited(XmlPart& part, pugi::xml_node node, bool isThere, bool formulas) {
  DrawingPage* const page = part.name() == pagesPart_ ? PageAround(node) : nullptr;
  if (page && IsNamed(node, "PageSheet")) return page->SetPageSheet(isThere ? node.internal_object() : nullptr);
  const bool ofDocument = &documentSheet_->part() == &part;
  if (ofDocument && IsNamed(node, "DocumentSheet")) return documentSheet_->SetElement(isThere ? node.internal_object() : nullptr);
  if (!IsNamed(node, "Cell")) ++structure_;
  if (page) return page->PageSheetChanged(!IsNamed(node, "Cell"), formulas);
  if (!ofDocument) return;
  if (!IsNamed(node, "Cell")) documentSheet_->ForgetRows();
  if (formulas) documentSheet_->ForgetFormulas();
}

// ---------------------------------------------------------------------------------------------- what a step has touched

void Drawing::WantTouched(bool wanted) {
  wantsTouched_ = wanted;
  touched_.clear();
  touchedOnce_.clear();
}

std::vector<TouchedCell> Drawing::TakeTouched() {
  touchedOnce_.clear();
  return std::exchange(touched_, {});
}

void Drawing::NoteTouched(XmlPart& part, pugi::xml_node node) {
  const DrawingPage* page = PageOf(part);
  const bool ofPageSheet = !page && part.name() == pagesPart_;
  if (ofPageSheet) page = PageAround(node);
  if (!page) return;
  if (node.type() != pugi::node_element) node = node.parent();
  TouchedCell touched{page->id(), 0, ofPageSheet ? SheetKind::Page : SheetKind::Shape, {}};
  if (IsNamed(node, "Cell")) {
    touched.cell.cell = Symbol(node.attribute("N").value());
    const pugi::xml_node row = node.parent();
    if (IsNamed(row, "Row") && (touched.cell.section = SectionOfElement(row.parent())))
      touched.cell.row = KeyOfRow(*touched.cell.section, row);
  }
  if (!ofPageSheet) {
    pugi::xml_node shape = node;
    while (shape && !IsNamed(shape, "Shape")) shape = shape.parent();
    if (!shape) return;
    touched.shape = shape.attribute("ID").as_int();
  }
  if (touchedOnce_.insert(touched).second) touched_.push_back(touched);
}

}  // namespace vardo
