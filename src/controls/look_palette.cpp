#include "controls/look_palette.h"

#include <QColor>

#include "controls/dark_palette.h"

namespace vantrel {
namespace {

struct Tokens {
  QRgb window, bar, field, button, border, hairline, track;
  QRgb text, secondary, disabled, accent;
};

constexpr Tokens kDark{0xff1f2023, 0xff26272b, 0xff17181a, 0xff35363c, 0xff36373d, 0xff2d2e33,
                       0xff3d3e45, 0xffececef, 0xffa3a5ad, 0xff74767e, 0xff4f8cff};
constexpr Tokens kLight{0xfff5f5f7, 0xfffbfbfc, 0xffffffff, 0xffffffff, 0xffd3d4da, 0xffe3e4e8,
                        0xffd9dae0, 0xff1c1d20, 0xff5f626b, 0xff8b8e97, 0xff2f6fed};

/// Of text over what it lies on: no more than makes an edge seen.
constexpr double kDarkOutline = 0.4, kLightOutline = 0.51, kChosenEdge = 0.58;

constexpr float kUnchosenText = 0.72F;
constexpr float kHandle = 0.6F, kHeldHandle = 0.75F, kHandleEdge = 0.6F;

// Percent.
constexpr int kChosenLighter = 138;
constexpr int kHoverLighter = 112, kColoredHoverLighter = 105, kPressDarker = 112;
constexpr int kColoredSaturation = 128;

/// Of text over a floating panel, through which what is beneath it shines.
constexpr QRgb kDarkPanelCaption = 0xffbbbdc4, kLightPanelCaption = 0xff55585f;

/// Of the inspector.
constexpr QRgb kDarkPanel = 0xff232428, kLightPanel = 0xfff7f7f9;

/// `part` of `top` over the rest of `ground`.
QColor mixed(const QColor& top, const QColor& ground, double part) {
  const auto channel = [part](int upper, int lower) {
    return qRound(upper * part + lower * (1 - part));
  };
  return {channel(top.red(), ground.red()), channel(top.green(), ground.green()),
          channel(top.blue(), ground.blue())};
}

QColor translucent(QColor color, float opacity) {
  color.setAlphaF(opacity);
  return color;
}

QColor edge(const QPalette& palette, double part) {
  return mixed(palette.color(QPalette::Active, QPalette::WindowText),
               palette.color(QPalette::Active, QPalette::Window), part);
}

}  // namespace

QPalette lookPalette(bool dark) {
  const Tokens& token = dark ? kDark : kLight;
  const QColor text(token.text);
  QPalette palette(QColor(token.button), QColor(token.window));
  palette.setColor(QPalette::Window, QColor(token.window));
  palette.setColor(QPalette::Base, QColor(token.field));
  palette.setColor(QPalette::AlternateBase, QColor(token.bar));
  palette.setColor(QPalette::Button, QColor(token.button));
  palette.setColor(QPalette::Mid, QColor(token.border));
  palette.setColor(QPalette::Midlight, QColor(token.hairline));
  palette.setColor(QPalette::Dark, QColor(token.track));
  palette.setColor(QPalette::ToolTipBase, QColor(token.button));
  for (const QPalette::ColorRole role :
       {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::ToolTipText}) {
    palette.setColor(role, text);
    palette.setColor(QPalette::Disabled, role, QColor(token.disabled));
  }
  palette.setColor(QPalette::PlaceholderText, QColor(token.secondary));
  palette.setColor(QPalette::Disabled, QPalette::PlaceholderText,
                   mixed(QColor(token.secondary), QColor(token.window), kDisabledOpacity));
  palette.setColor(QPalette::Highlight, QColor(token.accent));
  // White is too faint on the accent of the dark look.
  palette.setColor(QPalette::HighlightedText, dark ? QColor(token.field) : Qt::white);
  palette.setColor(QPalette::Link, QColor(token.accent));
  return palette;
}

QPalette panelPalette(bool dark) {
  QPalette palette = lookPalette(dark);
  palette.setColor(QPalette::Active, QPalette::PlaceholderText,
                   QColor(dark ? kDarkPanelCaption : kLightPanelCaption));
  palette.setColor(QPalette::Inactive, QPalette::PlaceholderText,
                   palette.color(QPalette::Active, QPalette::PlaceholderText));
  return palette;
}

QPalette inspectorPalette(bool dark) {
  QPalette palette = lookPalette(dark);
  palette.setColor(QPalette::Window, QColor(dark ? kDarkPanel : kLightPanel));
  return palette;
}

QColor outlineColor(const QPalette& palette) {
  return edge(palette, isDark(palette) ? kDarkOutline : kLightOutline);
}

SegmentColors segmentColors(const QPalette& palette) {
  const auto color = [&palette](QPalette::ColorRole role) {
    return palette.color(QPalette::Active, role);
  };
  const QColor text = color(QPalette::WindowText);
  // The secondary colour would be too faint on the track.
  return {color(QPalette::Dark), translucent(text, kUnchosenText),
          color(QPalette::Button).lighter(kChosenLighter), edge(palette, kChosenEdge), text};
}

QColor buttonFill(const QPalette& palette, Touch touch) {
  const QColor fill = palette.color(QPalette::Button);
  if (touch == Touch::none) return fill;
  if (touch == Touch::press) return fill.darker(kPressDarker);
  const bool isColored = fill.saturation() >= kColoredSaturation;
  return fill.lighter(isColored ? kColoredHoverLighter : kHoverLighter);
}

HandleColors scrollHandleColors(const QPalette& palette, bool isHeld) {
  return {translucent(palette.color(QPalette::WindowText), isHeld ? kHeldHandle : kHandle),
          translucent(palette.color(QPalette::Window), kHandleEdge)};
}

QColor panelFill(bool dark) {
  return dark ? QColor(0x20, 0x21, 0x25, 209) : QColor(0xfa, 0xfa, 0xfc, 219);
}

}  // namespace vantrel
