// What mouse and keys mean on a page. A tool turns them into deeds; it changes nothing itself.
#pragma once

#include "canvas/Deed.h"
#include "canvas/Overlay.h"
#include "canvas/Scene.h"
#include "canvas/Snapper.h"
#include "canvas/View.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace vardo {

// Logical pixels.
namespace feel {
inline constexpr double kDragFrom = 5, kLineReach = 6, kHandleReach = 8, kPointReach = 10, kMagnet = 16, kGuideReach = 6;
inline constexpr double kSmallestModule = 0.25;  // inches
inline constexpr size_t kMostGuides = 200;       // shapes in sight that a moved one may line up with
}  // namespace feel

struct Modifiers {
  bool shift = false, control = false, alt = false;
};
struct Pointer {
  Pixel at;
  Modifiers held{};
};

enum class PointerShape { Arrow, Move, Cross, SizeAcross, SizeUp, SizeRising, SizeFalling, Forbidden };

// What a tool looks at.
struct Stage {
  const Scene& scene;
  DrawingPage& page;
  const View& view;
  const std::vector<int>& selection;
  SnapSettings snap{};
  std::optional<std::string> connector{};  // the master that is drawn; none: what fits
  PixelSize window{};
};

// What goes on between pressing a button and letting it go.
class Gesture {
 public:
  virtual ~Gesture() = default;
  virtual void Move(const Stage& stage, const Pointer& pointer) = 0;
  virtual std::optional<Deed> Finish(const Stage& stage) = 0;
  virtual void Draw(const Stage& stage, Overlay& overlay) const = 0;
  virtual PointerShape Shape() const { return PointerShape::Arrow; }
  // What letting go would mean, in words; empty for nothing special.
  virtual std::string Hint() const { return ""; }
};

// Selects, and begins the gesture that fits what is under the pointer.
class SelectTool {
 public:
  // A press may select at once, letting go may do what was prepared.
  std::optional<Deed> Press(const Stage& stage, const Pointer& pointer);
  void Move(const Stage& stage, const Pointer& pointer);
  std::optional<Deed> Release(const Stage& stage, const Pointer& pointer);
  // The pointer has gone from the page.
  void Leave() { hover_ = {}; }
  void Cancel();
  bool IsBusy() const { return gesture_ != nullptr; }

  Overlay Draw(const Stage& stage) const;
  PointerShape Shape() const { return gesture_ ? gesture_->Shape() : shape_; }
  std::string Hint() const { return gesture_ ? gesture_->Hint() : ""; }

 private:
  std::unique_ptr<Gesture> GestureFor(const Stage& stage, const Pointer& pointer) const;
  void Hover(const Stage& stage, const Pointer& pointer);

  std::unique_ptr<Gesture> gesture_;
  std::optional<Pointer> pressed_;     // and not moved far enough yet
  std::optional<Deed> onClick_;        // if it is let go before that
  std::vector<int> pressedSelection_;  // what is selected by then
  std::optional<int> hover_;
  PointerShape shape_ = PointerShape::Arrow;
};

}  // namespace vardo
