#include "controls/panel_backdrop.h"

#include <QImage>
#include <QPainter>
#include <QPainterPath>
#include <QPixmapCache>
#include <algorithm>
#include <cmath>
#include <vector>

#include "controls/dark_palette.h"
#include "controls/device_pixels.h"
#include "controls/look_palette.h"

namespace vantrel {
namespace {

/// A blurred silhouette below the body: how far down it lies and how wide it is smeared, in points.
/// The blur's standard deviation is half its width.
struct Shadow {
  double down, blur;
  float darkOpacity, lightOpacity;
};

constexpr Shadow kShadows[] = {{10, 30, 0.38F, 0.18F}, {1, 3, 0.45F, 0.16F}};
/// Where the shadows have faded out, in points around the body.
constexpr QMargins kReach(38, 28, 38, 48);

struct Look {
  /// Of the body, in device pixels.
  QSize size;
  double devicePixelRatio;
  bool dark;

  [[nodiscard]] QColor fill() const { return panelFill(dark); }
  [[nodiscard]] QColor hairline() const {
    return dark ? QColor(255, 255, 255, 26) : QColor(0, 0, 0, 26);
  }
  [[nodiscard]] int devicePixels(int points) const {
    return static_cast<int>(std::ceil(points * devicePixelRatio));
  }
  /// Where the body lies in the picture of the whole.
  [[nodiscard]] QRect body() const {
    return {QPoint(devicePixels(kReach.left()), devicePixels(kReach.top())), size};
  }
  [[nodiscard]] QSize pictureSize() const {
    const QRect rect = body();
    return {rect.x() + size.width() + devicePixels(kReach.right()),
            rect.y() + size.height() + devicePixels(kReach.bottom())};
  }
};

QPainterPath rounded(const QRectF& rect, double radius) {
  QPainterPath path;
  path.addRoundedRect(rect, radius, radius);
  return path;
}

/// The mean of the 2 × radius + 1 values around each one; nothing lies beyond the ends. Values of
/// one line are `stride` apart, `copy` holds a line.
void blurLine(float* line, size_t count, size_t stride, size_t radius, std::vector<float>& copy) {
  for (size_t i = 0; i < count; ++i)
    copy[i] = line[i * stride];
  const float weight = 1.0F / static_cast<float>(2 * radius + 1);
  float sum = 0;
  for (size_t i = 0; i < std::min(radius, count); ++i)
    sum += copy[i];
  for (size_t i = 0; i < count; ++i) {
    if (i + radius < count) sum += copy[i + radius];
    if (i > radius) sum -= copy[i - radius - 1];
    line[i * stride] = std::max(sum, 0.0F) * weight;
  }
}

/// The silhouette of the body, blurred: three boxes that have together the variance of the normal
/// distribution. One value from 0 to 1 for each pixel of the picture.
std::vector<float> blurredBody(const Look& look, const Shadow& shadow) {
  QImage silhouette(look.pictureSize(), QImage::Format_Grayscale8);
  silhouette.fill(Qt::black);
  QPainter painter(&silhouette);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.fillPath(rounded(look.body().translated(0, qRound(shadow.down * look.devicePixelRatio)),
                           PanelBackdrop::kCornerRadius * look.devicePixelRatio),
                   Qt::white);
  painter.end();

  const auto width = static_cast<size_t>(silhouette.width());
  const auto height = static_cast<size_t>(silhouette.height());
  std::vector<float> plane(width * height);
  for (size_t y = 0; y < height; ++y) {
    const uchar* const row = silhouette.constScanLine(static_cast<int>(y));
    std::transform(row, row + width, &plane[y * width],
                   [](uchar value) { return static_cast<float>(value) / 255; });
  }
  const double deviation = shadow.blur / 2 * look.devicePixelRatio;
  const auto radius =
      static_cast<size_t>(std::lround((std::sqrt(1 + 4 * deviation * deviation) - 1) / 2));
  std::vector<float> copy(std::max(width, height));
  for (int pass = 0; pass < 3; ++pass) {
    for (size_t y = 0; y < height; ++y)
      blurLine(&plane[y * width], width, 1, radius, copy);
    for (size_t x = 0; x < width; ++x)
      blurLine(&plane[x], height, width, radius, copy);
  }
  return plane;
}

QImage shadows(const Look& look) {
  QImage image(look.pictureSize(), QImage::Format_ARGB32_Premultiplied);
  const auto width = static_cast<size_t>(image.width());
  std::vector<float> light(width * static_cast<size_t>(image.height()), 1);
  for (const Shadow& shadow : kShadows) {
    const float opacity = look.dark ? shadow.darkOpacity : shadow.lightOpacity;
    const std::vector<float> plane = blurredBody(look, shadow);
    std::transform(light.begin(), light.end(), plane.begin(), light.begin(),
                   [opacity](float left, float shade) { return left * (1 - opacity * shade); });
  }
  for (int y = 0; y < image.height(); ++y) {
    const float* const row = &light[static_cast<size_t>(y) * width];
    std::transform(row, row + width, reinterpret_cast<QRgb*>(image.scanLine(y)), [](float left) {
      return qRgba(0, 0, 0, static_cast<int>(std::lround((1 - left) * 255)));
    });
  }
  return image;
}

/// The shadow is left out beneath the body, which would show it otherwise.
QPixmap drawn(const Look& look) {
  QImage image = shadows(look);
  const QRectF body = look.body();
  const double radius = PanelBackdrop::kCornerRadius * look.devicePixelRatio;
  const double line = std::max(1.0, std::floor(look.devicePixelRatio));
  QPainterPath edge = rounded(body, radius);
  QPainter painter(&image);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setCompositionMode(QPainter::CompositionMode_DestinationOut);
  painter.fillPath(edge, Qt::black);
  painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
  painter.fillPath(edge, look.fill());
  edge.addPath(rounded(body.adjusted(line, line, -line, -line), radius - line));
  painter.fillPath(edge, look.hairline());
  painter.end();
  return QPixmap::fromImage(image);
}

/// Drawn once for all panels of one look; the cache drops it some time after the last of them.
QPixmap picture(const Look& look) {
  const QString key = QStringLiteral("vantrel-panel-%1x%2-%3-%4")
                          .arg(look.size.width())
                          .arg(look.size.height())
                          .arg(look.devicePixelRatio)
                          .arg(look.dark);
  QPixmap pixmap;
  if (QPixmapCache::find(key, &pixmap)) return pixmap;
  pixmap = drawn(look);
  QPixmapCache::insert(key, pixmap);
  return pixmap;
}

}  // namespace

PanelBackdrop::PanelBackdrop(QWidget* parent) : QWidget(parent) {
  setAttribute(Qt::WA_TransparentForMouseEvents);
  setFocusPolicy(Qt::NoFocus);
}

void PanelBackdrop::setBody(const QRect& body) {
  setGeometry(body.marginsAdded(kReach));
}

void PanelBackdrop::setOpacity(double opacity) {
  if (opacity == m_opacity) return;
  m_opacity = opacity;
  update();
}

void PanelBackdrop::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  const double ratio = painter.deviceTransform().m11();
  const QRect body = toDevicePixels(painter, rect().marginsRemoved(kReach));
  if (body.isEmpty()) return;
  const Look look{body.size(), ratio, isDark(palette())};
  painter.setOpacity(m_opacity);
  m_picture = picture(look);
  painter.drawPixmap(body.topLeft() - look.body().topLeft(), m_picture);
}

}  // namespace vantrel
