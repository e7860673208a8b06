#include "controls/file_dialog.h"

#include <QFileInfo>
#include <QLineEdit>
#include <QMessageBox>

#include "controls/message_layout.h"

namespace vantrel {

void FileDialog::accept() {
  // The toolkit's name for it; a desktop's dialog has none.
  const auto* const edit = findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
  if (!edit || !edit->text().contains(u'"')) {
    QFileDialog::accept();
    return;
  }
  const bool saves = acceptMode() == AcceptSave;
  QString file = directory().filePath(edit->text());
  if (saves && QFileInfo(file).suffix().isEmpty() && !defaultSuffix().isEmpty()) {
    file += u'.' + defaultSuffix();
  }
  const QFileInfo found(file);
  if (found.isDir() || (!saves && !found.exists())) {
    QFileDialog::accept();
  } else if (!saves || mayWrite(file)) {
    QDialog::accept();
    Q_EMIT fileSelected(file);
  }
}

bool FileDialog::mayWrite(const QString& file) {
  if (!QFileInfo::exists(file)) return true;
  QMessageBox question(QMessageBox::NoIcon, windowTitle(),
                       tr("“%1” already exists.").arg(QFileInfo(file).fileName()),
                       QMessageBox::Yes | QMessageBox::No, this);
  question.setInformativeText(tr("Do you want to replace it?"));
  question.setDefaultButton(QMessageBox::No);
  layOutMessage(question);
  return question.exec() == QMessageBox::Yes;
}

}  // namespace vantrel
