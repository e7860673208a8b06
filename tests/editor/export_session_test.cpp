#include "editor/export_session.h"

#include <gtest/gtest.h>

#include <QTest>
#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <stdexcept>
#include <vector>

#include "editor/exporting.h"
#include "editor/file_names.h"
#include "editor/media_loader.h"
#include "export/export_temporary_storage.h"
#include "platform/image/image_reader.h"
#include "support/picture_files.h"
#include "support/temporary_folder.h"

namespace vantrel {
namespace {

/// An editor state without a window, and a folder for its pictures.
class ImageEditor : public ::testing::Test {
 protected:
  bool waitIdle() {
    return QTest::qWaitFor([this] { return !state.busy(); });
  }
  void open(const char* name, uint32_t width = 40, uint32_t height = 30) {
    testing::savePng(folder / name, width, height);
    loader.loadMedia(folder / name);
    ASSERT_TRUE(waitIdle());
    ASSERT_TRUE(state.isImage());
  }

  testing::TemporaryFolder folder;
  EditorState state;
  MediaLoader loader{state};
};

class ExportSessionTest : public testing::Exporting<ImageEditor> {};

TEST_F(ExportSessionTest, HandsTheFinishedFileToTheReview) {
  open("clip.final.png");
  state.history().setCrop({3, 5, 7, 9});
  session->exportMedia();
  EXPECT_TRUE(state.busy());
  EXPECT_EQ(state.exportState().progress(), 0.0);
  EXPECT_TRUE(state.exportState().indeterminate());
  EXPECT_FALSE(state.exportState().operation());
  ASSERT_TRUE(waitIdle());

  expectIdle();
  EXPECT_FALSE(state.exportState().message());
  ASSERT_TRUE(finished);
  EXPECT_EQ(finished->title, QStringLiteral("clip.final-framed"));
  EXPECT_EQ(finished->contentType, ContentType::png());
  EXPECT_EQ(finished->summary.resolution, QSizeF(30, 16));
  EXPECT_EQ(finished->summary.imageFormat, QStringLiteral("PNG"));
  EXPECT_EQ(finished->summary.bytes,
            static_cast<int64_t>(std::filesystem::file_size(finished->file.path())));
  EXPECT_EQ(finished->file.path().parent_path(), ExportTemporaryStorage::shared().directory());
}

TEST_F(ExportSessionTest, WritesTheChosenFormat) {
  open("a.png");
  ImageEncodingSettings settings;
  settings.format = ImageEncodingSettings::Format::jpeg;
  state.history().setImageEncoding(settings);
  session->exportMedia();
  ASSERT_TRUE(waitIdle());
  ASSERT_TRUE(finished);
  EXPECT_EQ(finished->contentType, ContentType::jpeg());
  EXPECT_EQ(finished->file.path().extension(), ".jpg");
}

TEST_F(ExportSessionTest, StartsNothingWhereExportIsNotAllowed) {
  session->exportMedia();
  EXPECT_FALSE(state.busy());
  open("a.png");
  state.history().setCrop({40, 0, 0, 0});
  session->exportMedia();
  EXPECT_FALSE(state.busy());
  EXPECT_FALSE(finished);
}

TEST_F(ExportSessionTest, CancelsWithAWordAndWithoutAnAlert) {
  open("large.png", 2500, 2000);
  session->exportMedia();
  session->cancel();
  ASSERT_TRUE(waitIdle());
  expectIdle();
  EXPECT_EQ(state.exportState().message(), CropExportState::Message::cancelled);
  EXPECT_FALSE(state.exportError());
  expectNothingLeft();
}

TEST_F(ExportSessionTest, ReportsAFailureInItsOwnWords) {
  open("a.png");
  state.history().setCrop({1, 2, 3, 4});
  session = std::make_unique<ExportSession>(
      state, [](FinishedExport) { throw std::runtime_error("No room on the disk"); });
  session->exportMedia();
  ASSERT_TRUE(waitIdle());
  expectIdle();
  EXPECT_EQ(state.exportState().message(), CropExportState::Message::failed);
  EXPECT_EQ(state.exportError(), QStringLiteral("No room on the disk"));
  EXPECT_EQ(state.history().crop(), (CropMargins{1, 2, 3, 4}));
  expectNothingLeft();
  state.setExportError({});
  EXPECT_EQ(state.exportState().message(), CropExportState::Message::failed);
}

TEST_F(ExportSessionTest, ClearsTheLastOutcomeOnANewStart) {
  open("a.png");
  state.exportState().setMessage(CropExportState::Message::failed);
  session->exportMedia();
  EXPECT_FALSE(state.exportState().message());
  ASSERT_TRUE(waitIdle());
}

TEST_F(ExportSessionTest, ExportsThePictureThatWasOpenedWhateverBecameOfItsFile) {
  const auto path = folder / "a.png";
  const std::vector<std::function<void()>> changes = {
      [&] { testing::writeFile(path, ""); },
      [&] { testing::savePng(path, 4, 4); },
      [&] { std::filesystem::remove(path); },
      [&] {
        std::filesystem::remove(path);
        std::filesystem::create_directory(path);
      },
  };
  for (const auto& change : changes) {
    std::filesystem::remove(path);
    open("a.png");
    state.history().setCrop({3, 5, 7, 9});
    change();
    session->exportMedia();
    ASSERT_TRUE(waitIdle());
    ASSERT_TRUE(finished) << state.exportError().value_or(QString()).toStdString();
    const Bitmap bitmap = ImageReader::open(finished->file.path())->decode({});
    ASSERT_EQ(bitmap.width(), 30);
    ASSERT_EQ(bitmap.height(), 16);
    for (int channel = 0; channel < 3; ++channel) {
      EXPECT_EQ(std::to_integer<int>(bitmap.pixel(29, 15)[channel]),
                testing::patternSample(32, 20, channel));
    }
    finished.reset();
  }
}

TEST_F(ExportSessionTest, SuggestsTheNameOfTheFileWhateverItIs) {
  for (const std::string& name : testing::unusualNames()) {
    open((name + ".png").c_str());
    session->exportMedia();
    ASSERT_TRUE(waitIdle());
    ASSERT_TRUE(finished) << name;
    EXPECT_EQ(finished->title.toStdString(), name + "-framed");
    finished.reset();
  }
}

TEST_F(ExportSessionTest, StartsNothingWhileAnExportRuns) {
  open("a.png");
  int reviews = 0;
  session = std::make_unique<ExportSession>(state, [&](const FinishedExport&) { ++reviews; });
  session->exportMedia();
  // So does a load that was started before, when it ends.
  state.setBusy(false);
  ASSERT_TRUE(state.canExport());
  session->exportMedia();
  EXPECT_FALSE(state.busy());
  ASSERT_TRUE(QTest::qWaitFor([&] { return reviews == 1; }));
  expectIdle();
}

TEST_F(ExportSessionTest, GivesEachExportAFileOfItsOwn) {
  open("a.png");
  session->exportMedia();
  ASSERT_TRUE(waitIdle());
  const FinishedExport first = std::move(*finished);
  session->exportMedia();
  ASSERT_TRUE(waitIdle());
  EXPECT_NE(first.file.path(), finished->file.path());
  EXPECT_TRUE(std::filesystem::exists(first.file.path()));
  EXPECT_TRUE(std::filesystem::exists(finished->file.path()));
}

TEST_F(ExportSessionTest, LeavesNothingWhenItGoesInTheMiddle) {
  open("large.png", 2500, 2000);
  session->exportMedia();
  session.reset();
  expectNothingLeft();
}

}  // namespace
}  // namespace vantrel
