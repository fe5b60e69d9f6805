#include "desktop/TextEditor.h"

#include "desktop/Texts.h"

#include <QKeyEvent>

#include <algorithm>

namespace vardo {
namespace {

constexpr double kSmallestFont = 9, kUsualFont = 8.0 / 72;  // pixels; inches
constexpr int kLeastWidth = 120, kLeastHeight = 28;

}  // namespace

TextEditor::TextEditor(DrawingCanvas& canvas) : QPlainTextEdit(&canvas), canvas_(canvas) {
  setObjectName("textEditor");
  setAccessibleName(texts::Say("Text of the shape"));
  setFrameShape(QFrame::StyledPanel);
  setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setTabChangesFocus(true);
  hide();
}

void TextEditor::Begin(int shape, const QString& text, bool oneLine, const QString& first) {
  Commit();
  shape_ = shape;
  before_ = text;
  oneLine_ = oneLine;
  const picture::Box box = canvas_.scene()->BoxOf(shape);
  const Pixel corner = canvas_.view().ToPixel({box.left, box.top});
  const double k = canvas_.view().pixelsPerInch();
  const QSize size(std::max(kLeastWidth, static_cast<int>(box.width() * k)),
                   std::max(kLeastHeight, static_cast<int>(box.height() * k)));
  const QPoint middle(static_cast<int>(corner.x + box.width() * k / 2), static_cast<int>(corner.y + box.height() * k / 2));
  setGeometry(QRect(middle - QPoint(size.width() / 2, size.height() / 2), size).translated(canvas_.viewport()->pos()));
  QFont font = canvas_.font();
  font.setPixelSize(static_cast<int>(std::max(kSmallestFont, kUsualFont * k)));
  setFont(font);
  setPlainText(first.isEmpty() ? text : first);
  first.isEmpty() ? selectAll() : moveCursor(QTextCursor::End);
  show();
  raise();
  setFocus();
}

void TextEditor::Commit() {
  if (!shape_) return;
  const int shape = *shape_;
  const QString text = toPlainText();
  const bool changed = text != before_;
  End();
  if (changed && onTyped) onTyped(shape, text);
}

void TextEditor::End() {
  shape_.reset();
  const bool hadFocus = hasFocus();
  hide();
  if (hadFocus) canvas_.setFocus();
}

void TextEditor::keyPressEvent(QKeyEvent* event) {
  const bool isEnter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
  if (event->key() == Qt::Key_Escape) return End();
  if (isEnter && (oneLine_ || event->modifiers() & Qt::ControlModifier)) return Commit();
  QPlainTextEdit::keyPressEvent(event);
}

void TextEditor::focusOutEvent(QFocusEvent* event) {
  QPlainTextEdit::focusOutEvent(event);
  if (event->reason() != Qt::PopupFocusReason && event->reason() != Qt::MenuBarFocusReason) Commit();
}

}  // namespace vardo
