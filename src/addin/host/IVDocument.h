// A drawing: its pages and its masters.
//   Text is UTF-8. Collections count from 1; an index or name that is not there throws HostError(kHostBadIndex).
#pragma once

#include "addin/host/BulkTexts.h"
#include "addin/host/HostFwd.h"

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace vardo {

class IVDocument {
 public:
  virtual ~IVDocument() = default;
  // Unique among the open drawings; the same for as long as this one is open.
  virtual int ID() = 0;
  virtual IVPagesPtr Pages() = 0;
  virtual IVMastersPtr Masters() = 0;
  // The folder of the file that it was opened from or saved in; empty while it is in none.
  virtual std::string Path() = 0;
  // The drawing's own sheet, read and written like a shape. Of a file that has none it is empty, and made by the first write.
  virtual IVShapePtr DocumentSheet() = 0;
};

class IVPages {
 public:
  virtual ~IVPages() = default;
  virtual int Count() = 0;
  virtual IVPagePtr Item(int index) = 0;
  // Names are compared exactly.
  virtual IVPagePtr Item(std::string_view name) = 0;
  // Adds a page behind the last, names it "Page-n" and shows it; the page-added event is over when this returns.
  virtual IVPagePtr Add() = 0;
};

struct ListedTexts {
  int times = 0;
  std::vector<int> lacking;  // the positions of listed shapes that have no such property
};

class IVPage {
 public:
  virtual ~IVPage() = default;
  // Unique in the drawing and kept in its file.
  virtual int ID() = 0;
  virtual std::string Name() = 0;
  // Throws HostError(kHostNotAllowed) when the name is empty or another page has it.
  virtual void SetName(std::string_view name) = 0;
  // The page's own sheet, read and written like a shape.
  virtual IVShapePtr PageSheet() = 0;
  // The top-level shapes, in drawing order.
  virtual IVShapesPtr Shapes() = 0;
  // The formulas of the property "Prop." + field of the shapes at those positions, in that order; none for a shape that has no
  // such property. Throws HostError(kHostBadIndex) for a position that is no shape's. A host that can answers without a call a
  // shape.
  virtual BulkTexts PropertyFormulas(std::span<const int> positions, std::string_view field);
  // The name of each shape's master, in the order of the shapes; none for a shape without one.
  virtual BulkTexts MasterNames();
  // How often a text occurs, case aside, among the items (joined by ";") of a property of those shapes whose positions a property
  // of the page lists likewise. None when the host does not keep count, or the list is not one of positions that are there.
  virtual std::optional<ListedTexts> CountInListedShapes(std::string_view listField, std::string_view field,
                                                         std::string_view text);
  // Deletes the page with all that is on it; with renumber not 0 pages that bear their number as name are renumbered.
  // Throws HostError(kHostNotAllowed) for the only page of a drawing.
  virtual void Delete(short renumber) = 0;
};

class IVMasters {
 public:
  virtual ~IVMasters() = default;
  virtual int Count() = 0;
  virtual IVMasterPtr Item(int index) = 0;
};

class IVMaster {
 public:
  virtual ~IVMaster() = default;
  virtual std::string Name() = 0;
  // Takes the master out of the drawing. Shapes made from it keep all they had, with no master.
  virtual void Delete() = 0;
};

}  // namespace vardo
