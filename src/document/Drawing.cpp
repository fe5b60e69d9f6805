#include "document/Drawing.h"

#include "base/Errors.h"
#include "base/FileError.h"
#include "document/Glue.h"
#include "document/VisioXml.h"
#include "stencil/StencilPackage.h"

#include <algorithm>

namespace vardo {
namespace {

bool EndsWith(std::string_view text, std::string_view ending) {
  return text.size() >= ending.size() && text.substr(text.size() - ending.size()) == ending;
}

// The id attribute of a <Rel>, whatever prefix the file gives its namespace.
pugi::xml_attribute RelId(pugi::xml_node entry) {
  for (const pugi::xml_attribute attribute : entry.child("Rel").attributes())
    if (EndsWith(attribute.name(), ":id")) return attribute;
  return {};
}

std::string Folder(std::string_view part) { return std::string(part.substr(0, part.rfind('/') + 1)); }

// A drawing written with a namespace prefix, or of a later kind, would look empty to us: better to say so.
XmlPart& ExpectRoot(Package& package, const std::string& part, std::string_view root) {
  XmlPart& xml = package.Xml(part);
  if (xml.root().name() != root)
    throw FileError::NotADrawing(package.displayName(), "written in a way that is not understood (" + PartInWords(part) +
                                                            " starts with <" + xml.root().name() + ">, not <" +
                                                            std::string(root) + ">)");
  return xml;
}

}  // namespace

DrawingMaster::DrawingMaster(pugi::xml_node entry, std::string partName, XmlPart& part)
    : entry_(entry), id_(entry.attribute("ID").as_int()), partName_(std::move(partName)), part_(part) {
  struct Pending {
    pugi::xml_node element;
    const DrawingShape* parent;
  };
  std::vector<Pending> pending{{part.root().child("Shapes").child("Shape"), nullptr}};
  if (!pending[0].element) return;
  for (size_t at = 0; at < pending.size(); ++at) {
    shapes_.push_back(std::make_unique<DrawingShape>(part, pending[at].element, nullptr, pending[at].parent));
    const DrawingShape* shape = shapes_.back().get();
    for (const pugi::xml_node inner : pending[at].element.child("Shapes").children("Shape")) pending.push_back({inner, shape});
  }
}

std::string DrawingMaster::Name() const {
  const pugi::xml_attribute name = entry_.attribute("NameU");
  return name ? name.value() : entry_.attribute("Name").value();
}

const DrawingShape* DrawingMaster::TopShape() const { return shapes_.empty() ? nullptr : shapes_.front().get(); }

const DrawingShape* DrawingMaster::FindShape(int id) const {
  const auto found = std::find_if(shapes_.begin(), shapes_.end(), [&](const auto& shape) { return shape->id() == id; });
  return found == shapes_.end() ? nullptr : found->get();
}

std::unique_ptr<Drawing> Drawing::Open(const std::filesystem::path& file) {
  return std::unique_ptr<Drawing>(new Drawing(Package::OpenFile(file)));
}

std::unique_ptr<Drawing> Drawing::New() { return std::unique_ptr<Drawing>(new Drawing(MakeNewDrawing())); }

Drawing::Drawing(std::unique_ptr<Package> package) : package_(std::move(package)) {
  ReadDocument();
  Reread();
}

void Drawing::ReadDocument() {
  const std::string document = package_->MainPart();
  ExpectRoot(*package_, document, "VisioDocument");
  pagesPart_ = RelatedPart(document, "/pages");
  mastersPart_ = RelatedPart(document, "/masters");
  if (pagesPart_.empty()) throw FileError::Damaged(package_->displayName(), "it has no list of pages");
}

void Drawing::Reread() {
  pages_.clear();
  masters_.clear();
  masterFormulas_.clear();
  XmlPart& document = package_->Xml(package_->MainPart());
  const pugi::xml_node sheet = document.root().child("DocumentSheet");
  documentSheet_ = sheet ? std::make_unique<Sheet>(document, sheet, nullptr) : nullptr;
  ReadMasters();
  ReadPages();
}

void Drawing::ReadMasters() {
  if (mastersPart_.empty()) return;
  const Relationships relationships = package_->RelationshipsOf(mastersPart_);
  for (const pugi::xml_node entry : ExpectRoot(*package_, mastersPart_, "Masters").root().children("Master")) {
    if (const Relationship* relationship = relationships.Find(RelId(entry).value()))
      masters_.push_back(std::make_unique<DrawingMaster>(entry, relationship->target,
                                                         ExpectRoot(*package_, relationship->target, "MasterContents")));
  }
}

void Drawing::ReadPages() {
  const Relationships relationships = package_->RelationshipsOf(pagesPart_);
  for (const pugi::xml_node entry : ExpectRoot(*package_, pagesPart_, "Pages").root().children("Page")) {
    const Relationship* relationship = relationships.Find(RelId(entry).value());
    std::string partName = relationship ? relationship->target : "";
    // A page that leads back to the list of pages has no contents of its own.
    if (partName == pagesPart_) partName.clear();
    XmlPart* contents = partName.empty() ? nullptr : &ExpectRoot(*package_, partName, "PageContents");
    pages_.push_back(std::make_unique<DrawingPage>(*this, entry, partName, contents));
    highestPageId_ = std::max(highestPageId_, pages_.back()->id());
  }
  if (pages_.empty()) throw FileError::Damaged(package_->displayName(), "it has no page");
  IndexPages();
}

// Of two pages with one ID the first counts.
void Drawing::IndexPages() {
  pagesById_.clear();
  for (const auto& page : pages_) pagesById_.emplace(page->id(), page.get());
}

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
  const std::string partName = package_->FreshName(Folder(pagesPart_) + "page", ".xml");
  XmlPart& contents = package_->AddXml(partName, kEmptyPage, kPageContentType);
  const ListedPart listed{pagesPart_, kPageRelationship, partName,
                          package_->AddRelationship(pagesPart_, kPageRelationship, partName)};
  journal_.Record([=, this] { SetListed(listed, false); }, [=, this] { SetListed(listed, true); });

