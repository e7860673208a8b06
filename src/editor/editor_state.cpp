#include "editor/editor_state.h"

#include <cmath>
#include <utility>

#include "canvas/crop_zoom_stops.h"
#include "controls/crop_undo_routing.h"

namespace vantrel {

EditorState::EditorState(QObject* parent) : QObject(parent) {}

int64_t EditorState::outputWidth() const {
  const CropMargins& crop = m_history.crop();
  return static_cast<int64_t>(sourceSize().width()) - crop.left - crop.right;
}

int64_t EditorState::outputHeight() const {
  const CropMargins& crop = m_history.crop();
  return static_cast<int64_t>(sourceSize().height()) - crop.top - crop.bottom;
}

bool EditorState::validCrop() const {
  const CropMargins& crop = m_history.crop();
  if (crop.left < 0 || crop.top < 0 || crop.right < 0 || crop.bottom < 0) return false;
  if (outputWidth() < m_history.pixelStep() || outputHeight() < m_history.pixelStep()) return false;
  return isImage() || (outputWidth() % 2 == 0 && outputHeight() % 2 == 0);
}

bool EditorState::canExport() const {
  if (!loaded() || m_busy || !validCrop()) return false;
  if (isImage()) return true;
  const EncodingSettings settings = m_history.value().encoding;
  return settings.isValid() &&
         (!m_file->sourceIsHDR || settings.codec == EncodingSettings::Codec::hevc);
}

double EditorState::originalBitrate() const {
  const double measured = m_file ? m_file->sourceMbps : 0;
  return std::isfinite(measured) && measured > 0 ? measured : EncodingSettings().megabitsPerSecond;
}

void EditorState::replaceFile(SourceFile file, const CropEdit& edit, int64_t pixelStep) {
  m_file = std::move(file);
  m_showInspector = true;
  m_previewOnly = false;
  m_camera.fit = true;
  // A video is framed by the canvas itself when its player comes.
  if (isImage()) ++m_camera.request;
  m_history.setPixelStep(pixelStep);
  m_history.reset(edit);
  m_exportState.setMessage({});
  Q_EMIT fileChanged();
  Q_EMIT appearanceChanged();
  Q_EMIT cameraChanged();
}

void EditorState::closeFile() {
  m_file.reset();
  m_previewOnly = false;
  m_camera.zoom = 1;
  m_camera.fit = true;
  m_history.reset({});
  m_exportState.setMessage({});
  Q_EMIT fileChanged();
  Q_EMIT appearanceChanged();
  Q_EMIT cameraChanged();
}

void EditorState::setBusy(bool busy) {
  if (busy == m_busy) return;
  m_busy = busy;
  Q_EMIT busyChanged();
}

void EditorState::setPreviewOnly(bool previewOnly) {
  if (previewOnly == m_previewOnly) return;
  m_previewOnly = previewOnly;
  Q_EMIT appearanceChanged();
}

void EditorState::setDropTargeted(bool targeted) {
  if (targeted == m_dropTargeted) return;
  m_dropTargeted = targeted;
  Q_EMIT appearanceChanged();
}

void EditorState::setZoom(double zoom, bool fit) {
  if (zoom == m_camera.zoom && fit == m_camera.fit) return;
  m_camera.zoom = zoom;
  m_camera.fit = fit;
  Q_EMIT cameraChanged();
}

void EditorState::setCanvasColor(const std::optional<QColor>& color) {
  if (color == m_canvasColor) return;
  m_canvasColor = color;
  Q_EMIT appearanceChanged();
}

void EditorState::setOpenError(const std::optional<QString>& message) {
  if (message == m_openError) return;
  m_openError = message;
  Q_EMIT openErrorChanged();
}

void EditorState::setExportError(const std::optional<QString>& message) {
  if (message == m_exportError) return;
  m_exportError = message;
  Q_EMIT exportErrorChanged();
}

void EditorState::requestFit() {
  requestCamera({m_camera.zoom, true, m_camera.request, true});
}

void EditorState::requestActualSize() {
  requestCamera({1, false, m_camera.request, true});
}

void EditorState::requestZoomStep(bool increasing) {
  requestCamera({CropZoomStops::next(m_camera.zoom, increasing), false, m_camera.request, false});
}

void EditorState::requestCamera(const Camera& camera) {
  m_camera = camera;
  ++m_camera.request;
  Q_EMIT cameraChanged();
}

void EditorState::toggleInspector() {
  m_showInspector = !m_showInspector;
  Q_EMIT appearanceChanged();
}

void EditorState::undoEdit() {
  CropUndoRouting::perform(m_history, false);
}

void EditorState::redoEdit() {
  CropUndoRouting::perform(m_history, true);
}

}  // namespace vantrel
