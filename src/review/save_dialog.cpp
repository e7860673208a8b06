#include "review/save_dialog.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>

#include "controls/dialog_folder.h"
#include "controls/file_dialog_layout.h"
#include "controls/message_layout.h"
#include "review/export_review_document.h"

namespace vantrel {

SaveDialog::SaveDialog(const ExportReviewDocument& document, QWidget* parent)
    : QFileDialog(parent, tr("Save"), DialogFolder::last()), m_document(document) {
  setAcceptMode(AcceptSave);
  setFileMode(AnyFile);
  setMimeTypeFilters({document.contentType().name()});
  layOutFileDialog(*this);
  // A path, since a mere name may begin with what makes it one.
  selectFile(pathOf(document.suggestedFileName(), directory().absolutePath()));
}

std::filesystem::path SaveDialog::chosen() const {
  return QFile::encodeName(m_chosen).toStdString();
}

QString SaveDialog::pathOf(const QString& typed, const QString& folder) {
  if (typed == u'~' || typed.startsWith(QLatin1String("~/")))
    return QDir::homePath() + typed.mid(1);
  if (typed.startsWith(u'/')) return typed;
  return (folder.endsWith(u'/') ? folder : folder + u'/') + typed;
}

QLineEdit* SaveDialog::nameField() const {
  return findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
}

void SaveDialog::accept() {
  // The toolkit would take a name with quotation marks for several.
  const QLineEdit* const name = nameField();
  const QString path =
      name ? pathOf(name->text(), directory().absolutePath()) : selectedFiles().value(0);
  const bool isNamed = name ? !name->text().isEmpty() : !path.isEmpty();
  if (!isNamed || QFileInfo(path).isDir()) {
    QFileDialog::accept();
    return;
  }
  const QString full = m_document.withExtension(path);
  // The desktop's own dialog has asked for the name that was chosen in it.
  const bool isConfirmed = !name && full == path;
  if (!isConfirmed && QFileInfo::exists(full)) {
    askToReplace(full);
  } else {
    take(full);
  }
}

void SaveDialog::askToReplace(const QString& path) {
  auto* const question = new QMessageBox(
      QMessageBox::NoIcon, tr("Save"),
      tr("“%1” already exists. Do you want to replace it?").arg(QFileInfo(path).fileName()),
      QMessageBox::NoButton, this);
  question->setInformativeText(tr("Replacing it overwrites what it holds."));
  auto* const replace = question->addButton(tr("Replace"), QMessageBox::AcceptRole);
  question->setDefaultButton(question->addButton(QMessageBox::Cancel));
  layOutMessage(*question);
  question->setAttribute(Qt::WA_DeleteOnClose);
  connect(question, &QDialog::finished, this, [this, question, replace, path] {
    if (question->clickedButton() == replace) {
      take(path);
    } else if (!nameField()) {
      // The desktop's own dialog is gone.
      reject();
    }
  });
  question->open();
}

void SaveDialog::take(const QString& path) {
  m_chosen = path;
  DialogFolder::remember(path);
  QDialog::accept();
}

}  // namespace vantrel

#include "moc_save_dialog.cpp"
