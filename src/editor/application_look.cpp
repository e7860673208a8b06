#include "editor/application_look.h"

#include <QApplication>
#include <QFontDatabase>
#include <QIcon>
#include <QPainter>
#include <QPixmap>
#include <QPointer>
#include <QStyle>
#include <QSvgRenderer>

#include "controls/look_palette.h"
#include "editor/quiet_style.h"
#include "editor/system_appearance.h"

namespace vantrel::ApplicationLook {
namespace {

constexpr int kTextPixels = 13;

/// The font of a desktop that names none is whatever comes first; an interface font is better.
QFont interfaceFont() {
  QFont font = QApplication::font();
  if (font.family() == QLatin1String("Sans Serif") || font.family() == QLatin1String("Sans")) {
    for (const char* family : {"Inter", "Noto Sans", "Cantarell"}) {
      if (!QFontDatabase::hasFamily(QLatin1String(family))) continue;
      font.setFamily(QLatin1String(family));
      break;
    }
  }
  font.setPixelSize(kTextPixels);
  return font;
}

/// What is pressed is a little stronger than what is read.
QFont buttonFont() {
  QFont font = interfaceFont();
  font.setWeight(QFont::Medium);
  return font;
}

void setDark(bool dark) {
  QApplication::setPalette(lookPalette(dark));
  QApplication::setPalette(inspectorPalette(dark), "vantrel::InspectorView");
  QApplication::setPalette(panelPalette(dark), "vantrel::CropPanel");
}

/// Drawn here, as the plugin that reads SVG into icons is not installed with Qt everywhere.
QIcon windowIcon() {
  QSvgRenderer drawing(QStringLiteral(":/vantrel/icon.svg"));
  QIcon icon;
  for (const int side : {16, 24, 32, 48, 64, 128, 256}) {
    QPixmap pixmap(side, side);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    drawing.render(&painter);
    painter.end();
    icon.addPixmap(pixmap);
  }
  return icon;
}

}  // namespace

void installIcon() {
  QApplication::setWindowIcon(windowIcon());
}

void install() {
  if (QApplication::style()->name() != QLatin1String("fusion")) return;
  const auto* system = new SystemAppearance(qApp);
  auto* const style = new QuietStyle;
  style->setShowsMotion(!system->prefersLessMotion());
  QApplication::setStyle(style);
  QApplication::setFont(interfaceFont());
  QApplication::setFont(buttonFont(), "QPushButton");
  setDark(system->prefersDark());
  QObject::connect(system, &SystemAppearance::changed, qApp, [system, style = QPointer(style)] {
    if (style) style->setShowsMotion(!system->prefersLessMotion());
    setDark(system->prefersDark());
  });
}

}  // namespace vantrel::ApplicationLook
