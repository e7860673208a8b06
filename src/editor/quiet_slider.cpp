#include "editor/quiet_slider.h"

#include <QPainter>
#include <QPainterPath>
#include <QPalette>
#include <QStyleOptionSlider>
#include <algorithm>
#include <cmath>

#include "controls/dark_palette.h"
#include "controls/device_pixels.h"
#include "controls/look_palette.h"

namespace vantrel::QuietSlider {
namespace {

// Points.
constexpr double kTrack = 4;

constexpr int kPressDarker = 108;
constexpr QColor kKnobEdge(0, 0, 0, 46), kKnobShadow(0, 0, 0, 26);

// Sizes in device pixels.

void drawTrack(const QStyleOptionSlider& option, const QRectF& rect, const QRectF& disc,
               QPainter& painter) {
  const double scale = disc.width() / kKnob;
  const double height = std::max(2.0, 2 * std::round(kTrack * scale / 2));
  QRectF track(rect.x(), disc.center().y() - height / 2, rect.width(), height);
  // A rest too short to be seen as a part of it would be a speck beside the knob.
  if (disc.left() - track.left() < height) track.setLeft(disc.center().x());
  if (track.right() - disc.right() < height) track.setRight(disc.center().x());
  // Nothing of it is seen through a translucent knob.
  QPainterPath around, knob;
  around.addRect(rect);
  knob.addEllipse(disc);
  painter.setClipPath(around - knob);
  painter.setBrush(option.palette.color(QPalette::Dark));
  painter.drawRoundedRect(track, height / 2, height / 2);
  QRectF filled = track;
  if (option.upsideDown) {
    filled.setLeft(disc.center().x());
  } else {
    filled.setRight(disc.center().x());
  }
  painter.setBrush(option.palette.color(QPalette::Active, QPalette::Highlight));
  painter.drawRoundedRect(filled, height / 2, height / 2);
  painter.setClipping(false);
}

/// The white knob is seen by itself on what is dark.
QColor knobEdge(const QStyleOptionSlider& option, bool isFocused) {
  if (isFocused) return option.palette.color(QPalette::Highlight);
  return isDark(option.palette) ? kKnobEdge : outlineColor(option.palette);
}

void drawKnob(const QStyleOptionSlider& option, const QRectF& disc, QPainter& painter) {
  const double scale = disc.width() / kKnob;
  const bool isFocused = option.state.testFlag(QStyle::State_HasFocus) &&
                         option.state.testFlag(QStyle::State_KeyboardFocusChange);
  const double line =
      isFocused ? std::round(kFocusWidth * scale) : std::max(1.0, std::floor(scale));
  const bool isHeld = option.state.testFlag(QStyle::State_Sunken);
  painter.setPen(Qt::NoPen);
  painter.setBrush(kKnobShadow);
  painter.drawEllipse(disc.translated(0, line));
  painter.setBrush(QColor(Qt::white).darker(isHeld ? kPressDarker : 100));
  painter.drawEllipse(disc);
  painter.setPen(QPen(knobEdge(option, isFocused), line));
  painter.setBrush(Qt::NoBrush);
  painter.drawEllipse(disc.adjusted(line / 2, line / 2, -line / 2, -line / 2));
}

}  // namespace

void draw(const QStyleOptionSlider& option, const QRect& knob, QPainter& painter) {
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  if (!option.state.testFlag(QStyle::State_Enabled)) painter.setOpacity(kDisabledOpacity);
  const double scale = painter.deviceTransform().m11();
  const QRectF rect = toDevicePixels(painter, option.rect);
  const double side = std::round(kKnob * scale);
  const QRectF disc(rect.x() + std::round((knob.x() - option.rect.x()) * scale),
                    rect.y() + std::floor((rect.height() - side) / 2), side, side);
  drawTrack(option, rect, disc, painter);
  drawKnob(option, disc, painter);
  painter.restore();
}

}  // namespace vantrel::QuietSlider
