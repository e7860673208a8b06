#include <QColorDialog>
#include <QLineEdit>
#include <QPointer>
#include <QSlider>
#include <QTabBar>
#include <QToolButton>

#include "controls/popover.h"
#include "editor/editor_tab_bar.h"
#include "editor/editor_workspace.h"
#include "journey/journey.h"
#include "journey/keyboard.h"
#include "journey/numbered_waves.h"
#include "playback/playback_controls.h"
#include "playback/playback_state.h"
#include "playback/position_slider.h"
#include "support/film_folder.h"
#include "support/image_probe.h"
#include "support/picture_files.h"

namespace vantrel {
namespace {

using testing::activate;
using testing::Keyboard;
using testing::visible;
using testing::waitFor;
using testing::waitUntilGone;

/// From an empty window to a saved file without a mouse.
class KeyboardJourney : public testing::Journey {
 protected:
  void SetUp() override {
    Journey::SetUp();
    editor = windows.openEditor();
    ASSERT_TRUE(activate(editor));
  }

  static void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
    Keyboard::press(key, modifiers);
  }
  void openByMenu(const std::filesystem::path& path) {
    ASSERT_TRUE(Keyboard::choose(Qt::Key_F, Qt::AltModifier, QStringLiteral("Open…")));
    ASSERT_NO_FATAL_FAILURE(answerDialog(path));
    ASSERT_NO_FATAL_FAILURE(waitOpened());
  }
  static void answerDialog(const std::filesystem::path& path) {
    auto* const dialog = waitFor<QFileDialog>();
    ASSERT_NE(dialog, nullptr);
    ASSERT_TRUE(Keyboard::isIn(dialog));
    press(Qt::Key_N, Qt::AltModifier);  // "File name:"
    ASSERT_TRUE(qobject_cast<QLineEdit*>(QApplication::focusWidget()));
    press(Qt::Key_A, Qt::ControlModifier);
    Keyboard::type(path.string());
    press(Qt::Key_Return);
    ASSERT_TRUE(waitUntilGone<QFileDialog>());
  }
  static void typeInto(const char* field, const std::string& number) {
    ASSERT_TRUE(Keyboard::tabTo(QString::fromLatin1(field))) << field;
    Keyboard::type(number);
  }
  static void pressButton(const char* name) {
    ASSERT_TRUE(Keyboard::tabTo(QString::fromLatin1(name))) << name;
    press(Qt::Key_Return);
  }
  ReviewWindow* waitForReview() {
    auto* const review = waitFor<ReviewWindow>();
    return review && Keyboard::isIn(review) ? review : nullptr;
  }
};

TEST_F(KeyboardJourney, CropsAPhotoAndSavesItAsJpeg) {
  testing::savePng(folder / "photo.png", 240, 180);
  ASSERT_NO_FATAL_FAILURE(openByMenu(folder / "photo.png"));

  ASSERT_NO_FATAL_FAILURE(typeInto("Left crop margin in pixels", "12"));
  ASSERT_NO_FATAL_FAILURE(typeInto("Top crop margin in pixels", "7"));
  ASSERT_NO_FATAL_FAILURE(typeInto("Crop width in pixels", "200"));
  press(Qt::Key_Return);
  EXPECT_EQ(crop(), (CropMargins{26, 7, 14, 0}));  // About its middle.
  ASSERT_TRUE(Keyboard::tabTo(QStringLiteral("Bottom handle")));
  press(Qt::Key_Up, Qt::ShiftModifier);
  EXPECT_EQ(crop(), (CropMargins{26, 7, 14, 10}));

  ASSERT_TRUE(Keyboard::tabTo(QStringLiteral("PNG")));
  press(Qt::Key_Right);
  ASSERT_TRUE(Keyboard::tabTo(QStringLiteral("JPEG quality")));
  Keyboard::press(Qt::Key_Left, 20);
  EXPECT_DOUBLE_EQ(state().history().imageEncoding().quality, 0.7);
  ASSERT_NO_FATAL_FAILURE(pressButton("Export"));

  ReviewWindow* const review = waitForReview();
  ASSERT_NE(review, nullptr);
  ASSERT_TRUE(Keyboard::choose(Qt::Key_F10, {}, QStringLiteral("Save…")));
  ASSERT_NO_FATAL_FAILURE(answerDialog(folder / "saved.jpg"));
  ASSERT_TRUE(QTest::qWaitFor([review] { return !review->document().isUnsaved(); }));
  ASSERT_TRUE(Keyboard::isIn(review));
  ASSERT_TRUE(Keyboard::choose(Qt::Key_F10, {}, QStringLiteral("Close Window")));
  ASSERT_TRUE(waitUntilGone<ReviewWindow>());

  const testing::JpegContents saved = testing::readJpegFile(folder / "saved.jpg");
  EXPECT_EQ(saved.width, 200);
  EXPECT_EQ(saved.height, 163);
  EXPECT_TRUE(testing::sessionFiles().empty());
}

TEST_F(KeyboardJourney, PlaysAndExportsAVideo) {
  constexpr int kPictures = 30;
  testing::NumberedWaves::make(folder / "clip.mp4", kPictures);
  ASSERT_NO_FATAL_FAILURE(openByMenu(folder / "clip.mp4"));
  PlaybackControls* const bar = editor->view()->workspace()->playback();

  ASSERT_NO_FATAL_FAILURE(pressButton("Play"));
  ASSERT_TRUE(QTest::qWaitFor([this] { return state().player()->currentTime() > 0; }));
  ASSERT_NO_FATAL_FAILURE(pressButton("Pause"));
  ASSERT_TRUE(QTest::qWaitFor(
      [bar] { return bar->playButton()->accessibleName() == QStringLiteral("Play"); }));
  ASSERT_TRUE(Keyboard::tabTo(QStringLiteral("Playback position")));
  press(Qt::Key_Home);
  EXPECT_EQ(bar->slider()->value(), 0);
  Keyboard::press(Qt::Key_Right, 3);
  EXPECT_EQ(bar->slider()->value(), 3 * PositionSlider::kTicks / 10);
  ASSERT_NO_FATAL_FAILURE(pressButton("Mute"));
  EXPECT_EQ(Keyboard::focusedName(), QStringLiteral("Unmute"));

  ASSERT_NO_FATAL_FAILURE(typeInto("Left crop margin in pixels", "30"));
  ASSERT_NO_FATAL_FAILURE(typeInto("Top crop margin in pixels", "16"));
  ASSERT_TRUE(Keyboard::tabTo(QStringLiteral("HEVC")));
  press(Qt::Key_Left);
  EXPECT_EQ(state().history().codec(), EncodingSettings::Codec::h264);
  ASSERT_TRUE(Keyboard::tabTo(QStringLiteral("Video bitrate in Mbps")));
  press(Qt::Key_Right);
  press(Qt::Key_Right);
  const double bitrate = state().history().bitrate();
  EXPECT_GT(bitrate, state().originalBitrate());
  EXPECT_EQ(crop(), (CropMargins{30, 16, 0, 0}));
  ASSERT_NO_FATAL_FAILURE(pressButton("Export"));

  ReviewWindow* const review = waitForReview();
  ASSERT_NE(review, nullptr);
  PlaybackState& playback = review->document().playback();
  ASSERT_TRUE(QTest::qWaitFor([&] { return playback.player() != nullptr; }));
  const bool plays = playback.isPlaying();
  press(Qt::Key_Space);
  EXPECT_TRUE(QTest::qWaitFor([&] { return playback.isPlaying() != plays; }));
  ASSERT_TRUE(Keyboard::tabTo(QStringLiteral("Playback position")));
  press(Qt::Key_Home);
  const bool loops = review->document().loopEnabled();
  ASSERT_TRUE(Keyboard::tabTo(QStringLiteral("More")));
  ASSERT_TRUE(Keyboard::choose(Qt::Key_Space, {}, QStringLiteral("Loop")));
  EXPECT_NE(review->document().loopEnabled(), loops);

  press(Qt::Key_S, Qt::ControlModifier);
  ASSERT_NO_FATAL_FAILURE(answerDialog(folder / "saved.mov"));
  ASSERT_TRUE(QTest::qWaitFor([review] { return !review->document().isUnsaved(); }));
  ASSERT_TRUE(Keyboard::isIn(review));
  press(Qt::Key_W, Qt::ControlModifier);
  ASSERT_TRUE(waitUntilGone<ReviewWindow>());
  EXPECT_EQ(testing::runFfprobe({"-select_streams", "v", "-show_entries",
                                 "stream=codec_name,width,height", "-of", "csv=p=0",
                                 (folder / "saved.mov").string()}),
            "h264,130,104\n");
}

TEST_F(KeyboardJourney, CancelsAnExportWithTheKeyThatBeganIt) {
  testing::NumberedWaves::make(folder / "clip.mp4", 300);
  ASSERT_NO_FATAL_FAILURE(openByMenu(folder / "clip.mp4"));
  ASSERT_TRUE(Keyboard::tabTo(QStringLiteral("Export")));
  const CropExportState& exporting = state().exportState();
  QStringList focused;
  QObject::connect(&exporting, &CropExportState::changed, editor, [&] {
    if (!exporting.progress() || !focused.isEmpty()) return;
    focused << Keyboard::focusedName();
    QMetaObject::invokeMethod(
        editor, [] { press(Qt::Key_Return); }, Qt::QueuedConnection);
  });
  press(Qt::Key_Return);
  ASSERT_TRUE(QTest::qWaitFor([&] { return exporting.message() && state().canExport(); }));
  EXPECT_EQ(focused, QStringList(QStringLiteral("Cancel")));
  EXPECT_EQ(exporting.message(), CropExportState::Message::cancelled);
  EXPECT_TRUE(QTest::qWaitFor([] { return Keyboard::focusedName() == QStringLiteral("Export"); }));
}

TEST_F(KeyboardJourney, AnswersTheQuestionOnClosing) {
  testing::savePng(folder / "photo.png", 120, 90);
  ASSERT_NO_FATAL_FAILURE(openByMenu(folder / "photo.png"));
  ASSERT_NO_FATAL_FAILURE(pressButton("Export"));
  ASSERT_NE(waitForReview(), nullptr);
  press(Qt::Key_W, Qt::ControlModifier);
  auto* question = waitFor<QMessageBox>();
  ASSERT_NE(question, nullptr);
  ASSERT_TRUE(Keyboard::isIn(question));
  press(Qt::Key_Escape);
  ASSERT_TRUE(waitUntilGone<QMessageBox>());
  ReviewWindow* const review = waitForReview();
  ASSERT_NE(review, nullptr);

  press(Qt::Key_W, Qt::ControlModifier);
  question = waitFor<QMessageBox>();
  ASSERT_NE(question, nullptr);
  ASSERT_TRUE(Keyboard::isIn(question));
  EXPECT_EQ(Keyboard::focusedName(), QStringLiteral("Save"));
  ASSERT_TRUE(Keyboard::tabTo(QStringLiteral("Don’t Save")));
  press(Qt::Key_Space);
  ASSERT_TRUE(waitUntilGone<ReviewWindow>());
  EXPECT_TRUE(testing::sessionFiles().empty());
}

TEST_F(KeyboardJourney, UsesTheBarsAndTheRestOfThePanel) {
  testing::savePng(folder / "photo.png", 120, 90);
  ASSERT_NO_FATAL_FAILURE(openByMenu(folder / "photo.png"));

  EXPECT_TRUE(state().camera().fit);
  ASSERT_NO_FATAL_FAILURE(pressButton("Zoom out"));
  EXPECT_TRUE(QTest::qWaitFor([&] { return !state().camera().fit; }));
  ASSERT_TRUE(Keyboard::tabTo(QStringLiteral("Canvas zoom")));
  press(Qt::Key_Home);
  EXPECT_TRUE(QTest::qWaitFor([&] { return state().camera().zoom < 0.11; }));
  ASSERT_NO_FATAL_FAILURE(pressButton("Fit"));
  EXPECT_TRUE(QTest::qWaitFor([&] { return state().camera().fit; }));
  ASSERT_NO_FATAL_FAILURE(pressButton("Preview Crop"));
  EXPECT_TRUE(state().previewOnly());
  press(Qt::Key_Escape);
  EXPECT_FALSE(state().previewOnly());

  ASSERT_NO_FATAL_FAILURE(pressButton("Canvas Help"));
  EXPECT_EQ(visible<Popover>().size(), 1);
  press(Qt::Key_Escape);
  EXPECT_TRUE(visible<Popover>().isEmpty());
  ASSERT_NO_FATAL_FAILURE(pressButton("Background"));
  auto* const colors = waitFor<QColorDialog>();
  ASSERT_NE(colors, nullptr);
  ASSERT_TRUE(Keyboard::isIn(colors));
  press(Qt::Key_Escape);
  ASSERT_TRUE(waitUntilGone<QColorDialog>());
  ASSERT_TRUE(Keyboard::isIn(editor));
  ASSERT_NO_FATAL_FAILURE(pressButton("Inspector"));
  EXPECT_TRUE(QTest::qWaitFor([this] { return !inspector()->isVisible(); }));
  ASSERT_NO_FATAL_FAILURE(pressButton("Inspector"));
  EXPECT_TRUE(QTest::qWaitFor([this] { return inspector()->isVisible(); }));
}

TEST_F(KeyboardJourney, UsesTheTabs) {
  testing::savePng(folder / "photo.png", 120, 90);
  ASSERT_NO_FATAL_FAILURE(openByMenu(folder / "photo.png"));
  EditorView* const first = editor->view();
  press(Qt::Key_T, Qt::ControlModifier);
  ASSERT_TRUE(QTest::qWaitFor([this] { return editor->editors().size() == 2; }));
  ASSERT_NE(editor->view(), first);
  ASSERT_NO_FATAL_FAILURE(pressButton("New Tab"));
  ASSERT_TRUE(QTest::qWaitFor([this] { return editor->editors().size() == 3; }));

  press(Qt::Key_PageUp, Qt::ControlModifier | Qt::ShiftModifier);
  press(Qt::Key_PageUp, Qt::ControlModifier | Qt::ShiftModifier);
  EXPECT_EQ(editor->editors().at(1), first);
  EXPECT_EQ(editor->editors().first(), editor->view());
  press(Qt::Key_PageUp, Qt::ControlModifier | Qt::ShiftModifier);
  EXPECT_EQ(editor->editors().first(), editor->view());
  press(Qt::Key_PageDown, Qt::ControlModifier | Qt::ShiftModifier);
  EXPECT_EQ(editor->editors().first(), first);

  const auto isOnTabs = [] { return qobject_cast<QTabBar*>(QApplication::focusWidget()); };
  for (int count = 0; count < 40 && !isOnTabs(); ++count)
    press(Qt::Key_Tab);
  ASSERT_TRUE(isOnTabs());
  press(Qt::Key_Left);
  EXPECT_EQ(editor->view(), first);
  EXPECT_TRUE(isOnTabs());
  press(Qt::Key_W, Qt::ControlModifier);
  ASSERT_TRUE(QTest::qWaitFor([this] { return editor->editors().size() == 2; }));
  EXPECT_FALSE(editor->editors().contains(first));
}

}  // namespace
}  // namespace vantrel
