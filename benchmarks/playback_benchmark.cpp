// playback_benchmark: what a MoviePlayer does with a film whose pictures bear their number in bars,
// under an event loop without windows. Prints JSON.
//
//   seek FILM             to each time on standard input, in microseconds, one after the other:
//                         [number shown, milliseconds until it was]
//   scrub FILM SECONDS    60 requests a second, forward over the film and back: `shown` different
//                         pictures in `seconds`, `last` the number shown in the end, `wanted` the
//                         time of the last request in microseconds
//   play FILM SECONDS [draw]
//                         for each picture in the order in which they were shown, [number, seconds
//                         of the film whose sound was heard when it came, or null]; with `draw`
//                         each is drawn into a framebuffer of 1280 × 800 first

#include <QGuiApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QOffscreenSurface>
#include <QOpenGLContext>
#include <QOpenGLFramebufferObject>
#include <QOpenGLFunctions>
#include <QTimer>
#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <functional>
#include <iostream>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "platform/gl/picture_renderer.h"
#include "platform/gl/surface_format.h"
#include "platform/movie/video_picture.h"
#include "platform/player/movie_player.h"

namespace vantrel::bench {
namespace {

using Clock = std::chrono::steady_clock;

constexpr int kBars = 12, kBarWidth = 16;
constexpr QSize kSurface(1280, 800);
/// The canvas keeps this much around a fitted picture, in pixels.
constexpr QSize kAround(240, 192);
constexpr int32_t kMicroseconds = 1'000'000;
constexpr double kRequestsPerSecond = 60;

double secondsSince(Clock::time_point start) {
  return std::chrono::duration<double>(Clock::now() - start).count();
}

/// −1 without a picture.
int barcodeOf(const VideoPicture* picture) {
  if (!picture) return -1;
  const PlaneView& luma = picture->planes[0];
  const uint8_t* row = luma.row(kBarWidth / 2);
  int number = 0;
  for (int bar = 0; bar < kBars; ++bar) {
    const int x = bar * kBarWidth + kBarWidth / 2;
    const int value = luma.bytesPerSample == 1
                          ? row[x]
                          : (row[2 * x] | row[2 * x + 1] << 8) >> (picture->depth - 8);
    if (value > 120) number |= 1 << bar;
  }
  return number;
}

void waitUntil(const std::function<bool()>& isSo) {
  while (!isSo())
    QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
}

void seekTo(MoviePlayer& player, int64_t microseconds) {
  std::optional<bool> answer;
  player.seek({microseconds, kMicroseconds}, [&answer](bool finished) { answer = finished; });
  waitUntil([&answer] { return answer.has_value(); });
  if (!*answer) throw std::runtime_error("a seek has failed");
}

QJsonDocument seek(MoviePlayer& player) {
  QJsonArray landings;
  seekTo(player, 0);
  for (qint64 time = 0; std::cin >> time;) {
    const auto start = Clock::now();
    seekTo(player, time);
    const double milliseconds = secondsSince(start) * 1e3;
    landings.append(QJsonArray{barcodeOf(player.picture().get()), milliseconds});
  }
  return QJsonDocument(landings);
}

/// Where a sweep forward and back is at a part of its way, as a part of the film.
double sweepAt(double part) {
  return 1 - std::abs(2 * part - 1);
}

QJsonDocument scrub(MoviePlayer& player, double seconds) {
  seekTo(player, 0);
  const double length = player.duration() * 0.99;
  int shown = 0;
  QObject::connect(&player, &Player::pictureChanged, [&shown] { ++shown; });
  qint64 wanted = 0;
  int requests = 0, unanswered = 0;
  QTimer timer;
  timer.setTimerType(Qt::PreciseTimer);
  const auto start = Clock::now();
  timer.callOnTimeout([&] {
    const double passed = secondsSince(start);
    // At its own pace, whatever the timer's.
    if (passed * kRequestsPerSecond < requests) return;
    ++requests;
    ++unanswered;
    wanted = std::llround(sweepAt(std::min(passed / seconds, 1.0)) * length * kMicroseconds);
    player.seek({wanted, kMicroseconds}, [&unanswered](bool) { --unanswered; });
  });
  timer.start(2);
  waitUntil([&] { return secondsSince(start) >= seconds; });
  timer.stop();
  const int inTime = shown;
  waitUntil([&unanswered] { return unanswered == 0; });
  return QJsonDocument(QJsonObject{{QStringLiteral("shown"), inTime},
                                   {QStringLiteral("requests"), requests},
                                   {QStringLiteral("seconds"), seconds},
                                   {QStringLiteral("last"), barcodeOf(player.picture().get())},
                                   {QStringLiteral("wanted"), wanted}});
}

/// Draws pictures fitted into a framebuffer.
class Screen {
 public:
  Screen() {
    m_surface.create();
    if (!m_context.create() || !m_context.makeCurrent(&m_surface)) {
      throw std::runtime_error("there is no OpenGL 3.2");
    }
    m_target = std::make_unique<QOpenGLFramebufferObject>(kSurface);
    m_target->bind();
  }
  ~Screen() { m_renderer.release(); }
  Screen(const Screen&) = delete;
  Screen& operator=(const Screen&) = delete;

  void draw(std::shared_ptr<const VideoPicture> picture) {
    const QSizeF fitted = QSizeF(picture->naturalSize.width, picture->naturalSize.height)
                              .scaled(QSizeF(kSurface - kAround), Qt::KeepAspectRatio);
    const QRectF frame(
        QPointF((kSurface.width() - fitted.width()) / 2, (kSurface.height() - fitted.height()) / 2),
        fitted);
    m_renderer.setVideoPicture(std::move(picture));
    m_renderer.draw({kSurface, frame, frame, 1});
    m_context.functions()->glFinish();
  }

 private:
  QOffscreenSurface m_surface;
  QOpenGLContext m_context;
  std::unique_ptr<QOpenGLFramebufferObject> m_target;
  PictureRenderer m_renderer;
};

QJsonDocument play(MoviePlayer& player, double seconds, bool draws) {
  seekTo(player, 0);
  std::optional<Screen> screen;
  if (draws) screen.emplace();
  QJsonArray pictures;
  const auto take = [&] {
    const auto picture = player.picture();
    if (screen) screen->draw(picture);
    const auto heard = player.heardTime();
    pictures.append(
        QJsonArray{barcodeOf(picture.get()), heard ? QJsonValue(*heard) : QJsonValue()});
  };
  take();
  QObject::connect(&player, &Player::pictureChanged, take);
  player.play();
  waitUntil([&] { return player.currentTime() >= seconds || player.rate() == 0; });
  return QJsonDocument(pictures);
}

QJsonDocument run(const std::vector<std::string>& arguments) {
  if (arguments.size() < 2) throw std::runtime_error("what, and which film?");
  MoviePlayer player(Movie::open(arguments[1]));
  if (arguments[0] == "seek") return seek(player);
  if (arguments.size() < 3) throw std::runtime_error("for how many seconds?");
  const double seconds = std::stod(arguments[2]);
  if (arguments[0] == "scrub") return scrub(player, seconds);
  return play(player, seconds, arguments.size() > 3);
}

}  // namespace
}  // namespace vantrel::bench

int main(int argc, char** argv) {
  QSurfaceFormat::setDefaultFormat(vantrel::pictureSurfaceFormat());
  const QGuiApplication application(argc, argv);
  try {
    const auto report = vantrel::bench::run({argv + 1, argv + argc});
    std::puts(report.toJson(QJsonDocument::Compact).constData());
    return 0;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "playback_benchmark: %s\n", error.what());
    return 1;
  }
}
