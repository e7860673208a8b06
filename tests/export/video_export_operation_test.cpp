#include "export/video_export_operation.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QEventLoop>
#include <QThread>
#include <memory>
#include <thread>

#include "base/cancelled.h"
#include "base/failure.h"
#include "support/film_folder.h"
#include "support/write_failures.h"

namespace vantrel {
namespace {

using testing::FilmFolder;
using testing::namesIn;
using testing::TemporaryFolder;
using Codec = EncodingSettings::Codec;
using Names = std::vector<std::string>;
using Outcome = VideoExportOperation::Outcome;

class VideoExportOperationTest : public ::testing::Test {
 protected:
  static void SetUpTestSuite() {
    s_films = new FilmFolder;
    s_films->make("clip.final.mov");
  }
  static void TearDownTestSuite() {
    delete s_films;
    s_films = nullptr;
  }

  [[nodiscard]] VideoExportRequest request() const {
    VideoExportRequest request;
    request.source = *s_films / "clip.final.mov";
    request.crop = QRectF(11, 7, 64, 48);
    request.settings = {Codec::h264, 1.5};
    request.destination = folder / "Vantrel-1.mov";
    return request;
  }

  /// Runs an operation to its completion, after `meddle` has had its hands on it.
  template <class Meddle>
  Outcome outcomeOf(VideoExportRequest wanted, VideoExportOperation::Reports reports,
                    Meddle meddle) {
    QEventLoop loop;
    Outcome result;
    VideoExportOperation operation(std::move(wanted), std::move(reports), [&](Outcome outcome) {
      result = std::move(outcome);
      loop.quit();
    });
    meddle(operation);
    loop.exec();
    return result;
  }
  Outcome outcomeOf(VideoExportRequest wanted, VideoExportOperation::Reports reports = {}) {
    return outcomeOf(std::move(wanted), std::move(reports), [](auto&) {});
  }

