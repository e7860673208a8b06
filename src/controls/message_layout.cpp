#include "controls/message_layout.h"

#include <QLabel>
#include <QMessageBox>

namespace vantrel {
namespace {

// Points.
constexpr int kLineWidth = 280;

}  // namespace

void layOutMessage(QMessageBox& box) {
  box.setTextFormat(Qt::PlainText);
  // The names that the toolkit gives to its two labels.
  if (auto* text = box.findChild<QLabel*>(QStringLiteral("qt_msgbox_label"))) {
    QFont font = text->font();
    font.setWeight(QFont::DemiBold);
    text->setFont(font);
    text->setMinimumWidth(kLineWidth);
  }
  if (auto* more = box.findChild<QLabel*>(QStringLiteral("qt_msgbox_informativelabel"))) {
    more->setTextFormat(Qt::PlainText);
    more->setMinimumWidth(kLineWidth);
  }
}

}  // namespace vantrel
