#include <gtest/gtest.h>

#include <QLabel>
#include <QSignalSpy>
#include <QTest>

#include "review/export_information.h"
#include "review/player_surface.h"
#include "review/review_controls.h"
#include "review/review_window.h"
#include "review/video_review_view.h"
#include "support/film_folder.h"
#include "support/warnings.h"

namespace vantrel {
namespace {

bool saysWhy(const VideoReviewView& view) {
  for (const QLabel* label : view.findChildren<QLabel*>()) {
    if (label->isVisible() && label->text().startsWith(QStringLiteral("The video cannot be shown")))
      return true;
  }
  return false;
}

TEST(ReviewWithoutOpenGL, ShowsSummaryAndControlsOnBlackAndSaves) {
  const testing::ExpectedWarning poor(QStringLiteral("This plugin does not support"));
  ASSERT_FALSE(PictureSurface::isSupported()) << "this platform is not without it";
  const testing::FilmFolder films;
  films.make("film.mov");
  const std::filesystem::path file = films / "Vantrel-1.mov";
  std::filesystem::copy_file(films / "film.mov", file);
  ReviewWindow window(std::make_unique<ExportReviewDocument>(FinishedExport{
      TemporaryExport(file), {}, ContentType::quickTimeMovie(), QStringLiteral("film-framed")}));
  window.setAttribute(Qt::WA_DeleteOnClose, false);
  window.show();
  auto* const view = qobject_cast<VideoReviewView*>(window.centralWidget());
  ASSERT_NE(view, nullptr);
  EXPECT_EQ(view->surface(), nullptr);
  ASSERT_TRUE(QTest::qWaitFor([&] { return window.document().reviewPlayer() != nullptr; }));
  EXPECT_TRUE(view->information()->isVisible());
  EXPECT_TRUE(view->controls()->isVisible());
  const QImage shown = view->grab().toImage();
  EXPECT_EQ(shown.pixelColor(shown.width() / 2, shown.height() / 4), QColor(Qt::black));
  EXPECT_TRUE(saysWhy(*view));

  window.document().playback().togglePlayback();
  ASSERT_TRUE(QTest::qWaitFor([&] { return !window.document().playback().isPlaying(); }, 60000));
  QSignalSpy saved(&window.document(), &ExportReviewDocument::saved);
  window.document().save(films / "saved.mov");
  ASSERT_TRUE(saved.wait());
  EXPECT_TRUE(window.close());
}

}  // namespace
}  // namespace vantrel
