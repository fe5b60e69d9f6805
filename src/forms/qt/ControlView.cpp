#include "forms/qt/ControlView.h"

#include "forms/qt/Keys.h"

#include <QAbstractButton>
#include <QCheckBox>
#include <QComboBox>
#include <QCoreApplication>
#include <QFocusEvent>
#include <QFrame>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMouseEvent>
#include <QProxyStyle>
#include <QPushButton>
#include <QScopedValueRollback>
#include <QScrollBar>
#include <QStandardItemModel>

#include <functional>
#include <limits>

namespace vardo {
namespace {

QString ToQt(const std::string& text) { return QString::fromStdString(text); }

void SendKey(QWidget& widget, int key) {
  QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier);
  QCoreApplication::sendEvent(&widget, &press);
  QKeyEvent release(QEvent::KeyRelease, key, Qt::NoModifier);
  QCoreApplication::sendEvent(&widget, &release);
}

void SendMouse(QWidget& widget, QEvent::Type type, QPoint at) {
  const Qt::MouseButton button = type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton;
  const bool down = type == QEvent::MouseButtonPress || type == QEvent::MouseButtonDblClick;
  QMouseEvent event(type, at, widget.mapToGlobal(at), button, down ? Qt::LeftButton : Qt::NoButton, Qt::NoModifier);
  QCoreApplication::sendEvent(&widget, &event);
}

// Puts a text in place of what is selected, all at once, as an input method does: by keys, a long one would be read anew for
// each.
void SendText(QWidget& widget, const QString& text) {
  QInputMethodEvent commit;
  commit.setCommitString(text);
  QCoreApplication::sendEvent(&widget, &commit);
}

class LabelView : public ControlView {
 public:
  LabelView(Label& control, QLabel& label, bool& mirroring) : ControlView(control, label, mirroring), label_(label) {
    label_.setTextFormat(Qt::PlainText);
    label_.setWordWrap(control.Wraps());
    if (control.Wraps()) label_.setAlignment(Qt::AlignTop);
  }

 private:
  void Update() override { label_.setText(ToQt(control().Caption())); }
  QLabel& label_;
};

// A style that puts a frame's title over the labels in it.
class TitleOverLabels : public QProxyStyle {
 public:
  QRect subControlRect(ComplexControl control, const QStyleOptionComplex* option, SubControl part,
                       const QWidget* widget) const override {
    QRect place = QProxyStyle::subControlRect(control, option, part, widget);
    if (control == CC_GroupBox && part == SC_GroupBoxLabel) place.moveLeft(LabelColumn(*widget));
    return place;
  }

 private:
  static int LabelColumn(const QWidget& frame) {
    const auto labels = frame.findChildren<QLabel*>(Qt::FindDirectChildrenOnly);
    return labels.isEmpty() ? 0 : labels.front()->x();
  }
};

class FrameView : public ControlView {
 public:
  FrameView(Control& control, QGroupBox& box, bool& mirroring) : ControlView(control, box, mirroring), box_(box) {
    auto* const style = new TitleOverLabels;
    style->setParent(&box);
    box.setStyle(style);
  }

 private:
  void Update() override { box_.setTitle(ToQt(control().Caption())); }
  QGroupBox& box_;
};

class LineView : public ControlView {
 public:
  LineView(Control& control, QFrame& line, bool& mirroring) : ControlView(control, line, mirroring) {
    line.setFrameShape(control.Place().width >= control.Place().height ? QFrame::HLine : QFrame::VLine);
    line.setFrameShadow(QFrame::Sunken);
  }

 private:
  void Update() override {}
};

class ButtonView : public ControlView {
 public:
  ButtonView(Control& control, QAbstractButton& button, bool& mirroring)
      : ControlView(control, button, mirroring), button_(button) {
    connect(&button, &QAbstractButton::clicked, this, [this] {
      if (form().IsShown() && this->control().Shown()) form().UserClick(this->control());
      Mirror();
    });
  }

  // On the left, where a check box has its mark.
  void Click() override {
    const QPoint at(button_.height() / 2, button_.height() / 2);
    SendMouse(button_, QEvent::MouseButtonPress, at);
    SendMouse(button_, QEvent::MouseButtonRelease, at);
  }

 protected:
  void Update() override { button_.setText(ToQt(control().Caption())); }
  QAbstractButton& button_;
};

class CheckView : public ButtonView {
 public:
  CheckView(CheckBox& control, QCheckBox& box, bool& mirroring) : ButtonView(control, box, mirroring), check_(control) {}

