#include "controls/picture_preview.h"

#include <gtest/gtest.h>

#include <QSignalSpy>
#include <QTest>
#include <atomic>
#include <latch>
#include <memory>
#include <stdexcept>
#include <thread>

#include "base/cancelled.h"

namespace vantrel {
namespace {

QImage plain(const QSize& size, Qt::GlobalColor color) {
  QImage image(size, QImage::Format_RGBA8888_Premultiplied);
  image.fill(color);
  return image;
}

PicturePreview::Render plainRender(Qt::GlobalColor color) {
  return [color](const QSize& size, const std::stop_token&) { return plain(size, color); };
}

bool settles(const PicturePreview& preview) {
  return QTest::qWaitFor([&preview] { return !preview.isRendering(); });
}

TEST(PicturePreview, RendersWhatItIsGivenAtTheSizeItIsGiven) {
  PicturePreview preview;
  QSignalSpy changed(&preview, &PicturePreview::imageChanged);
  preview.setPicture(plainRender(Qt::red));
  EXPECT_FALSE(preview.isRendering());
  preview.setSize({30, 20});
  ASSERT_TRUE(changed.wait());
  EXPECT_EQ(preview.image().size(), QSize(30, 20));
  EXPECT_EQ(preview.image().pixelColor(3, 3), QColor(Qt::red));
}

TEST(PicturePreview, KeepsTheOldRenderingUntilTheNewSizeIsThere) {
  PicturePreview preview;
  preview.setPicture(plainRender(Qt::red));
  preview.setSize({30, 20});
  ASSERT_TRUE(settles(preview));
  preview.setSize({60, 40});
  EXPECT_EQ(preview.image().size(), QSize(30, 20));
  ASSERT_TRUE(settles(preview));
  EXPECT_EQ(preview.image().size(), QSize(60, 40));
}

TEST(PicturePreview, NeverShowsAnotherPicturesRendering) {
  PicturePreview preview;
  preview.setSize({8, 8});
  preview.setPicture(plainRender(Qt::red));
  ASSERT_TRUE(settles(preview));
  preview.setPicture(plainRender(Qt::blue));
  EXPECT_TRUE(preview.image().isNull());
  ASSERT_TRUE(settles(preview));
  EXPECT_EQ(preview.image().pixelColor(0, 0), QColor(Qt::blue));
  preview.setPicture({});
  EXPECT_TRUE(preview.image().isNull());
  EXPECT_FALSE(preview.isRendering());
}

TEST(PicturePreview, CancelsWhatIsOutOfDateWithoutWaitingForIt) {
  const auto started = std::make_shared<std::latch>(1);
  const auto cancelled = std::make_shared<std::atomic<int>>(0);
  PicturePreview preview;
  preview.setPicture([=](const QSize& size, const std::stop_token& stop) {
    if (size.width() > 10) return plain(size, Qt::green);
    started->count_down();
    while (!stop.stop_requested())
      std::this_thread::yield();
    ++*cancelled;
    throw Cancelled();
  });
  preview.setSize({10, 10});
  started->wait();
  preview.setSize({11, 11});
  preview.setSize({12, 12});
  ASSERT_TRUE(settles(preview));
  EXPECT_EQ(*cancelled, 1);
  EXPECT_EQ(preview.image().size(), QSize(12, 12));
}

TEST(PicturePreview, ShowsNothingWhenRenderingFails) {
  PicturePreview preview;
  QSignalSpy changed(&preview, &PicturePreview::imageChanged);
  preview.setPicture(
      [](const QSize&, const std::stop_token&) -> QImage { throw std::runtime_error("broken"); });
  preview.setSize({5, 5});
  ASSERT_TRUE(changed.wait());
  EXPECT_TRUE(preview.image().isNull());
  EXPECT_FALSE(preview.isRendering());
}

TEST(PicturePreview, CancelsAndJoinsWhenItGoes) {
  const auto started = std::make_shared<std::latch>(1);
  const auto ended = std::make_shared<std::atomic<bool>>(false);
  auto preview = std::make_unique<PicturePreview>();
  preview->setPicture([=](const QSize&, const std::stop_token& stop) -> QImage {
    started->count_down();
    while (!stop.stop_requested())
      std::this_thread::yield();
    *ended = true;
    throw Cancelled();
  });
  preview->setSize({5, 5});
  started->wait();
  preview.reset();
  EXPECT_TRUE(*ended);
}

}  // namespace
}  // namespace vantrel
