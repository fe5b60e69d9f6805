// Small drawings for tests: what a page or a master holds is written as text, the rest of the package is put around it.
#pragma once

#include "TestFiles.h"
#include "TestPackages.h"
#include "document/Drawing.h"
#include "document/FormulaScopeOfDrawing.h"
#include "package/Package.h"

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace vardo::test {

// A drawing of one page "Page-1" with the ID 0; masters are numbered 2, 3, ... in order.
struct DrawingText {
  struct Master {
    std::string name, shape;  // its name, and its one Shape element
  };
  std::string shapes, connects{};  // what stands within Shapes and Connects; empty: no such element
  std::vector<Master> masters{};   // none: a drawing without a list of masters
  std::string pageSheet = "<PageSheet LineStyle='0' FillStyle='0' TextStyle='0'><Cell N='PageWidth' V='11' U='IN'/></PageSheet>";
  bool pageHasPart = true;  // false: as the page of a stencil
  std::string documentSheet = "<DocumentSheet NameU='TheDoc'/>";
};

inline constexpr std::string_view kDeclaration = "<?xml version='1.0' encoding='utf-8' ?>\r\n";

inline std::string VisioPart(const std::string& root, const std::string& content) {
  return std::string(kDeclaration) + "<" + root +
         " xmlns='http://schemas.microsoft.com/office/visio/2012/main'"
         " xmlns:r='http://schemas.openxmlformats.org/officeDocument/2006/relationships' xml:space='preserve'>" +
         content + "</" + root + ">";
}

inline std::string InElement(const std::string& name, const std::string& content) {
  return content.empty() ? "" : "<" + name + ">" + content + "</" + name + ">";
}

class PackageText {
 public:
  explicit PackageText(const DrawingText& text) {
    const bool masters = !text.masters.empty();
    Add("visio/document.xml", "drawing.main", VisioPart("VisioDocument", text.documentSheet));
    Relate("", {{"document", "visio/document.xml"}});
    if (masters)
      Relate("visio/document.xml", {{"pages", "pages/pages.xml"}, {"masters", "masters/masters.xml"}});
    else
      Relate("visio/document.xml", {{"pages", "pages/pages.xml"}});
    Add("visio/pages/pages.xml", "pages",
        VisioPart("Pages", "<Page ID='0' NameU='Page-1' Name='Page-1'>" + text.pageSheet +
                               (text.pageHasPart ? "<Rel r:id='rId1'/>" : "") + "</Page>"));
    if (text.pageHasPart) {
      Relate("visio/pages/pages.xml", {{"page", "page1.xml"}});
      Add(std::string(kPagePart), "page",
          VisioPart("PageContents", InElement("Shapes", text.shapes) + InElement("Connects", text.connects)));
    }
    if (masters) AddMasters(text.masters);
    items_.insert(items_.begin(),
                  {"[Content_Types].xml", std::string(kRelsDeclaration) +
                                              "<Types xmlns=\"http://schemas.openxmlformats.org/package/2006/content-types\">"
                                              "<Default Extension=\"rels\" "
                                              "ContentType=\"application/vnd.openxmlformats-package.relationships+xml\"/>" +
                                              types_ + "</Types>"});
  }
  const std::vector<ZipItem>& items() const { return items_; }

 private:
  static constexpr std::string_view kRelsDeclaration = "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\r\n";
  struct Target {
    std::string type, name;
  };

  void Add(const std::string& name, const std::string& type, const std::string& content) {
    items_.push_back({name, content});
    types_ += "<Override PartName=\"/" + name + "\" ContentType=\"application/vnd.ms-visio." + type + "+xml\"/>";
  }
  void Relate(const std::string& part, const std::vector<Target>& targets) {
    std::string relationships;
    int number = 0;
    for (const Target& target : targets)
      relationships += "<Relationship Id=\"rId" + std::to_string(++number) +
                       "\" Type=\"http://schemas.microsoft.com/visio/2010/relationships/" + target.type + "\" Target=\"" +
                       target.name + "\"/>";
    const size_t slash = part.rfind('/') + 1;
    items_.push_back({part.substr(0, slash) + "_rels/" + part.substr(slash) + ".rels",
                      std::string(kRelsDeclaration) +
                          "<Relationships xmlns=\"http://schemas.openxmlformats.org/package/2006/relationships\">" +
                          relationships + "</Relationships>"});
  }
  void AddMasters(const std::vector<DrawingText::Master>& masters) {
    std::string list;
    std::vector<Target> targets;
    for (size_t i = 0; i < masters.size(); ++i) {
      const std::string number = std::to_string(i + 1);
      list += "<Master ID='" + std::to_string(i + 2) + "' NameU='" + masters[i].name + "'><PageSheet/><Rel r:id='rId" + number +
              "'/></Master>";
      targets.push_back({"master", "master" + number + ".xml"});
      Add("visio/masters/master" + number + ".xml", "master", VisioPart("MasterContents", InElement("Shapes", masters[i].shape)));
    }
    Add("visio/masters/masters.xml", "masters", VisioPart("Masters", list));
    Relate("visio/masters/masters.xml", targets);
  }

  std::vector<ZipItem> items_;
  std::string types_;
};

inline std::string ZipOf(const DrawingText& text) { return MakeZip(PackageText(text).items()); }

inline std::unique_ptr<Drawing> OpenText(const DrawingText& text) {
  const TempFolder folder;
  WriteFile(folder / "test.vsdx", ZipOf(text));
  return Drawing::Open(folder / "test.vsdx");
}

// The element of a shape as a save would write it.
inline std::string Written(const Sheet& sheet) { return sheet.part().Serialise(pugi::xml_node(sheet.element())); }

// A formula written as a person or the add-in does.
inline void SetCell(Drawing& drawing, Sheet& sheet, std::string_view cell, std::string_view formula) {
  const CellAddress address = sheet.Find(cell).value();
  sheet.SetFormula(drawing.editor(), address, formula, FormulaScopeOfDrawing(drawing, &drawing.PageAt(1), sheet, address));
}

}  // namespace vardo::test
