#include "desktop/PropertiesDock.h"

#include "canvas/ShapeFacts.h"
#include "desktop/Texts.h"
#include "document/Drawing.h"
#include "model/FieldTable.h"
#include "modules/ModuleKinds.h"

#include <QComboBox>
#include <QHeaderView>
#include <QStyledItemDelegate>
#include <QVBoxLayout>

namespace vardo {
namespace {

constexpr int kFieldRole = Qt::UserRole, kChoicesRole = Qt::UserRole + 1, kStoredRole = Qt::UserRole + 2;

// A field that takes one of a few words offers them.
class FieldDelegate : public QStyledItemDelegate {
 public:
  using QStyledItemDelegate::QStyledItemDelegate;

  QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option, const QModelIndex& index) const override {
    if (index.column() != 1) return nullptr;
    const QStringList choices = index.data(kChoicesRole).toStringList();
    if (choices.isEmpty()) return QStyledItemDelegate::createEditor(parent, option, index);
    auto* const box = new QComboBox(parent);
    box->addItems(choices);
    QObject::connect(box, &QComboBox::activated, box, [this, box] {
      auto* const self = const_cast<FieldDelegate*>(this);
      Q_EMIT self->commitData(box);
      Q_EMIT self->closeEditor(box);
    });
    return box;
  }
  void setEditorData(QWidget* editor, const QModelIndex& index) const override {
    if (auto* const box = qobject_cast<QComboBox*>(editor)) return box->setCurrentText(index.data().toString());
    QStyledItemDelegate::setEditorData(editor, index);
  }
  void setModelData(QWidget* editor, QAbstractItemModel* model, const QModelIndex& index) const override {
    if (auto* const box = qobject_cast<QComboBox*>(editor)) {
      model->setData(index, box->currentText());
      return;
    }
    QStyledItemDelegate::setModelData(editor, model, index);
  }
};

QString CaptionOf(const Choice& choice) {
  const std::string_view text = choice.caption.empty() ? choice.code : choice.caption;
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

// As the dialog shows what the cell holds.
QString Shown(const std::string& stored, std::span<const Choice> choices) {
  for (const Choice& choice : choices)
    if (choice.code == stored) return CaptionOf(choice);
  return QString::fromStdString(stored);
}

}  // namespace

PropertiesDock::PropertiesDock(DrawingSession& session, QWidget* parent)
    : QDockWidget(texts::Say("Properties"), parent), session_(session) {
  setObjectName("propertiesDock");
  auto* const content = new QWidget(this);
  auto* const layout = new QVBoxLayout(content);
  layout->setContentsMargins(4, 4, 4, 4);
  title_ = new QLabel(content);
  title_->setTextFormat(Qt::PlainText);
  title_->setObjectName("propertiesTitle");
  table_ = new QTreeWidget(content);
  table_->setObjectName("properties");
  table_->setAccessibleName(texts::Say("Fields of the selected module"));
  table_->setColumnCount(2);
  table_->setHeaderLabels({texts::Say("Field"), texts::Say("Value")});
  table_->header()->setSectionResizeMode(0, QHeaderView::ResizeToContents);
  table_->setRootIsDecorated(false);
  table_->setAlternatingRowColors(true);
  table_->setUniformRowHeights(true);
  table_->setFrameShape(QFrame::NoFrame);
  table_->setEditTriggers(QAbstractItemView::DoubleClicked | QAbstractItemView::EditKeyPressed |
                          QAbstractItemView::SelectedClicked | QAbstractItemView::AnyKeyPressed);
  table_->setItemDelegate(new FieldDelegate(table_));
  refusal_ = new QLabel(content);
  refusal_->setObjectName("propertiesRefusal");
  refusal_->setTextFormat(Qt::PlainText);
  refusal_->setWordWrap(true);
  refusal_->hide();
  QPalette red = refusal_->palette();
  red.setColor(QPalette::WindowText, QColor(0xc6, 0x28, 0x28));
  refusal_->setPalette(red);
  layout->addWidget(title_);
  layout->addWidget(table_);
  layout->addWidget(refusal_);
  setWidget(content);
  QObject::connect(table_, &QTreeWidget::itemChanged, this, [this](QTreeWidgetItem* row, int column) {
    if (!filling_ && column == 1) Edited(*row);
  });
}

void PropertiesDock::FocusFields() {
  show();
  raise();
  table_->setFocus(Qt::ShortcutFocusReason);
  if (!table_->currentItem()) table_->setCurrentItem(table_->topLevelItem(0), 1);
}

// Of modules of one kind; what differs among them is said to.
void PropertiesDock::Refresh() {
  if (!session_.host().IsOpen()) return;
  filling_ = true;
  const std::string before = table_->currentItem() ? table_->currentItem()->data(0, kFieldRole).toString().toStdString() : "";
  table_->clear();
  shapes_.clear();
  const ModuleSchema* schema = nullptr;
  bool mixed = false;
  DrawingPage& page = session_.page();
  for (const int id : session_.host().selection()) {
    const DrawingShape* const shape = page.FindShape(id);
    const ModuleSchema* const found = shape ? FindModule(KindOf(*shape)) : nullptr;
    if (!found) continue;
    mixed = mixed || (schema && schema != found);
    schema = found;
    shapes_.push_back(id);
  }
  if (mixed) shapes_.clear();
  if (shapes_.empty())
    title_->setText(mixed ? texts::Say("Modules of several kinds") : texts::Say("Select a module to see its fields"));
  else if (shapes_.size() == 1)
    title_->setText(QString::fromStdString(NameInWords(page, *page.FindShape(shapes_.front()))));
  else
    title_->setText(texts::Say("%1 %2 modules")
                        .arg(shapes_.size())
                        .arg(QString::fromUtf8(schema->kind.data(), static_cast<qsizetype>(schema->kind.size()))));
  if (!shapes_.empty()) {
    const auto meanings = MeaningsOf(*schema);
    for (size_t i = 0; i < schema->properties.size(); ++i) {
      const ModuleProperty& property = schema->properties[i];
      if (property.IsHidden()) continue;
      const std::string cell = "Prop." + std::string(property.field);
      const std::string stored = TextIn(*page.FindShape(shapes_.front()), cell);
      const bool same =
          std::all_of(shapes_.begin(), shapes_.end(), [&](int id) { return TextIn(*page.FindShape(id), cell) == stored; });
      const QString text = same ? Shown(stored, meanings[i].choices) : texts::Say("(various)");
      auto* const row = new QTreeWidgetItem(table_, {texts::Say(std::string(property.label).c_str()), text});
      row->setFlags(row->flags() | Qt::ItemIsEditable);
      row->setData(0, kFieldRole, QString::fromStdString(std::string(property.field)));
      row->setData(0, kStoredRole, text);
      QStringList choices;
      for (const Choice& choice : meanings[i].choices) choices << CaptionOf(choice);
      row->setData(1, kChoicesRole, choices);
      row->setToolTip(1, texts::Say(std::string(property.prompt).c_str()));
      if (property.field == before) table_->setCurrentItem(row, 1);
    }
  }
  filling_ = false;
}

void PropertiesDock::Edited(QTreeWidgetItem& row) {
  const QString text = row.text(1);
  if (text == row.data(0, kStoredRole).toString() || !onEdited) return;
  const QString why = onEdited(shapes_, row.data(0, kFieldRole).toString().toStdString(), text);
  refusal_->setText(why);
  refusal_->setVisible(!why.isEmpty());
}

}  // namespace vardo