 private:
  void Update() override {
    ButtonView::Update();
    button_.setChecked(check_.Checked());
  }
  CheckBox& check_;
};

// What a text box and a typed combo have in common: a line that a person types into.
class TypingView : public ControlView {
 public:
  void Type(const QString& text) override {
    if (!GoTo()) return;
    edit_.selectAll();
    if (text.isEmpty()) return SendKey(widget(), Qt::Key_Delete);
    SendText(widget(), text);
  }

 protected:
  TypingView(TextControl& control, QWidget& widget, QLineEdit& edit, bool& mirroring)
      : ControlView(control, widget, mirroring), text_(control), edit_(edit) {
    edit_.setMaxLength(std::numeric_limits<int>::max());
    edit_.installEventFilter(this);
    connect(&edit_, &QLineEdit::textEdited, this, [this](const QString& typed) {
      if (form().IsShown() && text_.Shown()) form().UserType(text_, typed.toStdString());
    });
  }

  bool eventFilter(QObject* watched, QEvent* event) override {
    if (watched == &edit_ && event->type() == QEvent::MouseButtonPress && form().IsShown()) form().UserFocus(control());
    return ControlView::eventFilter(watched, event);
  }

  bool TakesTyping() const override { return true; }
  bool LeavesKey(int) const override { return true; }

  // The caret stays where a person is typing; elsewhere the start of the text is in sight.
  void Update() override {
    const QString text = ToQt(text_.Text());
    if (edit_.text() != text) edit_.setText(text);
    if (form().Focus() != &text_) edit_.setCursorPosition(0);
  }

  TextControl& text_;
  QLineEdit& edit_;
};

class TextView : public TypingView {
 public:
  TextView(TextBox& control, QLineEdit& edit, bool& mirroring) : TypingView(control, edit, edit, mirroring) {}
};

// Asks before it opens its list: the form says whether it opens.
class ListAskingCombo : public QComboBox {
 public:
  using QComboBox::QComboBox;
  std::function<void()> asked;
  void showPopup() override { asked(); }
  void OpenList() {
    view()->setMinimumWidth(view()->sizeHintForColumn(0) + view()->verticalScrollBar()->sizeHint().width());
    QComboBox::showPopup();
  }
};

// The items and the open list of a combo of either kind.
class ComboList : public QObject {
 public:
  ComboList(ControlView& view, ComboBox& control, ListAskingCombo& combo) : QObject(&view), control_(control), combo_(combo) {
    combo_.setMaxVisibleItems(ComboBox::kItemsInSight);
    combo_.asked = [this] { Asked(); };
    combo_.installEventFilter(this);
    connect(&combo_, &QComboBox::activated, this, [this](int index) {
      if (form().IsShown() && control_.Shown()) form().UserPick(control_, index);
    });
  }

  void AddNewItems() {
    for (size_t at = static_cast<size_t>(combo_.count()); at < control_.Items().size(); ++at)
      combo_.addItem(ToQt(control_.Items()[at]));
  }

  void OpenOrClose() {
    if (control_.DroppedDown() && !open_) Open();
    if (!control_.DroppedDown() && open_) combo_.hidePopup();
    if (open_) combo_.view()->setCurrentIndex(combo_.model()->index(control_.ListIndex(), combo_.modelColumn()));
  }

  // Opens the list and clicks the item.
  void Pick(int index) {
    if (!control_.DroppedDown()) SendKey(combo_, Qt::Key_F4);
    QAbstractItemView& list = *combo_.view();
    const QModelIndex item = combo_.model()->index(index, combo_.modelColumn());
    list.scrollTo(item);
    const QPoint at = list.visualRect(item).center();
    SendMouse(*list.viewport(), QEvent::MouseMove, at);
    SendMouse(*list.viewport(), QEvent::MouseButtonPress, at);
    SendMouse(*list.viewport(), QEvent::MouseButtonRelease, at);
  }

 private:
  Form& form() const { return control_.form(); }

  void Asked() {
    if (!form().IsShown() || !control_.Shown()) return;
    form().UserFocus(control_);
    if (form().Focus() == &control_ && !control_.DroppedDown()) form().UserKey("F4");
  }

  // The combo watches its list too; who comes last is heard first, so this is done at each opening.
  void Open() {
    open_ = true;
    list_ = combo_.view();
    popup_ = list_->window();
    list_->installEventFilter(this);
    popup_->installEventFilter(this);
    combo_.OpenList();
  }

  bool eventFilter(QObject* watched, QEvent* event) override {
    // Turning the wheel over a closed combo would change a value that nobody looks at.
    if (watched == &combo_) return event->type() == QEvent::Wheel;
    if (watched == popup_ && event->type() == QEvent::Hide) Hidden();
    if (watched != list_) return false;
    const bool key = event->type() == QEvent::KeyPress || event->type() == QEvent::ShortcutOverride;
    return key && QCoreApplication::sendEvent(&combo_, event);
  }

