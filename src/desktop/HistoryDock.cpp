#include "desktop/HistoryDock.h"

#include "desktop/Texts.h"
#include "document/Drawing.h"

namespace vardo {

HistoryDock::HistoryDock(QWidget* parent) : QDockWidget(texts::Say("History"), parent), list_(new QListWidget(this)) {
  setObjectName("historyDock");
  list_->setObjectName("history");
  list_->setAccessibleName(texts::Say("Steps done, the latest last"));
  list_->setFrameShape(QFrame::NoFrame);
  setWidget(list_);
  QObject::connect(list_, &QListWidget::itemActivated, this, [this](const QListWidgetItem* item) {
    if (onChosen) onChosen(done_ - list_->row(item));
  });
}

void HistoryDock::Show(DrawingSession& session) {
  if (!isVisible()) return;
  const EditLog& log = session.drawing().log();
  const std::vector<std::string> done = log.UndoLabels();
  std::vector<std::string> undone = log.RedoLabels();
  list_->clear();
  list_->addItem(session.host().file().empty() ? texts::NewDrawing() : texts::Say("Opened"));
  for (const std::string& label : done) list_->addItem(QString::fromStdString(label));
  done_ = static_cast<int>(done.size());
  // The next to be done again comes first.
  for (auto label = undone.rbegin(); label != undone.rend(); ++label) {
    auto* const item = new QListWidgetItem(QString::fromStdString(*label), list_);
    item->setForeground(palette().color(QPalette::Disabled, QPalette::Text));
  }
  list_->setCurrentRow(done_);
}

}  // namespace vardo
