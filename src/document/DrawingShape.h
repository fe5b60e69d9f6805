// A shape of a master, or of a page.
#pragma once

#include "document/Sheet.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace vardo {

class DrawingMaster;

class DrawingShape : public Sheet {
 public:
  DrawingShape(XmlPart& part, pugi::xml_node element, const Sheet* base, DrawingShape* parent);

  int id() const { return id_; }
  // The group it is in; null for a shape of the page itself.
  DrawingShape* parent() const { return parent_; }
  // kShapeType...
  short Type() const;
  // The master it was made from, by the drawing's number; -1 when it has none.
  int MasterId() const;
  const DrawingMaster* master() const { return master_; }
  // A low number of its own on the page, given to another shape once this one has gone.
  std::uint32_t slot() const { return slot_; }
  // Of its element; empty when the file does not say it.
  std::string StoredName() const;
  // Without the closing line end of the text block.
  std::string Text() const;
  void SetText(TreeEditor& editor, std::string_view text);

 private:
  friend class DrawingPage;
  int id_;
  std::uint32_t slot_ = 0;
  const DrawingMaster* master_ = nullptr;
  int index_ = 0;  // among the page's shapes, as the page last counted them
  DrawingShape* parent_;
};

}  // namespace vardo