  void Hidden() {
    open_ = false;
    if (control_.DroppedDown()) control_.SetDroppedDown(false);
  }

  ComboBox& control_;
  ListAskingCombo& combo_;
  QWidget* list_ = nullptr;
  QWidget* popup_ = nullptr;
  bool open_ = false;
};

// The combo's own idea of the chosen item is left alone: setting it would disturb the caret. The text says it all.
class TypedComboView : public TypingView {
 public:
  TypedComboView(ComboBox& control, ListAskingCombo& combo, bool& mirroring)
      : TypingView(control, combo, Editable(combo), mirroring), list_(*new ComboList(*this, control, combo)) {}
  void Pick(int index) override {
    if (GoTo()) list_.Pick(index);
  }

 private:
  // Qt would choose an item that equals the text but for its letter case when the editing is finished.
  static QLineEdit& Editable(QComboBox& combo) {
    combo.setEditable(true);
    combo.setInsertPolicy(QComboBox::NoInsert);
    combo.setCompleter(nullptr);
    disconnect(combo.lineEdit(), &QLineEdit::editingFinished, &combo, nullptr);
    return *combo.lineEdit();
  }

  bool LeavesKey(int key) const override { return key != Qt::Key_PageUp && key != Qt::Key_PageDown; }

  void Update() override {
    list_.AddNewItems();
    TypingView::Update();
    list_.OpenOrClose();
  }

  ComboList& list_;
};

// A text that is no item is shown as the placeholder, in the colour of any other text.
class PickOnlyComboView : public ControlView {
 public:
  PickOnlyComboView(ComboBox& control, ListAskingCombo& combo, bool& mirroring)
      : ControlView(control, combo, mirroring), combo_(control), box_(combo), list_(*new ComboList(*this, control, combo)) {
    QPalette palette = combo.palette();
    palette.setBrush(QPalette::PlaceholderText, palette.buttonText());
    combo.setPalette(palette);
  }
  void Pick(int index) override {
    if (GoTo()) list_.Pick(index);
  }

 private:
  // Letters choose the next item that starts with them.
  bool LeavesKey(int key) const override { return key != Qt::Key_PageUp && key != Qt::Key_PageDown; }

  void Update() override {
    list_.AddNewItems();
    box_.setPlaceholderText(ToQt(combo_.Text()));
    box_.setCurrentIndex(combo_.ListIndex());
    list_.OpenOrClose();
  }

  ComboBox& combo_;
  QComboBox& box_;
  ComboList& list_;
};

class ListView : public ControlView {
 public:
  ListView(ListBox& control, QListWidget& list, bool& mirroring)
      : ControlView(control, list, mirroring), items_(control), list_(list), viewport_(*list.viewport()) {
    list_.setSelectionMode(QAbstractItemView::SingleSelection);
    viewport_.installEventFilter(this);
    connect(&list_, &QListWidget::itemSelectionChanged, this, [this] {
      if (!this->mirroring() && form().IsShown() && !list_.selectedItems().isEmpty()) form().UserPick(items_, list_.currentRow());
    });
  }

  void Pick(int index) override {
    if (!GoTo()) return;
    list_.scrollToItem(list_.item(index));
    const QPoint at = list_.visualItemRect(list_.item(index)).center();
    SendMouse(viewport_, QEvent::MouseButtonPress, at);
    SendMouse(viewport_, QEvent::MouseButtonRelease, at);
  }

  // The second press on the line that is selected.
  void DblClick() override {
    const QRect line = list_.visualItemRect(list_.currentItem());
    SendMouse(viewport_, QEvent::MouseButtonDblClick, line.center());
    SendMouse(viewport_, QEvent::MouseButtonRelease, line.center());
  }

 private:
  bool LeavesKey(int) const override { return true; }

  bool eventFilter(QObject* watched, QEvent* event) override {
    if (watched != &viewport_ || !form().IsShown()) return ControlView::eventFilter(watched, event);
    switch (event->type()) {
      case QEvent::MouseButtonPress:
        Pressed(static_cast<QMouseEvent*>(event)->position().toPoint());
        return true;
      case QEvent::MouseButtonDblClick:
        form().UserDblClick(items_);
        return true;
      case QEvent::MouseMove:
      case QEvent::MouseButtonRelease:
        return true;
      default:
        return false;
    }
  }

  void Pressed(QPoint at) {
    const int row = list_.indexAt(at).row();
    if (row < 0) return form().UserFocus(items_);
    form().UserPick(items_, row);
  }

