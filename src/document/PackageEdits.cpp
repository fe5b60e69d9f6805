#include "document/PackageEdits.h"

#include "base/Numbers.h"
#include "base/Text.h"
#include "package/Package.h"
#include "package/PartNames.h"

#include <algorithm>

namespace vardo {
namespace {

constexpr const char* kContentTypesPart = "[Content_Types].xml";
constexpr std::string_view kRelationshipsType = "application/vnd.openxmlformats-package.relationships+xml";
constexpr std::string_view kNoRelationships =
    "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\r\n"
    "<Relationships xmlns=\"http://schemas.openxmlformats.org/package/2006/relationships\"/>";

// With the namespace prefix that the root has.
std::string NameLikeRoot(pugi::xml_node root, std::string_view localName) {
  const std::string_view name = root.name();
  const size_t colon = name.find(':');
  return std::string(name.substr(0, colon == std::string_view::npos ? 0 : colon + 1)).append(localName);
}

pugi::xml_node ChildWith(pugi::xml_node root, const char* attribute, std::string_view value) {
  for (const pugi::xml_node child : root.children())
    if (EqualAsciiIgnoringCase(child.attribute(attribute).value(), value)) return child;
  return {};
}

}  // namespace

XmlPart& PackageEdits::AddPart(std::string name, std::string_view xml, std::string_view contentType,
                               const TreeEditor::Change& adapt) {
  XmlPart& part = editor_.AddPart(std::move(name), xml, adapt);
  Declare(part.name(), contentType);
  return part;
}

void PackageEdits::Declare(std::string_view part, std::string_view contentType) {
  if (!package_.Has(kContentTypesPart) || package_.ContentTypeOf(part) == contentType) return;
  XmlPart& types = package_.Xml(kContentTypesPart);
  editor_.Insert(types, types.root(), NameLikeRoot(types.root(), "Override").c_str(),
                 {{"PartName", "/" + std::string(part)}, {"ContentType", contentType}});
}

void PackageEdits::RemovePart(std::string_view name) {
  for (const std::string& gone : {RelationshipsPartOf(name), std::string(name)}) {
    if (!package_.Has(gone)) continue;
    editor_.RemovePart(package_.Xml(gone));
    if (!package_.Has(kContentTypesPart)) continue;
    XmlPart& types = package_.Xml(kContentTypesPart);
    if (const pugi::xml_node declaration = ChildWith(types.root(), "PartName", "/" + gone)) editor_.Remove(types, declaration);
  }
}

XmlPart& PackageEdits::RelationshipsPart(std::string_view from) {
  const std::string name = RelationshipsPartOf(from);
  return package_.Has(name) ? package_.Xml(name) : AddPart(name, kNoRelationships, kRelationshipsType);
}

std::string PackageEdits::Relate(std::string_view from, std::string_view type, std::string_view to) {
  XmlPart& list = RelationshipsPart(from);
  int highest = 0;
  for (const pugi::xml_node relationship : list.root().children()) {
    const std::string_view id = relationship.attribute("Id").value();
    if (id.starts_with("rId")) highest = std::max(highest, ParseInteger(id.substr(3)).value_or(0));
  }
  std::string id = "rId" + std::to_string(highest + 1);
  editor_.Insert(list, list.root(), NameLikeRoot(list.root(), "Relationship").c_str(),
                 {{"Id", id}, {"Type", type}, {"Target", RelativeTarget(from, to)}});
  return id;
}

void PackageEdits::Unrelate(std::string_view from, std::string_view id) {
  const std::string name = RelationshipsPartOf(from);
  if (!package_.Has(name)) return;
  XmlPart& list = package_.Xml(name);
  if (const pugi::xml_node relationship = ChildWith(list.root(), "Id", id)) editor_.Remove(list, relationship);
}

}  // namespace vardo
