#include "export/sample_transfer.h"

#include <gtest/gtest.h>

#include <limits>
#include <memory>
#include <thread>

#include "base/cancelled.h"
#include "base/failure.h"
#include "support/fake_sample_flow.h"

namespace vantrel {
namespace {

using namespace std::chrono_literals;
using testing::FakeClock;
using testing::FakeInput;
using testing::FakeOutput;
using testing::FakeReadingSession;
using testing::FakeWritingSession;
using testing::FlowLog;
using Lines = std::vector<std::string>;
using Reading = ReadingSession::Status;
using Writing = WritingSession::Status;

constexpr int32_t kTimescale = 1000;
const std::exception_ptr kReaderError = std::make_exception_ptr(Failure("the reader's"));
const std::exception_ptr kWriterError = std::make_exception_ptr(Failure("the writer's"));

/// `count` times at even distances in milliseconds.
std::vector<MediaTime> every(int64_t ticks, int count) {
  std::vector<MediaTime> times;
  for (int i = 0; i < count; ++i)
    times.push_back({ticks * i, kTimescale});
  return times;
}

class SampleTransfer : public ::testing::Test {
 protected:
  int64_t run(double duration = 0, const VideoExporter::Progress& progress = {}) {
    return VideoExporter::transfer(*output, input, reader, writer, duration, progress,
                                   stop.get_token(), clock.sleep());
  }
  int64_t run(std::vector<MediaTime> times, double duration = 0,
              const VideoExporter::Progress& progress = {}) {
    output = std::make_unique<FakeOutput>(std::move(times));
    return run(duration, progress);
  }
  /// The fractions reported while samples at these times pass in a film of so many seconds.
  std::vector<double> progressOf(std::vector<MediaTime> times, double duration) {
    std::vector<double> reports;
    run(std::move(times), duration, [&](double fraction) { reports.push_back(fraction); });
    return reports;
  }
  /// The words of the Failure that the transfer throws.
  std::string failure() {
    try {
      run();
      return "no failure";
    } catch (const Failure& error) {
      return error.what();
    }
  }

