// The windows of the forms that a toolkit shows now, each modal to the one below.
#pragma once

#include "base/Errors.h"
#include "forms/Form.h"

#include <algorithm>
#include <vector>

namespace vardo {

// Window has form(), the form that it shows. The windows are their owner's.
template <class Window>
class ShownWindows {
 public:
  // Puts a window on top as long as this lives.
  class OnTop {
   public:
    OnTop(ShownWindows& shown, Window& window) : windows_(shown.windows_) { windows_.push_back(&window); }
    ~OnTop() { windows_.pop_back(); }
    OnTop(const OnTop&) = delete;
    OnTop& operator=(const OnTop&) = delete;

   private:
    std::vector<Window*>& windows_;
  };

  // Null when none is shown.
  Window* Top() const { return windows_.empty() ? nullptr : windows_.back(); }
  // Null when the form is not shown.
  Window* Find(const Form& form) const {
    const auto found = std::find_if(windows_.begin(), windows_.end(), [&](Window* window) { return &window->form() == &form; });
    return found == windows_.end() ? nullptr : *found;
  }
  // Throws RuntimeError 5 when the form is not shown.
  Window& Of(const Form& form) const {
    if (Window* window = Find(form)) return *window;
    throw RuntimeError(5, form.name() + " is not shown.");
  }

 private:
  std::vector<Window*> windows_;  // the topmost last
};

}  // namespace vardo
