#include <gtest/gtest.h>

#include <vector>

#include "editor/exporting.h"
#include "editor/video_editor.h"
#include "export/video_exporter.h"

namespace vantrel {
namespace {

using Codec = EncodingSettings::Codec;

class VideoExportTest : public testing::Exporting<testing::VideoEditor> {};

TEST_F(VideoExportTest, HandsTheFinishedFileToTheReview) {
  open("plain.mp4");
  state.history().setCrop({3, 5, 17, 15});
  state.history().setBitrate(0.5);
  state.exportState().setMessage(CropExportState::Message::failed);
  state.setPreviewOnly(true);
  state.toggleInspector();
  player().play();
  std::vector<double> fractions;
  QObject::connect(&state.exportState(), &CropExportState::changed, &state, [&] {
    if (state.exportState().progress()) fractions.push_back(*state.exportState().progress());
  });

  session->exportMedia();
  EXPECT_TRUE(state.busy());
  EXPECT_EQ(state.exportState().progress(), 0.0);
  EXPECT_EQ(state.exportState().bytes(), 0);
  EXPECT_FALSE(state.exportState().indeterminate());
  EXPECT_TRUE(state.exportState().operation());
  EXPECT_FALSE(state.exportState().message());
  EXPECT_FALSE(state.previewOnly());
  EXPECT_TRUE(state.showInspector());
  EXPECT_EQ(player().log, (std::vector<std::string>{"play", "pause"}));
  ASSERT_TRUE(waitIdle());

  expectIdle();
  EXPECT_FALSE(state.exportState().message());
  EXPECT_FALSE(state.exportError());
  ASSERT_TRUE(finished);
  EXPECT_EQ(finished->title, QStringLiteral("plain-framed"));
  EXPECT_EQ(finished->contentType, ContentType::quickTimeMovie());
  EXPECT_EQ(finished->file.path().extension(), ".mov");
  EXPECT_EQ(finished->summary.codec, QStringLiteral("HEVC"));
  EXPECT_DOUBLE_EQ(finished->summary.bitrate, 0.5);
  EXPECT_GT(finished->summary.elapsed, 0);
  EXPECT_EQ(finished->summary.resolution, QSizeF(140, 100));
  EXPECT_FALSE(finished->summary.imageFormat);
  EXPECT_EQ(state.exportState().bytes(), finished->summary.bytes);
  EXPECT_EQ(fractions.back(), 1);
  const Movie written = Movie::open(finished->file.path());
  EXPECT_EQ(VideoExporter::geometry(written).bounds.size(), QSizeF(140, 100));
  EXPECT_EQ(written.tracks(MovieTrack::Kind::Audio).size(), 1);
}

TEST_F(VideoExportTest, SaysThatAnExportWasCancelledAndLeavesNoFile) {
  open("plain.mp4");
  session->exportMedia();
  session->cancel();
  ASSERT_TRUE(waitIdle());
  expectIdle();
  EXPECT_EQ(state.exportState().message(), CropExportState::Message::cancelled);
  EXPECT_FALSE(state.exportError());
  expectNothingLeft();
}

TEST_F(VideoExportTest, ReportsAFailureAndKeepsTheEdit) {
  std::filesystem::copy_file(film("plain.mp4"), film("gone.mp4"));
  open("gone.mp4");
  state.history().setCrop({2, 2, 2, 2});
  std::filesystem::remove(film("gone.mp4"));
  session->exportMedia();
  ASSERT_TRUE(waitIdle());
  expectIdle();
  EXPECT_EQ(state.exportState().message(), CropExportState::Message::failed);
  ASSERT_TRUE(state.exportError());
  EXPECT_TRUE(state.exportError()->contains(QStringLiteral("gone.mp4")));
  EXPECT_EQ(state.history().crop(), (CropMargins{2, 2, 2, 2}));
  EXPECT_NE(state.player(), nullptr);
  expectNothingLeft();
}

TEST_F(VideoExportTest, KeepsTheReportsOfAnEndedExportFromTheNext) {
  open("plain.mp4");
  session->exportMedia();
  const auto first = state.exportState().operation();
  session->cancel();
  ASSERT_TRUE(waitIdle());
  session->exportMedia();
  EXPECT_NE(state.exportState().operation(), first);
  EXPECT_EQ(state.exportState().progress(), 0.0);
  EXPECT_EQ(state.exportState().bytes(), 0);
  EXPECT_FALSE(state.exportState().message());
  session->cancel();
  ASSERT_TRUE(waitIdle());
}

TEST_F(VideoExportTest, LeavesNothingWhenItGoesInTheMiddle) {
  open("plain.mp4");
  session->exportMedia();
  session.reset();
  expectNothingLeft();
}

TEST_F(VideoExportTest, RunsBesideTheExportOfAnotherEditor) {
  EditorState other([](const Movie&) { return std::make_unique<testing::FakePlayer>(); });
  const auto otherIsIdle = [&other] { return !other.busy(); };
  MediaLoader otherLoader(other);
  otherLoader.loadMedia(film("odd.mp4"));
  ASSERT_TRUE(QTest::qWaitFor(otherIsIdle));
  std::optional<FinishedExport> otherFinished;
  ExportSession otherSession(other,
                             [&](FinishedExport done) { otherFinished.emplace(std::move(done)); });
  open("plain.mp4");
  state.history().setCrop({0, 0, 20, 20});

  session->exportMedia();
  otherSession.exportMedia();
  EXPECT_TRUE(state.busy());
  EXPECT_TRUE(other.busy());
  EXPECT_NE(state.exportState().operation(), other.exportState().operation());
  ASSERT_TRUE(QTest::qWaitFor([&] { return !state.busy() && !other.busy(); }, 60000));

  ASSERT_TRUE(finished);
  ASSERT_TRUE(otherFinished);
  const auto sizeOf = [](const FinishedExport& done) {
    return VideoExporter::geometry(Movie::open(done.file.path())).bounds.size();
  };
  EXPECT_EQ(sizeOf(*finished), QSizeF(140, 100));
  EXPECT_EQ(sizeOf(*otherFinished), QSizeF(160, 120));
  EXPECT_EQ(finished->title, QStringLiteral("plain-framed"));
  EXPECT_EQ(otherFinished->title, QStringLiteral("odd-framed"));
}

TEST_F(VideoExportTest, RefusesAnHdrVideoAsH264) {
  open("hdr.mov");
  state.history().setCodec(Codec::h264);
  session->exportMedia();
  expectIdle();
  EXPECT_FALSE(state.exportState().message());
}

}  // namespace
}  // namespace vantrel
