// Makes the slices of a page's shapes, as often as they are wanted anew.
#pragma once

#include "picture/PagePicture.h"
#include "picture/ResolvedSheet.h"
#include "picture/ShapeFormat.h"

#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

namespace vardo::picture {

// Looks that are alike are kept once.
class Looks {
 public:
  std::shared_ptr<const Look> Keep(Look look);

 private:
  void ForgetUnused();

  std::unordered_multimap<size_t, std::shared_ptr<const Look>> known_;
  size_t roomBeforeForgetting_ = 1024;
};

// Good until a master, a style sheet or a theme changes, or goes.
class PageBuilder {
 public:
  explicit PageBuilder(Drawing& drawing) : resolver_(drawing), drawing_(drawing), formats_(drawing, resolver_) {}

  // Puts the page's name, size and scale and the slices of the pages behind it into the picture, and adds to that one from now
  // on. To be called again when the page's own sheet has changed.
  void Begin(DrawingPage& page, PagePicture& picture);
  // Adds to another picture of the same page, or to one that lies elsewhere by now.
  void SetPicture(PagePicture& picture) { picture_ = &picture; }
  // Appends the slices of a shape of the page and of all inside it, and what is to be noted of them.
  void Add(const DrawingShape& topLevel);

 private:
  // Where a shape stands, seen from the page. Angles of texts are taken along by themselves, as texts are never mirrored.
  struct Standing {
    Matrix toPage;
    double turn = 0, sense = 1;  // an angle in the shape is turn + sense * angle on the page
  };
  struct Layer {
    bool visible = true, prints = true;
    std::optional<Rgba> colour;
  };
  // What the layers of a shape make of it.
  struct OnLayers {
    bool visible = true, prints = true;
    std::optional<Rgba> colour;
  };

  static Standing StandingOf(const ResolvedSheet& sheet, const Standing& parent);
  void AddBackgroundOf(DrawingPage& page);
  void EnterPage(DrawingPage& page, bool isBackground);
  void ReadLayers();
  OnLayers LayersOf(const ResolvedSheet& sheet) const;
  void AddShape(const DrawingShape& shape, const Standing& parent);
  void AddSlice(const DrawingShape& shape, const ResolvedSheet& sheet, const Standing& standing);
  Look LookOf(const DrawingShape& shape, const ResolvedSheet& sheet, const ShapeFormat& format, const Standing& standing);
  void AddText(Slice& slice, const DrawingShape& shape, const ResolvedSheet& sheet, const ShapeFormat& format,
               const Standing& standing, std::optional<Rgba> colour);
  void AddNotes(const DrawingShape& shape);

  SheetResolver resolver_;
  Drawing& drawing_;
  FormatReader formats_;
  Looks looks_;

  PagePicture* picture_ = nullptr;
  DrawingPage* page_ = nullptr;
  bool isBackground_ = false;
  ResolvedSheet pageSheet_;
  double scale_ = 1;
  std::unordered_map<int, Layer> layers_;
  std::unordered_map<const DrawingShape*, std::vector<const DrawingShape*>> members_;  // of the shape that is being added
  std::vector<std::string> notes_;                                                     // of the shape that is being added
};

}  // namespace vardo::picture