  int number = PageCount() + 1;
  while (FindPage("Page-" + std::to_string(number))) ++number;
  const std::string name = "Page-" + std::to_string(number);
  XmlPart& list = package_->Xml(pagesPart_);
  const pugi::xml_node entry = editor_.InsertElement(list, list.root(), "Page");
  editor_.SetAttribute(list, entry, "ID", std::to_string(++highestPageId_));
  editor_.SetAttribute(list, entry, "NameU", name);
  editor_.SetAttribute(list, entry, "Name", name);
  const pugi::xml_node sheet = SheetOfPage::Insert(editor_, list, entry);
  for (const pugi::xml_node cell : sizedLike.PageSheet().element().children("Cell")) editor_.InsertCopy(list, sheet, cell);
  editor_.SetAttribute(list, editor_.InsertElement(list, entry, "Rel"), "r:id", listed.relationship);

  pages_.push_back(std::make_unique<DrawingPage>(*this, entry, partName, &contents));
  IndexPages();
  return *pages_.back();
}

void Drawing::RemovePage(DrawingPage& page, bool renumber) {
  const int index = IndexOf(page);
  const ListedPart listed{pagesPart_, kPageRelationship, page.partName(), RelId(page.entry()).value()};
  editor_.Remove(package_->Xml(pagesPart_), page.entry());
  pages_.erase(pages_.begin() + (index - 1));
  IndexPages();
  if (!listed.part.empty()) Unlist(listed);
  if (!renumber) return;
  for (int at = index; at <= PageCount(); ++at) {
    const std::string numbered = "Page-" + std::to_string(at + 1), wanted = "Page-" + std::to_string(at);
    if (PageAt(at).Name() == numbered && !FindPage(wanted)) PageAt(at).SetName(wanted);
  }
}

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

  XmlPart& list = EnsureMastersPart();
  const std::string partName = package_->FreshName(Folder(mastersPart_) + "master", ".xml");
  XmlPart& part = package_->AddXml(partName, stencil->package().Bytes(original->partName()), kMasterContentType);
  const ListedPart listed{mastersPart_, kMasterRelationship, partName,
                          package_->AddRelationship(mastersPart_, kMasterRelationship, partName)};
  journal_.Record([=, this] { SetListed(listed, false); }, [=, this] { SetListed(listed, true); });
  int id = 1;
  for (const auto& master : masters_) id = std::max(id, master->id() + 1);
  const pugi::xml_node entry = editor_.InsertCopy(list, list.root(), original->entry());
  editor_.SetAttribute(list, entry, "ID", std::to_string(id));
  RelId(entry).set_value(listed.relationship.c_str());
  // The stencil's styles have other numbers here, if they are here at all.
  const auto plainStyles = [this](XmlPart& tree, pugi::xml_node sheet) {
    for (const char* style : {"LineStyle", "FillStyle", "TextStyle"}) editor_.SetAttribute(tree, sheet, style, "0");
  };
  plainStyles(list, entry.child("PageSheet"));
  for (const pugi::xml_node shape : part.root().child("Shapes").children("Shape")) plainStyles(part, shape);
  masters_.push_back(std::make_unique<DrawingMaster>(entry, partName, part));
  return masters_.back().get();
}

