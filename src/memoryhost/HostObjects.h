// The object model over the in-memory host. Objects are handles: they find what they stand for at every call.
#pragma once

#include "memoryhost/DrawingHost.h"

namespace vardo {

IVApplicationPtr MakeApplication(DrawingHost& host);
IVDocumentPtr MakeDocument(DrawingHost& host, int drawing);
IVWindowPtr MakeWindow(DrawingHost& host, int drawing);
IVPagePtr MakePage(DrawingHost& host, int drawing, int pageId);
IVShapePtr MakeShape(DrawingHost& host, const SheetRef& ref);
// A snapshot of shapes of one page.
IVSelectionPtr MakeSelection(DrawingHost& host, int drawing, int pageId, std::vector<int> shapeIds);

}  // namespace vardo
