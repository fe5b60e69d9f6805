#include "desktop/StencilItems.h"

#include "canvas/ShapeFacts.h"
#include "desktop/SlicePainter.h"
#include "desktop/Texts.h"
#include "document/Drawing.h"
#include "modules/ModuleKinds.h"
#include "stencil/MasterShapes.h"
#include "stencil/StencilPackage.h"

#include <QImage>
#include <QPixmap>

#include <algorithm>

namespace vardo {
namespace {

constexpr QSize kIcon(44, 30);
constexpr double kMargin = 2;

QString PromptOf(std::string_view name) {
  std::string_view prompt;
  if (const ModuleSchema* const module = FindModule(name)) prompt = module->prompt;
  for (const Connector& connector : Connectors())
    if (connector.name == name) prompt = connector.prompt;
  return texts::Say(std::string(prompt).c_str());
}

QIcon IconOf(const picture::PagePicture& picture, const std::vector<const picture::Slice*>& slices, double pixelRatio) {
  Box box;
  for (const picture::Slice* slice : slices)
    if (slice->look) box.Add(picture::Transformed(slice->look->box, slice->toPage));
  QImage image(kIcon * pixelRatio, QImage::Format_ARGB32_Premultiplied);
  image.setDevicePixelRatio(pixelRatio);
  image.fill(Qt::transparent);
  QPainter painter(&image);
  const View view = View::Fitting(box, {static_cast<double>(kIcon.width()), static_cast<double>(kIcon.height())}, kMargin);
  SlicePainter shapes;
  for (const picture::Slice* slice : slices) {
    picture::Slice withoutText = *slice;
    withoutText.text = nullptr;
    shapes.PaintOne(painter, picture, withoutText, view, {});
  }
  painter.end();
  return QIcon(QPixmap::fromImage(image));
}

}  // namespace

std::vector<StencilItem> StencilItems(double pixelRatio) {
  // One of each on a page of their own.
  const std::unique_ptr<Drawing> drawing = Drawing::New();
  const UndoStep step(drawing->log(), "Stencil");
  DrawingPage& page = drawing->PageAt(1);
  std::vector<StencilItem> items;
  std::vector<int> shapes;
  for (const std::string& name : StencilMasterNames()) {
    const DrawingShape& shape = page.AddInstance(*drawing->BringMaster(name), 1, 1);
    const Box frame = FrameOf(shape, 1);
    shapes.push_back(shape.id());
    items.push_back({name, PromptOf(name), {}, frame.width(), frame.height(), shape.IsOneDimensional()});
  }
  const picture::PagePicture picture = picture::PictureOf(*drawing, page);
  for (size_t i = 0; i < items.size(); ++i) {
    std::vector<const picture::Slice*> slices;
    for (const picture::Slice& slice : picture.slices)
      if (slice.shape == shapes[i]) slices.push_back(&slice);
    items[i].icon = IconOf(picture, slices, pixelRatio);
  }
  return items;
}

}  // namespace vardo
