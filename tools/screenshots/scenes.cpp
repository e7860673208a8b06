#include "screenshots/scenes.h"

#include <QAction>
#include <QDialog>
#include <QMainWindow>
#include <QMenuBar>
#include <QPushButton>
#include <QToolButton>
#include <QToolTip>
#include <optional>
#include <utility>

#include "canvas/canvas_scroll_view.h"
#include "canvas/crop_canvas_field.h"
#include "canvas/crop_canvas_fields.h"
#include "canvas/crop_overlay_view.h"
#include "canvas/video_canvas_view.h"
#include "controls/crop_number_field.h"
#include "editor/crop_menu_bar.h"
#include "editor/editor_tool_bar.h"
#include "editor/editor_view.h"
#include "editor/editor_window.h"
#include "inspector/crop_export_footer.h"
#include "inspector/inspector_view.h"
#include "review/review_window.h"

namespace vantrel {
namespace {

/// Points; room for a frame and for what stands below a window.
constexpr QPoint kPlace{20, 40};
constexpr QSize kEditorSize{1280, 800};

constexpr CropMargins kImageCrop{412, 288, 396, 180};
constexpr CropMargins kBadgeCrop{60, 60, 60, 60};
constexpr CropMargins kVideoCrop{50, 30, 110, 50};
constexpr CropMargins kSampleCrop{40, 20, 72, 34};

constexpr int64_t kPlaySeconds = 3;
constexpr double kPartOfExport = 0.37;
constexpr int64_t kBytesOfPart = 8'900'000;
constexpr int64_t kBytesOfWhole = 24'100'000;
constexpr double kBitrate = 24;

EditorState& stateOf(EditorWindow* window) {
  return window->view()->state();
}

void useJpeg(EditHistory& history) {
  ImageEncodingSettings settings = history.imageEncoding();
  settings.format = ImageEncodingSettings::Format::jpeg;
  history.setImageEncoding(settings);
}

/// Over again if what has just opened the movie goes elsewhere in between.
void showPlace(Player& player) {
  for (std::optional<bool> landed; landed != true;) {
    landed.reset();
    player.seek({kPlaySeconds, 1}, [&landed](bool isThere) { landed = isThere; });
    waitUntil("a place in the movie", [&landed] { return landed.has_value(); });
  }
}

void activate(QWidget* window) {
  window->raise();
  window->activateWindow();
  waitUntil("the keyboard", [window] { return window->isActiveWindow(); });
}

void closeAll() {
  // With a window go its dialogs.
  while (auto* window = visibleWidget<QMainWindow>())
    delete window;
}

/// As an export shows how far it is.
void showProgress(EditorState& state, double progress, int64_t bytes) {
  state.setBusy(true);
  state.exportState().setMessage({});
  state.exportState().setBytes(bytes);
  state.exportState().setProgress(progress);
}

void endExport(EditorState& state, std::optional<CropExportState::Message> message) {
  state.exportState().setProgress({});
  state.exportState().setMessage(message);
  state.setBusy(false);
}

}  // namespace

Scenes::Scenes(Photographer photographer, std::filesystem::path pictures,
               std::filesystem::path sample)
    : m_photographer(std::move(photographer)),
      m_pictures(std::move(pictures)),
      m_sample(std::move(sample)) {}

void Scenes::playAll() {
  for (void (Scenes::*const scene)() :
       {&Scenes::showEmpty, &Scenes::showImage, &Scenes::showTransparency, &Scenes::showVideo,
        &Scenes::showExports, &Scenes::showTabs, &Scenes::showImageReview,
        &Scenes::showVideoReview}) {
    (this->*scene)();
    closeAll();
  }
}

EditorWindow* Scenes::openEmpty() {
  EditorWindow* window = m_windows.openEditor();
  window->resize(kEditorSize);
  window->move(kPlace);
  activate(window);
  return window;
}

EditorWindow* Scenes::open(const std::filesystem::path& path) {
  EditorWindow* window = openEmpty();
  window->view()->loader().loadMedia(path);
  waitUntil("a picture", [window] {
    return stateOf(window).loaded() && window->view()->canvas()->canvas()->isPictureShown();
  });
  if (Player* player = stateOf(window).player()) showPlace(*player);
  return window;
}

ReviewWindow* Scenes::exportCrop(EditorWindow* window) {
  window->view()->exports().exportMedia();
  waitUntil("a review", [] { return visibleWidget<ReviewWindow>() != nullptr; });
  auto* review = visibleWidget<ReviewWindow>();
  activate(review);
  return review;
}

void Scenes::take(const QWidget* window, const char* name) {
  m_photographer.take(*window, QLatin1String(name));
}

void Scenes::takeDialog(const QWidget* window, const char* name) {
  waitUntil("a dialog", [] { return visibleWidget<QDialog>() != nullptr; });
  auto* dialog = visibleWidget<QDialog>();
  activate(dialog);
  take(window, name);
  dialog->reject();
  waitUntil("the end of a dialog", [] { return visibleWidget<QDialog>() == nullptr; });
}

void Scenes::showEmpty() {
  EditorWindow* window = openEmpty();
  take(window, "empty");
  stateOf(window).setDropTargeted(true);
  take(window, "drop");
  stateOf(window).setDropTargeted(false);
  window->view()->loader().loadMedia(m_pictures / "missing" / "harbour.mov");
  takeDialog(window, "open-failed");
  window->view()->openMedia();
  takeDialog(window, "open-dialog");
}

void Scenes::showImage() {
  EditorWindow* window = open(m_pictures / "dusk.jpg");
  EditorState& state = stateOf(window);
  state.history().setCrop(kImageCrop);
  useJpeg(state.history());
  const CropOverlayView* overlay = window->view()->canvas()->overlay();
  CropNumberField* left = overlay->fields()->field(CropMargins::Edge::left)->field();
  // While it is edited, a field keeps what it shows.
  waitUntil("the margins", [left] { return left->text() == QString::number(kImageCrop.left); });
  left->setFocus(Qt::TabFocusReason);
  take(window, "image");
  window->view()->canvas()->setFocus();
  CropExportFooter* footer = window->view()->inspector()->footer();
  footer->helpButton()->click();
  take(window, "help");
  footer->helpButton()->click();
  const QWidget* preview = window->toolBar()->widgetForAction(window->toolBar()->previewAction());
  QToolTip::showText(preview->mapToGlobal(preview->rect().center()), preview->toolTip());
  take(window, "tip");
  QToolTip::hideText();
  QAction* view = window->commands()->actions().at(2);
  view->menu()->popup(window->commands()->mapToGlobal(
      window->commands()->actionGeometry(view).bottomLeft() + QPoint(0, 1)));
  take(window, "menu");
  view->menu()->close();
  state.setPreviewOnly(true);
  take(window, "preview");
}

void Scenes::showTransparency() {
  EditorWindow* window = open(m_pictures / "badge.png");
  stateOf(window).history().setCrop(kBadgeCrop);
  useJpeg(stateOf(window).history());
  take(window, "image-transparency");
}

void Scenes::showVideo() {
  EditorWindow* window = open(m_sample);
  stateOf(window).history().setCrop(kSampleCrop);
  take(window, "video-sdr");
  closeAll();
  window = open(m_pictures / "harbour.mov");
  stateOf(window).history().setCrop(kVideoCrop);
  stateOf(window).history().setBitrate(kBitrate);
  take(window, "video-hdr");
}

void Scenes::showExports() {
  EditorWindow* window = open(m_pictures / "harbour.mov");
  EditorState& state = stateOf(window);
  state.history().setCrop(kVideoCrop);
  state.history().setBitrate(kBitrate);
  showProgress(state, kPartOfExport, kBytesOfPart);
  take(window, "exporting");
  showProgress(state, 1, kBytesOfWhole);
  take(window, "finalizing");
  endExport(state, CropExportState::Message::cancelled);
  take(window, "cancelled");
  endExport(state, CropExportState::Message::failed);
  state.setExportError(QStringLiteral("There is not enough free space on the disk."));
  takeDialog(window, "export-failed");
  take(window, "failed");
}

void Scenes::showTabs() {
  EditorWindow* window = open(m_pictures / "dusk.jpg");
  m_windows.openTab(window);
  window->view()->loader().loadMedia(m_pictures / "harbour.mov");
  waitUntil("a second picture", [window] {
    return stateOf(window).loaded() && window->view()->canvas()->canvas()->isPictureShown();
  });
  stateOf(window).history().setCrop(kVideoCrop);
  stateOf(window).history().setBitrate(kBitrate);
  showProgress(stateOf(window), kPartOfExport, kBytesOfPart);
  take(window, "tabs");
  endExport(stateOf(window), {});
}

void Scenes::showImageReview() {
  EditorWindow* window = open(m_pictures / "dusk.jpg");
  stateOf(window).history().setCrop(kImageCrop);
  useJpeg(stateOf(window).history());
  ReviewWindow* review = exportCrop(window);
  review->move(kPlace);
  take(review, "review-image");
  review->close();
  takeDialog(review, "save-question");
}

void Scenes::showVideoReview() {
  EditorWindow* window = open(m_sample);
  stateOf(window).history().setCrop(kSampleCrop);
  ReviewWindow* review = exportCrop(window);
  review->move(kPlace);
  waitUntil("a player", [review] { return review->document().reviewPlayer() != nullptr; });
  showPlace(*review->document().reviewPlayer());
  take(review, "review-video");
}

}  // namespace vantrel