  FlowLog log;
  std::unique_ptr<FakeOutput> output = std::make_unique<FakeOutput>(every(10, 3));
  FakeInput input{log};
  FakeReadingSession reader{log};
  FakeWritingSession writer{log};
  FakeClock clock;
  std::stop_source stop;
};

TEST_F(SampleTransfer, MovesEverySampleInOrderAndFinishesTheInput) {
  EXPECT_EQ(run(), 3);
  EXPECT_EQ(log.lines(),
            (Lines{"input append 0", "input append 10", "input append 20", "input finished"}));
  EXPECT_EQ(clock.now, 0ms);
}

TEST_F(SampleTransfer, FinishesTheInputOfAnEmptyTrackAtOnce) {
  EXPECT_EQ(run(std::vector<MediaTime>{}), 0);
  EXPECT_EQ(log.lines(), Lines{"input finished"});
}

TEST_F(SampleTransfer, DoesNotLookAtTheReaderWhenTheTrackEnds) {
  output = std::make_unique<FakeOutput>();
  output->onCopy = [this] { reader.current = Reading::failed; };
  EXPECT_EQ(run(), 0);
  EXPECT_EQ(log.lines(), Lines{"input finished"});
}

TEST_F(SampleTransfer, GoesOnWithAReaderThatHasCompleted) {
  reader.current = Reading::completed;
  EXPECT_EQ(run(), 3);
}

TEST_F(SampleTransfer, ThrowsTheErrorOfAReaderThatFailed) {
  reader.current = Reading::failed;
  reader.cause = kReaderError;
  EXPECT_EQ(failure(), "the reader's");
  EXPECT_EQ(log.lines(), Lines{});
}

TEST_F(SampleTransfer, SaysThatReadingWasInterruptedWhereTheReaderSaysNothing) {
  for (const Reading status : {Reading::failed, Reading::cancelled}) {
    reader.current = status;
    EXPECT_EQ(failure(), "Reading was interrupted.");
  }
}

TEST_F(SampleTransfer, ThrowsTheErrorOfAWriterThatFailed) {
  writer.current = Writing::failed;
  writer.cause = kWriterError;
  EXPECT_EQ(failure(), "the writer's");
}

TEST_F(SampleTransfer, SaysThatEncodingWasInterruptedByWhateverIsNotWriting) {
  for (const Writing status :
       {Writing::unknown, Writing::completed, Writing::failed, Writing::cancelled}) {
    writer.current = status;
    EXPECT_EQ(failure(), "Encoding was interrupted.");
  }
}

TEST_F(SampleTransfer, LooksAtTheReaderBeforeTheWriter) {
  reader.current = Reading::failed;
  writer.current = Writing::failed;
  EXPECT_EQ(failure(), "Reading was interrupted.");
}

TEST_F(SampleTransfer, NoticesAFailureBetweenTwoSamples) {
  int copies = 0;
  output->onCopy = [&] {
    if (++copies == 2) reader.current = Reading::failed;
  };
  EXPECT_EQ(failure(), "Reading was interrupted.");
  EXPECT_EQ(log.lines(), (Lines{"input append 0", "input append 10"}));
}

TEST_F(SampleTransfer, ThrowsTheErrorOfTheWriterThatRefusesASample) {
  input.takes = [] { return false; };
  EXPECT_EQ(failure(), "Cannot append an encoded sample.");
  writer.cause = kWriterError;
  EXPECT_EQ(failure(), "the writer's");
  EXPECT_EQ(log.count("input finished"), 0);
}

TEST_F(SampleTransfer, CancelledComesFirst) {
  stop.request_stop();
  reader.current = Reading::failed;
  EXPECT_THROW(run(), Cancelled);
  EXPECT_EQ(log.lines(), Lines{});
}

TEST_F(SampleTransfer, StopsBetweenTwoSamples) {
  output->onCopy = [this] { stop.request_stop(); };
  EXPECT_THROW(run(), Cancelled);
  EXPECT_EQ(log.lines(), Lines{"input append 0"});
}

TEST_F(SampleTransfer, LooksEveryTwoMillisecondsWhetherTheInputIsReady) {
  int looks = 0;
  input.isReady = [&] { return ++looks > 5; };
  EXPECT_EQ(run(), 3);
  EXPECT_EQ(clock.now, 10ms);
}

TEST_F(SampleTransfer, WaitsForAnInputThatIsNeverReadyUntilCancelled) {
  input.isReady = [] { return false; };
  clock.onSleep = [this] {
    if (clock.now >= 1h) stop.request_stop();
  };
  EXPECT_THROW(run(), Cancelled);
  EXPECT_EQ(clock.now, 1h);
  EXPECT_EQ(log.lines(), Lines{});
}

TEST_F(SampleTransfer, WaitsForAnInputThatIsNeverReadyUntilTheWriterFails) {
  input.isReady = [] { return false; };
  clock.onSleep = [this] { writer.current = Writing::failed; };
  EXPECT_EQ(failure(), "Encoding was interrupted.");
  EXPECT_EQ(clock.now, 2ms);
}

TEST_F(SampleTransfer, ReportsEverySecondSampleAtHalfAPercentEach) {
  const std::vector<double> reports = progressOf(every(50, 200), 10);
  ASSERT_EQ(reports.size(), 99U);
  for (size_t i = 0; i < reports.size(); ++i)
    EXPECT_DOUBLE_EQ(reports[i], 0.01 * static_cast<double>(i + 1));
}

TEST_F(SampleTransfer, ReportsNothingWithoutADuration) {
  for (const double duration : {0.0, -1.0, std::numeric_limits<double>::quiet_NaN()}) {
    EXPECT_EQ(progressOf(every(50, 200), duration), std::vector<double>{});
  }
}

TEST_F(SampleTransfer, ReportsToNobodyWithoutACallback) {
  EXPECT_EQ(run(every(50, 200), 10), 200);
}

TEST_F(SampleTransfer, ReportsNoMoreThan99Percent) {
  EXPECT_EQ(progressOf({{20'000, kTimescale}, {30'000, kTimescale}}, 10),
            std::vector<double>{0.99});
}

TEST_F(SampleTransfer, TakesTimesBeforeTheStartAndUnknownTimesForTheStart) {
  EXPECT_EQ(progressOf({{-5'000, kTimescale}, {5'000, 0}, MediaTime{}}, 10), std::vector<double>{});
}

TEST_F(SampleTransfer, NeverReportsLessThanBefore) {
  EXPECT_EQ(
      progressOf({{5'000, kTimescale}, {2'500, kTimescale}, MediaTime{}, {7'500, kTimescale}}, 10),
      (std::vector<double>{0.5, 0.75}));
}

TEST(InterruptibleSleep, EndsWithCancelledWhenItIsInterrupted) {
  std::stop_source stop;
  const std::jthread canceller([&] { stop.request_stop(); });
  EXPECT_THROW(VideoExporter::interruptibleSleep(24h, stop.get_token()), Cancelled);
}

TEST(InterruptibleSleep, LastsAsLongAsItWasTold) {
  const auto start = std::chrono::steady_clock::now();
  VideoExporter::interruptibleSleep(2ms, {});
  EXPECT_GE(std::chrono::steady_clock::now() - start, 2ms);
}

}  // namespace
}  // namespace vantrel
