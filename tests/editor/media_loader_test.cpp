#include "editor/media_loader.h"

#include <gtest/gtest.h>

#include <QMimeData>
#include <QSignalSpy>
#include <QSysInfo>
#include <QTest>
#include <QUrl>
#include <memory>
#include <vector>

#include "editor/file_names.h"
#include "support/heif_maker.h"
#include "support/picture_files.h"
#include "support/temporary_folder.h"

namespace vantrel {
namespace {

QUrl urlOf(const std::filesystem::path& path) {
  return QUrl::fromLocalFile(QString::fromStdString(path.string()));
}

class MediaLoaderTest : public ::testing::Test {
 protected:
  bool waitIdle() {
    return QTest::qWaitFor([this] { return !state.busy(); });
  }
  void load(const std::filesystem::path& path) {
    loader->loadMedia(path);
    ASSERT_TRUE(state.busy());
    ASSERT_TRUE(waitIdle());
  }
  /// Drops and lets what follows begin.
  bool drop(const QList<QUrl>& urls) {
    QMimeData data;
    data.setUrls(urls);
    const bool accepted = loader->receiveMedia(data);
    QCoreApplication::processEvents();
    return accepted;
  }

  testing::TemporaryFolder folder;
  EditorState state;
  std::unique_ptr<MediaLoader> loader = std::make_unique<MediaLoader>(state);
};

TEST_F(MediaLoaderTest, OpensAnImageWithItsFacts) {
  const auto path = folder / "photo.png";
  testing::savePng(path, 40, 30);
  load(path);
  ASSERT_TRUE(state.isImage());
  EXPECT_EQ(state.file()->path, path);
  EXPECT_EQ(state.sourceSize(), QSizeF(40, 30));
  EXPECT_EQ(state.file()->sourceBytes, static_cast<int64_t>(std::filesystem::file_size(path)));
  EXPECT_EQ(state.history().pixelStep(), 1);
  EXPECT_EQ(state.history().crop(), CropMargins());
  EXPECT_EQ(state.history().imageEncoding(), ImageEncodingSettings());
  EXPECT_TRUE(state.camera().fit);
  EXPECT_FALSE(state.openError());
}

TEST_F(MediaLoaderTest, KeepsAJpegAJpegWithTheDefaultQuality) {
  testing::saveJpeg(folder / "photo.jpg", 16, 16);
  load(folder / "photo.jpg");
  EXPECT_EQ(state.history().imageEncoding().format, ImageEncodingSettings::Format::jpeg);
  EXPECT_DOUBLE_EQ(state.history().imageEncoding().quality, 0.9);
}

TEST_F(MediaLoaderTest, MakesAPngOfAnyOtherKind) {
  const auto sample = [](int x, int y, int channel) -> uint16_t {
    return static_cast<uint16_t>((x * 5 + y * 3 + channel * 40) % 256);
  };
  ASSERT_TRUE(testing::canMakeHeif());
  testing::HeifSpec heif;
  heif.sample = sample;
  testing::saveHeif(folder / "photo.heic", {heif});
  load(folder / "photo.heic");
  ASSERT_TRUE(state.isImage()) << state.openError().value_or(QString()).toStdString();
  EXPECT_EQ(state.file()->imageSource->type, ContentType::heic());
  EXPECT_EQ(state.history().imageEncoding(), ImageEncodingSettings());
}

TEST_F(MediaLoaderTest, TakesAFileOfAnyName) {
  for (const std::string& name : testing::unusualNames()) {
    const auto path = folder / (name + ".png");
    testing::savePng(path, 8, 6);
    load(path);
    EXPECT_FALSE(state.openError()) << name;
    EXPECT_EQ(state.file()->path, path);
    loader->closeMedia();
    EXPECT_TRUE(drop({urlOf(path)}));
    ASSERT_TRUE(waitIdle());
    ASSERT_TRUE(state.loaded()) << name;
    EXPECT_EQ(state.file()->path, path);
    loader->closeMedia();
  }
}

TEST_F(MediaLoaderTest, LoadsADropAsFileManagersSpellIt) {
  // The second is no UTF-8.
  for (const std::string name : {"a b#%ü.png", "a\xff.png"}) {
    testing::savePng(folder / name, 8, 6);
    const QByteArray path =
        QByteArray::fromStdString((folder / name).string()).toPercentEncoding("/");
    for (const QByteArray& start :
         {QByteArray("file://"), QByteArray("file://localhost"), QByteArray("file:"),
          "file://" + QSysInfo::machineHostName().toUtf8()}) {
      QMimeData data;
      data.setData(QStringLiteral("text/uri-list"), start + path + "\r\n");
      ASSERT_TRUE(loader->receiveMedia(data)) << start.toStdString();
      QCoreApplication::processEvents();
      ASSERT_TRUE(waitIdle());
      ASSERT_TRUE(state.loaded()) << (start + path).toStdString();
      EXPECT_EQ(state.file()->path, folder / name);
      loader->closeMedia();
    }
  }
}

TEST_F(MediaLoaderTest, DecidesTheFormatByTheContentNotTheName) {
  testing::saveJpeg(folder / "photo.png", 16, 16);
  load(folder / "photo.png");
  EXPECT_EQ(state.history().imageEncoding().format, ImageEncodingSettings::Format::jpeg);
}

TEST_F(MediaLoaderTest, ReplacesTheFileInOneMoment) {
  testing::savePng(folder / "a.png", 40, 30);
  testing::savePng(folder / "b.png", 20, 10);
  load(folder / "a.png");
  state.history().setCrop({1, 1, 1, 1});
  QSignalSpy changed(&state, &EditorState::fileChanged);
  loader->loadMedia(folder / "b.png");
  EXPECT_EQ(state.sourceSize(), QSizeF(40, 30));
  EXPECT_EQ(state.history().crop().left, 1);
  ASSERT_TRUE(waitIdle());
  EXPECT_EQ(changed.count(), 1);
  EXPECT_EQ(state.sourceSize(), QSizeF(20, 10));
  EXPECT_EQ(state.history().crop(), CropMargins());
  EXPECT_FALSE(state.history().canUndo());
}

TEST_F(MediaLoaderTest, LeavesEverythingWhenALoadFails) {
  testing::savePng(folder / "a.png", 40, 30);
  load(folder / "a.png");
  state.history().setCrop({1, 2, 3, 4});
  state.setPreviewOnly(true);
  state.exportState().setMessage(CropExportState::Message::cancelled);
  state.exportState().setProgress(0.5);
  const EditorState::Camera camera = state.camera();
  testing::writeFile(folder / "bad.png", "\x89PNG\r\n\x1a\nnothing");
  QSignalSpy changed(&state, &EditorState::fileChanged);

  load(folder / "bad.png");
  EXPECT_EQ(state.openError(), ImageError(ImageError::unreadable).errorDescription());
  EXPECT_EQ(changed.count(), 0);
  EXPECT_EQ(state.file()->path, folder / "a.png");
  EXPECT_EQ(state.history().crop(), (CropMargins{1, 2, 3, 4}));
  EXPECT_TRUE(state.history().canUndo());
  EXPECT_TRUE(state.previewOnly());
  EXPECT_EQ(state.camera(), camera);
  EXPECT_EQ(state.exportState().message(), CropExportState::Message::cancelled);
  EXPECT_FALSE(state.exportState().progress());
}

TEST_F(MediaLoaderTest, SaysWhyAFileCannotBeOpened) {
  load(folder / "missing.png");
  ASSERT_TRUE(state.openError());
  EXPECT_FALSE(state.openError()->isEmpty());
  EXPECT_FALSE(state.openError()->contains(u'\n'));
  EXPECT_FALSE(state.loaded());
  EXPECT_FALSE(state.busy());
}

TEST_F(MediaLoaderTest, LoadsTheFirstLocalFileOfADrop) {
  testing::savePng(folder / "a.png", 40, 30);
  testing::savePng(folder / "b.png", 20, 10);
  EXPECT_TRUE(drop({QUrl(QStringLiteral("https://example.org/c.png")), urlOf(folder / "a.png"),
                    urlOf(folder / "b.png")}));
  ASSERT_TRUE(waitIdle());
  EXPECT_EQ(state.sourceSize(), QSizeF(40, 30));
}

TEST_F(MediaLoaderTest, AcceptsADropBeforeItLoads) {
  testing::savePng(folder / "a.png", 40, 30);
  QMimeData data;
  data.setUrls({urlOf(folder / "a.png")});
  EXPECT_TRUE(loader->receiveMedia(data));
  EXPECT_FALSE(state.busy());
  QCoreApplication::processEvents();
  EXPECT_TRUE(state.busy());
  ASSERT_TRUE(waitIdle());
}

TEST_F(MediaLoaderTest, AsksForALocalFileWhenADropHasNone) {
  EXPECT_TRUE(drop({QUrl(QStringLiteral("https://example.org/c.png"))}));
  EXPECT_EQ(state.openError(), QStringLiteral("Drop a local image or video file."));
  EXPECT_FALSE(state.busy());
}

TEST_F(MediaLoaderTest, AsksForALocalFileWhenADropIsOfAnotherComputer) {
  EXPECT_TRUE(drop({QUrl(QStringLiteral("file://elsewhere.invalid/a.png"))}));
  EXPECT_EQ(state.openError(), QStringLiteral("Drop a local image or video file."));
}

TEST_F(MediaLoaderTest, RefusesADropWithoutFiles) {
  QMimeData data;
  data.setText(QStringLiteral("words"));
  EXPECT_FALSE(loader->receiveMedia(data));
  EXPECT_FALSE(state.openError());
}

TEST_F(MediaLoaderTest, RefusesADropWhileBusy) {
  testing::savePng(folder / "a.png", 40, 30);
  state.setBusy(true);
  EXPECT_FALSE(drop({urlOf(folder / "a.png")}));
  state.setBusy(false);
  QCoreApplication::processEvents();
  EXPECT_FALSE(state.loaded());
}

TEST_F(MediaLoaderTest, ForgetsADropWhenWorkHasBegunSinceThen) {
  testing::savePng(folder / "a.png", 40, 30);
  QMimeData data;
  data.setUrls({urlOf(folder / "a.png")});
  ASSERT_TRUE(loader->receiveMedia(data));
  state.setBusy(true);
  QCoreApplication::processEvents();
  state.setBusy(false);
  QCoreApplication::processEvents();
  EXPECT_FALSE(state.loaded());
  EXPECT_FALSE(state.openError());
}

TEST_F(MediaLoaderTest, KeepsTheLaterToFinishOfTwoLoads) {
  testing::savePng(folder / "a.png", 40, 30);
  QSignalSpy changed(&state, &EditorState::fileChanged);
  loader->loadMedia(folder / "a.png");
  loader->loadMedia(folder / "missing.png");
  ASSERT_TRUE(QTest::qWaitFor([&] { return changed.count() == 1 && state.openError(); }));
  EXPECT_EQ(state.sourceSize(), QSizeF(40, 30));
  EXPECT_FALSE(state.busy());
}

TEST_F(MediaLoaderTest, TheLaterToFinishOfTwoLoadsStays) {
  testing::savePng(folder / "large.png", 2000, 1500);
  testing::savePng(folder / "small.png", 40, 30);
  std::vector<std::filesystem::path> shown;
  QObject::connect(&state, &EditorState::fileChanged, &state,
                   [&] { shown.push_back(state.file()->path); });
  loader->loadMedia(folder / "large.png");
  loader->loadMedia(folder / "small.png");
  ASSERT_TRUE(QTest::qWaitFor([&] { return shown.size() == 2; }));
  EXPECT_EQ(state.file()->path, shown.back());
  EXPECT_NE(shown.front(), shown.back());
  EXPECT_FALSE(state.busy());
  EXPECT_FALSE(state.openError());
  EXPECT_EQ(state.history().crop(), CropMargins());
}

TEST_F(MediaLoaderTest, LeavesTheLookOfTheWindowButAsksForTheFit) {
  testing::savePng(folder / "a.png", 40, 30);
  state.setCanvasColor(QColor(Qt::blue));
  state.setZoom(3, false);
  state.setShowInspector(false);
  load(folder / "a.png");
  EXPECT_EQ(state.camera(), (EditorState::Camera{3, true, 1, true}));
  EXPECT_EQ(state.canvasColor(), QColor(Qt::blue));
  EXPECT_TRUE(state.showInspector());
}

TEST_F(MediaLoaderTest, ClosesNothingWhileItLoads) {
  testing::savePng(folder / "a.png", 40, 30);
  testing::savePng(folder / "b.png", 20, 10);
  load(folder / "a.png");
  loader->loadMedia(folder / "b.png");
  loader->closeMedia();
  EXPECT_EQ(state.sourceSize(), QSizeF(40, 30));
  ASSERT_TRUE(waitIdle());
  EXPECT_EQ(state.sourceSize(), QSizeF(20, 10));
}

TEST_F(MediaLoaderTest, ClosesTheFileUnlessBusy) {
  testing::savePng(folder / "a.png", 40, 30);
  load(folder / "a.png");
  state.setBusy(true);
  loader->closeMedia();
  EXPECT_TRUE(state.loaded());
  state.setBusy(false);
  loader->closeMedia();
  EXPECT_FALSE(state.loaded());
  EXPECT_EQ(state.history().pixelStep(), 1);
}

TEST_F(MediaLoaderTest, DropsALoadWhenItGoes) {
  testing::savePng(folder / "a.png", 40, 30);
  loader->loadMedia(folder / "a.png");
  loader.reset();
  QCoreApplication::processEvents();
  EXPECT_FALSE(state.loaded());
}

TEST_F(MediaLoaderTest, OffersVideosBeforeImages) {
  const QString filter = MediaLoader::openFilter();
  const auto place = [&](const char* pattern) { return filter.indexOf(QLatin1String(pattern)); };
  EXPECT_LT(place("*.mov"), place("*.png"));
  EXPECT_LT(place("*.png"), place("*.jpg"));
  EXPECT_LT(place("*.jpg"), place("*.heic"));
  EXPECT_LT(place("*.heic"), place("*.tif"));
}

TEST_F(MediaLoaderTest, OffersEveryKindOfImage) {
  const QString filter = MediaLoader::openFilter();
  for (const char* pattern : {"*.png", "*.jpg", "*.jpeg", "*.tif", "*.tiff", "*.heic", "*.heif"}) {
    EXPECT_TRUE(filter.contains(QLatin1String(pattern))) << pattern;
  }
}

}  // namespace
}  // namespace vantrel
