// canvas_window_benchmark [--width N] [--height N]: opens a picture in a window of 1280 × 800 and
// drives the canvas by events. Prints JSON; times of the main thread are processor time from the
// event until its frame is on its way to the screen, in milliseconds.

#include <QApplication>
#include <QCommandLineParser>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMouseEvent>
#include <QTimer>
#include <QWheelEvent>
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <memory>
#include <vector>

#include "canvas/canvas_scroll_view.h"
#include "canvas/crop_appearance.h"
#include "canvas/crop_overlay_view.h"
#include "canvas/video_canvas_view.h"
#include "model/edit_history.h"
#include "photo.h"
#include "platform/gl/surface_format.h"

namespace vantrel::bench {
namespace {

constexpr QSize kWindow(1280, 800);
constexpr int kSteps = 200;
/// How far the pointer goes in one step of a pan, in points.
constexpr double kPanStep = 12;
/// After so many steps it turns round.
constexpr int kSwing = 50;
constexpr int kGivingUpMilliseconds = 60'000;

/// Processor time of the calling thread in milliseconds.
double processorTime() {
  timespec time{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
  return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
}

struct Times {
  std::vector<double> values;

  [[nodiscard]] double quantile(double fraction) {
    if (values.empty()) return std::nan("");
    std::sort(values.begin(), values.end());
    const auto last = static_cast<double>(values.size() - 1);
    return values[static_cast<size_t>(std::lround(last * fraction))];
  }
  [[nodiscard]] QJsonObject json() {
    return {{QStringLiteral("median"), quantile(0.5)},
            {QStringLiteral("p95"), quantile(0.95)},
            {QStringLiteral("most"), quantile(1)}};
  }
};

Bitmap bitmapOf(Photo photo) {
  auto pixels = std::make_shared<std::vector<uint8_t>>(std::move(photo.pixels));
  const auto* const bytes = reinterpret_cast<const std::byte*>(pixels->data());
  return {photo.width,
          photo.height,
          PixelLayout{},
          std::shared_ptr<const std::byte>(pixels, bytes),
          static_cast<size_t>(photo.width) * 3,
          BitmapColor{}};
}

class Window {
 public:
  explicit Window(const Bitmap& image) {
    m_canvas.canvasColor = CropAppearance::canvas(m_view.palette());
    QObject::connect(&m_view, &CanvasScrollView::cropChanged, [this](const CropMargins& crop) {
      m_canvas.crop = crop;
      m_view.update(m_canvas);
    });
    QObject::connect(&m_view, &CanvasScrollView::zoomChanged, [this](double zoom, bool fit) {
      m_canvas.zoom = zoom;
      m_canvas.fit = fit;
      m_view.update(m_canvas);
    });
    QObject::connect(m_view.canvas(), &PictureSurface::frameDrawn, [this] { ++m_frames; });
    m_history.setPixelStep(1);
    m_view.resize(kWindow);
    m_view.show();
    turnUntil([this] { return m_frames > 0; });
    m_image = image;
  }

  QJsonObject open() {
    Times turns;
    QElapsedTimer clock;
    clock.start();
    m_canvas.image = m_image;
    m_canvas.sourceSize =
        QSizeF(static_cast<double>(m_image.width()), static_cast<double>(m_image.height()));
    m_canvas.crop = {m_image.width() / 4, m_image.height() / 4, m_image.width() / 4,
                     m_image.height() / 4};
    const double before = processorTime();
    m_view.update(m_canvas);
    turns.values.push_back(processorTime() - before);
    turnUntil([this] { return m_view.canvas()->isPictureShown(); }, &turns);
    return {{QStringLiteral("milliseconds"), static_cast<double>(clock.nsecsElapsed()) / 1e6},
            {QStringLiteral("turn"), turns.json()}};
  }

  QJsonObject dragCrop() {
    const QPointF center = QPointF(kWindow.width() / 2.0, kWindow.height() / 2.0);
    mouse(QEvent::MouseButtonPress, center, Qt::LeftButton);
    Times times;
    for (int step = 0; step < kSteps; ++step) {
      times.values.push_back(timed([&] {
        mouse(QEvent::MouseMove, center + 2 * QPointF(swing(step), swing(step) / 2),
              Qt::LeftButton);
      }));
    }
    mouse(QEvent::MouseButtonRelease, center, Qt::LeftButton);
    return times.json();
  }

  QJsonObject zoom() {
    Times times;
    for (int step = 0; step < kSteps; ++step) {
      const int notches = step % 40 < 20 ? 120 : -120;
      times.values.push_back(timed([&] { wheel(notches); }));
    }
    return times.json();
  }

  /// Frames a second, each step of the hand waiting for the frame of the one before.
  QJsonObject pan(double zoom) {
    m_canvas.zoom = zoom;
    m_canvas.fit = false;
    m_view.update(m_canvas);
    const QPointF center = QPointF(kWindow.width() / 2.0, kWindow.height() / 2.0);
    mouse(QEvent::MouseButtonPress, center, Qt::MiddleButton);
    Times times;
    QElapsedTimer clock;
    clock.start();
    for (int step = 0; step < kSteps; ++step) {
      times.values.push_back(timed([&] {
        mouse(QEvent::MouseMove, center - kPanStep * QPointF(swing(step), swing(step) / 2),
              Qt::MiddleButton);
      }));
    }
    const double seconds = static_cast<double>(clock.nsecsElapsed()) / 1e9;
    mouse(QEvent::MouseButtonRelease, center, Qt::MiddleButton);
    return {{QStringLiteral("framesPerSecond"), kSteps / seconds},
            {QStringLiteral("event"), times.json()}};
  }

 private:
  /// To and fro, so that each step moves something: what changes nothing is not drawn.
  static double swing(int step) { return std::abs(step % (2 * kSwing) - kSwing); }

  /// Turns the event loop until `done`; the processor time of each turn goes to `turns`.
  template <typename Done>
  void turnUntil(Done done, Times* turns = nullptr) {
    QTimer wake;
    wake.start(1);
    QElapsedTimer clock;
    clock.start();
    while (!done()) {
      if (clock.elapsed() > kGivingUpMilliseconds) {
        std::fputs("the canvas does not draw\n", stderr);
        std::exit(1);
      }
      const double before = processorTime();
      QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
      if (turns) turns->values.push_back(processorTime() - before);
    }
  }

  /// Main-thread processor time from the event until its frame is on its way to the screen.
  template <typename Send>
  double timed(Send send) {
    const int frames = m_frames;
    const double before = processorTime();
    send();
    turnUntil([&] { return m_frames > frames; });
    return processorTime() - before;
  }

  void mouse(QEvent::Type type, const QPointF& position, Qt::MouseButton button) {
    QWidget* const overlay = m_view.overlay();
    QMouseEvent event(type, position, overlay->mapToGlobal(position),
                      type == QEvent::MouseMove ? Qt::NoButton : button,
                      type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::MouseButtons(button),
                      Qt::NoModifier);
    QCoreApplication::sendEvent(overlay, &event);
  }

  void wheel(int angle) {
    QWidget* const overlay = m_view.overlay();
    const QPointF position(kWindow.width() / 3.0, kWindow.height() / 3.0);
    QWheelEvent event(position, overlay->mapToGlobal(position), {}, {0, angle}, Qt::NoButton,
                      Qt::ControlModifier, Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(overlay, &event);
  }

  Bitmap m_image;
  EditHistory m_history;
  CropCanvas m_canvas;
  CanvasScrollView m_view{m_history};
  int m_frames = 0;
};

}  // namespace
}  // namespace vantrel::bench

int main(int argc, char** argv) {
  using namespace vantrel::bench;
  QSurfaceFormat::setDefaultFormat(vantrel::pictureSurfaceFormat());
  QApplication application(argc, argv);
  QCommandLineParser arguments;
  const QCommandLineOption width(QStringLiteral("width"), QString(), QStringLiteral("N"),
                                 QStringLiteral("12000"));
  const QCommandLineOption height(QStringLiteral("height"), QString(), QStringLiteral("N"),
                                  QStringLiteral("8334"));
  arguments.addOptions({width, height});
  arguments.process(application);

  Window window(bitmapOf(
      makePhoto(arguments.value(width).toLongLong(), arguments.value(height).toLongLong())));
  QJsonObject report;
  report[QStringLiteral("open")] = window.open();
  report[QStringLiteral("drag")] = window.dragCrop();
  report[QStringLiteral("panWhole")] = window.pan(0.25);
  report[QStringLiteral("panPixels")] = window.pan(1);
  report[QStringLiteral("zoom")] = window.zoom();
  std::fputs(QJsonDocument(report).toJson().constData(), stdout);
  return 0;
}
