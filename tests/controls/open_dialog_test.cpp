#include "controls/open_dialog.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QDir>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>

#include "controls/dialog_folder.h"
#include "support/temporary_folder.h"

namespace vantrel {
namespace {

class OpenDialogTest : public ::testing::Test {
 protected:
  static void SetUpTestSuite() { QApplication::setAttribute(Qt::AA_DontUseNativeDialogs); }
  void SetUp() override { dialog.setDirectory(QString::fromStdString(folder.path().string())); }
  void choose(const char* name) {
    dialog.selectFile(QString::fromUtf8(name));
    dialog.open();
    dialog.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Open)->click();
  }
  QString path(const char* name) const { return QString::fromStdString((folder / name).string()); }
  QString chosen() { return selected.isEmpty() ? QString() : selected.last().first().toString(); }

  testing::TemporaryFolder folder;
  OpenDialog dialog;
  QSignalSpy selected{&dialog, &QFileDialog::fileSelected};
};

TEST_F(OpenDialogTest, OpensAFileWithQuotesInItsName) {
  testing::writeFile(folder / "a \"b\" c.png", "x");
  testing::writeFile(folder / "b", "x");
  choose("a \"b\" c.png");
  EXPECT_EQ(chosen(), path("a \"b\" c.png"));
  EXPECT_EQ(dialog.result(), QDialog::Accepted);
}

TEST_F(OpenDialogTest, OpensAFileThatIsTypedInQuotes) {
  testing::writeFile(folder / "b.png", "x");
  choose("\"b.png\"");
  EXPECT_EQ(chosen(), path("b.png"));
}

TEST_F(OpenDialogTest, OpensAnyOtherFile) {
  testing::writeFile(folder / "b.png", "x");
  choose("b.png");
  EXPECT_EQ(chosen(), path("b.png"));
}

TEST_F(OpenDialogTest, BeginsWhereTheLastOneEnded) {
  testing::writeFile(folder / "b.png", "x");
  choose("b.png");
  EXPECT_EQ(OpenDialog().directory().absolutePath(),
            QString::fromStdString(folder.path().string()));
}

TEST(DialogFolder, ForgetsAFolderThatIsGone) {
  {
    const testing::TemporaryFolder brief;
    DialogFolder::remember(QString::fromStdString((brief / "b.png").string()));
    EXPECT_EQ(DialogFolder::last(), QString::fromStdString(brief.path().string()));
  }
  EXPECT_EQ(DialogFolder::last(), QString());
}

TEST_F(OpenDialogTest, NamesAFilterWithoutItsPatterns) {
  const OpenDialog filtered(nullptr, {}, QStringLiteral("Images and Videos (*.png *.mov)"));
  const auto* const types = filtered.findChild<QComboBox*>(QStringLiteral("fileTypeCombo"));
  EXPECT_EQ(types->currentText(), QStringLiteral("Images and Videos"));
  EXPECT_EQ(filtered.selectedNameFilter(), QStringLiteral("Images and Videos"));
}

}  // namespace
}  // namespace vantrel
