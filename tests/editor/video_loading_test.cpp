#include <QPointer>
#include <QSignalSpy>
#include <stdexcept>

#include "editor/video_editor.h"
#include "support/picture_files.h"

namespace vantrel {
namespace {

using Codec = EncodingSettings::Codec;
using VideoLoadingTest = testing::VideoEditor;

TEST_F(VideoLoadingTest, OpensAVideoWithItsFacts) {
  open("plain.mp4");
  EXPECT_FALSE(state.isImage());
  ASSERT_TRUE(state.file()->movie);
  EXPECT_EQ(state.sourceSize(), QSizeF(160, 120));
  EXPECT_DOUBLE_EQ(state.file()->sourceFPS, 25);
  EXPECT_NEAR(state.file()->duration, 1, 0.05);
  EXPECT_GT(state.file()->sourceMbps, 0.01);
  EXPECT_LT(state.file()->sourceMbps, 10);
  EXPECT_EQ(state.file()->sourceBytes,
            static_cast<int64_t>(std::filesystem::file_size(film("plain.mp4"))));
  EXPECT_FALSE(state.file()->sourceIsHDR);
  EXPECT_EQ(state.history().pixelStep(), 2);
  EXPECT_EQ(state.history().crop(), CropMargins());
  EXPECT_EQ(state.history().codec(), Codec::hevc);
  EXPECT_DOUBLE_EQ(state.history().bitrate(), state.file()->sourceMbps);
  EXPECT_EQ(state.history().imageEncoding(), ImageEncodingSettings());
  EXPECT_TRUE(state.camera().fit);
  EXPECT_EQ(state.camera().request, 0);
  EXPECT_TRUE(state.canExport());
  EXPECT_FALSE(state.openError());
}

TEST_F(VideoLoadingTest, GivesTheVideoAPlayer) {
  open("plain.mp4");
  ASSERT_NE(state.player(), nullptr);
  EXPECT_EQ(played, std::vector{film("plain.mp4")});
  EXPECT_TRUE(player().log.empty());
}

TEST_F(VideoLoadingTest, TakesTheLargestEvenCropOfAnOddVideo) {
  open("odd.mp4");
  EXPECT_EQ(state.sourceSize(), QSizeF(161, 121));
  EXPECT_EQ(state.history().crop(), (CropMargins{0, 0, 1, 1}));
  EXPECT_TRUE(state.validCrop());
}

TEST_F(VideoLoadingTest, TriesAFileOfNoKnownTypeAsAVideo) {
  open("nameless");
  EXPECT_NE(state.player(), nullptr);
  load(film("notes.txt"));
  ASSERT_TRUE(state.openError());
  EXPECT_FALSE(state.openError()->isEmpty());
  EXPECT_FALSE(state.openError()->contains(u'\n'));
}

TEST_F(VideoLoadingTest, CarriesTheCodecToTheNextVideoButNotTheBitrate) {
  open("plain.mp4");
  state.history().setCodec(Codec::h264);
  state.history().setBitrate(77);
  open("odd.mp4");
  EXPECT_EQ(state.history().codec(), Codec::h264);
  EXPECT_DOUBLE_EQ(state.history().bitrate(), state.file()->sourceMbps);
}

TEST_F(VideoLoadingTest, OpensAnHdrVideoAsHevcAndStaysThere) {
  open("plain.mp4");
  state.history().setCodec(Codec::h264);
  open("hdr.mov");
  EXPECT_TRUE(state.file()->sourceIsHDR);
  EXPECT_EQ(state.history().codec(), Codec::hevc);
  EXPECT_TRUE(state.canExport());
  open("plain.mp4");
  EXPECT_FALSE(state.file()->sourceIsHDR);
  EXPECT_EQ(state.history().codec(), Codec::hevc);
}

TEST_F(VideoLoadingTest, PausesTheOldPlayerAndLetsItGo) {
  open("plain.mp4");
  const QPointer<testing::FakePlayer> old = &player();
  std::vector<std::string> log;
  bool wasThere = false;
  QObject::connect(&state, &EditorState::fileChanged, &state, [&] {
    wasThere = old != nullptr && state.player() != old;
    log = old->log;
  });
  open("odd.mp4");
  EXPECT_TRUE(wasThere);
  EXPECT_EQ(log, std::vector<std::string>{"pause"});
  EXPECT_TRUE(QTest::qWaitFor([&] { return old == nullptr; }));
}

TEST_F(VideoLoadingTest, AnImageTakesThePlaceOfAVideoAndTheOtherWayRound) {
  const testing::TemporaryFolder folder;
  testing::savePng(folder / "photo.png", 40, 30);
  open("plain.mp4");
  state.history().setBitrate(77);
  load(folder / "photo.png");
  EXPECT_TRUE(state.isImage());
  EXPECT_EQ(state.player(), nullptr);
  EXPECT_FALSE(state.file()->movie);
  EXPECT_EQ(state.history().pixelStep(), 1);
  EXPECT_EQ(state.history().value().encoding, EncodingSettings());
  EXPECT_DOUBLE_EQ(state.file()->sourceFPS, 0);
  EXPECT_DOUBLE_EQ(state.file()->duration, 0);
  open("odd.mp4");
  EXPECT_FALSE(state.isImage());
  EXPECT_FALSE(state.file()->imageSource);
  EXPECT_NE(state.player(), nullptr);
  EXPECT_EQ(state.history().pixelStep(), 2);
}

TEST_F(VideoLoadingTest, LeavesTheOpenVideoWhenALoadFails) {
  open("plain.mp4");
  state.history().setCrop({2, 4, 6, 8});
  state.setPreviewOnly(true);
  Player* const before = state.player();
  const EditorState::Camera camera = state.camera();
  QSignalSpy changed(&state, &EditorState::fileChanged);
  for (const char* bad : {"broken.mov", "sound.m4a", "missing.mov"}) {
    state.setOpenError({});
    load(film(bad));
    EXPECT_TRUE(state.openError()) << bad;
  }
  EXPECT_EQ(changed.count(), 0);
  EXPECT_EQ(state.player(), before);
  EXPECT_TRUE(player().log.empty());
  EXPECT_EQ(state.file()->path, film("plain.mp4"));
  EXPECT_EQ(state.history().crop(), (CropMargins{2, 4, 6, 8}));
  EXPECT_TRUE(state.history().canUndo());
  EXPECT_TRUE(state.previewOnly());
  EXPECT_EQ(state.camera(), camera);
}

TEST_F(VideoLoadingTest, SaysThatSoundAloneIsNoVideo) {
  load(film("sound.m4a"));
  EXPECT_EQ(state.openError(), QStringLiteral("This file has no readable video track."));
  EXPECT_FALSE(state.loaded());
}

TEST_F(VideoLoadingTest, ChangesNothingWhereNoPlayerCanBeMade) {
  EditorState other(
      [](const Movie&) -> std::unique_ptr<Player> { throw std::runtime_error("No threads left"); });
  MediaLoader otherLoader(other);
  otherLoader.loadMedia(film("plain.mp4"));
  ASSERT_TRUE(QTest::qWaitFor([&] { return !other.busy(); }));
  EXPECT_EQ(other.openError(), QStringLiteral("No threads left"));
  EXPECT_FALSE(other.loaded());
  EXPECT_EQ(other.player(), nullptr);
}

TEST_F(VideoLoadingTest, ClosesTheVideoWithItsPlayer) {
  open("plain.mp4");
  const QPointer<testing::FakePlayer> old = &player();
  std::vector<std::string> log;
  QObject::connect(&state, &EditorState::fileChanged, &state, [&] { log = old->log; });
  loader.closeMedia();
  EXPECT_FALSE(state.loaded());
  EXPECT_EQ(state.player(), nullptr);
  EXPECT_EQ(log, std::vector<std::string>{"pause"});
  EXPECT_EQ(state.history().pixelStep(), 2);
  EXPECT_TRUE(QTest::qWaitFor([&] { return old == nullptr; }));
}

TEST_F(VideoLoadingTest, OpensTheSampleThatComesWithTheProgram) {
  loader.loadSample();
  ASSERT_TRUE(waitIdle());
  ASSERT_TRUE(state.loaded());
  EXPECT_EQ(state.file()->path.filename(), "Vantrel Sample.mov");
  EXPECT_EQ(state.sourceSize(), QSizeF(1280, 720));
  EXPECT_EQ(state.file()->movie->tracks(MovieTrack::Kind::Audio).size(), 1);
  EXPECT_LT(state.file()->sourceBytes, 2'000'000);
}

TEST_F(VideoLoadingTest, SaysThatTheSampleIsMissing) {
  open("plain.mp4");
  loader.loadSample(std::nullopt);
  EXPECT_EQ(state.openError(), QStringLiteral("The bundled sample video is unavailable."));
  EXPECT_FALSE(state.busy());
  EXPECT_TRUE(state.loaded());
}

TEST_F(VideoLoadingTest, OffersEveryKindOfVideo) {
  const QString filter = MediaLoader::openFilter();
  for (const char* pattern : {"*.mov", "*.mp4", "*.mkv", "*.webm", "*.avi", "*.m4v", "*.ts"}) {
    EXPECT_TRUE(filter.contains(QLatin1String(pattern))) << pattern;
  }
}

}  // namespace
}  // namespace vantrel
