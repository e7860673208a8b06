#include "screenshots/photographer.h"

#include <QElapsedTimer>
#include <QEventLoop>
#include <QImage>
#include <QPixmap>
#include <QScreen>
#include <QTimer>
#include <stdexcept>
#include <utility>

namespace vantrel {
namespace {

constexpr int kPatienceMilliseconds = 1'200'000;
constexpr int kLookMilliseconds = 10;
/// What stands still for so long has come to rest.
constexpr int kRestMilliseconds = 400;

void runEvents(int milliseconds) {
  QEventLoop loop;
  QTimer::singleShot(milliseconds, &loop, &QEventLoop::quit);
  loop.exec();
}

QImage onScreen(const QWidget& window) {
  const QRect place = window.geometry();
  return window.screen()
      ->grabWindow(0, place.x(), place.y(), place.width(), place.height())
      .toImage();
}

}  // namespace

void waitUntil(const char* what, const std::function<bool()>& condition) {
  QElapsedTimer clock;
  clock.start();
  while (!condition()) {
    if (clock.elapsed() > kPatienceMilliseconds) {
      throw std::runtime_error(std::string("waited in vain for ") + what);
    }
    runEvents(kLookMilliseconds);
  }
}

Photographer::Photographer(QString folder) : m_folder(std::move(folder)) {}

void Photographer::take(const QWidget& window, const QString& name) const {
  QImage picture = onScreen(window);
  waitUntil("a window at rest", [&] {
    runEvents(kRestMilliseconds);
    return picture == std::exchange(picture, onScreen(window));
  });
  const QString file = m_folder + u'/' + name + QStringLiteral(".png");
  if (!picture.save(file)) throw std::runtime_error("cannot write " + file.toStdString());
}

}  // namespace vantrel