  void Update() override {
    const auto& items = items_.Items();
    while (list_.count() > static_cast<int>(items.size())) delete list_.takeItem(list_.count() - 1);
    for (size_t row = 0; row < items.size(); ++row) SetLine(static_cast<int>(row), ToQt(items[row]));
    list_.setCurrentRow(items_.ListIndex());
  }

  void SetLine(int row, const QString& text) {
    if (row == list_.count()) return list_.addItem(text);
    if (list_.item(row)->text() != text) list_.item(row)->setText(text);
  }

  ListBox& items_;
  QListWidget& list_;
  QWidget& viewport_;
};

ControlView* MakeCombo(ComboBox& control, QWidget& parent, bool& mirroring) {
  auto* combo = new ListAskingCombo(&parent);
  if (control.PickOnly()) return new PickOnlyComboView(control, *combo, mirroring);
  return new TypedComboView(control, *combo, mirroring);
}

QPushButton* MakePushButton(const Control& control, QWidget& parent) {
  auto* button = new QPushButton(&parent);
  button->setAutoDefault(false);
  button->setDefault(control.form().DefaultButton() == &control);
  return button;
}

}  // namespace

bool ForwardDialogKey(Form& form, QEvent& event) {
  if (event.type() != QEvent::KeyPress && event.type() != QEvent::ShortcutOverride) return false;
  const std::string key = NameOfKey(static_cast<const QKeyEvent&>(event));
  if (key.empty()) return false;
  event.accept();
  if (event.type() == QEvent::KeyPress) form.UserKey(key);
  return true;
}

ControlView* ControlView::Make(Control& control, QWidget& parent, bool& mirroring) {
  switch (control.kind()) {
    case ControlKind::Label:
      return new LabelView(static_cast<Label&>(control), *new QLabel(&parent), mirroring);
    case ControlKind::Frame:
      return new FrameView(control, *new QGroupBox(&parent), mirroring);
    case ControlKind::Line:
      return new LineView(control, *new QFrame(&parent), mirroring);
    case ControlKind::Button:
      return new ButtonView(control, *MakePushButton(control, parent), mirroring);
    case ControlKind::Check:
      return new CheckView(static_cast<CheckBox&>(control), *new QCheckBox(&parent), mirroring);
    case ControlKind::Text:
      return new TextView(static_cast<TextBox&>(control), *new QLineEdit(&parent), mirroring);
    case ControlKind::List:
      return new ListView(static_cast<ListBox&>(control), *new QListWidget(&parent), mirroring);
    case ControlKind::Combo:
      return MakeCombo(static_cast<ComboBox&>(control), parent, mirroring);
  }
  Q_UNREACHABLE();
}

// Clicking moves no focus by itself, the form does; a screen reader still finds what can have it.
ControlView::ControlView(Control& control, QWidget& widget, bool& mirroring)
    : QObject(&widget), control_(control), widget_(widget), mirroring_(mirroring) {
  widget_.setObjectName(ToQt(control.name()));
  widget_.setFocusPolicy(control.TakesFocus() ? Qt::TabFocus : Qt::NoFocus);
  widget_.installEventFilter(this);
}

void ControlView::Mirror() {
  const QScopedValueRollback<bool> guard(mirroring_, true);
  Update();
  widget_.setVisible(control_.IsVisible());
}

bool ControlView::GoTo() {
  QFocusEvent event(QEvent::FocusIn, Qt::OtherFocusReason);
  QCoreApplication::sendEvent(&widget_, &event);
  return control_.Shown();
}

void ControlView::DblClick() { form().UserDblClick(control_); }

bool ControlView::eventFilter(QObject* watched, QEvent* event) {
  if (watched != &widget_ || !form().IsShown()) return false;
  if (event->type() == QEvent::FocusIn) {
    // Qt gives the focus itself only where the form did before, or when a screen reader moves it.
    const Qt::FocusReason reason = static_cast<QFocusEvent*>(event)->reason();
    const bool returning = reason == Qt::ActiveWindowFocusReason || reason == Qt::PopupFocusReason;
    if (!mirroring_ && !returning && control_.TakesFocus() && control_.Shown()) form().UserFocus(control_);
    return false;
  }
  if (event->type() != QEvent::KeyPress && event->type() != QEvent::ShortcutOverride) return false;
  const auto& key = static_cast<const QKeyEvent&>(*event);
  const std::string name = NameOfKey(key);
  const bool caretKey = name == "Space" || name == "Home" || name == "End";
  if (TakesTyping() && caretKey) return false;
  if (ForwardDialogKey(form(), *event)) return true;
  return event->type() == QEvent::KeyPress && !LeavesKey(key.key());
}

}  // namespace vardo
