#include "controls/file_dialog_layout.h"

#include <QFileDialog>
#include <QHeaderView>
#include <QSplitter>
#include <QTreeView>

#include "controls/text_scale.h"

namespace vantrel {
namespace {

// Points.
constexpr QSize kSize{760, 480};
constexpr int kPlacesWidth = 150;

/// All that is told of a file is read whole, and its name has the rest.
void fitColumns(QHeaderView& header) {
  header.setSectionResizeMode(QHeaderView::ResizeToContents);
  header.setStretchLastSection(false);
  header.setSectionResizeMode(0, QHeaderView::Stretch);
}

}  // namespace

void layOutFileDialog(QFileDialog& dialog) {
  dialog.setOption(QFileDialog::HideNameFilterDetails);
  const QSize size(scaledForText(kSize.width()), scaledForText(kSize.height()));
  dialog.resize(size);
  if (auto* columns = dialog.findChild<QSplitter*>(QStringLiteral("splitter"))) {
    const int places = scaledForText(kPlacesWidth);
    columns->setSizes({places, size.width() - places});
  }
  if (auto* list = dialog.findChild<QTreeView*>(QStringLiteral("treeView")))
    fitColumns(*list->header());
}

}  // namespace vantrel
