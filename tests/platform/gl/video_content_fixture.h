#pragma once

#include <gtest/gtest.h>

#include <cmath>
#include <memory>

#include "platform/gl/offscreen_canvas.h"
#include "platform/gl/picture_content.h"
#include "platform/gl/video_picture_maker.h"

namespace vantrel::testing {

inline constexpr QSize kCanvas(160, 120);

/// A picture whose samples are the same in all of each plane.
[[nodiscard]] inline std::shared_ptr<VideoPicture> makeFlat(MadePicture made, int first, int second,
                                                            int third) {
  return makePicture(made, [=](int c, int, int) {
    return c == 0 ? first : c == 1 ? second : third;
  });
}

/// Pictures of videos drawn on a canvas that is blue.
class VideoContentFixture : public ::testing::Test {
 protected:
  VideoContentFixture() : m_canvas(kCanvas) {}
  ~VideoContentFixture() override {
    if (m_content) m_content->release();
  }

  [[nodiscard]] static PictureView viewOf(const QRectF& frame) {
    return {kCanvas, frame, frame, 1};
  }
  QImage drawn(std::shared_ptr<const VideoPicture> picture, const PictureView& view) {
    if (!m_content) {
      m_content = makeVideoContent(std::move(picture));
    } else {
      EXPECT_TRUE(m_content->take(picture));
    }
    m_canvas.clear(Qt::blue);
    m_content->draw(view);
    return m_canvas.image();
  }
  QImage drawn(std::shared_ptr<const VideoPicture> picture, const QRectF& frame) {
    return drawn(std::move(picture), viewOf(frame));
  }
  /// In the middle of a flat picture.
  QColor shown(const std::shared_ptr<const VideoPicture>& picture) {
    return drawn(picture, QRectF(0, 0, 64, 64)).pixelColor(20, 30);
  }

  OffscreenCanvas m_canvas;
  std::unique_ptr<PictureContent> m_content;
};

inline void expectNear(const QColor& color, double red, double green, double blue,
                       double tolerance = 1) {
  EXPECT_NEAR(color.red(), red, tolerance);
  EXPECT_NEAR(color.green(), green, tolerance);
  EXPECT_NEAR(color.blue(), blue, tolerance);
}

}  // namespace vantrel::testing
