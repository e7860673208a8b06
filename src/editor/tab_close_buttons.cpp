#include "editor/tab_close_buttons.h"

#include <QHoverEvent>
#include <QTabBar>

namespace vantrel {

TabCloseButtons::TabCloseButtons(QTabBar& tabs) : m_tabs(tabs) {
  tabs.setAttribute(Qt::WA_Hover);
  tabs.installEventFilter(this);
  connect(&tabs, &QTabBar::currentChanged, this, &TabCloseButtons::update);
}

void TabCloseButtons::update() {
  for (int index = 0; index < m_tabs.count(); ++index) {
    for (const auto side : {QTabBar::LeftSide, QTabBar::RightSide}) {
      QWidget* const button = m_tabs.tabButton(index, side);
      if (button) button->setVisible(index == m_tabs.currentIndex() || index == m_hovered);
    }
  }
}

bool TabCloseButtons::eventFilter(QObject* watched, QEvent* event) {
  switch (event->type()) {
    case QEvent::HoverEnter:
    case QEvent::HoverMove:
      m_hovered = m_tabs.tabAt(static_cast<QHoverEvent*>(event)->position().toPoint());
      update();
      break;
    case QEvent::HoverLeave:
      m_hovered = -1;
      update();
      break;
    default:
      break;
  }
  return QObject::eventFilter(watched, event);
}

}  // namespace vantrel
