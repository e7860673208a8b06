#include "editor/tab_drag_image.h"

#include <QPainter>
#include <QStyle>
#include <QStyleOptionTab>

namespace vantrel {
namespace {

/// From the pointer, in points.
constexpr QPoint kOffset{-40, 8};

constexpr double kOpacity = 0.9;

}  // namespace

TabDragImage::TabDragImage(const QStyleOptionTab& tab, QWidget& bar)
    : QLabel(&bar, Qt::ToolTip | Qt::WindowTransparentForInput) {
  QStyleOptionTab alone(tab);
  alone.rect = QRect(QPoint(0, 0), tab.rect.size());
  alone.position = QStyleOptionTab::OnlyOneTab;
  alone.state |= QStyle::State_Selected;
  QPixmap picture(alone.rect.size() * bar.devicePixelRatioF());
  picture.setDevicePixelRatio(bar.devicePixelRatioF());
  picture.fill(bar.palette().color(QPalette::AlternateBase));
  QPainter painter(&picture);
  bar.style()->drawControl(QStyle::CE_TabBarTab, &alone, &painter, &bar);
  painter.end();
  setPixmap(picture);
  setWindowOpacity(kOpacity);
}

void TabDragImage::follow(const QPoint& globalPosition) {
  move(globalPosition + kOffset);
}

}  // namespace vantrel
