#include "desktop/ModelDock.h"

#include "canvas/ModelList.h"
#include "desktop/Texts.h"

#include <QHeaderView>
#include <QShortcut>
#include <QVBoxLayout>

namespace vardo {
namespace {

constexpr int kPageRole = Qt::UserRole, kShapeRole = Qt::UserRole + 1, kValuesRole = Qt::UserRole + 2;
constexpr int kRefreshAfter = 150;  // milliseconds

}  // namespace

ModelDock::ModelDock(DrawingSession& session, QWidget* parent) : QDockWidget(texts::Say("Model"), parent), session_(session) {
  setObjectName("modelDock");
  auto* const content = new QWidget(this);
  auto* const layout = new QVBoxLayout(content);
  layout->setContentsMargins(4, 4, 4, 4);
  filter_ = new QLineEdit(content);
  filter_->setObjectName("modelFilter");
  filter_->setPlaceholderText(texts::Say("Find a name, a value or a page"));
  filter_->setAccessibleName(texts::Say("Find a name, a value or a page"));
  filter_->setClearButtonEnabled(true);
  tree_ = new QTreeWidget(content);
  tree_->setObjectName("model");
  tree_->setAccessibleName(texts::Say("Modules of the drawing"));
  tree_->setColumnCount(2);
  tree_->setHeaderLabels({texts::Say("Module"), texts::Say("Page")});
  tree_->header()->setSectionResizeMode(0, QHeaderView::Stretch);
  tree_->header()->setStretchLastSection(false);
  tree_->setUniformRowHeights(true);
  tree_->setFrameShape(QFrame::NoFrame);
  layout->addWidget(filter_);
  layout->addWidget(tree_);
  setWidget(content);
  refresh_.setSingleShot(true);
  refresh_.setInterval(kRefreshAfter);
  QObject::connect(&refresh_, &QTimer::timeout, this, [this] { Fill(); });
  QObject::connect(filter_, &QLineEdit::textChanged, this, [this] { Filter(); });
  QObject::connect(filter_, &QLineEdit::returnPressed, this, [this] { Step(1); });
  QObject::connect(tree_, &QTreeWidget::itemClicked, this, [this](QTreeWidgetItem* item) { GoTo(item, onGoTo); });
  QObject::connect(tree_, &QTreeWidget::itemActivated, this, [this](QTreeWidgetItem* item) { GoTo(item, onOpen); });
}

void ModelDock::Refresh() {
  outdated_ = true;
  if (isVisible()) refresh_.start();
}

void ModelDock::showEvent(QShowEvent* event) {
  QDockWidget::showEvent(event);
  if (outdated_) refresh_.start();
}

void ModelDock::FocusFilter() {
  show();
  raise();
  filter_->setFocus(Qt::ShortcutFocusReason);
  filter_->selectAll();
}

void ModelDock::Fill() {
  if (!session_.host().IsOpen()) return;
  outdated_ = false;
  const QTreeWidgetItem* const current = tree_->currentItem();
  const QVariant page = current ? current->data(0, kPageRole) : QVariant(),
                 shape = current ? current->data(0, kShapeRole) : QVariant();
  tree_->setUpdatesEnabled(false);
  tree_->clear();
  QTreeWidgetItem* kind = nullptr;
  QTreeWidgetItem* again = nullptr;
  for (const ListedModule& module : ModulesOf(session_.drawing())) {
    const QString name = QString::fromStdString(module.kind);
    if (!kind || kind->data(0, Qt::UserRole + 3) != name) {
      kind = new QTreeWidgetItem(tree_, {name});
      kind->setData(0, Qt::UserRole + 3, name);
      QFont bold = kind->font(0);
      bold.setBold(true);
      kind->setFont(0, bold);
    }
    auto* const row = new QTreeWidgetItem(kind, {QString::fromStdString(module.name), QString::fromStdString(module.pageName)});
    row->setData(0, kPageRole, module.page);
    row->setData(0, kShapeRole, module.shape);
    row->setData(0, kValuesRole, QString::fromStdString(module.values));
    if (page == row->data(0, kPageRole) && shape == row->data(0, kShapeRole)) again = row;
  }
  Filter();
  if (again) tree_->setCurrentItem(again);
  tree_->setUpdatesEnabled(true);
}

void ModelDock::Filter() {
  const QString wanted = filter_->text();
  for (int k = 0; k < tree_->topLevelItemCount(); ++k) {
    QTreeWidgetItem* const kind = tree_->topLevelItem(k);
    int shown = 0;
    for (int i = 0; i < kind->childCount(); ++i) {
      QTreeWidgetItem* const row = kind->child(i);
      const bool fits = wanted.isEmpty() || row->text(0).contains(wanted, Qt::CaseInsensitive) ||
                        row->text(1).contains(wanted, Qt::CaseInsensitive) ||
                        kind->data(0, Qt::UserRole + 3).toString().contains(wanted, Qt::CaseInsensitive) ||
                        row->data(0, kValuesRole).toString().contains(wanted, Qt::CaseInsensitive);
      row->setHidden(!fits);
      shown += fits;
    }
    kind->setHidden(shown == 0);
    kind->setText(0, QString("%1 (%2)").arg(kind->data(0, Qt::UserRole + 3).toString()).arg(shown));
    kind->setExpanded(true);
  }
}

void ModelDock::Step(int step) {
  std::vector<QTreeWidgetItem*> rows;
  for (int k = 0; k < tree_->topLevelItemCount(); ++k)
    for (int i = 0; i < tree_->topLevelItem(k)->childCount(); ++i)
      if (QTreeWidgetItem* const row = tree_->topLevelItem(k)->child(i); !row->isHidden()) rows.push_back(row);
  if (rows.empty()) return;
  const auto at = std::find(rows.begin(), rows.end(), tree_->currentItem());
  const auto count = static_cast<int>(rows.size());
  const int from = at == rows.end() ? (step > 0 ? -1 : 0) : static_cast<int>(at - rows.begin());
  QTreeWidgetItem* const next = rows[static_cast<size_t>((from + step + count) % count)];
  tree_->setCurrentItem(next);
  GoTo(next, onGoTo);
}

void ModelDock::GoTo(const QTreeWidgetItem* item, const std::function<void(int, int)>& go) {
  if (item && item->parent() && go) go(item->data(0, kPageRole).toInt(), item->data(0, kShapeRole).toInt());
}

}  // namespace vardo
