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
constexpr std::string_view kDocumentRelationship = "/visio/2010/relationships/document";

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

// The child whose attribute has that value, without regard to case.
pugi::xml_node FindElement(pugi::xml_node root, std::string_view localName, const char* attribute, std::string_view value) {
  for (pugi::xml_node child : root.children())
    if (LocalName(child) == localName && EqualAsciiIgnoringCase(child.attribute(attribute).value(), value)) return child;
  return {};
}

pugi::xml_node FindOverride(pugi::xml_node types, std::string_view part) {
  return FindElement(types, "Override", "PartName", "/" + std::string(part));
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

std::unique_ptr<Package> Package::Create(std::string displayName, std::vector<NewPart> parts) {
  std::unique_ptr<Package> package(new Package(std::move(displayName)));
  for (NewPart& part : parts) package->Insert({.name = std::move(part.name), .bytes = std::move(part.xml)});
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
  if (FindPresent(part.name))
    throw FileError(file_ + " has " + PartInWords(part.name) + " already; give the new part a fresh name.");
  Part& inserted = *parts_.emplace_back(std::make_unique<Part>(std::move(part)));
  byName_[LowerAscii(inserted.name)] = &inserted;
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

XmlPart& Package::Add(std::string part, std::string_view xml) {
  auto tree = std::make_unique<XmlPart>(file_, part, ByteArray::CopyOf(xml));
  Part& added = Insert({.name = std::move(part), .bytes = std::string(xml), .xml = std::move(tree), .present = false});
  return *added.xml;
}

std::string Package::FreshName(std::string_view stem, std::string_view ending) const {
  for (unsigned number = 1;; ++number) {
    std::string name = std::string(stem) + std::to_string(number) + std::string(ending);
    if (!Find(name)) return name;
  }
}

Package::Part& Package::Get(const XmlPart& tree) const {
  return **std::find_if(parts_.begin(), parts_.end(), [&](const auto& part) { return part->xml.get() == &tree; });
}

void Package::SetPresent(XmlPart& tree, bool present) {
  Part& part = Get(tree);
  if (present) byName_[LowerAscii(part.name)] = &part;
  part.present = present;
}

void Package::Forget(XmlPart& tree) {
  Part& part = Get(tree);
  if (part.present) return;
  part.xml.reset();
  if (part.index) return;
  // Another part that came and went may have had its name meanwhile.
  std::erase_if(byName_, [&](const auto& named) { return named.second == &part; });
  std::erase_if(parts_, [&](const auto& known) { return known.get() == &part; });
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

std::string Package::FileBytes() const {
  if (!changed()) return archive_->Bytes();
  const Packed packed = Pack(file_);
  CheckPacked(packed);
  return packed.archive->Bytes();
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
    if (part.xml) part.xml->MarkSaved();
  }
}

}  // namespace vardo
