#include "controls/open_dialog.h"

#include <QFileInfo>
#include <QLineEdit>

namespace vantrel {

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
