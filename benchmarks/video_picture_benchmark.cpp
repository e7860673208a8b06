// video_picture_benchmark: uploads and draws pictures of videos on a surface of 1280 × 800, fitted
// and at 100 %, each picture a new one. Prints JSON, in milliseconds: `main`, the median processor
// time of the calling thread until the frame is submitted; `processor`, the median one of all
// threads until it is drawn; `wall`, the shortest time until then, for what other programs take
// away is not ours.

#include <QGuiApplication>
#include <QJsonDocument>
#include <QJsonObject>
#include <QOffscreenSurface>
#include <QOpenGLContext>
#include <QOpenGLFramebufferObject>
#include <QOpenGLFunctions>
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <memory>
#include <stdexcept>
#include <vector>

#include "platform/gl/picture_renderer.h"
#include "platform/gl/surface_format.h"
#include "platform/movie/video_picture.h"

namespace vantrel::bench {
namespace {

constexpr QSize kSurface(1280, 800);
constexpr int kPictures = 40;
/// The canvas keeps this much around a fitted picture, in pixels.
constexpr QSize kAround(240, 192);

double milliseconds(clockid_t clock) {
  timespec time{};
  clock_gettime(clock, &time);
  return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
}

struct Film {
  const char* name = nullptr;
  int width = 0, height = 0, depth = 8;
  ColorTags color{1, 1, 1};
};

/// A 4:2:0 picture of a moving pattern.
std::shared_ptr<const VideoPicture> pictureOf(const Film& film, int number) {
  auto picture = std::make_shared<VideoPicture>();
  picture->depth = film.depth;
  picture->chromaShiftX = picture->chromaShiftY = 1;
  picture->color = film.color;
  picture->naturalSize = {double(film.width), double(film.height)};
  const int bytes = film.depth > 8 ? 2 : 1;
  auto memory = std::make_shared<std::vector<uint8_t>>();
  memory->resize(static_cast<size_t>(film.width) * static_cast<size_t>(film.height) * 2 *
                 static_cast<size_t>(bytes));
  uint8_t* next = memory->data();
  for (size_t i = 0; i < picture->planes.size(); ++i) {
    const int shift = i == 0 ? 0 : 1;
    PlaneView plane{next, ptrdiff_t{film.width >> shift} * bytes, film.width >> shift,
                    film.height >> shift, bytes};
    for (ptrdiff_t at = 0; at < plane.stride * plane.height; at += bytes) {
      const auto sample = static_cast<uint16_t>((at / 7 + number * 31) % (1 << film.depth));
      std::memcpy(next + at, &sample, static_cast<size_t>(bytes));
    }
    next += plane.stride * plane.height;
    picture->planes[i] = plane;
  }
  picture->owner = memory;
  return picture;
}

PictureView viewOf(const Film& film, bool isFitted) {
  const QSizeF size(film.width, film.height);
  const QSizeF room(kSurface - kAround);
  const double scale =
      isFitted ? std::min(room.width() / size.width(), room.height() / size.height()) : 1;
  const QPoint origin(int((kSurface.width() - size.width() * scale) / 2),
                      int((kSurface.height() - size.height() * scale) / 2));
  const QRectF frame(origin, size * scale);
  return {kSurface, frame, frame, 1};
}

double median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  return values[values.size() / 2];
}

QJsonObject measure(const Film& film, bool isFitted) {
  const std::shared_ptr<const VideoPicture> pictures[] = {pictureOf(film, 0), pictureOf(film, 1)};
  const PictureView view = viewOf(film, isFitted);
  PictureRenderer renderer;
  QOpenGLFunctions& gl = *QOpenGLContext::currentContext()->functions();
  std::vector<double> mains, processors, walls;
  for (int i = 0; i < kPictures; ++i) {
    gl.glClear(GL_COLOR_BUFFER_BIT);
    gl.glFinish();
    const double wall = milliseconds(CLOCK_MONOTONIC);
    const double processor = milliseconds(CLOCK_PROCESS_CPUTIME_ID);
    const double main = milliseconds(CLOCK_THREAD_CPUTIME_ID);
    renderer.setVideoPicture(pictures[i % 2]);
    renderer.draw(view);
    mains.push_back(milliseconds(CLOCK_THREAD_CPUTIME_ID) - main);
    gl.glFinish();
    processors.push_back(milliseconds(CLOCK_PROCESS_CPUTIME_ID) - processor);
    walls.push_back(milliseconds(CLOCK_MONOTONIC) - wall);
  }
  renderer.release();
  return {{QStringLiteral("main"), median(mains)},
          {QStringLiteral("processor"), median(processors)},
          {QStringLiteral("wall"), *std::min_element(walls.begin(), walls.end())}};
}

void run() {
  QOffscreenSurface surface;
  surface.create();
  QOpenGLContext context;
  if (!context.create() || !context.makeCurrent(&surface))
    throw std::runtime_error("there is no OpenGL 3.2");
  QOpenGLFramebufferObject target(kSurface);
  target.bind();
  QJsonObject report;
  for (const Film& film : {Film{"hd", 1920, 1080}, Film{"uhd", 3840, 2160, 10},
                           Film{"uhdPq", 3840, 2160, 10, {9, 16, 9}}}) {
    report[QLatin1String(film.name)] =
        QJsonObject{{QStringLiteral("fitted"), measure(film, true)},
                    {QStringLiteral("pixels"), measure(film, false)}};
  }
  std::puts(QJsonDocument(report).toJson(QJsonDocument::Compact).constData());
}

}  // namespace
}  // namespace vantrel::bench

int main(int argc, char** argv) {
  QSurfaceFormat::setDefaultFormat(vantrel::pictureSurfaceFormat());
  const QGuiApplication application(argc, argv);
  try {
    vantrel::bench::run();
    return 0;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "video_picture_benchmark: %s\n", error.what());
    return 1;
  }
}
