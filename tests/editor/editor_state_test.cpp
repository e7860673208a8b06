#include "editor/editor_state.h"

#include <gtest/gtest.h>

#include <QSignalSpy>
#include <limits>

namespace vantrel {
namespace {

SourceFile imageFile(double width, double height) {
  SourceFile file;
  file.path = "/pictures/photo.jpg";
  file.imageSource.emplace();
  file.sourceSize = {width, height};
  return file;
}

SourceFile videoFile(double width, double height) {
  SourceFile file;
  file.path = "/clips/clip.mov";
  file.sourceSize = {width, height};
  file.sourceMbps = 8;
  return file;
}

class EditorStateTest : public ::testing::Test {
 protected:
  void openImage(double width, double height) {
    state.replaceFile(imageFile(width, height), {}, 1);
  }
  void openVideo(SourceFile file) { state.replaceFile(std::move(file), {}, 2); }
  void setCrop(const CropMargins& crop) { state.history().setCrop(crop); }

  EditorState state;
};

TEST_F(EditorStateTest, BeginsEmptyFittedAndIdle) {
  EXPECT_FALSE(state.loaded());
  EXPECT_FALSE(state.busy());
  EXPECT_FALSE(state.canExport());
  EXPECT_TRUE(state.acceptsIncomingFiles());
  EXPECT_TRUE(state.showInspector());
  EXPECT_FALSE(state.previewOnly());
  EXPECT_EQ(state.camera(), (EditorState::Camera{1, true, 0, true}));
  EXPECT_EQ(state.sourceSize(), QSizeF(0, 0));
  EXPECT_FALSE(state.canvasColor());
  EXPECT_FALSE(state.openError());
  EXPECT_FALSE(state.exportError());
  EXPECT_DOUBLE_EQ(state.originalBitrate(), 2.5);
}

TEST_F(EditorStateTest, DerivesTheOutputFromTheMargins) {
  openImage(640, 480);
  setCrop({10, 20, 30, 40});
  EXPECT_EQ(state.outputWidth(), 600);
  EXPECT_EQ(state.outputHeight(), 420);
  setCrop({600, 0, 600, 0});
  EXPECT_EQ(state.outputWidth(), -560);
}

TEST_F(EditorStateTest, TruncatesTheSourceSize) {
  openImage(640.9, 480.9);
  EXPECT_EQ(state.outputWidth(), 640);
  EXPECT_EQ(state.outputHeight(), 480);
}

TEST_F(EditorStateTest, AcceptsAnImageCropDownToOnePixelAndOfOddSize) {
  openImage(100, 100);
  setCrop({99, 0, 0, 99});
  EXPECT_TRUE(state.validCrop());
  EXPECT_TRUE(state.canExport());
  setCrop({0, 0, 1, 1});
  EXPECT_TRUE(state.validCrop());
  setCrop({100, 0, 0, 0});
  EXPECT_FALSE(state.validCrop());
  EXPECT_FALSE(state.canExport());
}

TEST_F(EditorStateTest, RejectsANegativeMargin) {
  openImage(100, 100);
  for (const CropMargins::Edge edge : CropMargins::kEdges) {
    CropMargins crop;
    crop[edge] = -1;
    setCrop(crop);
    EXPECT_FALSE(state.validCrop());
  }
}

TEST_F(EditorStateTest, AsksAnEvenCropOfAVideo) {
  openVideo(videoFile(1921, 1080));
  EXPECT_FALSE(state.validCrop());
  setCrop({0, 0, 1, 0});
  EXPECT_TRUE(state.validCrop());
  setCrop({0, 0, 1, 1});
  EXPECT_FALSE(state.validCrop());
  setCrop({0, 0, 1920, 0});
  EXPECT_FALSE(state.validCrop());
}

TEST_F(EditorStateTest, ExportsAnHdrVideoAsHevcOnly) {
  SourceFile file = videoFile(1920, 1080);
  file.sourceIsHDR = true;
  openVideo(file);
  EXPECT_TRUE(state.canExport());
  state.history().setCodec(EncodingSettings::Codec::h264);
  EXPECT_FALSE(state.canExport());
}

TEST_F(EditorStateTest, TestsTheBitrateOfAVideoAlone) {
  openVideo(videoFile(1920, 1080));
  state.history().setBitrate(0);
  EXPECT_FALSE(state.canExport());
  openImage(640, 480);
  state.history().setBitrate(0);
  EXPECT_TRUE(state.canExport());
}

TEST_F(EditorStateTest, ExportsNothingWhileBusy) {
  openImage(640, 480);
  QSignalSpy changed(&state, &EditorState::busyChanged);
  state.setBusy(true);
  state.setBusy(true);
  EXPECT_FALSE(state.canExport());
  EXPECT_EQ(changed.count(), 1);
  state.setBusy(false);
  EXPECT_TRUE(state.canExport());
}

TEST_F(EditorStateTest, AcceptsIncomingFilesOnlyWhenEmptyAndIdle) {
  state.setBusy(true);
  EXPECT_FALSE(state.acceptsIncomingFiles());
  state.setBusy(false);
  openImage(10, 10);
  EXPECT_FALSE(state.acceptsIncomingFiles());
}

TEST_F(EditorStateTest, TakesTheDefaultBitrateWhereTheSourceHasNone) {
  for (const double mbps : {0.0, -3.0, std::numeric_limits<double>::infinity(),
                            std::numeric_limits<double>::quiet_NaN()}) {
    SourceFile file = videoFile(640, 480);
    file.sourceMbps = mbps;
    openVideo(file);
    EXPECT_DOUBLE_EQ(state.originalBitrate(), 2.5);
  }
  openVideo(videoFile(640, 480));
  EXPECT_DOUBLE_EQ(state.originalBitrate(), 8);
}

TEST_F(EditorStateTest, ReplacesAllThatBelongsToTheOldFile) {
  openImage(100, 100);
  setCrop({1, 2, 3, 4});
  state.setPreviewOnly(true);
  state.toggleInspector();
  state.requestActualSize();
  state.exportState().setMessage(CropExportState::Message::failed);
  state.setCanvasColor(QColor(Qt::blue));
  const int64_t request = state.camera().request;

  bool consistent = false;
  QObject::connect(&state, &EditorState::fileChanged, &state, [&] {
    consistent = state.sourceSize() == QSizeF(50, 40) && state.history().crop() == CropMargins() &&
                 state.camera().fit && !state.previewOnly();
  });
  openImage(50, 40);
  EXPECT_TRUE(consistent);
  EXPECT_FALSE(state.history().canUndo());
  EXPECT_TRUE(state.showInspector());
  EXPECT_EQ(state.camera().request, request + 1);
  EXPECT_FALSE(state.exportState().message());
  EXPECT_EQ(state.canvasColor(), QColor(Qt::blue));
}

TEST_F(EditorStateTest, LeavesTheCameraOfAVideoToItsPlayer) {
  openVideo(videoFile(640, 480));
  EXPECT_EQ(state.camera().request, 0);
  EXPECT_EQ(state.history().pixelStep(), 2);
}

TEST_F(EditorStateTest, ClosesTheFileAndKeepsWhatBelongsToTheWindow) {
  openImage(100, 100);
  setCrop({1, 2, 3, 4});
  state.toggleInspector();
  state.requestZoomStep(true);
  state.setCanvasColor(QColor(Qt::blue));
  const int64_t request = state.camera().request;
  state.closeFile();
  EXPECT_FALSE(state.loaded());
  EXPECT_EQ(state.history().value(), CropEdit());
  EXPECT_FALSE(state.history().canUndo());
  EXPECT_EQ(state.history().pixelStep(), 1);
  EXPECT_FALSE(state.showInspector());
  EXPECT_EQ(state.canvasColor(), QColor(Qt::blue));
  EXPECT_EQ(state.camera(), (EditorState::Camera{1, true, request, false}));
}

TEST_F(EditorStateTest, TakesTheZoomOfTheCanvasWithoutAskingForAMove) {
  QSignalSpy changed(&state, &EditorState::cameraChanged);
  state.setZoom(0.5, true);
  EXPECT_EQ(state.camera(), (EditorState::Camera{0.5, true, 0, true}));
  state.setZoom(3, false);
  state.setZoom(3, false);
  EXPECT_EQ(state.camera(), (EditorState::Camera{3, false, 0, true}));
  EXPECT_EQ(changed.count(), 2);
}

TEST_F(EditorStateTest, AsksTheCameraForFitActualSizeAndSteps) {
  state.requestActualSize();
  EXPECT_EQ(state.camera(), (EditorState::Camera{1, false, 1, true}));
  state.requestZoomStep(false);
  EXPECT_NEAR(state.camera().zoom, 0.84090, 1e-5);
  EXPECT_FALSE(state.camera().fit);
  EXPECT_FALSE(state.camera().centerOnRequest);
  EXPECT_EQ(state.camera().request, 2);
  const double zoom = state.camera().zoom;
  state.requestFit();
  EXPECT_EQ(state.camera(), (EditorState::Camera{zoom, true, 3, true}));
}

TEST_F(EditorStateTest, UndoesAndRedoesTheCrop) {
  openImage(100, 100);
  setCrop({5, 0, 0, 0});
  state.undoEdit();
  EXPECT_EQ(state.history().crop(), CropMargins());
  state.redoEdit();
  EXPECT_EQ(state.history().crop().left, 5);
}

}  // namespace
}  // namespace vantrel
