#include "controls/message_layout.h"

#include <gtest/gtest.h>

#include <QLabel>
#include <QMessageBox>

namespace vantrel {
namespace {

TEST(MessageLayout, LeavesTextsOfUsualWordsAlone) {
  const QString forty(40, u'n');
  for (const QString& text :
       {QString(), QStringLiteral("two  words\n"), forty, forty + u' ' + forty})
    EXPECT_EQ(withBreaksInLongWords(text), text);
}

TEST(MessageLayout, LetsLinesEndWithinLongWords) {
  const QString broken = withBreaksInLongWords(QStringLiteral("a ") + QString(90, u'n'));
  EXPECT_EQ(broken, QStringLiteral("a ") + QString(40, u'n') + QChar(0x200b) + QString(40, u'n') +
                        QChar(0x200b) + QString(10, u'n'));
}

TEST(MessageLayout, BreaksBetweenCharacters) {
  const QString fox = QStringLiteral("🦊");
  EXPECT_EQ(withBreaksInLongWords(fox.repeated(41)), fox.repeated(40) + QChar(0x200b) + fox);
}

TEST(MessageLayout, ShowsAllOfAQuestion) {
  QMessageBox box(QMessageBox::NoIcon, {},
                  QStringLiteral("“a photograph of the dusk.jpg” already exists. Replace it?"),
                  QMessageBox::Ok);
  box.setInformativeText(QStringLiteral("Shorter."));
  layOutMessage(box);
  box.show();
  const auto* text = box.findChild<QLabel*>(QStringLiteral("qt_msgbox_label"));
  EXPECT_GE(text->width() * text->height(), text->sizeHint().width() * text->sizeHint().height());
}

TEST(MessageLayout, KeepsALongNameInsideTheBox) {
  const QString name(255, u'n');
  QMessageBox box(QMessageBox::NoIcon, {}, QStringLiteral("Do you want to save “%1”?").arg(name),
                  QMessageBox::Ok);
  box.setInformativeText(QStringLiteral("“%1” could not be saved: File name too long").arg(name));
  layOutMessage(box);
  box.show();
  EXPECT_LT(box.width(), 640);
  for (const QLabel* label : box.findChildren<QLabel*>()) {
    if (label->text().isEmpty()) continue;
    EXPECT_GT(label->height(), 3 * label->fontMetrics().height()) << "all of it is seen";
  }
}

}  // namespace
}  // namespace vantrel
