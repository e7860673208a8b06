#include <gtest/gtest.h>

#include <QApplication>
#include <QPushButton>
#include <QTest>
#include <QToolButton>
#include <string>

#include "controls/crop_number_field.h"
#include "editor/application_windows.h"
#include "editor/editor_view.h"
#include "editor/editor_window.h"
#include "editor/editor_workspace.h"
#include "inspector/crop_export_footer.h"
#include "inspector/crop_section.h"
#include "inspector/inspector_view.h"
#include "playback/playback_controls.h"
#include "review/review_window.h"
#include "support/film_folder.h"

namespace vantrel {
namespace {

QList<ReviewWindow*> reviews() {
  QList<ReviewWindow*> found;
  for (QWidget* widget : QApplication::topLevelWidgets()) {
    auto* review = qobject_cast<ReviewWindow*>(widget);
    if (review && review->isVisible()) found << review;
  }
  return found;
}

/// "hevc,140,120" or the like.
std::string pictureOf(const std::filesystem::path& film) {
  return testing::runFfprobe({"-select_streams", "v", "-show_entries",
                              "stream=codec_name,width,height", "-of", "csv=p=0", film.string()});
}

TEST(VideoJourney, PlaysCropsAndExportsInBothCodecsToAReviewEach) {
  const testing::FilmFolder films;
  films.make("clip.mp4");
  ApplicationWindows windows;
  EditorWindow* const editor = windows.openFile(films / "clip.mp4");
  editor->activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(editor));
  EditorState& state = editor->view()->state();
  PlaybackControls* const bar = editor->view()->workspace()->playback();
  ASSERT_TRUE(QTest::qWaitFor([&] { return bar->isVisible() && !state.busy(); }));

  QTest::mouseClick(bar->playButton(), Qt::LeftButton);
  ASSERT_TRUE(QTest::qWaitFor([&] { return state.player()->currentTime() > 0; }));
  InspectorView* const inspector = editor->view()->inspector();
  CropNumberField* const left = inspector->cropSection()->marginField(CropMargins::Edge::left);
  QTest::mouseClick(left, Qt::LeftButton);
  QTest::keyClicks(left, QStringLiteral("20"));
  QTest::keyClick(left, Qt::Key_Return);

  QPushButton* const exportButton = inspector->footer()->exportButton();
  QTest::mouseClick(exportButton, Qt::LeftButton);
  ASSERT_TRUE(QTest::qWaitFor([] { return reviews().size() == 1; }, 30'000));
  ReviewWindow* const first = reviews().first();
  EXPECT_EQ(pictureOf(first->document().temporaryExportPath()), "hevc,140,120\n");

  state.history().setCodec(EncodingSettings::Codec::h264);
  editor->activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(editor));
  ASSERT_TRUE(QTest::qWaitFor([&] { return exportButton->isEnabled(); }));
  QTest::mouseClick(exportButton, Qt::LeftButton);
  ASSERT_TRUE(QTest::qWaitFor([] { return reviews().size() == 2; }, 30'000));
  for (ReviewWindow* review : reviews()) {
    EXPECT_EQ(review->document().displayName(), QStringLiteral("clip-framed"));
    if (review != first) {
      EXPECT_EQ(pictureOf(review->document().temporaryExportPath()), "h264,140,120\n");
    }
  }
  qDeleteAll(reviews());
  delete editor;
}

}  // namespace
}  // namespace vantrel
