#include "document/ReplayNews.h"

#include <pugixml.hpp>

#include <string_view>
#include <variant>

namespace vardo {
namespace {

using ShapeOfPage = std::pair<int, int>;

bool IsNamed(pugi::xml_node node, std::string_view name) { return node.name() == name; }
int IdOf(pugi::xml_node node) { return node.attribute("ID").as_int(); }

// Null for a part that is no page's.
DrawingPage* PageIn(Drawing& drawing, const XmlPart* part) {
  for (int i = 1; i <= drawing.PageCount(); ++i)
    if (drawing.PageAt(i).contents() == part) return &drawing.PageAt(i);
  return nullptr;
}

// Goes through the records; what a step has brought and taken again is neither.
class Reader {
 public:
  Reader(Drawing& drawing, ReplayDirection direction) : drawing_(drawing), forward_(direction == ReplayDirection::Redo) {}

  void operator()(const NodeInserted& edit) { Moved(edit, forward_ ? 1 : -1); }
  void operator()(const NodeRemoved& edit) { Moved(edit, forward_ ? -1 : 1); }
  void operator()(const AttributesChanged& edit) {
    if (const pugi::xml_node node(edit.node); IsNamed(node, "Page")) news_.pagesChanged.insert(IdOf(node));
  }
  void operator()(const TextChanged& edit) { NoteText(edit.part, pugi::xml_node(edit.node)); }
  void operator()(const PartPresence&) {}
  void operator()(const RowsShifted&) {}

  ReplayNews Take() {
    for (const auto& [page, by] : pages_)
      if (by != 0) (by > 0 ? news_.pagesComing : news_.pagesGoing).insert(page);
    for (const auto& [shape, by] : shapes_) {
      if (by > 0) news_.shapesComing.insert(shape);
      if (by < 0 && !news_.pagesGoing.contains(shape.first)) news_.shapesGoing[shape.first].push_back(shape.second);
    }
    return std::move(news_);
  }

 private:
  template <class Edit>
  void Moved(const Edit& edit, int by) {
    const pugi::xml_node node(edit.node), parent(edit.place.parent);
    if (IsNamed(node, "Page") && IsNamed(parent, "Pages")) {
      pages_[IdOf(node)] += by;
    } else if (IsNamed(node, "Shape") && IsNamed(parent.parent(), "PageContents")) {
      NoteShape(edit.part, node, by);
    } else if (IsNamed(node, "Shapes") && IsNamed(parent, "PageContents")) {
      // A page's first shape brings their list.
      for (const pugi::xml_node shape : node.children("Shape")) NoteShape(edit.part, shape, by);
    } else {
      NoteText(edit.part, IsNamed(node, "Text") ? node : parent, parent);
    }
  }
  void NoteShape(const XmlPart* part, pugi::xml_node shape, int by) {
    if (const DrawingPage* page = PageIn(drawing_, part)) shapes_[{page->id(), IdOf(shape)}] += by;
  }
  void NoteText(const XmlPart* part, pugi::xml_node node, pugi::xml_node shape = {}) {
    while (node && !IsNamed(node, "Text")) node = node.parent();
    if (!node) return;
    if (!IsNamed(shape, "Shape")) shape = node.parent();
    DrawingPage* page = PageIn(drawing_, part);
    if (page && page->FindShape(IdOf(shape))) news_.texts.insert({page->id(), IdOf(shape)});
  }

  Drawing& drawing_;
  bool forward_;
  ReplayNews news_;
  std::map<int, int> pages_;
  std::map<ShapeOfPage, int> shapes_;
};

}  // namespace

ReplayNews NewsOfReplay(Drawing& drawing, const std::vector<Edit>& edits, ReplayDirection direction) {
  Reader reader(drawing, direction);
  for (const Edit& edit : edits) std::visit(reader, edit);
  return reader.Take();
}

}  // namespace vardo
