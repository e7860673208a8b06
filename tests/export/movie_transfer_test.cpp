#include "export/movie_transfer.h"

#include <gmock/gmock.h>

#include <thread>

#include "base/cancelled.h"
#include "base/failure.h"
#include "support/fake_sample_flow.h"

namespace vantrel {
namespace {

using ::testing::Contains;
using testing::FakeInput;
using testing::FakeOutput;
using testing::FakeReadingSession;
using testing::FakeWritingSession;
using testing::FlowLog;
using Lines = std::vector<std::string>;
using Reading = ReadingSession::Status;
using Writing = WritingSession::Status;

constexpr MediaTime kDuration{3000, 1000};

/// A video track and an audio track of three samples each.
class MovieTransfer : public ::testing::Test {
 protected:
  int64_t run(bool withAudio = true) {
    std::vector<VideoExporter::TrackTransfer> tracks{{&videoOutput, &video}};
    if (withAudio) tracks.push_back({&audioOutput, &audio});
    return VideoExporter::transferMovie(reader, writer, tracks, kDuration, progress,
                                        stop.get_token());
  }
  /// The words of the Failure that the transfer throws.
  std::string failure(bool withAudio = true) {
    try {
      run(withAudio);
      return "no failure";
    } catch (const Failure& error) {
      return error.what();
    }
  }
  void expectBothCancelled() {
    EXPECT_THAT(log.lines(), Contains("cancel reading"));
    EXPECT_THAT(log.lines(), Contains("cancel writing"));
  }

  FlowLog log;
  FakeReadingSession reader{log};
  FakeWritingSession writer{log};
  FakeOutput videoOutput{{{0, 1000}, {1000, 1000}, {2000, 1000}}};
  FakeOutput audioOutput{{{0, 48'000}, {1024, 48'000}, {2048, 48'000}}};
  FakeInput video{log, "video"};
  FakeInput audio{log, "audio"};
  std::vector<double> reports;
  VideoExporter::Progress progress = [this](double fraction) { reports.push_back(fraction); };
  std::stop_source stop;
};

TEST_F(MovieTransfer, RunsFromTheStartToTheFinishedFile) {
  videoOutput.onCopy = [this] { reader.current = Reading::completed; };
  EXPECT_EQ(run(false), 3);
  EXPECT_EQ(log.lines(), (Lines{"start writing", "start session 0", "start reading",
                                "video append 0", "video append 1000", "video append 2000",
                                "video finished", "end session 3000", "finish writing"}));
}

TEST_F(MovieTransfer, MovesAllTracksAndReportsTheFirst) {
  reader.current = Reading::completed;
  EXPECT_EQ(run(), 3);
  EXPECT_EQ(log.count("video finished"), 1);
  EXPECT_EQ(log.count("audio append 2048"), 1);
  EXPECT_EQ(log.count("audio finished"), 1);
  EXPECT_EQ(log.lines().back(), "finish writing");
  EXPECT_EQ(reports, (std::vector<double>{1.0 / 3, 2.0 / 3, 0.99}));
}

TEST_F(MovieTransfer, FailsWhereTheWriterDoesNotStart) {
  writer.starts = false;
  EXPECT_EQ(failure(), "Cannot start encoding.");
  writer.cause = std::make_exception_ptr(Failure("the writer's"));
  EXPECT_EQ(failure(), "the writer's");
  EXPECT_EQ(log.count("start reading"), 0);
}

TEST_F(MovieTransfer, CancelsTheWriterWhereTheReaderDoesNotStart) {
  reader.starts = false;
  EXPECT_EQ(failure(), "Cannot start decoding.");
  EXPECT_EQ(log.lines(),
            (Lines{"start writing", "start session 0", "start reading", "cancel writing"}));
  reader.cause = std::make_exception_ptr(Failure("the reader's"));
  EXPECT_EQ(failure(), "the reader's");
}

TEST_F(MovieTransfer, FailsWhereTheReaderHasNotCompleted) {
  EXPECT_EQ(failure(), "Decoding did not complete.");
  EXPECT_EQ(log.count("finish writing"), 0);
  expectBothCancelled();
}

TEST_F(MovieTransfer, ThrowsTheErrorOfAReaderThatFailedAtTheEnd) {
  reader.cause = std::make_exception_ptr(Failure("the reader's"));
  EXPECT_EQ(failure(), "the reader's");
  expectBothCancelled();
}

TEST_F(MovieTransfer, FailsWhereTheWriterDoesNotComplete) {
  reader.current = Reading::completed;
  writer.finished = Writing::failed;
  EXPECT_EQ(failure(), "Encoding did not complete.");
  expectBothCancelled();
}

TEST_F(MovieTransfer, ThrowsTheErrorOfAWriterThatFailedAtTheEnd) {
  reader.current = Reading::completed;
  writer.finished = Writing::failed;
  writer.cause = std::make_exception_ptr(Failure("disk full"));
  EXPECT_EQ(failure(), "disk full");
}

TEST_F(MovieTransfer, EndsAllTracksWithTheFirstError) {
  // The video cannot go on by itself, so that only the error of the sound can end it.
  video.isReady = [] { return false; };
  audio.takes = [] { return false; };
  EXPECT_EQ(failure(), "Cannot append an encoded sample.");
  expectBothCancelled();
}

TEST_F(MovieTransfer, WakesAnOutputThatWaitsWhenAnotherTrackFails) {
  videoOutput.onCopy = [&] {
    // As an output that waits for its file: nothing but cancelling the reader wakes it.
    while (reader.status() != Reading::cancelled)
      std::this_thread::yield();
  };
  audio.takes = [] { return false; };
  EXPECT_EQ(failure(), "Cannot append an encoded sample.");
}

TEST_F(MovieTransfer, CancelledBeforeTheFirstSampleMovesNothing) {
  stop.request_stop();
  EXPECT_THROW(run(), Cancelled);
  EXPECT_EQ(log.count("video append 0"), 0);
  expectBothCancelled();
}

TEST_F(MovieTransfer, CancelledWhileSamplesMoveEndsInCancelled) {
  videoOutput.onCopy = [this] { stop.request_stop(); };
  EXPECT_THROW(run(), Cancelled);
  expectBothCancelled();
}

TEST_F(MovieTransfer, CancelledWhileAnOutputWaitsEndsInCancelled) {
  videoOutput.onCopy = [this] {
    stop.request_stop();
    EXPECT_EQ(reader.status(), Reading::cancelled);
  };
  EXPECT_THROW(run(false), Cancelled);
}

TEST_F(MovieTransfer, CancelledWhileFinishingEndsInCancelled) {
  reader.current = Reading::completed;
  progress = [this](double fraction) {
    if (fraction == 0.99) stop.request_stop();
  };
  EXPECT_THROW(run(), Cancelled);
  expectBothCancelled();
}

TEST_F(MovieTransfer, CancelledWinsOverAnError) {
  audio.takes = [this] {
    stop.request_stop();
    return false;
  };
  writer.cause = std::make_exception_ptr(Failure("the writer's"));
  EXPECT_THROW(run(), Cancelled);
}

TEST_F(MovieTransfer, NeedsNoDuration) {
  reader.current = Reading::completed;
  EXPECT_EQ(VideoExporter::transferMovie(reader, writer, {{&videoOutput, &video}}, MediaTime(),
                                         progress, {}),
            3);
  EXPECT_EQ(reports, std::vector<double>{0.99});
}

}  // namespace
}  // namespace vantrel
