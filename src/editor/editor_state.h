#pragma once

#include <QColor>
#include <QObject>
#include <QSizeF>
#include <QString>
#include <cstdint>
#include <optional>

#include "editor/source_file.h"
#include "export/crop_export_state.h"
#include "model/edit_history.h"

namespace vantrel {

/// All that an editor knows: its open file, the edits to it, what is running, and how it is looked
/// at. It decides what may be done; it does no work itself. Main thread.
///
/// Whatever changes more than one value emits its signals after the last of them.
class EditorState final : public QObject {
  Q_OBJECT

 public:
  /// How the canvas looks at the source.
  struct Camera {
    /// Device pixels for each source pixel.
    double zoom = 1;
    bool fit = true;
    /// Grows with each wish to move to the zoom or the fit.
    int64_t request = 0;
    /// Whether that move centres the picture.
    bool centerOnRequest = true;
    friend bool operator==(const Camera&, const Camera&) = default;
  };

  explicit EditorState(QObject* parent = nullptr);

  [[nodiscard]] EditHistory& history() { return m_history; }
  [[nodiscard]] const EditHistory& history() const { return m_history; }
  [[nodiscard]] CropExportState& exportState() { return m_exportState; }
  [[nodiscard]] const CropExportState& exportState() const { return m_exportState; }

  /// Absent when no file is open.
  [[nodiscard]] const std::optional<SourceFile>& file() const { return m_file; }
  [[nodiscard]] bool loaded() const { return m_file.has_value(); }
  [[nodiscard]] bool isImage() const { return m_file && m_file->imageSource; }
  /// In source pixels; 0 × 0 without a file.
  [[nodiscard]] QSizeF sourceSize() const { return m_file ? m_file->sourceSize : QSizeF(0, 0); }
  /// Of the crop as its margins say, in source pixels; negative when they overlap.
  [[nodiscard]] int64_t outputWidth() const;
  [[nodiscard]] int64_t outputHeight() const;
  [[nodiscard]] bool validCrop() const;
  [[nodiscard]] bool canExport() const;
  /// The source's megabits per second, or the default where it has none.
  [[nodiscard]] double originalBitrate() const;
  /// Whether a file opened from outside may land here: nothing is open and nothing runs.
  [[nodiscard]] bool acceptsIncomingFiles() const { return !loaded() && !m_busy; }

  /// A load or an export is running.
  [[nodiscard]] bool busy() const { return m_busy; }
  [[nodiscard]] const Camera& camera() const { return m_camera; }
  [[nodiscard]] bool previewOnly() const { return m_previewOnly; }
  [[nodiscard]] bool showInspector() const { return m_showInspector; }
  [[nodiscard]] bool dropTargeted() const { return m_dropTargeted; }
  /// Behind the source; the palette's own colour if absent. It outlives the file.
  [[nodiscard]] const std::optional<QColor>& canvasColor() const { return m_canvasColor; }
  /// Of the alerts "Could Not Open File" and "Could Not Export File".
  [[nodiscard]] const std::optional<QString>& openError() const { return m_openError; }
  [[nodiscard]] const std::optional<QString>& exportError() const { return m_exportError; }

  /// The one moment at which a file takes the place of another: everything that belongs to the old
  /// one goes, with its undo.
  void replaceFile(SourceFile file, const CropEdit& edit, int64_t pixelStep);
  /// Back to no file. The pixel step, the inspector and the canvas colour stay.
  void closeFile();

  void setBusy(bool busy);
  void setPreviewOnly(bool previewOnly);
  void setDropTargeted(bool targeted);
  /// What the canvas shows by now; asks for no move.
  void setZoom(double zoom, bool fit);
  void setCanvasColor(const std::optional<QColor>& color);
  void setOpenError(const std::optional<QString>& message);
  void setExportError(const std::optional<QString>& message);

  void requestFit();
  void requestActualSize();
  void requestZoomStep(bool increasing);
  void toggleInspector();
  void undoEdit();
  void redoEdit();

 Q_SIGNALS:
  void fileChanged();
  void busyChanged();
  void cameraChanged();
  /// The preview, the inspector, the drop highlight or the canvas colour changed.
  void appearanceChanged();
  void openErrorChanged();
  void exportErrorChanged();

 private:
  void requestCamera(const Camera& camera);

  EditHistory m_history;
  CropExportState m_exportState;
  std::optional<SourceFile> m_file;
  Camera m_camera;
  bool m_busy = false;
  bool m_previewOnly = false;
  bool m_showInspector = true;
  bool m_dropTargeted = false;
  std::optional<QColor> m_canvasColor;
  std::optional<QString> m_openError;
  std::optional<QString> m_exportError;
};

}  // namespace vantrel
