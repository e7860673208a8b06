#pragma once

#include <QColor>
#include <QWidget>
#include <optional>

#include "inspector/inspector_source.h"

namespace vantrel {

class CropCanvasSection;
class CropEncodingSection;
class CropExportFooter;
class CropExportState;
class CropSection;
class EditHistory;
class ImageEncodingSection;
class OriginalSection;

/// The column at the side of an editor: the facts of the source, the crop in numbers, the encoding,
/// the colour of the canvas, and the export pinned below them. What it changes goes through the
/// history; the colour is the window's.
class InspectorView final : public QWidget {
  Q_OBJECT

 public:
  /// Points.
  static constexpr int kWidth = 320;

  /// `accent` is the colour of the export.
  InspectorView(EditHistory& history, const CropExportState& exportState, const QColor& accent,
                QWidget* parent = nullptr);

  [[nodiscard]] CropSection* cropSection() const { return m_crop; }
  [[nodiscard]] CropEncodingSection* videoEncodingSection() const { return m_videoEncoding; }
  [[nodiscard]] ImageEncodingSection* imageEncodingSection() const { return m_imageEncoding; }
  [[nodiscard]] CropCanvasSection* canvasSection() const { return m_canvas; }
  [[nodiscard]] CropExportFooter* footer() const { return m_footer; }

  /// The crop and the encoding are read from the history.
  void setSource(const InspectorSource& source);

 Q_SIGNALS:
  /// The user wants this colour behind the picture, or that of the palette.
  void canvasColorChanged(const std::optional<QColor>& color);
  void exportRequested();
  void cancelRequested();

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  [[nodiscard]] QWidget* makeSections();

  EditHistory& m_history;
  OriginalSection* m_original = nullptr;
  CropSection* m_crop = nullptr;
  CropEncodingSection* m_videoEncoding = nullptr;
  ImageEncodingSection* m_imageEncoding = nullptr;
  CropCanvasSection* m_canvas = nullptr;
  CropExportFooter* m_footer = nullptr;
};

}  // namespace vantrel
