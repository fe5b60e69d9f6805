#include "desktop/DrawingSession.h"

#include "document/Drawing.h"
#include "platform/FileSystem.h"

#include <algorithm>

namespace vardo {
namespace {

constexpr size_t kMostScenes = 3;

}  // namespace

DrawingSession::DrawingSession() {
  host().SetStepObserver([this](const std::vector<TouchedCell>& touched) { Touched(touched); });
}

void DrawingSession::New() {
  addin_.New();
  scenes_.clear();
}

void DrawingSession::Open(const std::filesystem::path& file) {
  addin_.Open(file);
  scenes_.clear();
}

void DrawingSession::Save(const std::optional<std::filesystem::path>& file, Overwrite overwrite) { host().Save(file, overwrite); }

void DrawingSession::SaveCopy(const std::filesystem::path& file) {
  WriteFileAtomically(MachineFileSystem(), file, drawing().FileBytes());
}

std::vector<picture::PagePicture> DrawingSession::Pictures() {
  std::vector<picture::PagePicture> pictures;
  for (int i = 1; i <= drawing().PageCount(); ++i)
    if (!drawing().PageAt(i).IsBackground()) pictures.push_back(picture::PictureOf(drawing(), drawing().PageAt(i)));
  return pictures;
}

Scene& DrawingSession::scene() {
  const int shown = page().id();
  const auto known = std::find_if(scenes_.begin(), scenes_.end(), [&](const Scene& scene) { return scene.pageId() == shown; });
  if (known != scenes_.end()) {
    scenes_.splice(scenes_.begin(), scenes_, known);
    return scenes_.front();
  }
  scenes_.emplace_front(drawing(), shown);
  if (scenes_.size() > kMostScenes) scenes_.pop_back();
  return scenes_.front();
}

void DrawingSession::Touched(const std::vector<TouchedCell>& touched) {
  std::erase_if(scenes_, [&](const Scene& scene) { return !drawing().FindPage(scene.pageId()); });
  for (Scene& scene : scenes_) {
    const Scene::Dirty dirty = scene.Touch(touched);
    if (&scene == &scenes_.front() && onDirty && (dirty.wholly || !dirty.boxes.empty())) onDirty(dirty);
  }
  if (onStep) onStep(touched);
}

}  // namespace vardo
