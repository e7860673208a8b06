#include "editor/quiet_menu.h"

#include <QPainter>
#include <QStyleOption>
#include <algorithm>

#include "controls/device_pixels.h"
#include "controls/look_palette.h"
#include "controls/plate.h"
#include "controls/symbol_icon.h"

namespace vantrel::QuietMenu {
namespace {

// Points.
constexpr double kItemRadius = 5;
constexpr int kDividerInset = 8;
constexpr int kTextMargin = 10;
constexpr int kKeyGap = 32;
constexpr int kIcon = 14, kIconColumn = 20;
constexpr int kLineMargin = 5;

void drawDivider(const QStyleOption& option, QPainter& painter) {
  QRect line = option.rect.adjusted(kDividerInset, 0, -kDividerInset, 0);
  line.setTop(line.center().y());
  painter.save();
  const double scale = painter.deviceTransform().m11();
  QRect pixels = toDevicePixels(painter, line);
  pixels.setHeight(std::max(1, static_cast<int>(scale)));
  painter.fillRect(pixels, option.palette.color(QPalette::Mid));
  painter.restore();
}

/// Draws the parts of one item; the colours of `item` are those of its state.
class ItemPainter {
 public:
  ItemPainter(const QStyleOptionMenuItem& item, QPainter& painter, const QStyle& style)
      : m_item(item), m_painter(painter), m_style(style) {}

  void drawText(const QRect& rect, const QString& text, Qt::Alignment alignment,
                QPalette::ColorRole role) const {
    const bool underlines = m_style.styleHint(QStyle::SH_UnderlineShortcut, &m_item) != 0;
    const int flags = Qt::TextShowMnemonic | Qt::TextDontClip | Qt::TextSingleLine |
                      (underlines ? 0 : Qt::TextHideMnemonic);
    const Qt::Alignment visual =
        QStyle::visualAlignment(m_item.direction, alignment | Qt::AlignVCenter);
    m_style.drawItemText(&m_painter, mirrored(rect), flags | static_cast<int>(visual),
                         m_item.palette, m_item.state.testFlag(QStyle::State_Enabled), text, role);
  }

  void drawIcon(int left, const QString& name) const {
    QRect icon(left, 0, kIcon, kIcon);
    icon.moveTop(m_item.rect.center().y() - kIcon / 2);
    m_painter.save();
    if (!m_item.state.testFlag(QStyle::State_Enabled)) m_painter.setOpacity(kDisabledOpacity);
    symbolIcon(name, m_item.palette).paint(&m_painter, mirrored(icon));
    m_painter.restore();
  }

 private:
  [[nodiscard]] QRect mirrored(const QRect& rect) const {
    return QStyle::visualRect(m_item.direction, m_item.rect, rect);
  }

  const QStyleOptionMenuItem& m_item;
  QPainter& m_painter;
  const QStyle& m_style;
};

}  // namespace

void drawPanel(const QStyleOption& option, QPainter& painter) {
  painter.fillRect(option.rect, option.palette.color(QPalette::AlternateBase));
}

void drawFrame(const QStyleOption& option, QPainter& painter) {
  painter.save();
  painter.setPen(option.palette.color(QPalette::Mid));
  painter.setBrush(Qt::NoBrush);
  painter.drawRect(option.rect.adjusted(0, 0, -1, -1));
  painter.restore();
}

void drawItem(const QStyleOptionMenuItem& option, QPainter& painter, const QStyle& style) {
  if (option.menuItemType == QStyleOptionMenuItem::Separator && option.text.isEmpty()) {
    drawDivider(option, painter);
    return;
  }
  QStyleOptionMenuItem item = option;
  const bool isLit =
      item.state.testFlag(QStyle::State_Selected) && item.state.testFlag(QStyle::State_Enabled);
  if (isLit) {
    drawPlate(&painter, item.rect, kItemRadius, item.palette.color(QPalette::Highlight), {}, 0);
    const QColor text = item.palette.color(QPalette::HighlightedText);
    for (const auto role : {QPalette::WindowText, QPalette::PlaceholderText})
      item.palette.setColor(role, text);
  }
  painter.save();
  painter.setFont(item.font);
  const ItemPainter parts(item, painter, style);
  QRect line = item.rect.adjusted(kTextMargin, 0, -kTextMargin, 0);
  if (item.menuHasCheckableItems) {
    if (item.checked) parts.drawIcon(line.left(), QStringLiteral("check"));
    line.setLeft(line.left() + kIconColumn);
  }
  if (item.menuItemType == QStyleOptionMenuItem::SubMenu)
    parts.drawIcon(line.right() - kIcon + 1, QStringLiteral("chevron-right"));
  const QStringList texts = item.text.split(u'\t');
  parts.drawText(line, texts.first(), Qt::AlignLeft, QPalette::WindowText);
  if (texts.size() > 1)
    parts.drawText(line, texts.last(), Qt::AlignRight, QPalette::PlaceholderText);
  painter.restore();
}

QSize itemSize(const QStyleOptionMenuItem& item, const QSize& contents) {
  if (item.menuItemType == QStyleOptionMenuItem::Separator && item.text.isEmpty())
    return {contents.width(), kDividerHeight};
  int width = contents.width() + 2 * kTextMargin;
  if (item.menuHasCheckableItems) width += kIconColumn;
  if (item.menuItemType == QStyleOptionMenuItem::SubMenu) width += kIconColumn;
  if (item.text.contains(u'\t')) width += kKeyGap;
  return {width, std::max(contents.height() + 2 * kLineMargin, kItemHeight)};
}

}  // namespace vantrel::QuietMenu