void Drawing::RemoveMaster(DrawingMaster& master) {
  const UndoStep step(journal_, "Delete Master");
  for (const auto& page : pages_) page->LetGoOf(master);
  const ListedPart listed{mastersPart_, kMasterRelationship, master.partName(), RelId(master.entry()).value()};
  editor_.Remove(package_->Xml(mastersPart_), master.entry());
  Unlist(listed);
  Reread();
}

void Drawing::Unlist(const ListedPart& listed) {
  SetListed(listed, false);
  journal_.Record([=, this] { SetListed(listed, true); }, [=, this] { SetListed(listed, false); });
}

void Drawing::SetListed(const ListedPart& listed, bool present) {
  package_->SetPresent(listed.part, present);
  if (present)
    package_->AddRelationship(listed.list, listed.type, listed.part, listed.relationship);
  else
    package_->RemoveRelationship(listed.list, listed.relationship);
}

FormulaScope Drawing::ScopeFor(DrawingPage* page, const Sheet& sheet, const CellAddress& cell) {
  const auto find = [this, page, &sheet](std::string_view name) -> const Sheet* {
    if (name.empty()) return &sheet;
    if (name == "ThePage") return page ? &page->PageSheet() : nullptr;
    if (name == "TheDoc") return documentSheet_.get();
    return page ? page->FindSheet(name) : nullptr;
  };
  const auto* const connector = dynamic_cast<const DrawingShape*>(&sheet);
  FormulaScope scope;
  scope.cell = [find](std::string_view sheetName, std::string_view cellName) -> std::optional<CellValue> {
    const Sheet* target = find(sheetName);
    if (!target) throw BadReference{};
    if (const auto address = target->Find(cellName)) return target->Value(*address);
    // A shape has more cells than we know, but not more rows.
    if (const auto name = ParseCellName(cellName); name && name->section) throw BadReference{};
    return std::nullopt;
  };
  scope.onPage = [find](std::string_view sheetName, Point own) -> std::optional<Point> {
    const auto* shape = dynamic_cast<const DrawingShape*>(find(sheetName));
    return shape ? std::optional(OnPage(*shape, own)) : std::nullopt;
  };
  scope.walk = [page, connector](std::string_view trigger, std::string_view otherTrigger) -> std::optional<Point> {
    const ConnectorEnd *end = FindConnectorEnd(trigger), *other = FindConnectorEnd(otherTrigger);
    return page && connector && end && other ? WalkingEnd(*page, *connector, *end, *other) : std::nullopt;
  };
  scope.wantsY = cell.cell.ends_with('Y');
  return scope;
}

const FormulaIndex& Drawing::FormulasOfMaster(const Sheet& shape) {
  const auto [place, isNew] = masterFormulas_.try_emplace(&shape);
  if (isNew) place->second = IndexFormulas(shape, nullptr);
  return place->second;
}

std::string Drawing::Undo() {
  const std::string label = journal_.Undo();
  Reread();
  return label;
}

std::string Drawing::Redo() {
  const std::string label = journal_.Redo();
  Reread();
  return label;
}

std::string Drawing::RelatedPart(std::string_view from, std::string_view typeEnding) const {
  for (const Relationship& relationship : package_->RelationshipsOf(from))
    if (EndsWith(relationship.type, typeEnding)) return relationship.target;
  return "";
}

XmlPart& Drawing::EnsureMastersPart() {
  const std::string document = package_->MainPart();
  if (mastersPart_.empty()) {
    mastersPart_ = Folder(document) + "masters/masters.xml";
    package_->AddXml(mastersPart_, kEmptyMasters, kMastersContentType);
  } else if (package_->Has(mastersPart_)) {
    return package_->Xml(mastersPart_);
  }
  package_->SetPresent(mastersPart_, true);
  const ListedPart listed{document, kMastersRelationship, mastersPart_,
                          package_->AddRelationship(document, kMastersRelationship, mastersPart_)};
  journal_.Record([=, this] { SetListed(listed, false); }, [=, this] { SetListed(listed, true); });
  return package_->Xml(mastersPart_);
}

}  // namespace vardo
