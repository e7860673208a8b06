#include "controls/link_button.h"

#include <QPainter>

#include "controls/look_palette.h"
#include "controls/panel_text.h"
#include "controls/text_scale.h"

namespace vantrel {
namespace {

// Points.
constexpr int kPadding = 4;
constexpr double kFocusRadius = 4;

}  // namespace

LinkButton::LinkButton(const QString& text, QWidget* parent) : QAbstractButton(parent) {
  setText(text);
  setCursor(Qt::PointingHandCursor);
  setFocusPolicy(Qt::TabFocus);
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
  QFont underlined = font();
  underlined.setUnderline(true);
  setFont(underlined);
  scaleFont(*this, PanelText::kCaptionSize);
}

QSize LinkButton::sizeHint() const {
  return fontMetrics().size(Qt::TextSingleLine, text()) + QSize(2 * kPadding, 2 * kPadding);
}

void LinkButton::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  // Hover and press are felt at once, and a disabled link is as faint as any disabled text.
  const bool isLit = isEnabled() && (underMouse() || isDown());
  painter.setPen(palette().color(isLit ? QPalette::WindowText : QPalette::PlaceholderText));
  painter.drawText(rect(), Qt::AlignCenter, text());
  if (!hasFocus()) return;
  painter.setPen(QPen(palette().color(QPalette::Highlight), kFocusWidth));
  const double inset = kFocusWidth / 2;
  painter.drawRoundedRect(QRectF(rect()).adjusted(inset, inset, -inset, -inset), kFocusRadius,
                          kFocusRadius);
}

void LinkButton::enterEvent(QEnterEvent* event) {
  QAbstractButton::enterEvent(event);
  update();
}

void LinkButton::leaveEvent(QEvent* event) {
  QAbstractButton::leaveEvent(event);
  update();
}

}  // namespace vantrel