  static FilmFolder* s_films;
  TemporaryFolder folder;
};

FilmFolder* VideoExportOperationTest::s_films = nullptr;

TEST_F(VideoExportOperationTest, HandsOverTheFinishedFile) {
  const FinishedExport finished = outcomeOf(request()).get();
  EXPECT_EQ(finished.file.path(), folder / "Vantrel-1.mov");
  EXPECT_EQ(finished.contentType, ContentType::quickTimeMovie());
  EXPECT_EQ(finished.title, u"clip.final-framed");
  EXPECT_EQ(VideoExporter::geometry(Movie::open(finished.file.path())).bounds.size(),
            QSizeF(64, 48));
  EXPECT_EQ(namesIn(folder.path()), Names{"Vantrel-1.mov"});
}

TEST_F(VideoExportOperationTest, SummarisesAVideo) {
  VideoExportRequest wanted = request();
  wanted.isHDR = true;
  const FinishedExport finished = outcomeOf(wanted).get();
  const ExportSummary& summary = finished.summary;
  EXPECT_EQ(summary.codec, u"H.264");
  EXPECT_EQ(summary.bitrate, 1.5);
  EXPECT_EQ(static_cast<uintmax_t>(summary.bytes),
            std::filesystem::file_size(finished.file.path()));
  EXPECT_GT(summary.elapsed, 0);
  EXPECT_LT(summary.elapsed, 60);
  EXPECT_TRUE(summary.isHDR);
  EXPECT_EQ(summary.resolution, QSizeF(64, 48));
  EXPECT_FALSE(summary.imageFormat);
}

TEST_F(VideoExportOperationTest, ReportsOnTheThreadOfItsOwner) {
  std::vector<double> fractions;
  std::vector<int64_t> sizes;
  const auto onThisThread = [owner = QThread::currentThread()] {
    return QThread::currentThread() == owner;
  };
  const FinishedExport finished = outcomeOf(request(), {[&](int64_t bytes) {
                                                          EXPECT_TRUE(onThisThread());
                                                          sizes.push_back(bytes);
                                                        },
                                                        [&](double fraction) {
                                                          EXPECT_TRUE(onThisThread());
                                                          fractions.push_back(fraction);
                                                        }})
                                      .get();
  ASSERT_FALSE(sizes.empty());
  EXPECT_EQ(sizes.back(), finished.summary.bytes);
  ASSERT_FALSE(fractions.empty());
  EXPECT_EQ(fractions.back(), 1);
}

TEST_F(VideoExportOperationTest, FailsWithTheErrorOfTheExporter) {
  VideoExportRequest outside = request();
  outside.crop = QRectF(0, 0, 162, 120);
  EXPECT_THROW(outcomeOf(outside).get(), Failure);
  EXPECT_EQ(namesIn(folder.path()), Names{});
}

TEST_F(VideoExportOperationTest, NamesTheExportAsTheUserKnowsItWhenTheDiskIsFull) {
  const testing::FileSizeLimit limit(1000);
  Outcome outcome = outcomeOf(request());
  try {
    outcome.get();
    ADD_FAILURE();
  } catch (const std::system_error& error) {
    EXPECT_STREQ(error.what(), "“clip.final-framed.mov” could not be saved: File too large");
  }
  EXPECT_EQ(namesIn(folder.path()), Names{});
}

TEST_F(VideoExportOperationTest, NamesTheExportAsTheUserKnowsItWhereItCannotBeMade) {
  VideoExportRequest wanted = request();
  testing::writeFile(folder / "file", "");
  wanted.destination = folder / "file/Vantrel-1.mov";
  Outcome outcome = outcomeOf(wanted);
  try {
    outcome.get();
    ADD_FAILURE();
  } catch (const std::system_error& error) {
    EXPECT_STREQ(error.what(), "“clip.final-framed.mov” could not be saved: Not a directory");
  }
}

TEST_F(VideoExportOperationTest, CancelDeletesTheFile) {
  Outcome outcome =
      outcomeOf(request(), {}, [](VideoExportOperation& operation) { operation.cancel(); });
  EXPECT_THROW(outcome.get(), Cancelled);
  EXPECT_EQ(namesIn(folder.path()), Names{});
}

TEST_F(VideoExportOperationTest, CancelDeletesAFileThatIsThereAlready) {
  Outcome outcome = outcomeOf(request(), {}, [this](VideoExportOperation& operation) {
    // Without an event loop the export cannot be handed over in the meantime.
    while (namesIn(folder.path()) != Names{"Vantrel-1.mov"})
      std::this_thread::yield();
    operation.cancel();
  });
  EXPECT_THROW(outcome.get(), Cancelled);
  EXPECT_EQ(namesIn(folder.path()), Names{});
}

TEST_F(VideoExportOperationTest, ReportsNothingAfterItsEnd) {
  const auto fail = [](auto) { ADD_FAILURE() << "reported to a dead owner"; };
  {
    const VideoExportOperation operation(
        request(), {fail, fail}, [](Outcome) { ADD_FAILURE() << "handed over to a dead owner"; });
    while (namesIn(folder.path()).empty())
      std::this_thread::yield();
  }
  QCoreApplication::processEvents();
  EXPECT_EQ(namesIn(folder.path()), Names{});
}

TEST_F(VideoExportOperationTest, MayBeDestroyedByItsCompletion) {
  QEventLoop loop;
  std::unique_ptr<VideoExportOperation> operation;
  FinishedExport finished;
  operation = std::make_unique<VideoExportOperation>(
      request(), VideoExportOperation::Reports{[](int64_t) {}, [](double) {}},
      [&](Outcome outcome) {
        operation.reset();
        finished = outcome.get();
        loop.quit();
      });
  loop.exec();
  EXPECT_EQ(finished.file.path(), folder / "Vantrel-1.mov");
}

}  // namespace
}  // namespace vantrel
