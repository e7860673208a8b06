#include "controls/file_dialog_layout.h"

#include <QFileDialog>
#include <QSplitter>

namespace vantrel {
namespace {

// Points.
constexpr QSize kSize{760, 480};
constexpr int kPlacesWidth = 150;

}  // namespace

void layOutFileDialog(QFileDialog& dialog) {
  dialog.setOption(QFileDialog::HideNameFilterDetails);
  dialog.resize(kSize);
  if (auto* columns = dialog.findChild<QSplitter*>(QStringLiteral("splitter"))) {
    columns->setSizes({kPlacesWidth, kSize.width() - kPlacesWidth});
  }
}

}  // namespace vantrel
