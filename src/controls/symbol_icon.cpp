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

/// Draws an icon anew for each size, so that it is sharp on every display.
class SvgIconEngine final : public QIconEngine {
 public:
  SvgIconEngine(QByteArray svg, const QColor& color, const QColor& disabled)
      : m_svg(std::move(svg)), m_color(color), m_disabled(disabled) {}

  void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override {
    const QColor& color = mode == QIcon::Disabled ? m_disabled : m_color;
    QByteArray colored = m_svg;
    colored.replace("currentColor", color.name(QColor::HexRgb).toLatin1());
    QSvgRenderer(colored).render(painter, rect);
  }

  QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
    QPixmap pixmap(size);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    paint(&painter, QRect(QPoint(0, 0), size), mode, state);
    return pixmap;
  }

  [[nodiscard]] QIconEngine* clone() const override { return new SvgIconEngine(*this); }

 private:
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
