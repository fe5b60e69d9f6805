#include "canvas/Deeds.h"

#include "addin/host/IVShape.h"
#include "base/Numbers.h"
#include "canvas/FieldEdits.h"
#include "canvas/LegalTargets.h"
#include "canvas/ShapeFacts.h"
#include "document/Glue.h"
#include "document/Places.h"

#include <algorithm>

namespace vardo {
namespace {

struct AxisCells {
  std::string_view pin, size, local;
};
constexpr AxisCells kAcross{"PinX", "Width", "LocPinX"}, kUp{"PinY", "Height", "LocPinY"};

}  // namespace

void Deeds::Do(const Deed& deed) {
  std::visit([this](const auto& one) { Run(one); }, deed);
}

double Deeds::scale() { return ScaleOf(page()); }

// "Process", "3 Shapes".
std::string Deeds::NameOf(const std::vector<int>& shapes) {
  if (shapes.size() != 1) return std::to_string(shapes.size()) + " Shapes";
  const DrawingShape& shape = host().ResolveShape(RefTo(shapes.front()));
  const std::string kind = KindOf(shape);
  return !kind.empty() ? kind : shape.IsOneDimensional() ? "Connector" : "Shape";
}

// A cell that its formula keeps to itself stays as it is.
void Deeds::Put(int shape, std::string_view cell, double inches) {
  const SheetRef ref = RefTo(shape);
  const DrawingShape& sheet = host().ResolveShape(ref);
  if (sheet.Find(cell) && !IsGuarded(sheet, cell)) host().SetCell(ref, cell, NumberText(inches / scale()));
}

void Deeds::Run(const deeds::Select& deed) { host().Select(deed.shapes); }

void Deeds::Run(const deeds::Drop& deed) {
  const int pageId = page().id();
  const PagePoint at = deed.at * (1 / scale());
  const auto drop = [&] { return host().Drop(deed.master, pageId, at.x, at.y, std::nullopt); };
  if (!deed.connectFrom) {
    drop();
    return;
  }
  host().RunCommand("Add " + deed.master, [&] {
    const IVShapePtr shape = drop();
    if (!shape) return;
    const int dropped = shape->ID();
    const auto entry = EntryOf(host().ResolveShape(RefTo(dropped)));
    const ConnectorStart start = ChooseConnector(page(), host().ResolveShape(RefTo(*deed.connectFrom)), {});
    if (entry) host().Connect(start.master, pageId, {*deed.connectFrom, start.point}, {dropped, entry});
    host().Select({dropped});
  });
}

void Deeds::Run(const deeds::Connect& deed) {
  if (deed.begin.shape && deed.end.shape) {
    host().Connect(deed.master, page().id(), deed.begin, deed.end);
    return;
  }
  host().RunCommand("Connector", [&] {
    const IVShapePtr connector = host().Connect(deed.master, page().id(), deed.begin, deed.end);
    if (!connector) return;
    if (!deed.begin.shape) PutEnd(connector->ID(), true, deed.from);
    if (!deed.end.shape) PutEnd(connector->ID(), false, deed.to);
  });
}

void Deeds::PutEnd(int connector, bool isBegin, PagePoint to) {
  const ConnectorEnd& end = kConnectorEnds[isBegin ? 0 : 1];
  host().SetCell(RefTo(connector), end.x, NumberText(to.x / scale()));
  host().SetCell(RefTo(connector), end.y, NumberText(to.y / scale()));
}

void Deeds::Run(const deeds::Reglue& deed) {
  host().RunCommand("Move Connector End", [&] {
    if (deed.end.shape)
      host().Reglue(RefTo(deed.connector), deed.isBegin, deed.end);
    else
      PutEnd(deed.connector, deed.isBegin, deed.to);
  });
}

void Deeds::MoveOne(int id, PagePoint by) {
  const DrawingShape& shape = host().ResolveShape(RefTo(id));
  if (!shape.IsOneDimensional()) {
    if (!IsSet(shape, "LockMoveX")) Put(id, "PinX", NumberIn(shape, "PinX").value_or(0) * scale() + by.x);
    if (!IsSet(shape, "LockMoveY")) Put(id, "PinY", NumberIn(shape, "PinY").value_or(0) * scale() + by.y);
    return;
  }
  // Ends that are glued go where what they are glued to goes.
  const EndPlaces ends = EndsOf(shape, scale());
  for (const bool isBegin : {true, false})
    if (!GlueTargetOf(page(), shape, kConnectorEnds[isBegin ? 0 : 1]))
      PutEnd(id, isBegin, (isBegin ? ends.begin : ends.end) + by);
}

void Deeds::Run(const deeds::Move& deed) {
  if (deed.shapes.empty()) return;
  host().RunCommand((deed.copies ? "Duplicate " : "Move ") + NameOf(deed.shapes), [&] {
    std::vector<int> moved = deed.shapes;
    if (deed.copies) {
      std::vector<SheetRef> originals;
      for (const int id : deed.shapes) originals.push_back(RefTo(id));
      moved.clear();
      for (const IVShapePtr& copy : host().Paste(originals, page().id())) moved.push_back(copy->ID());
    }
    for (const int id : moved) MoveOne(id, deed.by);
  });
}

void Deeds::Run(const deeds::Paste& deed) {
  if (deed.originals.empty()) return;
  host().RunCommand("Paste", [&] {
    const bool isSamePage = deed.originals.front().page == page().id();
    for (const IVShapePtr& copy : host().Paste(deed.originals, page().id()))
      if (isSamePage) MoveOne(copy->ID(), deed.by);
  });
}

void Deeds::Run(const deeds::Resize& deed) {
  host().RunCommand("Resize " + NameOf({deed.shape}), [&] {
    const auto put = [&](const AxisCells& cells, double from, double size) {
      const DrawingShape& shape = host().ResolveShape(RefTo(deed.shape));
      const double before = NumberIn(shape, cells.size).value_or(0), pin = NumberIn(shape, cells.local).value_or(0);
      const double part = before == 0 ? 0.5 : pin / before;
      Put(deed.shape, cells.size, size);
      Put(deed.shape, cells.pin, from + part * size);
    };
    put(kAcross, deed.frame.left, deed.frame.width());
    put(kUp, deed.frame.bottom, deed.frame.height());
  });
}

// One step for all of them, or none at all.
void Deeds::Run(const deeds::SetField& deed) {
  host().RunCommand("Edit " + NameOf(deed.shapes), [&] {
    for (const int shape : deed.shapes) FillDialog(session_, RefTo(shape), {{deed.field, deed.text}});
    host().Select(deed.shapes);
  });
}

std::vector<FramedShape> Deeds::Framed(const std::vector<int>& shapes) {
  std::vector<FramedShape> framed;
  for (const int id : shapes) {
    const DrawingShape& shape = host().ResolveShape(RefTo(id));
    if (!shape.IsOneDimensional()) framed.push_back({id, FrameOf(shape, scale())});
  }
  return framed;
}

void Deeds::MoveAll(const std::vector<FramedShape>& shapes, const std::vector<PagePoint>& by) {
  for (size_t i = 0; i < shapes.size(); ++i) MoveOne(shapes[i].shape, by[i]);
}

void Deeds::Run(const deeds::Align& deed) {
  const std::vector<FramedShape> shapes = Framed(deed.shapes);
  if (shapes.size() > 1) host().RunCommand("Align Shapes", [&] { MoveAll(shapes, WaysToAlign(shapes, deed.how)); });
}

void Deeds::Run(const deeds::Distribute& deed) {
  const std::vector<FramedShape> shapes = Framed(deed.shapes);
  if (shapes.size() > 2) host().RunCommand("Distribute Shapes", [&] { MoveAll(shapes, WaysToDistribute(shapes, deed.across)); });
}

void Deeds::Run(const deeds::SameSize& deed) {
  const std::vector<FramedShape> shapes = Framed(deed.shapes);
  if (shapes.size() < 2) return;
  host().RunCommand("Same Size", [&] {
    const PagePoint half{shapes.front().frame.width() / 2, shapes.front().frame.height() / 2};
    for (const FramedShape& shape : shapes) {
      const PagePoint middle = shape.frame.middle();
      Run(deeds::Resize{shape.shape, BoxBetween(middle - half, middle + half)});
    }
  });
}

void Deeds::Run(const deeds::Order& deed) {
  constexpr std::string_view kLabels[] = {"Bring to Front", "Bring Forward", "Send Backward", "Send to Back"};
  host().RunCommand(kLabels[static_cast<size_t>(deed.to)], [&] {
    const std::vector<int> before = [this] {
      std::vector<int> order;
      for (const DrawingShape* shape : page().TopLevel()) order.push_back(shape->id());
      return order;
    }();
    for (const Reordered& one : NewPlaces(before, deed.shapes, deed.to)) page().MoveBefore(one.shape, one.before);
  });
}

void Deeds::Run(const deeds::Delete&) {
  if (!host().selection().empty()) host().DeleteSelection();
}

void Deeds::Run(const deeds::Type& deed) { host().TypeText(RefTo(deed.shape), deed.text, false); }
void Deeds::Run(const deeds::Undo&) { host().Undo(); }
void Deeds::Run(const deeds::Redo&) { host().Redo(); }
void Deeds::Run(const deeds::ShowPage& deed) { host().ShowPage(deed.page); }
void Deeds::Run(const deeds::AddPage&) { host().AddPage(std::nullopt); }
void Deeds::Run(const deeds::RenamePage& deed) { host().RenamePage(deed.page, deed.name); }
void Deeds::Run(const deeds::DeletePage& deed) { host().DeletePage(deed.page, true); }
void Deeds::Run(const deeds::OpenDialog& deed) { session_.ShowEditor(RefTo(deed.shape), true); }
void Deeds::Run(const deeds::OpenSubmodel& deed) { session_.Submodel(RefTo(deed.shape)); }
void Deeds::Run(const deeds::CloseSubmodel&) { session_.CloseSubmodel(page().id()); }
void Deeds::Run(const deeds::RunAction& deed) { session_.RunAddOn(deed.caption, deed.statement); }

}  // namespace vardo
