// A drawing's file as a set of parts: opened with every guard up, edited as trees, saved without loss and in one step.
#pragma once

#include "base/FileError.h"
#include "package/XmlPart.h"
#include "package/ZipArchive.h"
#include "platform/FileSystem.h"

#include <pugixml.hpp>

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace vardo {

struct Relationship {
  std::string id, type;
  std::string target;  // the part it names, without a leading slash; the raw text when external
  bool external = false;
};

// Those of a part, in their order.
class Relationships {
 public:
  void Add(Relationship relationship);
  // Null when none has that id; of several the first.
  const Relationship* Find(std::string_view id) const;

  auto begin() const { return all_.begin(); }
  auto end() const { return all_.end(); }
  size_t size() const { return all_.size(); }
  bool empty() const { return all_.empty(); }
  const Relationship& operator[](size_t index) const { return all_[index]; }

 private:
  std::vector<Relationship> all_;
  std::unordered_map<std::string, size_t> byId_;
};

// Names of parts have no leading slash and are found without regard to the case of ASCII letters. Not for several threads at a
// time. Every throw is a FileError whose sentence names the file, and the part where one is to blame; nothing has changed then.
class Package {
 public:
  // Reads the whole file; it is not needed afterwards. Every part is unpacked once to prove its checksum, and the document, its
  // pages, masters and windows, with their relationships, are parsed, so that what opens can be relied on. Solutions and other
  // payload stay bytes, well-formed or not. Refused: all that ZipDirectory.h and XmlPart.h refuse, and packages whose main part
  // is missing or no Visio drawing, stencil or template. A package without [Content_Types].xml is taken at its relationships'
  // word.
  static std::unique_ptr<Package> OpenFile(const std::filesystem::path& path);
  static std::unique_ptr<Package> OpenBytes(std::string zip, const std::string& displayName);
  struct NewPart {
    std::string name, xml;
  };
  // Of those parts, [Content_Types].xml and relationships included, in that order.
  static std::unique_ptr<Package> Create(std::string displayName, std::vector<NewPart> parts);

  // How sentences name the file.
  const std::string& displayName() const { return file_; }

  // In the order of the archive, then new ones as they were added; folders and parts taken out are left out.
  std::vector<std::string> PartNames() const;
  bool Has(std::string_view part) const;
  // As Save would write it; unedited parts byte for byte as they were read.
  std::string Bytes(std::string_view part) const;
  // The part's tree, parsed at first use; good as long as the package, taken out or not.
  XmlPart& Xml(std::string_view part);

  // A new part; it is not in the package until it is made present. The name must be free: FreshName gives one.
  XmlPart& Add(std::string part, std::string_view xml);
  // `stem`, the lowest number from 1 that is free, `ending`: FreshName("visio/pages/page", ".xml"). The names of parts that have
  // been taken out are not free.
  std::string FreshName(std::string_view stem, std::string_view ending) const;
  // Takes a part out or puts it back where it was; its tree lives on meanwhile. What names the part in [Content_Types].xml and in
  // relationships is the caller's.
  void SetPresent(XmlPart& part, bool present);
  // Frees the tree of a part that has been taken out, and its name unless the file still has it.
  void Forget(XmlPart& part);

  // Of a part, or with "" of the package; in their order. None when there is no relationships part.
  Relationships RelationshipsOf(std::string_view part);
  // As [Content_Types].xml declares it; empty when it does not, or is missing.
  std::string ContentTypeOf(std::string_view part);

  // The document, as the package's relationships name it.
  std::string MainPart();

  // Whether a save would write anything but what was opened or last saved.
  bool changed() const;
  // Writes the package to the target (see WriteFileAtomically for what holds on failure); the package is unchanged afterwards,
  // and the target the file it comes from. Untouched parts keep their packed bytes and place, and the same package gives the same
  // bytes anywhere; with nothing changed these are the bytes opened. Refused, unless allowed: saving over the file the package
  // comes from when that holds other bytes by now.
  void Save(const std::filesystem::path& target, Overwrite overwrite = Overwrite::Refuse,
            FileSystem& files = MachineFileSystem());
  // What a save would write. The package is as changed as before.
  std::string FileBytes() const;

 private:
  struct Part {
    std::string name;
    std::optional<size_t> index{};   // in the archive
    std::string bytes{};             // of a part that the archive has not, as added or last saved
    std::unique_ptr<XmlPart> xml{};  // once parsed
    bool present = true;

    bool Changed() const { return present != index.has_value() || (present && xml && xml->changed()); }
  };

  // An archive of the package as it is, and where it has each part, or the content that one keeps while taken out.
  struct SavedPart {
    std::optional<size_t> index;
    std::string bytes;
  };
  struct Packed {
    std::unique_ptr<ZipArchive> archive;
    std::vector<SavedPart> parts;
  };

  explicit Package(std::string displayName);
  void ReadArchive(std::string zip);
  void ParseDrawing();
  void CheckMainPart(const std::string& main);

  Part* Find(std::string_view name) const;
  Part* FindPresent(std::string_view name) const;
  Part& Get(std::string_view name) const;
  Part& Get(const XmlPart& tree) const;
  Part& Insert(Part part);
  XmlPart& Xml(Part& part);
  std::string Bytes(const Part& part) const;
  std::string SavedBytes(const Part& part) const;

  void CheckNotOutdated(const std::filesystem::path& target) const;
  Packed Pack(const std::string& displayName) const;
  void CheckPacked(const Packed& packed) const;
  std::string CheckedBytes(const Part& part) const;
  void Adopt(Packed packed);

  std::string file_;
  std::filesystem::path origin_;  // where archive_ was read or last saved; empty: nowhere yet
  std::unique_ptr<ZipArchive> archive_;
  std::uint64_t memory_ = 0;  // of the file and of the trees read from it
  std::vector<std::unique_ptr<Part>> parts_;
  std::unordered_map<std::string, Part*> byName_;  // lowered
};

}  // namespace vardo
