#include <QLabel>
#include <QToolButton>
#include <algorithm>
#include <string>
#include <utility>

#include "editor/editor_workspace.h"
#include "journey/journey.h"
#include "journey/numbered_waves.h"
#include "playback/playback_controls.h"
#include "support/film_folder.h"

namespace vantrel {
namespace {

using Codec = EncodingSettings::Codec;
using testing::activate;
using testing::visible;
using testing::waitUntilGone;

class VideoJourney : public testing::Journey {
 protected:
  static constexpr int kExportMilliseconds = 120'000;

  /// As the user chooses it.
  void chooseCodec(Codec codec) { state().history().setCodec(codec); }

  /// Exports in this codec and saves what the new review shows.
  void exportTo(Codec codec, const std::filesystem::path& path) {
    chooseCodec(codec);
    ASSERT_TRUE(activate(editor));
    ASSERT_TRUE(QTest::qWaitFor([this] { return footer()->exportButton()->isEnabled(); }));
    const QList<ReviewWindow*> before = visible<ReviewWindow>();
    click(footer()->exportButton());
    ASSERT_TRUE(QTest::qWaitFor([&] { return visible<ReviewWindow>().size() == before.size() + 1; },
                                kExportMilliseconds));
    for (ReviewWindow* review : visible<ReviewWindow>()) {
      if (before.contains(review)) continue;
      ASSERT_NO_FATAL_FAILURE(save(review, path));
    }
  }
  /// "hevc aac" or the like.
  static std::string codecsOf(const std::filesystem::path& film) {
    std::string names = testing::runFfprobe(
        {"-show_entries", "stream=codec_name", "-of", "csv=p=0", film.string()});
    std::replace(names.begin(), names.end(), '\n', ' ');
    return names.substr(0, names.size() - 1);
  }
};

TEST_F(VideoJourney, CropsAtOddOffsetsAndExportsInBothCodecs) {
  constexpr int kPictures = 30;
  testing::NumberedWaves::make(folder / "clip.mp4", kPictures);
  const std::string original = testing::readFile(folder / "clip.mp4");
  ASSERT_NO_FATAL_FAILURE(openByDialog(folder / "clip.mp4"));
  PlaybackControls* const bar = editor->view()->workspace()->playback();
  click(bar->playButton());
  ASSERT_TRUE(QTest::qWaitFor([this] { return state().player()->currentTime() > 0; }));

  type(Edge::left, QStringLiteral("30"));
  press(Qt::Key_Tab);
  type(Edge::top, QStringLiteral("16"));
  press(Qt::Key_Tab);
  type(Edge::right, QStringLiteral("14"));
  press(Qt::Key_Tab);
  type(Edge::bottom, QStringLiteral("10"));
  press(Qt::Key_Return);
  // Its size stays even; where it lies is free.
  const QPoint middle = overlay()->overlay().selection().center().toPoint();
  QTest::mouseClick(editor->windowHandle(), Qt::LeftButton, {}, inWindow(overlay(), middle));
  press(Qt::Key_Right);
  press(Qt::Key_Down);
  EXPECT_EQ(crop(), (CropMargins{31, 17, 13, 9}));

  ASSERT_NO_FATAL_FAILURE(exportTo(Codec::h264, folder / "saved-h264.mov"));
  ASSERT_NO_FATAL_FAILURE(exportTo(Codec::hevc, folder / "saved-hevc.mov"));
  EXPECT_EQ(state().player()->rate(), 0);
  EXPECT_EQ(visible<ReviewWindow>().size(), 2);
  for (ReviewWindow* review : visible<ReviewWindow>()) {
    EXPECT_EQ(review->document().displayName(), QStringLiteral("clip-framed"));
    review->close();
  }
  ASSERT_TRUE(waitUntilGone<ReviewWindow>());

  EXPECT_EQ(codecsOf(folder / "saved-h264.mov"), "h264 aac");
  EXPECT_EQ(codecsOf(folder / "saved-hevc.mov"), "hevc aac");
  for (const char* name : {"saved-h264.mov", "saved-hevc.mov"}) {
    SCOPED_TRACE(name);
    testing::NumberedWaves::expectCut(folder / name, kPictures, 31, 17, 116, 94);
  }
  EXPECT_EQ(testing::readFile(folder / "clip.mp4"), original);
  EXPECT_TRUE(testing::sessionFiles().empty());
}

TEST_F(VideoJourney, CancelsHalfWayAndExportsAnew) {
  const testing::FilmFolder films;
  films.make("short.mp4", {"-an"});
  films.makeRepeated("short.mp4", "long.mp4", 100);
  ASSERT_NO_FATAL_FAILURE(open(films / "long.mp4"));
  type(Edge::left, QStringLiteral("80"));
  press(Qt::Key_Return);
  const CropEdit edit = state().history().value();
  const Player* const player = state().player();
  const EditorState::Camera camera = state().camera();

  click(footer()->exportButton());
  const auto progress = [this] { return state().exportState().progress().value_or(0); };
  ASSERT_TRUE(QTest::qWaitFor([&] { return progress() > 0.1; }, kExportMilliseconds));
  ASSERT_LT(progress(), 0.9);
  EXPECT_EQ(testing::sessionFiles().size(), 1U);
  click(footer()->cancelButton());
  ASSERT_TRUE(QTest::qWaitFor([this] { return !state().busy(); }, kExportMilliseconds));
  QCoreApplication::processEvents();

  EXPECT_EQ(footer()->statusLabel()->text(), QStringLiteral("Export cancelled"));
  EXPECT_TRUE(visible<QMessageBox>().isEmpty());
  EXPECT_TRUE(visible<ReviewWindow>().isEmpty());
  EXPECT_TRUE(testing::sessionFiles().empty());
  EXPECT_EQ(state().history().value(), edit);
  EXPECT_TRUE(state().history().canUndo());
  EXPECT_EQ(state().player(), player);
  EXPECT_EQ(state().camera(), camera);
  EXPECT_TRUE(editor->view()->canvas()->isEnabled());
  EXPECT_TRUE(footer()->exportButton()->isEnabled());

  ASSERT_NO_FATAL_FAILURE(exportTo(Codec::h264, films / "saved.mov"));
  EXPECT_EQ(codecsOf(films / "saved.mov"), "h264");
  EXPECT_EQ(Movie::open(films / "saved.mov").duration().seconds(), 100);
}

}  // namespace
}  // namespace vantrel
