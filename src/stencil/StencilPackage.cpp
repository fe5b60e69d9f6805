#include "stencil/StencilPackage.h"

#include "package/PartNames.h"
#include "stencil/DocumentParts.h"
#include "stencil/MasterParts.h"

#include <map>
#include <utility>

namespace vardo {
namespace {

constexpr std::string_view kDocument = "visio/document.xml";
constexpr std::string_view kMasters = "visio/masters/masters.xml";
constexpr std::string_view kPages = "visio/pages/pages.xml";
constexpr std::string_view kPage = "visio/pages/page1.xml";
constexpr std::string_view kWindows = "visio/windows.xml";
constexpr std::string_view kCoreProperties = "docProps/core.xml";
constexpr std::string_view kApplicationProperties = "docProps/app.xml";

std::string VisioType(std::string_view kind) { return "application/vnd.ms-visio." + std::string(kind) + "+xml"; }
std::string VisioRelationship(std::string_view kind) {
  return "http://schemas.microsoft.com/visio/2010/relationships/" + std::string(kind);
}

// The parts of a package as they are put together, with what declares and relates them.
class NewParts {
 public:
  void Add(std::string_view name, std::string xml, std::string_view contentType) {
    parts_.push_back({std::string(name), std::move(xml)});
    declarations_.emplace_back("/" + std::string(name), contentType);
  }
  // The n-th relationship of a part, counted from 1, has the id "rId" and n.
  void Relate(std::string_view from, std::string type, std::string_view to) {
    relationships_[std::string(from)].push_back({std::move(type), RelativeTarget(from, to)});
  }

  std::vector<Package::NewPart> Take() {
    std::vector<Package::NewPart> all{{"[Content_Types].xml", ContentTypes()}};
    for (const auto& [from, related] : relationships_) all.push_back({RelationshipsPartOf(from), Relationships(related)});
    for (Package::NewPart& part : parts_) all.push_back(std::move(part));
    return all;
  }

 private:
  struct Related {
    std::string type, target;
  };

  // None of these texts holds a character that XML escapes.
  static std::string Element(const std::string& name, const std::vector<std::pair<const char*, std::string>>& attributes) {
    std::string text = "<" + name;
    for (const auto& [attribute, value] : attributes) text.append(" ").append(attribute).append("=\"" + value + "\"");
    return text + "/>";
  }

  static std::string ListPart(const std::string& root, const std::string& nameSpace, const std::string& elements) {
    return "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\r\n<" + root +
           " xmlns=\"http://schemas.openxmlformats.org/package/2006/" + nameSpace + "\">" + elements + "</" + root + ">";
  }

  std::string ContentTypes() const {
    std::string elements =
        Element("Default", {{"Extension", "rels"}, {"ContentType", "application/vnd.openxmlformats-package.relationships+xml"}}) +
        Element("Default", {{"Extension", "xml"}, {"ContentType", "application/xml"}});
    for (const auto& [part, type] : declarations_) elements += Element("Override", {{"PartName", part}, {"ContentType", type}});
    return ListPart("Types", "content-types", elements);
  }

  static std::string Relationships(const std::vector<Related>& related) {
    std::string elements;
    int number = 0;
    for (const auto& [type, target] : related)
      elements += Element("Relationship", {{"Id", "rId" + std::to_string(++number)}, {"Type", type}, {"Target", target}});
    return ListPart("Relationships", "relationships", elements);
  }

  std::vector<Package::NewPart> parts_;
  std::vector<std::pair<std::string, std::string>> declarations_;
  std::map<std::string, std::vector<Related>> relationships_;
};

// What the three kinds of file differ in.
struct FileKind {
  std::string_view name;     // how sentences name it
  std::string_view type;     // as the content type of its document says it
  std::string_view title;    // for those who see it in a list of files
  bool canBeDrawnOn;         // has contents of its page and a window on it
  std::string_view stencil;  // the file of the one that is opened with it
};
constexpr FileKind kDrawing{"the new drawing", "drawing", "", true, ""};
constexpr FileKind kTemplate{"the template", "template", "Vardo Model", true, kStencilFile};
constexpr FileKind kStencil{"the stencil", "stencil", "Vardo Modules", false, ""};

void AddDocument(NewParts& parts, const FileKind& kind) {
  parts.Add(kDocument, DocumentPart(), VisioType(std::string(kind.type) + ".main"));
  parts.Relate("", VisioRelationship("document"), kDocument);
  if (!kind.canBeDrawnOn) return;
  parts.Add(kWindows, WindowsPart(kind.stencil), VisioType("windows"));
  parts.Relate(kDocument, VisioRelationship("windows"), kWindows);
}

void AddPage(NewParts& parts, const FileKind& kind) {
  parts.Add(kPages, PageListPart(kind.canBeDrawnOn ? PageContents::InPart : PageContents::None), VisioType("pages"));
  parts.Relate(kDocument, VisioRelationship("pages"), kPages);
  if (!kind.canBeDrawnOn) return;
  parts.Add(kPage, EmptyPagePart(), VisioType("page"));
  parts.Relate(kPages, VisioRelationship("page"), kPage);
}

// The list names its masters by the relationships that are made here in the same order.
void AddMasters(NewParts& parts) {
  parts.Add(kMasters, MasterListPart(), VisioType("masters"));
  parts.Relate(kDocument, VisioRelationship("masters"), kMasters);
  int number = 0;
  for (const MasterPart& master : MasterParts()) {
    const std::string part = "visio/masters/master" + std::to_string(++number) + ".xml";
    parts.Add(part, master.contents, VisioType("master"));
    parts.Relate(kMasters, VisioRelationship("master"), part);
  }
}

void AddProperties(NewParts& parts, const FileKind& kind) {
  parts.Add(kCoreProperties, CorePropertiesPart(kind.title), "application/vnd.openxmlformats-package.core-properties+xml");
  parts.Relate("", "http://schemas.openxmlformats.org/package/2006/relationships/metadata/core-properties", kCoreProperties);
  parts.Add(kApplicationProperties, ApplicationPropertiesPart({std::string(kFirstPageName)}, StencilMasterNames()),
            "application/vnd.openxmlformats-officedocument.extended-properties+xml");
  parts.Relate("", "http://schemas.openxmlformats.org/officeDocument/2006/relationships/extended-properties",
               kApplicationProperties);
}

std::unique_ptr<Package> Make(const FileKind& kind) {
  NewParts parts;
  AddDocument(parts, kind);
  AddMasters(parts);
  AddPage(parts, kind);
  AddProperties(parts, kind);
  return Package::Create(std::string(kind.name), parts.Take());
}

}  // namespace

std::unique_ptr<Package> MakeNewDrawing() { return Make(kDrawing); }
std::unique_ptr<Package> MakeTemplate() { return Make(kTemplate); }
std::unique_ptr<Package> MakeStencil() { return Make(kStencil); }

const std::vector<std::string>& StencilMasterNames() {
  static const std::vector<std::string> names = [] {
    std::vector<std::string> all;
    for (const MasterPart& master : MasterParts()) all.emplace_back(master.name);
    return all;
  }();
  return names;
}

}  // namespace vardo
