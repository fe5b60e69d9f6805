// Typing on a shape: a box over its text, as large as that is seen.
#pragma once

#include "desktop/DrawingCanvas.h"

#include <QPlainTextEdit>

#include <functional>
#include <optional>

namespace vardo {

class TextEditor : public QPlainTextEdit {
 public:
  explicit TextEditor(DrawingCanvas& canvas);

  // A module's text is its name: one line. first: a letter that has been typed already, in the place of the old text.
  void Begin(int shape, const QString& text, bool oneLine, const QString& first);
  bool IsActive() const { return shape_.has_value(); }
  // Keeps what has been typed.
  void Commit();

  std::function<void(int shape, const QString& text)> onTyped;

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;

 private:
  void End();

  DrawingCanvas& canvas_;
  std::optional<int> shape_;
  QString before_;
  bool oneLine_ = false;
};

}  // namespace vardo
