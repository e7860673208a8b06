#include "editor/drop_highlight_view.h"

#include <QEvent>
#include <QPainter>

namespace vantrel {
namespace {

// Points.
constexpr double kLineWidth = 3;
constexpr double kPadding = 6;
constexpr double kRadius = 10;

}  // namespace

DropHighlightView::DropHighlightView(QWidget* parent) : QFocusFrame(parent) {
  setAttribute(Qt::WA_TransparentForMouseEvents);
  setAcceptDrops(false);
  setVisible(false);
  resize(parent->size());
  parent->installEventFilter(this);
}

bool DropHighlightView::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::Resize) resize(parentWidget()->size());
  return QFocusFrame::eventFilter(watched, event);
}

void DropHighlightView::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(palette().color(QPalette::Highlight), kLineWidth));
  const double inset = kPadding + kLineWidth / 2;
  painter.drawRoundedRect(QRectF(rect()).adjusted(inset, inset, -inset, -inset), kRadius, kRadius);
}

}  // namespace vantrel
