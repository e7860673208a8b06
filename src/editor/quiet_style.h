#pragma once

#include <QProxyStyle>

namespace vantrel {

/// Flat fields, buttons and bars over the toolkit's own style. Colours come from the palette:
/// fields are Base, buttons Button, borders Mid, lines between areas Midlight, bars AlternateBase,
/// focus Highlight, tracks of sliders Dark.
class QuietStyle final : public QProxyStyle {
  Q_OBJECT

 public:
  QuietStyle();

  /// Whether anything may move or fade. So it is from the start.
  void setShowsMotion(bool shows) { m_showsMotion = shows; }

  void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;
  void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                   const QWidget* widget) const override;
  void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                          QPainter* painter, const QWidget* widget) const override;
  [[nodiscard]] QRect subControlRect(ComplexControl control, const QStyleOptionComplex* option,
                                     SubControl part, const QWidget* widget) const override;
  [[nodiscard]] QSize sizeFromContents(ContentsType type, const QStyleOption* option,
                                       const QSize& contents, const QWidget* widget) const override;
  [[nodiscard]] QRect subElementRect(SubElement element, const QStyleOption* option,
                                     const QWidget* widget) const override;
  [[nodiscard]] int pixelMetric(PixelMetric metric, const QStyleOption* option,
                                const QWidget* widget) const override;
  [[nodiscard]] int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                              QStyleHintReturn* returned) const override;
  [[nodiscard]] QIcon standardIcon(StandardPixmap which, const QStyleOption* option,
                                   const QWidget* widget) const override;

 private:
  bool m_showsMotion = true;
};

}  // namespace vantrel
