#include "desktop/ProblemsDock.h"

#include "addin/host/IVApplication.h"
#include "base/Errors.h"
#include "check/Check.h"
#include "desktop/Texts.h"
#include "document/Drawing.h"

#include <QApplication>
#include <QHeaderView>
#include <QStyle>

namespace vardo {
namespace {

constexpr int kPageRole = Qt::UserRole, kShapeRole = Qt::UserRole + 1;
constexpr int kAtRest = 400;  // milliseconds

QStyle::StandardPixmap IconOf(Severity severity) {
  if (severity == Severity::Error) return QStyle::SP_MessageBoxCritical;
  return severity == Severity::Warning ? QStyle::SP_MessageBoxWarning : QStyle::SP_MessageBoxInformation;
}

}  // namespace

ProblemsDock::ProblemsDock(DrawingSession& session, QWidget* parent)
    : QDockWidget(texts::Say("Problems"), parent), session_(session), list_(new QTreeWidget(this)) {
  setObjectName("problemsDock");
  list_->setObjectName("problems");
  list_->setAccessibleName(texts::Say("Problems of the model"));
  list_->setColumnCount(2);
  list_->setHeaderLabels({texts::Say("Problem"), texts::Say("Page")});
  list_->header()->setSectionResizeMode(0, QHeaderView::Stretch);
  list_->header()->setStretchLastSection(false);
  list_->setRootIsDecorated(false);
  list_->setUniformRowHeights(true);
  list_->setFrameShape(QFrame::NoFrame);
  setWidget(list_);
  refresh_.setSingleShot(true);
  refresh_.setInterval(kAtRest);
  QObject::connect(&refresh_, &QTimer::timeout, this, [this] { CheckNow(); });
  QObject::connect(list_, &QTreeWidget::itemActivated, this, [this](const QTreeWidgetItem* row) {
    if (onGoTo) onGoTo(row->data(0, kPageRole).toInt(), row->data(0, kShapeRole).toInt());
  });
}

void ProblemsDock::Refresh() { refresh_.start(); }

void ProblemsDock::CheckNow() {
  if (!session_.host().IsOpen()) return;
  // Not in the middle of a dialog.
  if (QApplication::activeModalWidget()) return refresh_.start();
  try {
    Show(Examine(session_.host().application()->ActiveDocument(), {}, {}, CheckFor::Itself).findings);
  } catch (const AutomationError&) {
    Show({});
  }
  if (onChecked) onChecked();
}

void ProblemsDock::Show(const std::vector<Finding>& findings) {
  list_->clear();
  worst_.clear();
  for (const Finding& finding : findings) {
    const DrawingPage* const page = session_.drawing().FindPage(finding.page);
    auto* const row = new QTreeWidgetItem(list_, {QString::fromStdString(finding.message), QString::fromStdString(finding.page)});
    row->setIcon(0, style()->standardIcon(IconOf(finding.severity)));
    row->setToolTip(0, QString::fromStdString(finding.message + (finding.hint.empty() ? "" : "\n" + finding.hint)));
    row->setData(0, kPageRole, page ? page->id() : -1);
    row->setData(0, kShapeRole, finding.shape);
    if (!page || finding.shape < 0) continue;
    const auto [known, isNew] = worst_.try_emplace({page->id(), finding.shape}, finding.severity);
    if (!isNew) known->second = std::min(known->second, finding.severity);
  }
  setWindowTitle(findings.empty() ? texts::Say("Problems") : texts::Say("Problems (%1)").arg(findings.size()));
}

}  // namespace vardo
