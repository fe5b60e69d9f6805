#include "desktop/StencilDock.h"

#include "desktop/Texts.h"

#include <QKeyEvent>
#include <QMimeData>
#include <QVBoxLayout>

#include <algorithm>

namespace vardo {
namespace {

constexpr int kMasterRole = Qt::UserRole;

// Items are carried to the page by their masters' names.
class MasterList : public QListWidget {
 public:
  using QListWidget::QListWidget;

 protected:
  QStringList mimeTypes() const override { return {kMasterMime}; }
  QMimeData* mimeData(const QList<QListWidgetItem*>& items) const override {
    if (items.isEmpty()) return nullptr;
    auto* const data = new QMimeData;
    data->setData(kMasterMime, items.front()->data(kMasterRole).toString().toUtf8());
    return data;
  }
};

}  // namespace

StencilDock::StencilDock(QWidget* parent)
    : QDockWidget(texts::Say("Stencil"), parent), items_(StencilItems(parent->devicePixelRatioF())) {
  setObjectName("stencilDock");
  auto* const content = new QWidget(this);
  auto* const layout = new QVBoxLayout(content);
  layout->setContentsMargins(4, 4, 4, 4);
  search_ = new QLineEdit(content);
  search_->setObjectName("stencilSearch");
  search_->setPlaceholderText(texts::Say("Find a module"));
  search_->setAccessibleName(texts::Say("Find a module"));
  search_->setClearButtonEnabled(true);
  list_ = new MasterList(content);
  list_->setObjectName("stencil");
  list_->setAccessibleName(texts::Say("Modules and connectors"));
  list_->setIconSize(QSize(44, 30));
  list_->setSpacing(1);
  list_->setDragEnabled(true);
  list_->setDragDropMode(QAbstractItemView::DragOnly);
  list_->setFrameShape(QFrame::NoFrame);
  for (const StencilItem& item : items_) {
    auto* const row = new QListWidgetItem(item.icon, QString::fromStdString(item.name), list_);
    row->setToolTip(item.prompt);
    row->setData(kMasterRole, QString::fromStdString(item.name));
    row->setData(Qt::AccessibleDescriptionRole, item.prompt);
  }
  layout->addWidget(search_);
  layout->addWidget(list_);
  setWidget(content);
  QObject::connect(search_, &QLineEdit::textChanged, this, [this](const QString& text) { Filter(text); });
  QObject::connect(list_, &QListWidget::itemActivated, this, [this] { ChooseCurrent(); });
  search_->installEventFilter(this);
}

const StencilItem* StencilDock::Find(const std::string& master) const {
  const auto found = std::find_if(items_.begin(), items_.end(), [&](const StencilItem& item) { return item.name == master; });
  return found == items_.end() ? nullptr : &*found;
}

void StencilDock::FocusSearch() {
  search_->setFocus(Qt::ShortcutFocusReason);
  search_->selectAll();
}

void StencilDock::Filter(const QString& text) {
  QListWidgetItem* first = nullptr;
  for (int i = 0; i < list_->count(); ++i) {
    QListWidgetItem* const row = list_->item(i);
    row->setHidden(!row->text().contains(text, Qt::CaseInsensitive));
    if (!first && !row->isHidden()) first = row;
  }
  list_->setCurrentItem(first);
}

void StencilDock::ChooseCurrent() {
  const QListWidgetItem* const row = list_->currentItem();
  const StencilItem* const item = row && !row->isHidden() ? Find(row->data(kMasterRole).toString().toStdString()) : nullptr;
  if (item && onChosen) onChosen(*item);
}

// In the search box the list's keys are at hand, too.
bool StencilDock::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() != QEvent::KeyPress) return QDockWidget::eventFilter(watched, event);
  switch (static_cast<QKeyEvent*>(event)->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
      ChooseCurrent();
      return true;
    case Qt::Key_Up:
    case Qt::Key_Down:
      list_->setFocus();
      return true;
    default:
      return QDockWidget::eventFilter(watched, event);
  }
}

}  // namespace vardo
