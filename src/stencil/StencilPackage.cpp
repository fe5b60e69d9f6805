#include "stencil/StencilPackage.h"

#include "stencil/DocumentParts.h"
#include "stencil/MasterParts.h"

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

void AddDocument(Package& package) {
  package.AddXml(std::string(kDocument), DocumentPart(), VisioType("drawing.main"));
  package.AddRelationship("", VisioRelationship("document"), kDocument);
  package.AddXml(std::string(kWindows), WindowsPart(), VisioType("windows"));
  package.AddRelationship(kDocument, VisioRelationship("windows"), kWindows);
}

void AddPage(Package& package) {
  package.AddXml(std::string(kPages), PageListPart(), VisioType("pages"));
  package.AddRelationship(kDocument, VisioRelationship("pages"), kPages);
  package.AddXml(std::string(kPage), EmptyPagePart(), VisioType("page"));
  package.AddRelationship(kPages, VisioRelationship("page"), kPage);
}

// The list names its masters by the relationships that are made here in the same order.
void AddMasters(Package& package) {
  package.AddXml(std::string(kMasters), MasterListPart(), VisioType("masters"));
  package.AddRelationship(kDocument, VisioRelationship("masters"), kMasters);
  int number = 0;
  for (const MasterPart& master : MasterParts()) {
    const std::string part = "visio/masters/master" + std::to_string(++number) + ".xml";
    package.AddXml(part, master.contents, VisioType("master"));
    package.AddRelationship(kMasters, VisioRelationship("master"), part, "rId" + std::to_string(number));
  }
}

void AddProperties(Package& package) {
  package.AddXml(std::string(kCoreProperties), CorePropertiesPart(),
                 "application/vnd.openxmlformats-package.core-properties+xml");
  package.AddRelationship("", "http://schemas.openxmlformats.org/package/2006/relationships/metadata/core-properties",
                          kCoreProperties);
  package.AddXml(std::string(kApplicationProperties),
                 ApplicationPropertiesPart({std::string(kFirstPageName)}, StencilMasterNames()),
                 "application/vnd.openxmlformats-officedocument.extended-properties+xml");
  package.AddRelationship("", "http://schemas.openxmlformats.org/officeDocument/2006/relationships/extended-properties",
                          kApplicationProperties);
}

}  // namespace

std::unique_ptr<Package> MakeNewDrawing() {
  std::unique_ptr<Package> package = Package::Create("the new drawing");
  AddDocument(*package);
  AddMasters(*package);
  AddPage(*package);
  AddProperties(*package);
  return package;
}

const std::vector<std::string>& StencilMasterNames() {
  static const std::vector<std::string> names = [] {
    std::vector<std::string> all;
    for (const MasterPart& master : MasterParts()) all.emplace_back(master.name);
    return all;
  }();
  return names;
}

}  // namespace vardo
