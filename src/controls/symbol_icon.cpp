#include "controls/symbol_icon.h"

#include <QFile>
#include <QIconEngine>
#include <QPainter>
#include <QPalette>
#include <QPixmap>
#include <QSvgRenderer>
#include <utility>

namespace vantrel {
namespace {

/// How the drawings are stroked, for icons of the tool bar's size in points.
constexpr double kStrokeWidth = 1.75, kFullSide = 18;
constexpr char kStroke[] = "stroke-width=\"1.75\"";

/// Draws an icon anew for each size, so that it is sharp on every display.
class SvgIconEngine final : public QIconEngine {
 public:
  SvgIconEngine(QByteArray svg, const QColor& color, const QColor& disabled)
      : m_svg(std::move(svg)), m_color(color), m_disabled(disabled) {}

  void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override {
    draw(*painter, rect, rect.width(), mode);
  }

  QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
    return scaledPixmap(size, mode, state, 1);
  }

  QPixmap scaledPixmap(const QSize& size, QIcon::Mode mode, QIcon::State, qreal scale) override {
    QPixmap pixmap(size);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    draw(painter, QRect(QPoint(0, 0), size), size.width() / scale, mode);
    return pixmap;
  }

  [[nodiscard]] QIconEngine* clone() const override { return new SvgIconEngine(*this); }

 private:
  /// `side` is in points: strokes are of equal weight, however small the icon is.
  void draw(QPainter& painter, const QRect& rect, double side, QIcon::Mode mode) const {
    const QColor& color = mode == QIcon::Disabled ? m_disabled : m_color;
    QByteArray drawing = m_svg;
    drawing.replace("currentColor", color.name(QColor::HexRgb).toLatin1());
    if (side > 0 && side < kFullSide) {
      drawing.replace(
          kStroke, "stroke-width=\"" + QByteArray::number(kStrokeWidth * kFullSide / side) + "\"");
    }
    QSvgRenderer(drawing).render(&painter, rect);
  }

  QByteArray m_svg;
  QColor m_color, m_disabled;
};

QIcon icon(const QString& name, const QPalette& palette, QPalette::ColorRole role) {
  QFile file(QStringLiteral(":/vantrel/icons/") + name + QStringLiteral(".svg"));
  if (!file.open(QIODevice::ReadOnly)) return {};
  return QIcon(new SvgIconEngine(file.readAll(), palette.color(QPalette::Active, role),
                                 palette.color(QPalette::Disabled, role)));
}

}  // namespace

QIcon symbolIcon(const QString& name, const QPalette& palette) {
  return icon(name, palette, QPalette::WindowText);
}

QIcon secondaryIcon(const QString& name, const QPalette& palette) {
  return icon(name, palette, QPalette::PlaceholderText);
}

}  // namespace vantrel
