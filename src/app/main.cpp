#include <QApplication>
#include <QCommandLineParser>
#include <QFile>
#include <QLocale>
#include <algorithm>
#include <csignal>
#include <filesystem>
#include <future>
#include <span>
#include <system_error>
#include <thread>
#include <tuple>

#ifdef VANTREL_DEFERS_LIBRARIES
#include "app/deferred_functions.h"
#endif
#include "app/end_signals.h"
#include "app/font_reading.h"
#include "editor/application_look.h"
#include "editor/application_windows.h"
#include "editor/first_paint.h"
#include "export/export_temporary_storage.h"
#include "platform/desktop/formatting.h"
#include "platform/desktop/local_file.h"
#include "platform/desktop/translations.h"
#include "platform/gl/picture_surface.h"
#include "platform/gl/surface_format.h"

namespace {

/// The file that an argument names: as text it may have lost bytes that it had.
std::filesystem::path fileOf(const QString& argument, std::span<char*> arguments) {
  const auto named = std::find_if(arguments.begin(), arguments.end(), [&](const char* bytes) {
    return QString::fromLocal8Bit(bytes) == argument;
  });
  return vantrel::fileOfArgument(named == arguments.end() ? QFile::encodeName(argument).constData()
                                                          : *named);
}

}  // namespace

int main(int argc, char** argv) {
  // Writing to a full disk or a closed pipe is an error to report, not a reason to die.
  std::signal(SIGPIPE, SIG_IGN);
  std::signal(SIGXFSZ, SIG_IGN);

  QSurfaceFormat::setDefaultFormat(vantrel::pictureSurfaceFormat());
  std::promise<void> applicationIsThere;
  std::jthread fonts = vantrel::readFontsAhead(applicationIsThere.get_future());
  QApplication application(argc, argv);
  applicationIsThere.set_value();
  QApplication::setApplicationName(QStringLiteral("Vantrel"));
  QApplication::setApplicationVersion(QStringLiteral(VANTREL_VERSION));
  QApplication::setDesktopFileName(QStringLiteral("org.vantrel.Vantrel"));
  QLocale::setDefault(vantrel::CropFormatting::locale());
  vantrel::installTranslations(vantrel::userLanguages(), vantrel::translationsFolder());
  vantrel::ApplicationLook::install();
  if (fonts.joinable()) fonts.join();

  QCommandLineParser arguments;
  arguments.addHelpOption();
  arguments.addVersionOption();
  arguments.addPositionalArgument(QStringLiteral("FILE"),
                                  QCoreApplication::translate("CommandLine", "Files to open."),
                                  QStringLiteral("[FILE…]"));
  arguments.process(application);

  vantrel::ApplicationWindows windows;
  const vantrel::EndSignals endSignals([&windows] { windows.end(); });
  for (const QString& file : arguments.positionalArguments()) {
    windows.openFile(fileOf(file, {argv, static_cast<size_t>(argc)}));
  }
  if (arguments.positionalArguments().isEmpty()) windows.openEditor();

  // What the first window can do without comes once it is there, before anybody misses it.
  std::jthread libraries;
  vantrel::afterFirstPaint([&libraries] {
#ifdef VANTREL_DEFERS_LIBRARIES
    try {
      libraries = std::jthread(vantrel::loadDeferredFunctions);
    } catch (const std::system_error&) {
      // Without a thread they come when they are called.
    }
#endif
    vantrel::ApplicationLook::installIcon();
    // What a crashed process left behind goes.
    std::ignore = vantrel::ExportTemporaryStorage::shared();
    std::ignore = vantrel::PictureSurface::isSupported();
  });
  return QApplication::exec();
}
