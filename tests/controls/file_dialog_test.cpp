#include "controls/file_dialog.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QDialogButtonBox>
#include <QMessageBox>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

#include "support/temporary_folder.h"

namespace vantrel {
namespace {

class FileDialogTest : public ::testing::Test {
 protected:
  static void SetUpTestSuite() { QApplication::setAttribute(Qt::AA_DontUseNativeDialogs); }
  void SetUp() override {
    dialog.setFileMode(QFileDialog::ExistingFile);
    dialog.setDirectory(QString::fromStdString(folder.path().string()));
  }
  void saveAs(const char* name) {
    dialog.setFileMode(QFileDialog::AnyFile);
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setDefaultSuffix(QStringLiteral("png"));
    choose(name);
  }
  void choose(const char* name) {
    dialog.selectFile(QString::fromUtf8(name));
    dialog.open();
    const auto button = dialog.acceptMode() == QFileDialog::AcceptSave ? QDialogButtonBox::Save
                                                                       : QDialogButtonBox::Open;
    dialog.findChild<QDialogButtonBox*>()->button(button)->click();
  }
  /// What the question about a file that is there is answered with.
  void willAnswer(QMessageBox::StandardButton button) {
    QTimer::singleShot(0, &dialog, [this, button] {
      auto* const question = dialog.findChild<QMessageBox*>();
      asked = question->text();
      question->button(button)->click();
    });
  }
  QString path(const char* name) const { return QString::fromStdString((folder / name).string()); }
  QString chosen() { return selected.isEmpty() ? QString() : selected.last().first().toString(); }

  testing::TemporaryFolder folder;
  FileDialog dialog;
  QSignalSpy selected{&dialog, &QFileDialog::fileSelected};
  QString asked;
};

TEST_F(FileDialogTest, OpensAFileWithQuotesInItsName) {
  testing::writeFile(folder / "a \"b\" c.png", "x");
  testing::writeFile(folder / "b", "x");
  choose("a \"b\" c.png");
  EXPECT_EQ(chosen(), path("a \"b\" c.png"));
  EXPECT_EQ(dialog.result(), QDialog::Accepted);
}

TEST_F(FileDialogTest, OpensAFileThatIsTypedInQuotes) {
  testing::writeFile(folder / "b.png", "x");
  choose("\"b.png\"");
  EXPECT_EQ(chosen(), path("b.png"));
}

TEST_F(FileDialogTest, OpensAnyOtherFile) {
  testing::writeFile(folder / "b.png", "x");
  choose("b.png");
  EXPECT_EQ(chosen(), path("b.png"));
}

TEST_F(FileDialogTest, SavesUnderANameWithQuotes) {
  saveAs("a \"b\" c-framed.png");
  EXPECT_EQ(chosen(), path("a \"b\" c-framed.png"));
}

TEST_F(FileDialogTest, AddsTheExtension) {
  saveAs("a \"b\"");
  EXPECT_EQ(chosen(), path("a \"b\".png"));
}

TEST_F(FileDialogTest, AsksBeforeItReplacesAFile) {
  testing::writeFile(folder / "a \"b\".png", "x");
  willAnswer(QMessageBox::No);
  saveAs("a \"b\".png");
  EXPECT_EQ(asked, QStringLiteral("“a \"b\".png” already exists."));
  EXPECT_TRUE(selected.isEmpty());
  EXPECT_TRUE(dialog.isVisible());
  willAnswer(QMessageBox::Yes);
  saveAs("a \"b\".png");
  EXPECT_EQ(chosen(), path("a \"b\".png"));
}

}  // namespace
}  // namespace vantrel
