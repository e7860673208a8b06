#pragma once

#include <QColor>
#include <QWidget>

class QLabel;
class QPushButton;

namespace vantrel {

class CropExportState;
class SlimProgressBar;

/// The strip at the bottom of the inspector: one big button that starts the export and makes room
/// for its progress, and a line below that says what comes out, or what came of it.
class CropExportFooter final : public QWidget {
  Q_OBJECT

 public:
  /// What the button and the line are about.
  struct Output {
    bool canExport = false;
    bool loaded = false;
    /// In source pixels.
    int64_t width = 0, height = 0;
    /// "PNG", "HEVC" and the like.
    QString encodingName;
  };

  /// `accent` colours the button and the progress.
  CropExportFooter(const CropExportState& state, const QColor& accent, QWidget* parent = nullptr);

  [[nodiscard]] QPushButton* exportButton() const { return m_export; }
  [[nodiscard]] QPushButton* cancelButton() const { return m_cancel; }
  [[nodiscard]] QLabel* statusLabel() const { return m_status; }

  void setOutput(const Output& output);

 Q_SIGNALS:
  void exportRequested();
  void cancelRequested();

 private:
  [[nodiscard]] QWidget* makeActionRow();
  [[nodiscard]] QWidget* makeProgress();
  [[nodiscard]] QWidget* makeStatusRow();
  void showState();
  void showButton();

  const CropExportState& m_state;
  QColor m_accent;
  Output m_output;
  QPushButton* m_export = nullptr;
  QWidget* m_progress = nullptr;
  QLabel* m_phase = nullptr;
  QLabel* m_bytes = nullptr;
  SlimProgressBar* m_bar = nullptr;
  QLabel* m_status = nullptr;
  QPushButton* m_cancel = nullptr;
};

}  // namespace vantrel
