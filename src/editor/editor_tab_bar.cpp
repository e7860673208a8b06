#include "editor/editor_tab_bar.h"

#include <QAbstractButton>
#include <QContextMenuEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QPainter>
#include <QStyleOptionTab>
#include <QToolButton>
#include <algorithm>
#include <utility>

#include "canvas/crop_appearance.h"
#include "controls/text_scale.h"
#include "editor/tab_drag_image.h"

namespace vantrel {
namespace {

// Points.
constexpr int kWidth = 154;
constexpr int kNarrowest = 100;
/// Between the bar and a pointer that has left it.
constexpr int kAwayDistance = 20;
constexpr int kProgressHeight = 2;
constexpr int kProgressInset = 14;
/// Above the lower edge of a tab.
constexpr int kProgressRise = 6;

/// `text` for a tool tip, which would read markup in it.
QString plainToolTip(const QString& text) {
  return Qt::mightBeRichText(text) ? QStringLiteral("<p>%1</p>").arg(text.toHtmlEscaped()) : text;
}

}  // namespace

EditorTabBar::EditorTabBar(QWidget* parent) : QTabBar(parent) {
  setMovable(true);
  setTabsClosable(true);
  setExpanding(false);
  setDrawBase(false);
  setDocumentMode(true);
  setElideMode(Qt::ElideMiddle);
  setUsesScrollButtons(true);
  setAccessibleName(tr("Tabs"));
  // Those that scroll.
  for (auto* button : findChildren<QToolButton*>()) {
    button->setAutoRaise(true);
    button->setFocusPolicy(Qt::NoFocus);
  }
  connect(this, &QTabBar::tabMoved, this, &EditorTabBar::followMove);
}

EditorTabBar::~EditorTabBar() {
  delete m_dragImage;
}

void EditorTabBar::setTabName(int index, const QString& name) {
  setTabToolTip(index, plainToolTip(name));
  QString text = name;
  text.replace(u'&', QStringLiteral("&&"));
  if (text != tabText(index)) setTabText(index, text);
}

void EditorTabBar::setTabProgress(int index, std::optional<double> progress) {
  if (progress == tabProgress(index)) return;
  setTabData(index, progress ? QVariant(*progress) : QVariant());
  update();
}

std::optional<double> EditorTabBar::tabProgress(int index) const {
  const QVariant value = tabData(index);
  return value.isValid() ? std::optional(value.toDouble()) : std::nullopt;
}

int EditorTabBar::insertionIndex(const QPoint& position) const {
  const bool isMirrored = layoutDirection() == Qt::RightToLeft;
  for (int index = 0; index < count(); ++index) {
    const int center = tabRect(index).center().x();
    if (isMirrored ? position.x() > center : position.x() < center) return index;
  }
  return count();
}

bool EditorTabBar::isTabOff() const {
  return m_dragImage != nullptr;
}

void EditorTabBar::endDrag() {
  m_middlePressed = -1;
  if (m_held < 0) return;
  letGo();
  const QPoint position = rect().center();
  QMouseEvent release(QEvent::MouseButtonRelease, position, mapToGlobal(position), Qt::LeftButton,
                      Qt::NoButton, Qt::NoModifier);
  QTabBar::mouseReleaseEvent(&release);
}

QSize EditorTabBar::tabSizeHint(int index) const {
  return {scaledForText(kWidth), QTabBar::tabSizeHint(index).height()};
}

QSize EditorTabBar::minimumTabSizeHint(int index) const {
  return {scaledForText(kNarrowest), QTabBar::tabSizeHint(index).height()};
}

void EditorTabBar::tabInserted(int index) {
  QTabBar::tabInserted(index);
  endDrag();
  for (const ButtonPosition side : {LeftSide, RightSide}) {
    if (QWidget* const button = tabButton(index, side)) button->setAccessibleName(tr("Close Tab"));
  }
  m_closeButtons.update();
}

void EditorTabBar::tabRemoved(int index) {
  QTabBar::tabRemoved(index);
  endDrag();
}

void EditorTabBar::paintEvent(QPaintEvent* event) {
  QTabBar::paintEvent(event);
  QPainter painter(this);
  for (int index = 0; index < count(); ++index) {
    const auto progress = tabProgress(index);
    if (!progress) continue;
    QRect line = tabRect(index).adjusted(kProgressInset, 0, -kProgressInset, 0);
    line.setTop(line.bottom() - kProgressRise);
    line.setHeight(kProgressHeight);
    painter.fillRect(line, palette().color(QPalette::Dark));
    QRect done = line;
    done.setWidth(static_cast<int>(line.width() * std::clamp(*progress, 0.0, 1.0)));
    painter.fillRect(QStyle::visualRect(layoutDirection(), line, done),
                     CropAppearance::exportAccent());
  }
}

void EditorTabBar::mousePressEvent(QMouseEvent* event) {
  const int index = tabAt(event->position().toPoint());
  m_middlePressed = event->button() == Qt::MiddleButton ? index : -1;
  if (event->button() == Qt::LeftButton) m_held = index;
  QTabBar::mousePressEvent(event);
  event->accept();
}

void EditorTabBar::mouseMoveEvent(QMouseEvent* event) {
  // A release may get lost to a menu or to another program.
  if (!event->buttons().testFlag(Qt::LeftButton)) letGo();
  if (m_held >= 0 && count() > 1) {
    const bool away = isAway(event->position());
    if (away && !isTabOff()) takeOff(*event);
    if (!away && isTabOff()) putBack(*event);
  }
  if (isTabOff()) {
    m_dragImage->follow(event->globalPosition().toPoint());
  } else {
    QTabBar::mouseMoveEvent(event);
  }
}

void EditorTabBar::mouseReleaseEvent(QMouseEvent* event) {
  const QPoint position = event->position().toPoint();
  if (event->button() == Qt::MiddleButton && m_middlePressed >= 0) {
    if (tabAt(position) == m_middlePressed) Q_EMIT tabCloseRequested(m_middlePressed);
    m_middlePressed = -1;
    return;
  }
  const int held = m_held;
  const bool isOff = isTabOff();
  if (event->button() == Qt::LeftButton) letGo();
  if (!isOff) {
    QTabBar::mouseReleaseEvent(event);
  } else if (event->button() == Qt::LeftButton) {
    Q_EMIT tornOff(held, event->globalPosition().toPoint());
  }
}

bool EditorTabBar::isAway(const QPointF& position) const {
  return position.y() < -kAwayDistance || position.y() > height() + kAwayDistance;
}

void EditorTabBar::takeOff(const QMouseEvent& event) {
  // Within the bar, the drag has ended.
  QMouseEvent release(QEvent::MouseButtonRelease, tabRect(m_held).center(), event.globalPosition(),
                      Qt::LeftButton, Qt::NoButton, event.modifiers());
  QTabBar::mouseReleaseEvent(&release);
  QStyleOptionTab tab;
  initStyleOption(&tab, m_held);
  m_dragImage = new TabDragImage(tab, *this);
  m_dragImage->follow(event.globalPosition().toPoint());
  m_dragImage->show();
  grabKeyboard();
}

void EditorTabBar::putBack(const QMouseEvent& event) {
  const int held = m_held;
  letGo();
  m_held = held;
  QMouseEvent press(QEvent::MouseButtonPress, tabRect(held).center(), event.globalPosition(),
                    Qt::LeftButton, Qt::LeftButton, event.modifiers());
  QTabBar::mousePressEvent(&press);
}

void EditorTabBar::letGo() {
  m_held = -1;
  if (!isTabOff()) return;
  releaseKeyboard();
  delete m_dragImage;
}

void EditorTabBar::followMove(int from, int to) {
  if (m_held == from) {
    m_held = to;
  } else if (from < m_held && m_held <= to) {
    --m_held;
  } else if (to <= m_held && m_held < from) {
    ++m_held;
  }
}

void EditorTabBar::keyPressEvent(QKeyEvent* event) {
  if (isTabOff()) {
    if (event->key() == Qt::Key_Escape) letGo();
    return;
  }
  QTabBar::keyPressEvent(event);
}

void EditorTabBar::hideEvent(QHideEvent* event) {
  letGo();
  QTabBar::hideEvent(event);
}

void EditorTabBar::contextMenuEvent(QContextMenuEvent* event) {
  const bool byMouse = event->reason() == QContextMenuEvent::Mouse;
  const int index = byMouse ? tabAt(event->pos()) : currentIndex();
  if (index < 0) return;
  auto* const menu = new QMenu(this);
  menu->setAttribute(Qt::WA_DeleteOnClose);
  menu->addAction(tr("Close Tab"), this, [this, index] { Q_EMIT tabCloseRequested(index); });
  menu->addAction(tr("Close Other Tabs"), this,
                  [this, index] { Q_EMIT closeOthersRequested(index); });
  menu->addSeparator();
  menu->addAction(tr("Move Tab to New Window"), this,
                  [this, index] { Q_EMIT newWindowRequested(index); });
  menu->popup(byMouse ? event->globalPos() : mapToGlobal(tabRect(index).bottomLeft()));
}

}  // namespace vantrel
