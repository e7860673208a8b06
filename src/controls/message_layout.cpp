#include "controls/message_layout.h"

#include <QDialogButtonBox>
#include <QGridLayout>
#include <QLabel>
#include <QMessageBox>
#include <QTextBoundaryFinder>

namespace vantrel {
namespace {

// Points.
constexpr int kLineWidth = 280;
constexpr int kMargin = 20, kButtonGap = 12;

constexpr int kLongestWord = 40;
constexpr QChar kZeroWidthSpace(0x200b);

/// The toolkit leaves room for an icon, which there is none of.
void evenMargins(QMessageBox& box) {
  auto* const grid = qobject_cast<QGridLayout*>(box.layout());
  if (!grid) return;
  for (int index = 0; index < grid->count(); ++index) {
    if (QSpacerItem* indent = grid->itemAt(index)->spacerItem()) indent->changeSize(0, 0);
  }
  grid->setHorizontalSpacing(0);
  grid->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
  if (auto* buttons = box.findChild<QDialogButtonBox*>()) {
    buttons->setContentsMargins(0, kButtonGap, 0, 0);
  }
  grid->invalidate();
}

}  // namespace

void layOutMessage(QMessageBox& box) {
  box.setTextFormat(Qt::PlainText);
  // The names that the toolkit gives to its two labels.
  if (auto* text = box.findChild<QLabel*>(QStringLiteral("qt_msgbox_label"))) {
    QFont font = text->font();
    font.setWeight(QFont::DemiBold);
    text->setFont(font);
    // A least width would keep the toolkit from breaking its lines.
    text->setText(withBreaksInLongWords(text->text()));
  }
  if (auto* more = box.findChild<QLabel*>(QStringLiteral("qt_msgbox_informativelabel"))) {
    more->setTextFormat(Qt::PlainText);
    more->setText(withBreaksInLongWords(more->text()));
    more->setMinimumWidth(kLineWidth);
  }
  evenMargins(box);
}

QString withBreaksInLongWords(const QString& text) {
  QString broken;
  int length = 0;
  QTextBoundaryFinder boundary(QTextBoundaryFinder::Grapheme, text);
  for (qsizetype from = 0, to = boundary.toNextBoundary(); to > 0;
       from = to, to = boundary.toNextBoundary()) {
    length = text[from].isSpace() ? 0 : length + 1;
    if (length > kLongestWord) {
      broken += kZeroWidthSpace;
      length = 1;
    }
    broken += text.mid(from, to - from);
  }
  return broken;
}

}  // namespace vantrel
