#include "package/Package.h"

#include "base/Text.h"
#include "package/Limits.h"
#include "package/PartNames.h"
#include "package/XmlText.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <new>
#include <optional>
#include <unordered_set>
#include <utility>

namespace vardo {
namespace {

constexpr std::string_view kContentTypesPart = "[Content_Types].xml";
constexpr std::string_view kRelationshipsType = "application/vnd.openxmlformats-package.relationships+xml";
constexpr std::string_view kDocumentRelationship = "/visio/2010/relationships/document";

constexpr std::string_view kNewContentTypes =
    "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\r\n"
    "<Types xmlns=\"http://schemas.openxmlformats.org/package/2006/content-types\">"
    "<Default Extension=\"rels\" ContentType=\"application/vnd.openxmlformats-package.relationships+xml\"/>"
    "<Default Extension=\"xml\" ContentType=\"application/xml\"/></Types>";
constexpr std::string_view kNewRelationships =
    "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\r\n"
    "<Relationships xmlns=\"http://schemas.openxmlformats.org/package/2006/relationships\"/>";

// Last steps of the relationship types that lead to the parts a drawing consists of.
constexpr std::array<std::string_view, 5> kDrawingRelationships{"pages", "page", "masters", "master", "windows"};

constexpr std::array<std::string_view, 6> kMainContentTypes{
    "application/vnd.ms-visio.drawing.main+xml",  "application/vnd.ms-visio.drawing.macroenabled.main+xml",
    "application/vnd.ms-visio.stencil.main+xml",  "application/vnd.ms-visio.stencil.macroenabled.main+xml",
    "application/vnd.ms-visio.template.main+xml", "application/vnd.ms-visio.template.macroenabled.main+xml"};

template <typename Range>
bool IsOneOf(std::string_view text, const Range& range) {
  return std::find(range.begin(), range.end(), text) != range.end();
}

std::string_view LastStep(std::string_view path) { return path.substr(path.rfind('/') + 1); }

std::string_view LocalName(pugi::xml_node element) {
  const std::string_view name = element.name();
  return name.substr(name.find(':') + 1);
}

// A new element in the root's own namespace prefix.
pugi::xml_node AppendElement(pugi::xml_node root, std::string_view localName) {
  const std::string_view name = root.name();
  const std::string prefix(name.substr(0, name.size() - LocalName(root).size()));
  return root.append_child((prefix + std::string(localName)).c_str());
}

void SetAttribute(pugi::xml_node element, const char* name, std::string_view value) {
  element.append_attribute(name).set_value(std::string(value).c_str());
}

// The child whose attribute has that value, without regard to case.
pugi::xml_node FindElement(pugi::xml_node root, std::string_view localName, const char* attribute, std::string_view value) {
  for (pugi::xml_node child : root.children())
    if (LocalName(child) == localName && EqualAsciiIgnoringCase(child.attribute(attribute).value(), value)) return child;
  return {};
}

pugi::xml_node FindOverride(pugi::xml_node types, std::string_view part) {
  return FindElement(types, "Override", "PartName", "/" + std::string(part));
}

// The number of "rId12"; 0 for any other id.
unsigned RelationshipNumber(std::string_view id) {
  unsigned number = 0;
  if (id.starts_with("rId")) std::from_chars(id.data() + 3, id.data() + id.size(), number);
  return number;
}

}  // namespace

// ------------------------------------------------------------------------------------------------------------ opening

Package::Package(std::string displayName) : file_(std::move(displayName)), archive_(std::make_unique<ZipArchive>(file_)) {}

std::unique_ptr<Package> Package::OpenFile(const std::filesystem::path& path) try {
  std::unique_ptr<Package> package = OpenBytes(ReadWholeFile(path, kMaxMemoryBytes), PathInWords(path));
  package->origin_ = std::filesystem::absolute(path);
  return package;
} catch (const std::bad_alloc&) {
  throw FileError::NeedsMemory(PathInWords(path));
}

std::unique_ptr<Package> Package::OpenBytes(std::string zip, const std::string& displayName) try {
  std::unique_ptr<Package> package(new Package(displayName));
  package->ReadArchive(std::move(zip));
  package->ParseDrawing();
  return package;
} catch (const std::bad_alloc&) {
  throw FileError::NeedsMemory(displayName);
}

std::unique_ptr<Package> Package::Create(std::string displayName) {
  std::unique_ptr<Package> package(new Package(std::move(displayName)));
  package->Insert({.name = std::string(kContentTypesPart), .bytes = std::string(kNewContentTypes)});
  package->Insert({.name = RelationshipsPartOf(""), .bytes = std::string(kNewRelationships)});
  return package;
}

void Package::ReadArchive(std::string zip) {
  memory_ = zip.size();
  archive_ = std::make_unique<ZipArchive>(std::move(zip), file_);
  for (size_t i = 0; i < archive_->Entries().size(); ++i)
    if (const ZipEntry& entry = archive_->Entries()[i]; !entry.IsFolder()) Insert({.name = entry.name, .index = i});
}

// Parses the parts that make up the drawing, each by the relationship that leads to it, and proves the checksums of all others.
void Package::ParseDrawing() {
  if (Has(kContentTypesPart)) Xml(kContentTypesPart);
  const std::string main = MainPart();
  CheckMainPart(main);
  std::vector<Part*> found{Find(main)};
  std::unordered_set<const Part*> known{found[0]};
  for (size_t i = 0; i < found.size(); ++i) {
    Xml(*found[i]);
    for (const Relationship& relationship : RelationshipsOf(found[i]->name)) {
      Part* target = relationship.external ? nullptr : Find(relationship.target);
      if (target && IsOneOf(LastStep(relationship.type), kDrawingRelationships) && known.insert(target).second)
        found.push_back(target);
    }
  }
  for (const auto& part : parts_) {
    if (part->xml) continue;
    CheckMemory(memory_ + archive_->Entries()[*part->index].size, file_, part->name);
    archive_->Check(*part->index);
  }
}

void Package::CheckMainPart(const std::string& main) {
  if (!Has(main)) throw FileError::Damaged(file_, PartInWords(main) + ", its document, is missing");
  if (Has(kContentTypesPart) && !IsOneOf(LowerAscii(ContentTypeOf(main)), kMainContentTypes))
    throw FileError::NotADrawing(file_, "a ZIP file but no Visio drawing");
}

std::string Package::MainPart() {
  for (const Relationship& relationship : RelationshipsOf(""))
    if (!relationship.external && relationship.type.ends_with(kDocumentRelationship)) return relationship.target;
  throw FileError::NotADrawing(file_, "a ZIP file but no Visio drawing");
}

// -------------------------------------------------------------------------------------------------------------- parts

Package::Part* Package::Find(std::string_view name) const {
  const auto found = byName_.find(LowerAscii(name));
  return found == byName_.end() ? nullptr : found->second;
}

Package::Part* Package::FindPresent(std::string_view name) const {
  Part* part = Find(name);
  return part && part->present ? part : nullptr;
}

Package::Part& Package::Get(std::string_view name) const {
  if (Part* part = Find(name)) return *part;
  throw FileError::Damaged(file_, PartInWords(std::string(name)) + " is missing");
}

Package::Part& Package::Insert(Part part) {
  if (Find(part.name)) throw FileError(file_ + " has " + PartInWords(part.name) + " already; give the new part a fresh name.");
  Part& inserted = *parts_.emplace_back(std::make_unique<Part>(std::move(part)));
  byName_.emplace(LowerAscii(inserted.name), &inserted);
  return inserted;
}

std::vector<std::string> Package::PartNames() const {
  std::vector<std::string> names;
  for (const auto& part : parts_)
    if (part->present) names.push_back(part->name);
  return names;
}

bool Package::Has(std::string_view part) const { return FindPresent(part) != nullptr; }

std::string Package::Bytes(std::string_view part) const { return Bytes(Get(part)); }

std::string Package::Bytes(const Part& part) const {
  return part.xml && part.xml->changed() ? part.xml->Serialise() : SavedBytes(part);
}

// As the archive has it, or as it was added.
std::string Package::SavedBytes(const Part& part) const {
  if (!part.index) return part.bytes;
  return std::string(archive_->Read(*part.index).View());
}

XmlPart& Package::Xml(std::string_view part) { return Xml(Get(part)); }

XmlPart& Package::Xml(Part& part) {
  if (part.xml) return *part.xml;
  if (part.index) {
    CheckMemory(memory_ + archive_->Entries()[*part.index].size, file_, part.name);
    part.xml = std::make_unique<XmlPart>(file_, part.name, archive_->Read(*part.index), memory_);
    memory_ += part.xml->memory();
  } else {
    part.xml = std::make_unique<XmlPart>(file_, part.name, ByteArray::CopyOf(part.bytes));
  }
  return *part.xml;
}

XmlPart& Package::AddXml(std::string part, std::string_view xml, std::string_view contentType) {
  auto tree = std::make_unique<XmlPart>(file_, part, ByteArray::CopyOf(xml));
  Part& added = Insert({.name = std::move(part), .bytes = std::string(xml), .xml = std::move(tree)});
  Declare(added, contentType);
  return *added.xml;
}

void Package::AddBytes(std::string part, std::string bytes, std::string_view contentType) {
  Declare(Insert({.name = std::move(part), .bytes = std::move(bytes)}), contentType);
}

std::string Package::FreshName(std::string_view stem, std::string_view ending) const {
  for (unsigned number = 1;; ++number) {
    std::string name = std::string(stem) + std::to_string(number) + std::string(ending);
    if (!Find(name)) return name;
  }
}

void Package::SetPresent(std::string_view name, bool present) {
  Part& part = Get(name);
  if (part.present == present) return;
  part.present = present;
  SetDeclared(part, present);
  if (Part* list = Find(RelationshipsPartOf(part.name))) SettleRelationships(*list, present);
}

// ------------------------------------------------------------------------------------------------------- list parts

// The elements of [Content_Types].xml and of relationships parts come and go as wholes. Each part's count of edits is the number
// of elements that deviate from the last save, so that adding and removing, in whatever order they are undone, end where they
// began.
void Package::NoteDeviation(Part& list, pugi::xml_node element) {
  const std::string text = Xml(list).Serialise(element);
  if (list.deviations.erase(text)) {
    list.xml->Touch(-1);
  } else {
    list.deviations.insert(text);
    list.xml->Touch(+1);
  }
}

void Package::TakeOut(Part& list, pugi::xml_node element, const std::string& key) {
  const auto siblings = element.parent().children();
  const ptrdiff_t place = std::distance(siblings.begin(), pugi::xml_node_iterator(element));
  list.taken[key] = {takenElements_.append_copy(element), place};
  NoteDeviation(list, element);
  element.parent().remove_child(element);
}

bool Package::PutBack(Part& list, const std::string& key) {
  const auto taken = list.taken.find(key);
  if (taken == list.taken.end()) return false;
  pugi::xml_node root = Xml(list).root();
  pugi::xml_node next = root.first_child();
  for (ptrdiff_t i = 0; next && i < taken->second.place; ++i) next = next.next_sibling();
  NoteDeviation(list, next ? root.insert_copy_before(taken->second.copy, next) : root.append_copy(taken->second.copy));
  takenElements_.remove_child(taken->second.copy);
  list.taken.erase(taken);
  return true;
}

std::string Package::ContentTypeOf(std::string_view part) {
  if (!Has(kContentTypesPart)) return {};
  const pugi::xml_node types = Xml(kContentTypesPart).root();
  pugi::xml_node declaration = FindOverride(types, part);
  const size_t dot = LastStep(part).rfind('.');
  if (!declaration && dot != std::string_view::npos)
    declaration = FindElement(types, "Default", "Extension", LastStep(part).substr(dot + 1));
  return declaration.attribute("ContentType").value();
}

void Package::Declare(const Part& part, std::string_view contentType) {
  Part* list = FindPresent(kContentTypesPart);
  if (!list || ContentTypeOf(part.name) == contentType) return;
  pugi::xml_node declaration = AppendElement(Xml(*list).root(), "Override");
  SetAttribute(declaration, "PartName", "/" + part.name);
  SetAttribute(declaration, "ContentType", contentType);
  NoteDeviation(*list, declaration);
}

void Package::SetDeclared(const Part& part, bool declared) {
  Part* list = FindPresent(kContentTypesPart);
  if (!list) return;
  const std::string key = LowerAscii(part.name);
  if (declared)
    PutBack(*list, key);
  else if (const pugi::xml_node declaration = FindOverride(Xml(*list).root(), part.name))
    TakeOut(*list, declaration, key);
}

// ---------------------------------------------------------------------------------------------------- relationships

void Relationships::Add(Relationship relationship) {
  byId_.emplace(relationship.id, all_.size());
  all_.push_back(std::move(relationship));
}

const Relationship* Relationships::Find(std::string_view id) const {
  const auto found = byId_.find(std::string(id));
  return found == byId_.end() ? nullptr : &all_[found->second];
}

Relationships Package::RelationshipsOf(std::string_view part) {
  Part* list = FindPresent(RelationshipsPartOf(part));
  if (!list) return {};
  Relationships relationships;
  for (pugi::xml_node element : Xml(*list).root().children()) {
    if (LocalName(element) != "Relationship") continue;
    const std::string_view target = element.attribute("Target").value();
    const bool external = std::string_view(element.attribute("TargetMode").value()) == "External";
    relationships.Add({.id = element.attribute("Id").value(),
                       .type = element.attribute("Type").value(),
                       .target = external ? std::string(target) : ResolveTarget(part, target),
                       .external = external});
  }
  return relationships;
}

Package::Part& Package::RelationshipsPart(std::string_view part) {
  const std::string name = RelationshipsPartOf(part);
  if (Part* list = Find(name)) return *list;
  Part& list = Insert({.name = name, .bytes = std::string(kNewRelationships)});
  Declare(list, kRelationshipsType);
  return list;
}

// A relationships part that a save never wrote is there only while it has something to say.
void Package::SettleRelationships(Part& list, bool sourcePresent) {
  const bool present = sourcePresent && (list.index || Xml(list).root().first_child());
  if (list.present == present) return;
  list.present = present;
  SetDeclared(list, present);
}

std::string Package::AddRelationship(std::string_view part, std::string_view type, std::string_view targetPart, std::string id) {
  Part& list = RelationshipsPart(part);
  pugi::xml_node root = Xml(list).root();
  if (id.empty()) {
    unsigned highest = 0;
    for (pugi::xml_node element : root.children())
      highest = std::max(highest, RelationshipNumber(element.attribute("Id").value()));
    for (const auto& [takenId, taken] : list.taken) highest = std::max(highest, RelationshipNumber(takenId));
    id = "rId" + std::to_string(highest + 1);
  }
  const auto taken = list.taken.find(id);
  const bool isUndo = taken != list.taken.end() && type == taken->second.copy.attribute("Type").value() &&
                      ResolveTarget(part, taken->second.copy.attribute("Target").value()) == targetPart;
  if (isUndo) {
    PutBack(list, id);
  } else {
    pugi::xml_node element = AppendElement(root, "Relationship");
    SetAttribute(element, "Id", id);
    SetAttribute(element, "Type", type);
    SetAttribute(element, "Target", RelativeTarget(part, targetPart));
    NoteDeviation(list, element);
  }
  SettleRelationships(list, true);
  return id;
}

void Package::RemoveRelationship(std::string_view part, std::string_view id) {
  Part* list = FindPresent(RelationshipsPartOf(part));
  if (!list) return;
  for (pugi::xml_node element : Xml(*list).root().children()) {
    if (id != element.attribute("Id").value()) continue;
    TakeOut(*list, element, std::string(id));
    SettleRelationships(*list, true);
    return;
  }
}

// ------------------------------------------------------------------------------------------------------------- saving

bool Package::changed() const {
  return std::any_of(parts_.begin(), parts_.end(), [](const auto& part) { return part->Changed(); });
}

// What cannot be read again must not be saved.
std::string Package::CheckedBytes(const Part& part) const {
  std::string bytes = Bytes(part);
  try {
    if (part.xml) CheckXml(bytes);
  } catch (const XmlFault& fault) {
    throw FileError(file_ + " could not be saved: " + PartInWords(part.name) + " " + fault.what + "; undo the last edit.");
  }
  return bytes;
}

Package::Packed Package::Pack(const std::string& displayName) const {
  std::vector<size_t> partOf(archive_->Entries().size(), parts_.size());
  for (size_t i = 0; i < parts_.size(); ++i)
    if (parts_[i]->index) partOf[*parts_[i]->index] = i;

  Packed packed{.archive = nullptr, .parts = std::vector<SavedPart>(parts_.size())};
  ZipWriter writer(*archive_);
  size_t written = 0;
  const auto pack = [&](size_t i) {
    const Part& part = *parts_[i];
    if (!part.present) return;
    packed.parts[i].index = written++;
    if (part.Changed())
      writer.Add(part.name, CheckedBytes(part));
    else
      writer.Copy(*part.index);
  };
  for (size_t entry = 0; entry < partOf.size(); ++entry) {
    if (partOf[entry] < parts_.size()) {
      pack(partOf[entry]);
    } else {
      writer.Copy(entry);
      ++written;
    }
  }
  for (size_t i = 0; i < parts_.size(); ++i) {
    if (!parts_[i]->index) pack(i);
    if (!parts_[i]->present) packed.parts[i].bytes = SavedBytes(*parts_[i]);
  }
  packed.archive = std::make_unique<ZipArchive>(writer.Finish(), displayName);
  return packed;
}

// The directory has been read back; so is here what was written anew.
void Package::CheckPacked(const Packed& packed) const {
  for (size_t i = 0; i < parts_.size(); ++i) {
    const Part& part = *parts_[i];
    if (!part.present) continue;
    const size_t index = *packed.parts[i].index;
    if (packed.archive->Entries().at(index).name != part.name)
      throw FileError(file_ + " could not be saved: " + PartInWords(part.name) + " was lost while packing; save it again.");
    if (part.Changed()) packed.archive->Check(index);
  }
}

// The archive in memory is what the file was: another program's work is told by its bytes, not by its time.
void Package::CheckNotOutdated(const std::filesystem::path& target) const {
  std::error_code error;
  const bool isOrigin = std::filesystem::absolute(target) == origin_ || std::filesystem::equivalent(target, origin_, error);
  if (isOrigin && HoldsOtherBytes(target, archive_->Bytes()))
    throw FileError(
        PathInWords(target) +
        " has been changed by another program since it was opened; save the drawing in another place, or with --force "
        "(in a script \"overwrite\": true) over those changes.");
}

void Package::Save(const std::filesystem::path& target, Overwrite overwrite, FileSystem& files) try {
  std::string displayName = PathInWords(target);
  std::filesystem::path origin = std::filesystem::absolute(target);
  Packed packed;
  if (changed()) {
    packed = Pack(displayName);
    CheckPacked(packed);
  }
  if (overwrite == Overwrite::Refuse) CheckNotOutdated(target);
  WriteFileAtomically(files, target, (packed.archive ? packed.archive : archive_)->Bytes());
  if (packed.archive) Adopt(std::move(packed));
  file_ = std::move(displayName);
  origin_ = std::move(origin);
  SyncNameOf(files, target);
} catch (const std::bad_alloc&) {
  throw FileError::NeedsMemory(PathInWords(target));
}

void Package::Adopt(Packed packed) {
  archive_ = std::move(packed.archive);
  for (size_t i = 0; i < parts_.size(); ++i) {
    Part& part = *parts_[i];
    part.index = packed.parts[i].index;
    part.bytes = std::move(packed.parts[i].bytes);
    if (!part.present) continue;
    part.deviations.clear();
    if (part.xml) part.xml->MarkSaved();
  }
}

}  // namespace vardo
