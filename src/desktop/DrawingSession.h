// The drawing of a window: its host with the add-in, its file, and the pages as they are seen.
#pragma once

#include "canvas/Deeds.h"
#include "canvas/Scene.h"
#include "script/AddinSession.h"

#include <filesystem>
#include <functional>
#include <list>
#include <memory>
#include <optional>
#include <string>

namespace vardo {

class DrawingSession {
 public:
  DrawingSession();

  DrawingHost& host() { return addin_.host(); }
  Drawing& drawing() { return addin_.host().drawing(); }
  DrawingPage& page() { return addin_.host().ActivePage(); }
  AddinSession& addin() { return addin_; }

  // Throw FileError and AutomationError, and leave the drawing as it was.
  void New();
  void Open(const std::filesystem::path& file);
  void Save(const std::optional<std::filesystem::path>& file, Overwrite overwrite);
  void SaveCopy(const std::filesystem::path& file);
  // Differs from its file.
  bool IsChanged() { return host().IsOpen() && drawing().Changed(); }
  // New, and nothing done in it.
  bool IsUntouched() { return host().IsOpen() && host().file().empty() && !drawing().Changed(); }

  // Of all pages that stand for themselves, as they are now.
  std::vector<picture::PagePicture> Pictures();
  // The page shown.
  Scene& scene();
  // Throws what Deeds throws.
  void Do(const Deed& deed) { deeds_.Do(deed); }

  // A step has changed what is seen of the page shown; a step has been done, undone or redone.
  std::function<void(const Scene::Dirty&)> onDirty;
  std::function<void(const std::vector<TouchedCell>&)> onStep;

 private:
  void Touched(const std::vector<TouchedCell>& touched);

  AddinSession addin_{true};
  Deeds deeds_{addin_};
  std::list<Scene> scenes_;  // the one shown last is first
};

}  // namespace vardo
