#pragma once

#include <QDialog>
#include <QElapsedTimer>
#include <QTimer>

class QLabel;
class QPushButton;

namespace vantrel {

class ExportReviewDocument;
class SlimProgressBar;

/// How far the save of a document is, over the document's window, with the way to cancel it. It
/// shows itself when a save takes a while, and goes with it. Main thread.
class SaveProgressDialog final : public QDialog {
  Q_OBJECT

 public:
  /// `document` outlives the dialog.
  SaveProgressDialog(ExportReviewDocument& document, QWidget* parent);

  [[nodiscard]] QLabel* title() const { return m_title; }
  [[nodiscard]] SlimProgressBar* bar() const { return m_bar; }
  [[nodiscard]] QPushButton* cancelButton() const { return m_cancel; }

  /// Cancels the save; the dialog stays until that has ended.
  void reject() override;

 private:
  void follow();
  void look();
  void begin();
  void setFraction(double fraction);

  ExportReviewDocument& m_document;
  QLabel* m_title;
  SlimProgressBar* m_bar;
  QPushButton* m_cancel;
  QElapsedTimer m_since;
  QTimer m_looks{this};
  double m_fraction = 0;
};

}  // namespace vantrel
