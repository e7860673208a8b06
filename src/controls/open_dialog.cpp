#include "controls/open_dialog.h"

#include <QFileInfo>
#include <QLineEdit>

#include "controls/dialog_folder.h"

namespace vantrel {

OpenDialog::OpenDialog(QWidget* parent, const QString& caption, const QString& filter)
    : QFileDialog(parent, caption, DialogFolder::last(), filter) {
  // A filter of every kind of video is longer than any dialog is wide.
  setOption(HideNameFilterDetails);
  setFileMode(ExistingFile);
  connect(this, &QFileDialog::fileSelected, this, &DialogFolder::remember);
}

void OpenDialog::accept() {
  // The toolkit's name for it; a desktop's dialog has none.
  const auto* const edit = findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
  if (!edit || !edit->text().contains(u'"')) {
    QFileDialog::accept();
    return;
  }
  const QString file = directory().filePath(edit->text());
  const QFileInfo found(file);
  if (found.isDir() || !found.exists()) {
    QFileDialog::accept();
  } else {
    QDialog::accept();
    Q_EMIT fileSelected(file);
  }
}

}  // namespace vantrel
