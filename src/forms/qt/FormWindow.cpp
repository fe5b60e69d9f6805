#include "forms/qt/FormWindow.h"

#include <QApplication>
#include <QCloseEvent>
#include <QFontMetrics>
#include <QGuiApplication>
#include <QLabel>
#include <QScopedValueRollback>
#include <QScreen>

#include <algorithm>
#include <cmath>

namespace vardo {
namespace {

constexpr double kTwipsPerPixel = 15;
// The size is fixed, so there is nothing to minimise or maximise.
constexpr Qt::WindowFlags kFlags =
    Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowSystemMenuHint | Qt::WindowCloseButtonHint;
constexpr int kLargestFont = 13, kSmallestFont = 9;  // pixels

QString ToQt(const std::string& text) { return QString::fromStdString(text); }

int ToPixels(double twips) { return static_cast<int>(std::lround(twips / kTwipsPerPixel)); }

// Edges are rounded, not widths: what touches in twips touches on the screen.
QRect ToPixels(const TwipsRect& place) {
  const QPoint topLeft(ToPixels(place.left), ToPixels(place.top));
  return {topLeft, QPoint(ToPixels(place.left + place.width) - 1, ToPixels(place.top + place.height) - 1)};
}

QString WithoutAccessKey(const std::string& caption) {
  QString text = ToQt(caption);
  for (qsizetype at = text.indexOf('&'); at >= 0; at = text.indexOf('&', at + 1)) text.remove(at, 1);
  return text;
}

// What a widget needs beside its caption.
int Surrounds(ControlKind kind) {
  switch (kind) {
    case ControlKind::Button:
      return 16;
    case ControlKind::Check:
      return 22;
    case ControlKind::Frame:
      return 24;
    default:
      return 0;
  }
}

bool CaptionFits(const Control& control, const QFontMetrics& metrics) {
  const auto* label = dynamic_cast<const Label*>(&control);
  return (label && label->Wraps()) ||
         metrics.horizontalAdvance(WithoutAccessKey(control.Caption())) + Surrounds(control.kind()) <=
             ToPixels(control.Place().width);
}

// The platform's font in the largest size in which every caption of the form fits its place.
QFont FontFor(const Form& form) {
  QFont font = QApplication::font("QDialog");
  for (int size = kLargestFont; size >= kSmallestFont; --size) {
    font.setPixelSize(size);
    const QFontMetrics metrics(font);
    const auto& controls = form.Controls();
    if (std::all_of(controls.begin(), controls.end(), [&](const Control* c) { return CaptionFits(*c, metrics); })) break;
  }
  return font;
}

}  // namespace

FormWindow::FormWindow(Form& form, QWidget* below) : QDialog(below, kFlags), form_(form) {
  setObjectName(ToQt(form.name()));
  setWindowTitle(ToQt(form.Caption()));
  setModal(true);
  setFont(FontFor(form));
  for (Control* control : form.Controls()) MakeView(*control);
  for (const Control* control : form.Controls()) NameForReaders(*control);
  PlaceWindow();
  form.SetObserver(this);
}

ControlView& FormWindow::MakeView(Control& control) {
  if (const auto made = views_.find(&control); made != views_.end()) return *made->second;
  Control* const frame = control.parent();
  ControlView* view = ControlView::Make(control, frame ? MakeView(*frame).widget() : *this, mirroring_);
  const QPoint origin = frame ? ToPixels(frame->Place()).topLeft() : QPoint();
  view->widget().setGeometry(ToPixels(control.Place()).translated(-origin));
  view->Mirror();
  views_.emplace(&control, view);
  return *view;
}

void FormWindow::PlaceWindow() {
  const QRect place = ToPixels(form_.Place());
  setFixedSize(place.size());
  move(QGuiApplication::primaryScreen()->availableGeometry().topLeft() + place.topLeft());
}

void FormWindow::NameForReaders(const Control& control) const {
  QWidget& widget = View(control).widget();
  if (control.kind() == ControlKind::Label) return static_cast<QLabel&>(widget).setBuddy(LedBy(control));
  if (!control.Caption().empty()) return;
  const Label* label = form_.LabelOf(control);
  if (!label) return;
  QString name = WithoutAccessKey(label->Caption());
  if (name.endsWith(':')) name.chop(1);
  widget.setAccessibleName(name);
}

// The control that a label's access key leads to while all are shown.
QWidget* FormWindow::LedBy(const Control& label) const {
  const auto& controls = form_.Controls();
  const auto from = std::find(controls.begin(), controls.end(), &label);
  const auto led = std::find_if(from, controls.end(), [](const Control* c) { return c->TakesFocus(); });
  return led == controls.end() ? nullptr : &View(**led).widget();
}

void FormWindow::Open() {
  FocusMoved(form_.Focus());
  show();
  ActivateWindow(*this);
  // Styles draw the focus only once a key has moved it.
  setAttribute(Qt::WA_KeyboardFocusChange);
}

void FormWindow::Close() {
  hide();
  loop_.quit();
}

// The form decides whether it closes, as for Escape.
void FormWindow::closeEvent(QCloseEvent* event) {
  event->ignore();
  if (form_.IsShown()) form_.UserKey("Escape");
}

// Keys come here while no control has the focus.
bool FormWindow::event(QEvent* event) { return (form_.IsShown() && ForwardDialogKey(form_, *event)) || QDialog::event(event); }

// A person who comes to a box by other means than the mouse finds its text selected.
void FormWindow::FocusMoved(Control* focus) {
  const QScopedValueRollback<bool> guard(mirroring_, true);
  const bool byMouse = QGuiApplication::mouseButtons() != Qt::NoButton;
  if (focus) return View(*focus).widget().setFocus(byMouse ? Qt::MouseFocusReason : Qt::TabFocusReason);
  if (QWidget* had = focusWidget()) had->clearFocus();
}

void ActivateWindow(QWidget& window) {
  window.activateWindow();
  QApplication::setActiveWindow(&window);
}

}  // namespace vardo
