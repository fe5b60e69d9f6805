// A tree with its editor and its log, and nobody who looks on.
#pragma once

#include "document/EditObserver.h"
#include "document/TreeEditor.h"
#include "package/Package.h"

#include <pugixml.hpp>

#include <memory>
#include <string>

namespace vardo::test {

class TestTree {
 public:
  explicit TestTree(std::string xml) : package_(Package::Create("test.vsdx", {{"part", std::move(xml)}})) {}
  XmlPart& part() { return package_->Xml("part"); }
  Package& package() { return *package_; }
  TreeEditor& editor() { return editor_; }
  EditLog& log() { return log_; }

 private:
  struct Nobody : EditObserver {
    void Inserted(XmlPart&, pugi::xml_node) override {}
    void Removing(XmlPart&, pugi::xml_node) override {}
    void Changing(XmlPart&, pugi::xml_node) override {}
    void Changed(XmlPart&, pugi::xml_node) override {}
    void Shifted(const RowsShifted&, bool) override {}
  };
  std::unique_ptr<Package> package_;
  Nobody nobody_;
  EditLog log_{*package_, nobody_};
  TreeEditor editor_{*package_, nobody_, log_};
};

}  // namespace vardo::test
