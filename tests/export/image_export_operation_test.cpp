#include "export/image_export_operation.h"

#include <gtest/gtest.h>

#include <QEventLoop>
#include <memory>
#include <optional>
#include <thread>

#include "base/cancelled.h"
#include "support/temporary_folder.h"

namespace vantrel {
namespace {

using testing::namesIn;
using testing::TemporaryFolder;
using Format = ImageEncodingSettings::Format;
using Names = std::vector<std::string>;

/// A black picture with RGB channels.
ImageSource blackSource(int64_t width, int64_t height) {
  const size_t stride = static_cast<size_t>(width) * 3;
  const std::shared_ptr<std::byte> pixels(new std::byte[stride * static_cast<size_t>(height)]{},
                                          std::default_delete<std::byte[]>());
  ImageSource source;
  source.image = Bitmap(width, height, PixelLayout{}, pixels, stride, {});
  source.type = ContentType::png();
  return source;
}

ImageExportRequest requestFor(const TemporaryFolder& folder, Format format = Format::png) {
  ImageExportRequest request;
  request.source = blackSource(640, 480);
  request.crop = QRectF(1, 2, 600, 400);
  request.settings.format = format;
  request.sourcePath = "/pictures/clip.final.png";
  request.destination = folder / "Vantrel-1.tmp";
  return request;
}

/// Runs an operation to its completion, after `meddle` has had its hands on it.
template <class Meddle>
ImageExportOperation::Outcome outcomeOf(ImageExportRequest request, Meddle meddle) {
  QEventLoop loop;
  ImageExportOperation::Outcome result;
  ImageExportOperation operation(std::move(request), [&](auto outcome) {
    result = std::move(outcome);
    loop.quit();
  });
  meddle(operation);
  loop.exec();
  return result;
}

ImageExportOperation::Outcome outcomeOf(ImageExportRequest request) {
  return outcomeOf(std::move(request), [](auto&) {});
}

/// The error of still images that the outcome throws, if it does.
std::optional<ImageError::Case> errorOf(ImageExportOperation::Outcome outcome) {
  try {
    outcome.get();
    return std::nullopt;
  } catch (const ImageError& error) {
    return error.error();
  }
}

TEST(ImageExportOperation, HandsOverTheFinishedFile) {
  const TemporaryFolder folder;
  const FinishedExport finished = outcomeOf(requestFor(folder)).get();
  EXPECT_EQ(finished.file.path(), folder / "Vantrel-1.tmp");
  EXPECT_EQ(finished.contentType, ContentType::png());
  EXPECT_EQ(finished.title, u"clip.final-framed");
  const ImageSource written = ImageSource::load(finished.file.path());
  EXPECT_EQ(written.type, ContentType::png());
  EXPECT_EQ(written.image.width(), 600);
  EXPECT_EQ(written.image.height(), 400);
}

TEST(ImageExportOperation, SummarisesAnImage) {
  const TemporaryFolder folder;
  const FinishedExport finished = outcomeOf(requestFor(folder, Format::jpeg)).get();
  const ExportSummary& summary = finished.summary;
  EXPECT_EQ(finished.contentType, ContentType::jpeg());
  EXPECT_EQ(summary.codec, u"JPEG");
  EXPECT_EQ(summary.imageFormat, QStringLiteral("JPEG"));
  EXPECT_EQ(summary.bitrate, 0);
  EXPECT_EQ(summary.elapsed, 0);
  EXPECT_FALSE(summary.isHDR);
  EXPECT_EQ(summary.resolution, QSizeF(600, 400));
  EXPECT_GT(summary.bytes, 0);
  EXPECT_EQ(static_cast<uintmax_t>(summary.bytes),
            std::filesystem::file_size(finished.file.path()));
}

TEST(ImageExportOperation, FileGoesWithWhoeverHasItLast) {
  const TemporaryFolder folder;
  { const FinishedExport dropped = outcomeOf(requestFor(folder)).get(); }
  EXPECT_EQ(namesIn(folder.path()), Names{});
  { const auto neverLookedAt = outcomeOf(requestFor(folder)); }
  EXPECT_EQ(namesIn(folder.path()), Names{});
}

TEST(ImageExportOperation, FailsWithTheErrorOfTheExporter) {
  const TemporaryFolder folder;
  ImageExportRequest outside = requestFor(folder);
  outside.crop = QRectF(600, 0, 41, 10);
  EXPECT_EQ(errorOf(outcomeOf(outside)), ImageError::invalidCrop);
  ImageExportRequest nowhere = requestFor(folder);
  nowhere.destination = folder / "no/Vantrel-1.png";
  EXPECT_EQ(errorOf(outcomeOf(nowhere)), ImageError::encodingFailed);
  EXPECT_EQ(namesIn(folder.path()), Names{});
}

TEST(ImageExportOperation, CancelDeletesTheFile) {
  const TemporaryFolder folder;
  auto outcome = outcomeOf(requestFor(folder), [](auto& operation) { operation.cancel(); });
  EXPECT_THROW(outcome.get(), Cancelled);
  EXPECT_EQ(namesIn(folder.path()), Names{});
}

TEST(ImageExportOperation, CancelDeletesAFileThatIsThereAlready) {
  const TemporaryFolder folder;
  auto outcome = outcomeOf(requestFor(folder), [&](auto& operation) {
    // Without an event loop the export cannot be handed over in the meantime.
    while (namesIn(folder.path()).empty())
      std::this_thread::yield();
    operation.cancel();
  });
  EXPECT_THROW(outcome.get(), Cancelled);
  EXPECT_EQ(namesIn(folder.path()), Names{});
}

TEST(ImageExportOperation, DestructionDeletesTheFile) {
  const TemporaryFolder folder;
  {
    const ImageExportOperation operation(
        requestFor(folder), [](auto) { ADD_FAILURE() << "handed over to a dead owner"; });
  }
  EXPECT_EQ(namesIn(folder.path()), Names{});
}

TEST(ImageExportOperation, MayBeDestroyedByItsCompletion) {
  const TemporaryFolder folder;
  QEventLoop loop;
  std::unique_ptr<ImageExportOperation> operation;
  FinishedExport finished;
  operation = std::make_unique<ImageExportOperation>(requestFor(folder), [&](auto outcome) {
    operation.reset();
    finished = outcome.get();
    loop.quit();
  });
  loop.exec();
  EXPECT_EQ(namesIn(folder.path()), Names{"Vantrel-1.tmp"});
}

TEST(ImageExportOperation, TwoAtOnceEachHaveTheirFile) {
  const TemporaryFolder folder;
  QEventLoop loop;
  std::vector<FinishedExport> finished;
  const auto keep = [&](auto outcome) {
    finished.push_back(outcome.get());
    if (finished.size() == 2) loop.quit();
  };
  ImageExportRequest second = requestFor(folder);
  second.destination = folder / "Vantrel-2.tmp";
  const ImageExportOperation a(requestFor(folder), keep);
  const ImageExportOperation b(second, keep);
  loop.exec();
  EXPECT_EQ(namesIn(folder.path()), (Names{"Vantrel-1.tmp", "Vantrel-2.tmp"}));
}

}  // namespace
}  // namespace vantrel
