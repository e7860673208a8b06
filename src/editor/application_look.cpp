#include "editor/application_look.h"

#include <QApplication>
#include <QFontDatabase>
#include <QIcon>
#include <QPainter>
#include <QPixmap>
#include <QStyle>
#include <QSvgRenderer>

#include "editor/quiet_style.h"
#include "editor/system_appearance.h"

namespace vantrel::ApplicationLook {
namespace {

constexpr int kTextPixels = 13;

struct Tokens {
  QRgb window, bar, inspector, field, button, border, hairline;
  QRgb text, secondary, disabled, accent;
};

constexpr Tokens kDark{0xff1f2023, 0xff26272b, 0xff232428, 0xff17181a, 0xff35363c, 0xff36373d,
                       0xff2d2e33, 0xffececef, 0xffa3a5ad, 0xff74767e, 0xff4f8cff};
constexpr Tokens kLight{0xfff5f5f7, 0xfffbfbfc, 0xfff7f7f9, 0xffffffff, 0xffffffff, 0xffd3d4da,
                        0xffe3e4e8, 0xff1c1d20, 0xff5f626b, 0xff8b8e97, 0xff2f6fed};

const Tokens& tokens(bool dark) {
  return dark ? kDark : kLight;
}

/// The panel at the side has a shade of its own.
QPalette inspectorPalette(bool dark) {
  QPalette palette = ApplicationLook::palette(dark);
  palette.setColor(QPalette::Window, QColor(tokens(dark).inspector));
  return palette;
}

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

void setDark(bool dark) {
  QApplication::setPalette(ApplicationLook::palette(dark));
  QApplication::setPalette(inspectorPalette(dark), "vantrel::InspectorView");
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

QPalette palette(bool dark) {
  const Tokens& token = tokens(dark);
  const QColor text(token.text);
  QPalette palette(QColor(token.button), QColor(token.window));
  palette.setColor(QPalette::Window, QColor(token.window));
  palette.setColor(QPalette::Base, QColor(token.field));
  palette.setColor(QPalette::AlternateBase, QColor(token.bar));
  palette.setColor(QPalette::Button, QColor(token.button));
  palette.setColor(QPalette::Mid, QColor(token.border));
  palette.setColor(QPalette::Midlight, QColor(token.hairline));
  palette.setColor(QPalette::ToolTipBase, QColor(token.button));
  for (const QPalette::ColorRole role :
       {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::ToolTipText}) {
    palette.setColor(role, text);
    palette.setColor(QPalette::Disabled, role, QColor(token.disabled));
  }
  palette.setColor(QPalette::PlaceholderText, QColor(token.secondary));
  palette.setColor(QPalette::Disabled, QPalette::PlaceholderText, QColor(token.disabled));
  palette.setColor(QPalette::Highlight, QColor(token.accent));
  palette.setColor(QPalette::HighlightedText, Qt::white);
  palette.setColor(QPalette::Link, QColor(token.accent));
  return palette;
}

void install() {
  QApplication::setWindowIcon(windowIcon());
  if (QApplication::style()->name() != QLatin1String("fusion")) return;
  const auto* system = new SystemAppearance(qApp);
  QApplication::setStyle(new QuietStyle);
  QApplication::setFont(interfaceFont());
  setDark(system->prefersDark());
  QObject::connect(system, &SystemAppearance::changed, qApp,
                   [system] { setDark(system->prefersDark()); });
}

}  // namespace vantrel::ApplicationLook
