#include "editor/toolbar_icon.h"

#include <QFile>
#include <QPainter>
#include <QPalette>
#include <QPixmap>
#include <QSvgRenderer>

namespace vantrel {
namespace {

// Points.
constexpr int kSize = 18;
// The densest display that the drawing is made for.
constexpr int kLargestRatio = 3;

QPixmap drawing(const QByteArray& svg, const QColor& color, int ratio) {
  QByteArray colored = svg;
  colored.replace("currentColor", color.name(QColor::HexRgb).toLatin1());
  QSvgRenderer renderer(colored);
  QPixmap pixmap(kSize * ratio, kSize * ratio);
  pixmap.fill(Qt::transparent);
  QPainter painter(&pixmap);
  renderer.render(&painter);
  painter.end();
  pixmap.setDevicePixelRatio(ratio);
  return pixmap;
}

}  // namespace

QIcon toolbarIcon(const QString& name, const QPalette& palette) {
  QFile file(QStringLiteral(":/vantrel/icons/") + name + QStringLiteral(".svg"));
  if (!file.open(QIODevice::ReadOnly)) return {};
  const QByteArray svg = file.readAll();
  QIcon icon;
  for (int ratio = 1; ratio <= kLargestRatio; ++ratio) {
    icon.addPixmap(drawing(svg, palette.color(QPalette::Active, QPalette::WindowText), ratio),
                   QIcon::Normal);
    icon.addPixmap(drawing(svg, palette.color(QPalette::Disabled, QPalette::WindowText), ratio),
                   QIcon::Disabled);
  }
  return icon;
}

}  // namespace vantrel
