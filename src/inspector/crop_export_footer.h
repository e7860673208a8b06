#pragma once

#include <QColor>
#include <QPointer>
#include <QWidget>
#include <memory>

class QHBoxLayout;
class QLabel;
class QPushButton;
class QToolButton;

namespace vantrel {

class CropExportState;
class ExportFocus;
class Popover;
class SlimProgressBar;

/// The strip at the bottom of the inspector: one big button that starts the export and makes room
/// for its progress, and a line below that says what comes out, or what came of it, with a button
/// for help.
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
  ~CropExportFooter() override;

  [[nodiscard]] QPushButton* exportButton() const { return m_export; }
  [[nodiscard]] QPushButton* cancelButton() const { return m_cancel; }
  [[nodiscard]] QToolButton* helpButton() const { return m_help; }
  /// While the help is open; null otherwise.
  [[nodiscard]] Popover* helpPopover() const;
  [[nodiscard]] QLabel* statusLabel() const { return m_status; }
  [[nodiscard]] QLabel* phaseLabel() const { return m_phase; }
  [[nodiscard]] QLabel* bytesLabel() const { return m_bytes; }
  [[nodiscard]] SlimProgressBar* progressBar() const { return m_bar; }

  void setOutput(const Output& output);
  /// To be called when an export is asked for, before anything else comes of it.
  void begin();

 Q_SIGNALS:
  void exportRequested();
  void cancelRequested();

 protected:
  void changeEvent(QEvent* event) override;

 private:
  [[nodiscard]] QWidget* makeActionRow();
  [[nodiscard]] QWidget* makeProgress();
  [[nodiscard]] QHBoxLayout* makeStatusRow();
  void makeCancel();
  void fitCancel();
  void makeHelp();
  void toggleHelp();
  void showState();
  void showProgress(double progress);
  void showButton();

  const CropExportState& m_state;
  QColor m_accent;
  Output m_output;
  QPushButton* m_export = nullptr;
  QWidget* m_progress = nullptr;
  QLabel* m_phase = nullptr;
  QLabel* m_bytes = nullptr;
  SlimProgressBar* m_bar = nullptr;
  QHBoxLayout* m_statusRow = nullptr;
  QLabel* m_status = nullptr;
  QPushButton* m_cancel = nullptr;
  QToolButton* m_help = nullptr;
  QPointer<Popover> m_helpPopover;
  std::unique_ptr<ExportFocus> m_focus;
};

}  // namespace vantrel
