// Drawings of many modules.
#pragma once

#include "TestDrawings.h"
#include "addin/host/IVApplication.h"
#include "base/Text.h"
#include "memoryhost/DrawingHost.h"
#include "props/PropertyCells.h"

#include <fmt/format.h>

#include <string>

namespace vardo::test {

// Create modules on the active page, entered in its register as if each had been dropped.
inline void AddModules(DrawingHost& host, int count) {
  const DrawingMaster& master = *host.drawing().BringMaster("Create");
  DrawingPage& page = host.ActivePage();
  StringList positions;
  for (int i = 1; i <= count; ++i) {
    DrawingShape& shape = page.AddInstance(master, 1, i);
    const std::string name = fmt::format("Create {}", i);
    shape.SetText(host.drawing().editor(), name);
    SetCell(host.drawing(), shape, "Prop.CreateName", QuoteText(name));
    positions.push_back(std::to_string(i));
  }
  SetPagePropList(host.application()->ActivePage(), "Create", positions);
}

}  // namespace vardo::test
