#include "picture/PageBuilder.h"

#include "addin/host/HostConstants.h"
#include "base/Numbers.h"
#include "document/Drawing.h"
#include "picture/ForeignPicture.h"
#include "picture/LookBuilder.h"
#include "picture/ShapeText.h"

#include <pugixml.hpp>

#include <algorithm>
#include <cmath>
#include <set>

namespace vardo::picture {
namespace {

constexpr int kDeepestBackground = 8;
constexpr double kOwnColours = 255;  // of a layer that leaves its shapes their colours

size_t HashOf(const Outline& outline) {
  size_t hash = outline.verbs.size();
  for (const Point point : outline.points) hash = hash * 31 + std::hash<double>()(point.x) + 17 * std::hash<double>()(point.y);
  return hash;
}

size_t HashOf(const Look& look) {
  size_t hash = look.operations.size();
  for (const Operation& operation : look.operations) {
    if (const auto* fill = std::get_if<FillPath>(&operation)) hash = hash * 31 + HashOf(fill->outline);
    if (const auto* line = std::get_if<StrokePath>(&operation)) hash = hash * 31 + HashOf(line->outline);
  }
  return hash;
}

double PositiveOr(double value, double otherwise) { return value > 0 ? value : otherwise; }
double ScaleOf(const ResolvedSheet& sheet) {
  return PositiveOr(sheet.Number("PageScale"), 1) / PositiveOr(sheet.Number("DrawingScale"), 1);
}

void Recolour(ShapeFormat& format, Rgba colour) {
  format.lineColour = format.fillColour = format.fillGround = colour;
  format.gradient = false;
}

}  // namespace

std::shared_ptr<const Look> Looks::Keep(Look look) {
  const size_t hash = HashOf(look);
  const auto [first, last] = known_.equal_range(hash);
  for (auto at = first; at != last; ++at)
    if (at->second->operations == look.operations) return at->second;
  if (known_.size() >= roomBeforeForgetting_) ForgetUnused();
  return known_.emplace(hash, std::make_shared<const Look>(std::move(look)))->second;
}

// So rarely that it costs next to nothing: each time there is twice as much as was in use the last time.
void Looks::ForgetUnused() {
  std::erase_if(known_, [](const auto& known) { return known.second.use_count() == 1; });
  roomBeforeForgetting_ = std::max(roomBeforeForgetting_, 2 * known_.size());
}

void PageBuilder::Begin(DrawingPage& page, PagePicture& picture) {
  picture_ = &picture;
  const ResolvedSheet sheet = resolver_.ResolvePage(page.PageSheet());
  picture.name = page.Name();
  picture.scale = ScaleOf(sheet);
  picture.width = PositiveOr(sheet.Number("PageWidth"), 8.5) * picture.scale;
  picture.height = PositiveOr(sheet.Number("PageHeight"), 11) * picture.scale;
  AddBackgroundOf(page);
  EnterPage(page, false);
}

// The farthest back first.
void PageBuilder::AddBackgroundOf(DrawingPage& page) {
  std::vector<DrawingPage*> chain{&page};
  while (true) {
    const pugi::xml_attribute back = pugi::xml_node(chain.back()->entry()).attribute("BackPage");
    DrawingPage* const behind = back ? drawing_.FindPage(back.as_int()) : nullptr;
    if (!behind) break;
    if (std::find(chain.begin(), chain.end(), behind) != chain.end() || chain.size() > kDeepestBackground) {
      picture_->notes.push_back({page.Name(), 0, "Its backgrounds lead in a circle, or too far."});
      break;
    }
    chain.push_back(behind);
  }
  for (auto behind = chain.rbegin(); behind + 1 != chain.rend(); ++behind) {
    EnterPage(**behind, true);
    for (const DrawingShape* shape : (*behind)->TopLevel()) Add(*shape);
  }
}

void PageBuilder::EnterPage(DrawingPage& page, bool isBackground) {
  page_ = &page;
  isBackground_ = isBackground;
  pageSheet_ = resolver_.ResolvePage(page.PageSheet());
  scale_ = ScaleOf(pageSheet_);
  ReadLayers();
}

void PageBuilder::Add(const DrawingShape& topLevel) {
  members_.clear();
  if (pugi::xml_node(topLevel.element()).child("Shapes"))
    for (const DrawingShape* inner : page_->InnerShapes(topLevel)) members_[inner->parent()].push_back(inner);
  AddShape(topLevel, {Scaling(scale_, scale_)});
}

void PageBuilder::ReadLayers() {
  layers_.clear();
  const StoredSection* const section = pageSheet_.Section("Layer");
  if (!section) return;
  for (const StoredRow& row : section->rows) {
    Layer layer{NumberOf(row.cells, "Visible") != 0, NumberOf(row.cells, "Print") != 0, {}};
    const std::string_view colour = row.cells.Find("Color");
    if (ParseNumber(colour) != kOwnColours) layer.colour = formats_.Colour(colour, NumberOf(row.cells, "ColorTrans"));
    layers_[row.ix] = layer;
  }
}

// Seen when one of its layers is.
PageBuilder::OnLayers PageBuilder::LayersOf(const ResolvedSheet& sheet) const {
  OnLayers on;
  std::string_view members = sheet.Text("LayerMember");
  bool onAny = false;
  while (!members.empty()) {
    const size_t end = members.find(';');
    const auto index = ParseInteger(members.substr(0, end));
    members = end == std::string_view::npos ? std::string_view() : members.substr(end + 1);
    const auto layer = index ? layers_.find(*index) : layers_.end();
    if (layer == layers_.end()) continue;
    if (!onAny) on = {false, false, {}};
    onAny = true;
    on.visible = on.visible || layer->second.visible;
    on.prints = on.prints || (layer->second.visible && layer->second.prints);
    if (layer->second.colour && !on.colour) on.colour = layer->second.colour;
  }
  return on;
}

PageBuilder::Standing PageBuilder::StandingOf(const ResolvedSheet& sheet, const Standing& parent) {
  const double x = sheet.IsSet("FlipX") ? -1 : 1, y = sheet.IsSet("FlipY") ? -1 : 1, angle = sheet.Number("Angle");
  const Matrix own = Translation({sheet.Number("PinX"), sheet.Number("PinY")}) * Rotation(angle) * Scaling(x, y) *
                     Translation({-sheet.Number("LocPinX"), -sheet.Number("LocPinY")});
  return {parent.toPage * own, parent.turn + parent.sense * angle, parent.sense * x * y};
}

void PageBuilder::AddShape(const DrawingShape& shape, const Standing& parent) {
  const ResolvedSheet sheet = resolver_.Resolve(shape);
  const Standing standing = StandingOf(sheet, parent);
  const auto members = members_.find(&shape);
  const bool isGroup = members != members_.end();
  enum { kHidden, kBehind, kInFront };
  const int mode = isGroup ? static_cast<int>(sheet.Number("DisplayMode")) : kBehind;
  if (mode == kBehind) AddSlice(shape, sheet, standing);
  if (isGroup)
    for (const DrawingShape* member : members->second) AddShape(*member, standing);
  if (mode == kInFront) AddSlice(shape, sheet, standing);
}

void PageBuilder::AddSlice(const DrawingShape& shape, const ResolvedSheet& sheet, const Standing& standing) {
  const OnLayers on = LayersOf(sheet);
  if (!on.visible) return;
  Slice slice;
  slice.shape = shape.id();
  slice.parent = shape.parent() ? shape.parent()->id() : 0;
  slice.name = page_->NameOf(shape);
  slice.toPage = standing.toPage;
  slice.ofBackground = isBackground_;
  slice.prints = on.prints && !sheet.IsSet("NonPrinting");
  slice.isOneDimensional = sheet.Find("BeginX").has_value();
  slice.isGuide = shape.Type() == kShapeTypeGuide;

  notes_.clear();
  ShapeFormat format = formats_.Read(sheet, pageSheet_, slice.isOneDimensional);
  if (on.colour) Recolour(format, *on.colour);
  Look look = LookOf(shape, sheet, format, standing);
  if (!look.operations.empty()) slice.look = looks_.Keep(std::move(look));
  if (!sheet.IsSet("HideText")) AddText(slice, shape, sheet, format, standing, on.colour);
  if (slice.look) {
    slice.box = Transformed(slice.look->box, slice.toPage);
    for (std::string& note : format.notes) notes_.push_back(std::move(note));
  }
  if (slice.text) slice.box.Add(Transformed(slice.text->box, slice.textToPage));
  AddNotes(shape);
  picture_->slices.push_back(std::move(slice));
}

Look PageBuilder::LookOf(const DrawingShape& shape, const ResolvedSheet& sheet, const ShapeFormat& format,
                         const Standing& standing) {
  const ShapeToDraw drawn{sheet, format, sheet.Number("Width"), sheet.Number("Height"), scale_, standing.toPage};
  Look look = BuildLook(drawn, notes_);
  const auto foreign = shape.Type() == kShapeTypeForeign ? ReadForeignPicture(drawing_, resolver_, shape) : std::nullopt;
  if (!foreign) return look;
  const double x = sheet.Number("ImgOffsetX"), y = sheet.Number("ImgOffsetY");
  const Box shapeBox{0, 0, drawn.width, drawn.height};
  const Box place{x, y, x + sheet.Find("ImgWidth").value_or(drawn.width), y + sheet.Find("ImgHeight").value_or(drawn.height)};
  if (foreign->bytes) {
    look.operations.emplace_back(Image{foreign->bytes, foreign->type, place, shapeBox, 1 - sheet.Number("Transparency")});
  } else {
    look.operations.emplace_back(Frame{shapeBox, foreign->label});
    notes_.push_back(foreign->label + " is painted as a frame.");
  }
  MeasureLook(look, scale_);
  return look;
}

void PageBuilder::AddText(Slice& slice, const DrawingShape& shape, const ResolvedSheet& sheet, const ShapeFormat& format,
                          const Standing& standing, std::optional<Rgba> colour) {
  XmlNode element = nullptr;
  for (const DrawingShape* at = &shape; at && !element; at = resolver_.BaseOf(*at))
    element = pugi::xml_node(at->element()).child("Text").internal_object();
  if (!element) return;
  TextToLay text = ReadShapeText(element, sheet, format, formats_, colour);
  if (text.pieces.empty()) return;
  const TextFrame frame = FrameOf(sheet, text, scale_);
  const bool isVertical = sheet.Number("TextDirection") == 1;
  text.width = (isVertical ? frame.height : frame.width) * scale_;
  text.height = (isVertical ? frame.width : frame.height) * scale_;
  slice.text = std::make_shared<const TextBlock>(LayOut(text));
  constexpr double kQuarterTurn = -1.5707963267948966;
  const double angle = standing.turn + standing.sense * frame.angle + (isVertical ? kQuarterTurn : 0);
  slice.textToPage =
      Translation(standing.toPage(frame.middle)) * Rotation(angle) * Translation({-text.width / 2, -text.height / 2});
}

void PageBuilder::AddNotes(const DrawingShape& shape) {
  const std::set<std::string> each(notes_.begin(), notes_.end());
  for (const std::string& note : each) picture_->notes.push_back({page_->Name(), shape.id(), note});
}

}  // namespace vardo::picture
