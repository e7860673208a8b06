#include "controls/message_layout.h"

#include <QLabel>
#include <QMessageBox>
#include <QTextBoundaryFinder>

namespace vantrel {
namespace {

// Points.
constexpr int kLineWidth = 280;

constexpr int kLongestWord = 40;
constexpr QChar kZeroWidthSpace(0x200b);

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
