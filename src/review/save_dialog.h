#pragma once

#include <QFileDialog>
#include <filesystem>

class QLineEdit;

namespace vantrel {

class ExportReviewDocument;

/// Asks where a finished export is to be saved. A name without an extension of the export's type
/// gets it. What is typed is one name, whatever characters it holds. Nothing that exists is
/// replaced unasked. It begins where the last dialog ended. Main thread.
class SaveDialog final : public QFileDialog {
  Q_OBJECT

 public:
  /// `document` outlives the dialog.
  SaveDialog(const ExportReviewDocument& document, QWidget* parent);

  /// What was chosen, once it is accepted.
  [[nodiscard]] std::filesystem::path chosen() const;

  /// The file that is meant by what the user typed while the dialog showed `folder`.
  [[nodiscard]] static QString pathOf(const QString& typed, const QString& folder);

  void accept() override;

 private:
  /// Null where the desktop's own dialog stands in.
  [[nodiscard]] QLineEdit* nameField() const;
  void askToReplace(const QString& path);
  void take(const QString& path);

  const ExportReviewDocument& m_document;
  QString m_chosen;
};

}  // namespace vantrel
