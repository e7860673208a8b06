#pragma once

#include <QColor>
#include <QWidget>

#include "inspector/inspector_source.h"

namespace vantrel {

class CropExportFooter;
class CropExportState;
class CropSection;
class EditHistory;
class OriginalSection;

/// The column at the side of an editor: the facts of the source, the crop in numbers, and the
/// export below them. What it changes goes through the history.
class InspectorView final : public QWidget {
  Q_OBJECT

 public:
  /// Points.
  static constexpr int kWidth = 320;

  /// `accent` is the colour of the export.
  InspectorView(EditHistory& history, const CropExportState& exportState, const QColor& accent,
                QWidget* parent = nullptr);

  [[nodiscard]] CropSection* cropSection() const { return m_crop; }
  [[nodiscard]] CropExportFooter* footer() const { return m_footer; }

  /// The crop and the encoding are read from the history.
  void setSource(const InspectorSource& source);

 Q_SIGNALS:
  void exportRequested();
  void cancelRequested();

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  [[nodiscard]] QWidget* makeSections();

  EditHistory& m_history;
  OriginalSection* m_original = nullptr;
  CropSection* m_crop = nullptr;
  CropExportFooter* m_footer = nullptr;
};

}  // namespace vantrel
