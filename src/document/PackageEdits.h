// Parts of the drawing's package that come and go, with what declares and relates them: edits like any other.
#pragma once

#include "document/TreeEditor.h"

#include <string>
#include <string_view>

namespace vardo {

class Package;
struct Relationship;

class PackageEdits {
 public:
  PackageEdits(Package& package, TreeEditor& editor) : package_(package), editor_(editor) {}

  // A new part, declared in [Content_Types].xml unless the package has none.
  XmlPart& AddPart(std::string name, std::string_view xml, std::string_view contentType, const TreeEditor::Change& adapt = {});
  // Takes a part out, with its declaration and its own relationships. Relationships that lead to it are the caller's.
  void RemovePart(std::string_view name);

  // Returns the id of the new relationship: the next free rIdN.
  std::string Relate(std::string_view from, std::string_view type, std::string_view to);
  void Unrelate(std::string_view from, std::string_view id);

 private:
  void Declare(std::string_view part, std::string_view contentType);
  XmlPart& RelationshipsPart(std::string_view from);

  Package& package_;
  TreeEditor& editor_;
};

}  // namespace vardo
