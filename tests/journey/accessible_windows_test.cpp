#include <QAbstractButton>
#include <QToolButton>
#include <algorithm>
#include <cmath>

#include "controls/slim_progress_bar.h"
#include "journey/accessible_tree.h"
#include "journey/journey.h"
#include "journey/keyboard.h"
#include "journey/numbered_waves.h"
#include "playback/play_button.h"
#include "review/held_copy.h"
#include "review/save_progress_dialog.h"
#include "support/picture_files.h"

namespace vantrel {
namespace {

using testing::accessibleItem;
using testing::activate;
using testing::inWords;
using testing::Keyboard;
using testing::nameOf;
using testing::waitFor;
using testing::waitUntilGone;

const QStringList kHandles{QStringLiteral("Top left handle"),     QStringLiteral("Top handle"),
                           QStringLiteral("Top right handle"),    QStringLiteral("Right handle"),
                           QStringLiteral("Bottom right handle"), QStringLiteral("Bottom handle"),
                           QStringLiteral("Bottom left handle"),  QStringLiteral("Left handle")};
const QStringList kCanvas = QStringList{QStringLiteral("Crop")} + kHandles +
                            QStringList{QStringLiteral("Left crop margin in pixels"),
                                        QStringLiteral("Top crop margin in pixels"),
                                        QStringLiteral("Right crop margin in pixels"),
                                        QStringLiteral("Bottom crop margin in pixels")};
const QStringList kCropSection{QStringLiteral("Reset Crop"),
                               QStringLiteral("Top crop margin in pixels"),
                               QStringLiteral("Left crop margin in pixels"),
                               QStringLiteral("Crop width in pixels"),
                               QStringLiteral("Crop height in pixels"),
                               QStringLiteral("Right crop margin in pixels"),
                               QStringLiteral("Bottom crop margin in pixels")};
const QStringList kEndOfPanel{QStringLiteral("Background"), QStringLiteral("Reset Background"),
                              QStringLiteral("Export"), QStringLiteral("Canvas Help")};

bool isControl(QAccessible::Role role) {
  switch (role) {
    case QAccessible::Button:
    case QAccessible::RadioButton:
    case QAccessible::CheckBox:
    case QAccessible::Slider:
    case QAccessible::ProgressBar:
    case QAccessible::EditableText:
    case QAccessible::PageTab:
    case QAccessible::MenuItem:
      return true;
    default:
      return false;
  }
}

bool lacksValue(QAccessibleInterface& item) {
  if (item.role() == QAccessible::EditableText) return !item.textInterface();
  if (item.role() != QAccessible::Slider && item.role() != QAccessible::ProgressBar) return false;
  auto* const value = item.valueInterface();
  if (!value) return true;
  const double now = value->currentValue().toDouble();
  return now < value->minimumValue().toDouble() || now > value->maximumValue().toDouble();
}

/// An icon says nothing to those who see it for the first time.
bool lacksToolTip(QAccessibleInterface& item) {
  const auto* const button = qobject_cast<QAbstractButton*>(item.object());
  if (!button || !button->text().isEmpty()) return false;
  // That of the editor's bar is meant to have none.
  if (qobject_cast<const PlayButton*>(button)) return false;
  const QWidget* widget = button;
  while (widget && widget->toolTip().isEmpty())
    widget = widget->isWindow() ? nullptr : widget->parentWidget();
  return !widget;
}

/// Whether a text and a control beside it, which are called the same, are not known to belong
/// together.
bool isReadTwice(QAccessibleInterface& item) {
  if (item.role() != QAccessible::StaticText || !item.parent()) return false;
  for (int index = 0; index < item.parent()->childCount(); ++index) {
    QAccessibleInterface* const other = item.parent()->child(index);
    if (!other || other->state().invisible || other->role() == QAccessible::StaticText ||
        nameOf(*other) != nameOf(item)) {
      continue;
    }
    const auto labels = other->relations(QAccessible::Label);
    if (std::none_of(labels.begin(), labels.end(),
                     [&](const auto& relation) { return relation.first == &item; })) {
      return true;
    }
  }
  return false;
}

class AccessibleWindows : public testing::Journey {
 protected:
  /// What is wrong with anything in this window.
  static std::vector<std::string> faultsOf(QWidget* window) {
    std::vector<std::string> faults;
    int controls = 0;
    testing::visitAccessible(
        QAccessible::queryAccessibleInterface(window), [&](QAccessibleInterface& item) {
          const auto blame = [&](const char* fault) { faults.push_back(inWords(item) + fault); };
          if (isControl(item.role())) ++controls;
          const bool isMet = isControl(item.role()) || item.state().focusable;
          // A menu's dividing line is an item too.
          const bool isDivider = item.role() == QAccessible::Separator;
          if (isMet && !isDivider && nameOf(item).isEmpty()) blame(" has no name");
          if (lacksValue(item)) blame(" has no value");
          if (lacksToolTip(item)) blame(" has no tool tip");
          if (isReadTwice(item)) blame(" is read twice");
        });
    if (controls == 0) faults.emplace_back("there is nothing to control");
    return faults;
  }
  static void expectFaultless(QWidget* window) {
    ASSERT_NE(window, nullptr);
    EXPECT_EQ(faultsOf(window), std::vector<std::string>()) << window->metaObject()->className();
  }
  /// Where the Tab key leads, until it is back where it began.
  static QStringList wayRound(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
    constexpr int kMoreThanAll = 100;
    QStringList names;
    Keyboard::press(key, modifiers);
    const QAccessible::Id first = QAccessible::uniqueId(Keyboard::focused());
    do {
      names << Keyboard::focusedName();
      Keyboard::press(key, modifiers);
    } while (names.size() < kMoreThanAll && QAccessible::uniqueId(Keyboard::focused()) != first);
    return names;
  }
  /// The way back visits the same, and one begins it where the way there ended.
  static void expectWay(QStringList names) {
    EXPECT_EQ(wayRound(Qt::Key_Tab).join(u'\n').toStdString(), names.join(u'\n').toStdString());
    std::reverse(names.begin(), names.end());
    EXPECT_EQ(wayRound(Qt::Key_Backtab, Qt::ShiftModifier).join(u'\n').toStdString(),
              names.join(u'\n').toStdString());
  }
  QStringList toolBar() {
    const QString zoom = QString::number(std::llround(state().camera().zoom * 100)) + u'%';
    return {QStringLiteral("Open…"),    QStringLiteral("Preview Crop"),
            QStringLiteral("Zoom out"), QStringLiteral("Canvas zoom"),
            QStringLiteral("Zoom in"),  zoom,
            QStringLiteral("Fit"),      QStringLiteral("Inspector")};
  }
  /// Until the picture is fitted, of which the tool bar tells.
  bool waitFitted() {
    return QTest::qWaitFor([this] { return state().camera().zoom != 1; });
  }
  double valueOf(const char* name, QAccessible::Role role = QAccessible::Slider) {
    auto* const item = accessibleItem(editor, QString::fromLatin1(name), role);
    return item && item->valueInterface() ? item->valueInterface()->currentValue().toDouble() : -1;
  }
};

TEST_F(AccessibleWindows, TheEmptyWindowTellsAll) {
  editor = windows.openEditor();
  ASSERT_TRUE(activate(editor));
  expectFaultless(editor);
  expectWay(
      {QStringLiteral("Drop or Open…"), QStringLiteral("Sample Video"), QStringLiteral("Open…")});
}

TEST_F(AccessibleWindows, AnImagesWindowTellsAllAndLeadsThroughAll) {
  testing::savePng(folder / "photo.png", 120, 90);
  ASSERT_NO_FATAL_FAILURE(openByDialog(folder / "photo.png"));
  ASSERT_TRUE(waitFitted());
  expectFaultless(editor);
  expectWay(kCanvas + kCropSection + QStringList{QStringLiteral("PNG")} + kEndOfPanel + toolBar());

  ImageEncodingSettings jpeg = state().history().imageEncoding();
  jpeg.format = ImageEncodingSettings::Format::jpeg;
  state().history().setImageEncoding(jpeg);
  QCoreApplication::processEvents();
  expectFaultless(editor);
  EXPECT_EQ(valueOf("JPEG quality"), 0.9);
  EXPECT_NEAR(valueOf("Canvas zoom"), state().camera().zoom * 100, 0.1);
  click(footer()->helpButton());
  QCoreApplication::processEvents();
  expectFaultless(editor);
}

TEST_F(AccessibleWindows, AJpegWithTransparencyTellsAllAndLeadsThroughItsFill) {
  testing::PngSpec spec;
  spec.width = 120;
  spec.height = 90;
  spec.colorType = 6;
  spec.sample = [](uint32_t x, uint32_t, int) { return static_cast<uint16_t>(2 * x); };
  testing::saveBytes(folder / "glass.png", testing::makePng(spec));
  ASSERT_NO_FATAL_FAILURE(openByDialog(folder / "glass.png"));
  ASSERT_TRUE(waitFitted());
  CropEdit jpeg = state().history().value();
  jpeg.imageEncoding.format = ImageEncodingSettings::Format::jpeg;
  jpeg.imageEncoding.background = ImageBackground(QColor(255, 0, 51));
  state().history().reset(jpeg);
  QCoreApplication::processEvents();
  expectFaultless(editor);
  expectWay(kCanvas + kCropSection +
            QStringList{QStringLiteral("JPEG"), QStringLiteral("Reset Quality"),
                        QStringLiteral("JPEG quality"), QStringLiteral("Fill Color"),
                        QStringLiteral("Reset JPEG Background")} +
            kEndOfPanel + toolBar());
  auto* const fill = accessibleItem(editor, QStringLiteral("Fill Color"), QAccessible::Button);
  ASSERT_NE(fill, nullptr);
  EXPECT_EQ(fill->text(QAccessible::Description), QStringLiteral("#FF0033"));
}

TEST_F(AccessibleWindows, ASaveThatTakesLongTellsItsProgress) {
  testing::savePng(folder / "Vantrel-1", 64, 64);
  const testing::HeldCopy held;
  const auto review = std::make_unique<ReviewWindow>(
      std::make_unique<ExportReviewDocument>(FinishedExport{TemporaryExport(folder / "Vantrel-1"),
                                                            {},
                                                            ContentType::png(),
                                                            QStringLiteral("photo-cropped")},
                                             &openMoviePlayer, held.copy()));
  review->setAttribute(Qt::WA_DeleteOnClose, false);
  review->show();
  ASSERT_TRUE(activate(review.get()));
  review->document().save(folder / "saved.png");
  auto* const dialog = waitFor<SaveProgressDialog>();
  ASSERT_NE(dialog, nullptr);
  ASSERT_TRUE(Keyboard::isIn(dialog));
  // First with a known part of the file, then while the disk takes its time.
  for (const int64_t bytes : {int64_t{1}, int64_t{1} << 40}) {
    held.tell(bytes);
    ASSERT_TRUE(QTest::qWaitFor([&] { return dialog->bar()->maximum() == 0 || bytes == 1; }));
    expectFaultless(dialog);
    EXPECT_NE(accessibleItem(dialog, QStringLiteral("Saving"), QAccessible::ProgressBar), nullptr);
  }
  expectWay({QStringLiteral("Cancel")});
  held.finish();
  ASSERT_TRUE(waitUntilGone<SaveProgressDialog>());
}

TEST_F(AccessibleWindows, AVideosWindowTellsAllAndLeadsThroughAll) {
  testing::NumberedWaves::make(folder / "clip.mp4", 30);
  ASSERT_NO_FATAL_FAILURE(openByDialog(folder / "clip.mp4"));
  ASSERT_TRUE(waitFitted());
  expectFaultless(editor);
  press(Qt::Key_Tab);
  ASSERT_TRUE(Keyboard::tabTo(QStringLiteral("Inspector")));
  expectWay(kCanvas +
            QStringList{QStringLiteral("Play"), QStringLiteral("Playback position"),
                        QStringLiteral("Mute")} +
            kCropSection +
            QStringList{QStringLiteral("HEVC"), QStringLiteral("Match Original Bitrate"),
                        QStringLiteral("Video bitrate in Mbps")} +
            kEndOfPanel + toolBar());
  EXPECT_EQ(valueOf("Video bitrate in Mbps"), state().history().bitrate());
  EXPECT_EQ(valueOf("Playback position"), 0);
  auto* const position =
      accessibleItem(editor, QStringLiteral("Playback position"), QAccessible::Slider);
  ASSERT_NE(position, nullptr);
  EXPECT_NEAR(position->valueInterface()->maximumValue().toDouble(), state().file()->duration,
              0.01);
  position->valueInterface()->setCurrentValue(0.5);
  EXPECT_EQ(position->text(QAccessible::Value), QStringLiteral("0.5 s"));
}

TEST_F(AccessibleWindows, TabsTellAll) {
  testing::savePng(folder / "photo.png", 120, 90);
  ASSERT_NO_FATAL_FAILURE(openByDialog(folder / "photo.png"));
  windows.openTab(editor);
  QCoreApplication::processEvents();
  expectFaultless(editor);
}

TEST_F(AccessibleWindows, ARunningExportTellsItsProgress) {
  // Big enough to be met on its way.
  testing::savePng(folder / "photo.png", 6000, 4000);
  ASSERT_NO_FATAL_FAILURE(openByDialog(folder / "photo.png"));
  click(footer()->exportButton());
  ASSERT_TRUE(QTest::qWaitFor([this] { return state().exportState().progress().has_value(); }));
  QCoreApplication::processEvents();
  EXPECT_NE(accessibleItem(editor, QStringLiteral("Export progress"), QAccessible::ProgressBar),
            nullptr);
  expectFaultless(editor);
  state().exportState().progress();
  click(footer()->cancelButton());
  ASSERT_TRUE(QTest::qWaitFor([this] { return !state().busy(); }));
}

TEST_F(AccessibleWindows, ReviewsAndTheirQuestionTellAll) {
  testing::savePng(folder / "photo.png", 120, 90);
  ASSERT_NO_FATAL_FAILURE(open(folder / "photo.png"));
  ReviewWindow* review = exportCrop();
  ASSERT_NE(review, nullptr);
  expectFaultless(review);
  review->close();
  auto* const question = waitFor<QMessageBox>();
  ASSERT_NE(question, nullptr);
  expectFaultless(question);
  delete review;

  testing::NumberedWaves::make(folder / "clip.mp4", 30);
  ASSERT_NO_FATAL_FAILURE(open(folder / "clip.mp4"));
  review = exportCrop();
  ASSERT_NE(review, nullptr);
  ASSERT_TRUE(QTest::qWaitFor([&] { return review->document().playback().player() != nullptr; }));
  expectFaultless(review);
  ASSERT_TRUE(Keyboard::isIn(review));
  ASSERT_TRUE(Keyboard::tabTo(QStringLiteral("Exported video")));
  review->document().playback().player()->pause();
  ASSERT_TRUE(QTest::qWaitFor([&] { return !review->document().playback().isPlaying(); }));
  expectWay({QStringLiteral("Play"), QStringLiteral("Playback position"), QStringLiteral("More"),
             QStringLiteral("Enter Full Screen"), QStringLiteral("Exported video")});
}

TEST_F(AccessibleWindows, AlertsTellAll) {
  testing::saveBytes(folder / "broken.png", {'n', 'o'});
  editor = windows.openFile(folder / "broken.png");
  auto* const alert = waitFor<QMessageBox>();
  ASSERT_NE(alert, nullptr);
  expectFaultless(alert);
}

}  // namespace
}  // namespace vantrel
