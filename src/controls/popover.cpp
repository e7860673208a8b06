#include "controls/popover.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QVBoxLayout>
#include <algorithm>

#include "controls/plate.h"

namespace vantrel {
namespace {

// Points: from the anchor, and from the edges of the window.
constexpr int kGap = 6;
constexpr int kMargin = 8;

constexpr float kOpacity = 0.9F;

bool isIn(const QWidget& widget, const QPoint& global) {
  return widget.rect().contains(widget.mapFromGlobal(global));
}

}  // namespace

Popover::Popover(QWidget& anchor, QWidget* content) : CropPanel(anchor.window()), m_anchor(anchor) {
  setContentsMargins(kContentPadding, kContentPadding, kContentPadding, kContentPadding);
  auto* const layout = new QVBoxLayout(this);
  layout->setContentsMargins({});
  layout->addWidget(content);
  connect(&anchor, &QObject::destroyed, this, [this] { delete this; });
  qApp->installEventFilter(this);
  place();
  follow(anchor.isVisible() ? QEvent::Show : QEvent::Hide);
}

void Popover::dismiss() {
  qApp->removeEventFilter(this);
  hide();
  deleteLater();
}

void Popover::paintEvent(QPaintEvent* /*event*/) {
  QColor fill = palette().color(QPalette::Window);
  fill.setAlphaF(kOpacity);
  QPainter painter(this);
  drawPlate(&painter, rect().adjusted(1, 1, -1, -1), PanelBackdrop::kCornerRadius - 1, fill, {}, 0);
}

bool Popover::eventFilter(QObject* watched, QEvent* event) {
  if (watched == &m_anchor) follow(event->type());
  if (watched == parentWidget() && event->type() == QEvent::Resize) {
    // The anchor finds its new place only after this.
    QMetaObject::invokeMethod(this, &Popover::place, Qt::QueuedConnection);
  }
  auto* const receiver = qobject_cast<QWidget*>(watched);
  if (!receiver || !isVisible() || receiver->window() != window()) return false;
  if (takesEscape(event)) return true;
  if (event->type() == QEvent::MouseButtonPress) {
    closeUnlessIn(static_cast<QMouseEvent*>(event)->globalPosition().toPoint());
  }
  return false;
}

// Before any shortcut of the window does.
bool Popover::takesEscape(QEvent* event) {
  const bool isKey = event->type() == QEvent::KeyPress || event->type() == QEvent::ShortcutOverride;
  if (!isKey || static_cast<QKeyEvent*>(event)->key() != Qt::Key_Escape) return false;
  event->accept();
  if (event->type() == QEvent::KeyPress) dismiss();
  return true;
}

// A click on the anchor is the anchor's own matter.
void Popover::closeUnlessIn(const QPoint& global) {
  if (!isIn(*this, global) && !isIn(m_anchor, global)) dismiss();
}

void Popover::follow(QEvent::Type type) {
  if (type == QEvent::Hide) hide();
  if (type != QEvent::Show) return;
  if (parentWidget() != m_anchor.window()) setParent(m_anchor.window());
  place();
  show();
  raise();
}

void Popover::place() {
  adjustSize();
  const QRect around = parentWidget()->rect().adjusted(kMargin, kMargin, -kMargin, -kMargin);
  const QPoint anchor = m_anchor.mapTo(parentWidget(), m_anchor.rect().topRight());
  const int x = std::min(anchor.x(), around.right()) - width() + 1;
  move(std::max(x, around.left()), std::max(anchor.y() - kGap - height(), around.top()));
}

}  // namespace vantrel
