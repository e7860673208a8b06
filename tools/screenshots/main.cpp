#include <QApplication>
#include <QLocale>
#include <QPalette>
#include <exception>
#include <iostream>

#include "controls/look_palette.h"
#include "editor/application_look.h"
#include "platform/desktop/formatting.h"
#include "platform/gl/surface_format.h"
#include "screenshots/scenes.h"

/// Usage: vantrel-screenshots dark|light PICTURES SAMPLE OUTPUT-FOLDER
int main(int argc, char** argv) {
  QSurfaceFormat::setDefaultFormat(vantrel::pictureSurfaceFormat());
  QApplication application(argc, argv);
  const QStringList arguments = QApplication::arguments();
  if (arguments.size() != 5) {
    std::cerr << "vantrel-screenshots: dark|light PICTURES SAMPLE OUTPUT-FOLDER\n";
    return 64;
  }
  QApplication::setApplicationName(QStringLiteral("Vantrel"));
  QApplication::setQuitOnLastWindowClosed(false);
  QApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
  // A caret that blinks would differ from one picture to the next.
  QApplication::setCursorFlashTime(0);
  QLocale::setDefault(vantrel::CropFormatting::locale());
  // The look takes its start from a desktop that is dark or not.
  QApplication::setPalette(vantrel::lookPalette(arguments[1] == QLatin1String("dark")));
  vantrel::ApplicationLook::install();
  try {
    vantrel::Scenes scenes(vantrel::Photographer(arguments[4]), arguments[2].toStdString(),
                           arguments[3].toStdString());
    scenes.playAll();
  } catch (const std::exception& failure) {
    std::cerr << "vantrel-screenshots: " << failure.what() << '\n';
    return 1;
  }
  return 0;
}
