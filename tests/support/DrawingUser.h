// A person at the in-memory host, for the suite that every host is put through.
#pragma once

#include "HostConformance.h"
#include "TestDrawings.h"
#include "memoryhost/DrawingHost.h"

#include <unistd.h>

#include <filesystem>

namespace vardo {

class DrawingUser : public HostUser {
 public:
  IVApplicationPtr application() override { return host_.application(); }
  void NewDrawing() override { host_.New(); }
  void SaveAndReopen() override {
    const std::filesystem::path file =
        std::filesystem::temp_directory_path() / ("conformance-" + std::to_string(getpid()) + ".vsdx");
    host_.Save(file);
    host_.Open(file);
    std::filesystem::remove(file);
  }
  void OpenDrawingOf(const std::string& shapes) override {
    const test::TempFolder folder;
    test::WriteFile(folder / "drawing.vsdx", test::ZipOf({.shapes = shapes, .pageSheet = "", .documentSheet = ""}));
    host_.Open(folder / "drawing.vsdx");
  }
  IVShapePtr Drop(std::string_view master) override {
    host_.Drop(master, host_.ActivePage().id(), 1, 1, std::nullopt);
    return host_.selection().empty() ? nullptr : application()->ActivePage()->Shapes()->ItemFromID(host_.selection().front());
  }
  void Select(const std::vector<IVShapePtr>& shapes) override {
    std::vector<int> ids;
    for (const IVShapePtr& shape : shapes) ids.push_back(shape->ID());
    host_.Select(ids);
  }
  void DeleteSelection() override { host_.DeleteSelection(); }
  void Type(const IVShapePtr& shape, std::string_view text) override {
    const DrawingPage& page = *host_.drawing().FindPage(shape->ContainingPage()->Name());
    host_.TypeText(host_.RefTo(page, shape->ID()), text, false);
  }
  void RunCommand(const std::function<void()>& command) override { host_.RunCommand("Command", command); }
  void Undo() override { host_.Undo(); }
  void Redo() override { host_.Redo(); }

 protected:
  DrawingHost host_;
};

}  // namespace vardo
