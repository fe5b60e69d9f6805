#include "desktop/PageTabs.h"

#include "canvas/PageTree.h"
#include "desktop/Texts.h"
#include "document/Drawing.h"

#include <QHBoxLayout>

namespace vardo {

PageTabs::PageTabs(QWidget* parent) : QWidget(parent), bar_(new QTabBar(this)), add_(new QToolButton(this)) {
  auto* const layout = new QHBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  layout->addWidget(bar_);
  layout->addWidget(add_);
  layout->addStretch();
  bar_->setObjectName("pages");
  bar_->setShape(QTabBar::RoundedSouth);
  bar_->setExpanding(false);
  bar_->setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Preferred);
  bar_->setDrawBase(false);
  bar_->setUsesScrollButtons(true);
  bar_->setElideMode(Qt::ElideRight);
  bar_->setAccessibleName(texts::PageTabs());
  bar_->setContextMenuPolicy(Qt::CustomContextMenu);
  add_->setText("+");
  add_->setAutoRaise(true);
  add_->setAccessibleName(texts::Say("Add a page"));
  add_->setToolTip(texts::Say("Add a page"));
  QObject::connect(bar_, &QTabBar::currentChanged, this, [this](int tab) {
    if (!filling_ && tab >= 0 && onChosen) onChosen(PageAt(tab));
  });
  QObject::connect(bar_, &QTabBar::tabBarDoubleClicked, this, [this](int tab) {
    if (tab >= 0 && onRename) onRename(PageAt(tab));
  });
  QObject::connect(bar_, &QWidget::customContextMenuRequested, this, [this](const QPoint& at) {
    if (const int tab = bar_->tabAt(at); tab >= 0 && onMenu) onMenu(PageAt(tab), bar_->mapToGlobal(at));
  });
  QObject::connect(add_, &QToolButton::clicked, this, [this] {
    if (onAdd) onAdd();
  });
}

void PageTabs::Show(DrawingSession& session) {
  filling_ = true;
  Drawing& drawing = session.drawing();
  int tab = 0;
  for (int i = 1; i <= drawing.PageCount(); ++i) {
    DrawingPage& page = drawing.PageAt(i);
    if (page.IsBackground()) continue;
    const auto parent = ParentPageOf(drawing, page);
    const QString name = QString::fromStdString(page.Name());
    const QString text = parent ? texts::SubmodelTab(name, QString::fromStdString(drawing.FindPage(*parent)->Name())) : name;
    if (tab == bar_->count()) bar_->addTab(text);
    if (bar_->tabText(tab) != text) bar_->setTabText(tab, text);
    bar_->setTabData(tab, page.id());
    if (page.id() == session.page().id()) bar_->setCurrentIndex(tab);
    ++tab;
  }
  while (bar_->count() > tab) bar_->removeTab(bar_->count() - 1);
  filling_ = false;
}

Breadcrumb::Breadcrumb(QWidget* parent) : QLabel(parent) {
  setObjectName("breadcrumb");
  setAccessibleName(texts::Breadcrumb());
  setContentsMargins(8, 3, 8, 3);
  setTextFormat(Qt::RichText);
  QObject::connect(this, &QLabel::linkActivated, this, [this](const QString& link) {
    if (onChosen) onChosen(link.toInt());
  });
}

void Breadcrumb::Show(DrawingSession& session) {
  const std::vector<int> path = PathTo(session.drawing(), session.page());
  QStringList steps;
  for (const int id : path) {
    const QString name = QString::fromStdString(session.drawing().FindPage(id)->Name()).toHtmlEscaped();
    steps << (id == path.back() ? "<b>" + name + "</b>" : QString("<a href=\"%1\">%2</a>").arg(id).arg(name));
  }
  setText(steps.join(" \u203a "));
  setVisible(path.size() > 1);
}

}  // namespace vardo
