#include "inspector/inspector_scroll_area.h"

#include <QFrame>

#include "controls/floating_scroll_bar.h"

namespace vantrel {

InspectorScrollArea::InspectorScrollArea(QWidget* parent)
    : QScrollArea(parent), m_bar(new FloatingScrollBar(Qt::Vertical, this)) {
  setFrameShape(QFrame::NoFrame);
  setFocusPolicy(Qt::NoFocus);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setWidgetResizable(true);
  viewport()->setAutoFillBackground(false);
  connect(verticalScrollBar(), &QScrollBar::rangeChanged, this, &InspectorScrollArea::mirror);
  connect(verticalScrollBar(), &QScrollBar::valueChanged, this, [this] {
    mirror();
    m_bar->wake();
  });
  connect(m_bar, &QScrollBar::valueChanged, verticalScrollBar(), &QScrollBar::setValue);
}

void InspectorScrollArea::mirror() {
  const QScrollBar& hidden = *verticalScrollBar();
  m_bar->mirror(hidden.maximum() + hidden.pageStep(), hidden.pageStep(), hidden.value());
}

void InspectorScrollArea::resizeEvent(QResizeEvent* event) {
  QScrollArea::resizeEvent(event);
  const int thickness = FloatingScrollBar::kThickness;
  m_bar->setGeometry(width() - thickness, 0, thickness, height());
  m_bar->raise();
  mirror();
}

}  // namespace vantrel
