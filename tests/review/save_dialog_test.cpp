#include "review/save_dialog.h"

#include <gtest/gtest.h>

#include <QAbstractItemView>
#include <QApplication>
#include <QDialogButtonBox>
#include <QLineEdit>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>

#include "review/export_review_document.h"
#include "support/temporary_folder.h"

namespace vantrel {
namespace {

class SaveDialogTest : public ::testing::Test {
 protected:
  static void SetUpTestSuite() { QApplication::setAttribute(Qt::AA_DontUseNativeDialogs); }

  void propose(const std::filesystem::path& source, const ContentType& type = ContentType::png()) {
    document = std::make_unique<ExportReviewDocument>(
        FinishedExport{TemporaryExport(), {}, type, exportTitle(source)});
    dialog = std::make_unique<SaveDialog>(*document, nullptr);
    dialog->setDirectory(QString::fromStdString(folder.path().string()));
    dialog->show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(dialog.get()));
  }
  QLineEdit* name() { return dialog->findChild<QLineEdit*>(QStringLiteral("fileNameEdit")); }
  void save() {
    auto* const buttons = dialog->findChild<QDialogButtonBox*>();
    QTest::mouseClick(buttons->button(QDialogButtonBox::Save), Qt::LeftButton);
  }
  void saveAs(const QString& text) {
    name()->setText(text);
    save();
  }
  QMessageBox* question() { return dialog->findChild<QMessageBox*>(); }
  /// What was chosen in the folder; "" if nothing was.
  std::string chosen() {
    if (dialog->result() != QDialog::Accepted) return "";
    EXPECT_EQ(dialog->chosen().parent_path(), folder.path());
    return dialog->chosen().filename().string();
  }

  testing::TemporaryFolder folder;
  std::unique_ptr<ExportReviewDocument> document;
  std::unique_ptr<SaveDialog> dialog;
};

TEST_F(SaveDialogTest, TakesTheNameItProposesWhateverItHolds) {
  const std::string longest(251, 'n');
  for (const std::string& stem :
       {std::string("photo"), std::string("two  words "), std::string("He said \"hi\""),
        std::string("\"quoted\""), std::string("it's “so”"),
        std::string("🦊👨‍👩‍👧‍👦"), std::string("שלום עולם"),
        std::string(".hidden"), std::string(".."), std::string("a..b"), std::string("~"),
        std::string("~root"), std::string(":a"), std::string("100%20"), std::string("a\\b"),
        std::string("*?[a]"), longest}) {
    propose(stem + ".png");
    save();
    const QString proposal = document->suggestedFileName();
    EXPECT_EQ(chosen(), proposal.toStdString()) << stem;
    if (stem != longest) {
      EXPECT_EQ(chosen(), stem + "-framed.png");
    }
    EXPECT_LE(chosen().size(), 255U);
  }
}

TEST_F(SaveDialogTest, BeginsWhereTheLastOneEnded) {
  propose("photo.png");
  save();
  const SaveDialog next(*document, nullptr);
  EXPECT_EQ(next.directory().absolutePath(), QString::fromStdString(folder.path().string()));
}

TEST_F(SaveDialogTest, TakesANameThatIsNoText) {
  propose("caf\xe9.png");
  save();
  EXPECT_EQ(chosen(), "caf\uFFFD-framed.png");
}

TEST_F(SaveDialogTest, OffersFilesOfTheTypeAlone) {
  propose("photo.jpeg", ContentType::jpeg());
  EXPECT_EQ(dialog->mimeTypeFilters(), QStringList{QStringLiteral("image/jpeg")});
  EXPECT_EQ(name()->text(), QStringLiteral("photo-framed.jpg"));
}

TEST_F(SaveDialogTest, AddsTheExtensionOfTheTypeWhereItIsMissing) {
  const std::pair<const char*, const char*> names[] = {{"named", "named.jpg"},
                                                       {"version 1.2", "version 1.2.jpg"},
                                                       {"a.png", "a.png.jpg"},
                                                       {"a.", "a..jpg"},
                                                       {"b.jpg", "b.jpg"},
                                                       {"b.JPEG", "b.JPEG"},
                                                       {"two \"q.jpg", "two \"q.jpg"}};
  for (const auto& [typed, taken] : names) {
    propose("photo.jpg", ContentType::jpeg());
    saveAs(QString::fromUtf8(typed));
    EXPECT_EQ(chosen(), taken);
  }
}

TEST_F(SaveDialogTest, TakesAPath) {
  std::filesystem::create_directory(folder / "sub \"q\"");
  propose("photo.png");
  saveAs(QString::fromStdString((folder / "sub \"q\"/a").string()));
  EXPECT_EQ(dialog->result(), QDialog::Accepted);
  EXPECT_EQ(dialog->chosen(), folder / "sub \"q\"/a.png");
  EXPECT_EQ(SaveDialog::pathOf(QStringLiteral("a/b"), QStringLiteral("/c")), u"/c/a/b");
  EXPECT_EQ(SaveDialog::pathOf(QStringLiteral("a"), QStringLiteral("/")), u"/a");
  EXPECT_EQ(SaveDialog::pathOf(QStringLiteral("~/a"), QStringLiteral("/c")),
            QDir::homePath() + QStringLiteral("/a"));
}

TEST_F(SaveDialogTest, EntersAFolder) {
  std::filesystem::create_directory(folder / "sub");
  propose("photo.png");
  saveAs(QStringLiteral("sub"));
  EXPECT_TRUE(dialog->isVisible());
  EXPECT_EQ(dialog->directory().dirName(), u"sub");
}

TEST_F(SaveDialogTest, AsksBeforeItReplacesAFile) {
  testing::writeFile(folder / "old.png", "old");
  // The one with the extension is there, too.
  for (const char* typed : {"old.png", "old"}) {
    propose("photo.png");
    saveAs(QString::fromUtf8(typed));
    QPointer<QMessageBox> box = question();
    ASSERT_NE(box, nullptr);
    EXPECT_EQ(box->text(), u"“old.png” already exists. Do you want to replace it?");
    EXPECT_EQ(box->defaultButton(), box->button(QMessageBox::Cancel));
    box->button(QMessageBox::Cancel)->click();
    EXPECT_TRUE(dialog->isVisible()) << "another name can be chosen";
    ASSERT_TRUE(QTest::qWaitFor([&] { return box.isNull(); }));
    save();
    ASSERT_NE(question(), nullptr);
    for (QAbstractButton* button : question()->buttons())
      if (button->text() == u"Replace") QTest::mouseClick(button, Qt::LeftButton);
    EXPECT_EQ(chosen(), "old.png");
  }
}

TEST_F(SaveDialogTest, AsksForAFileThatIsClickedInItsList) {
  testing::writeFile(folder / "old.png", "old");
  propose("photo.png");
  QAbstractItemView* files = nullptr;
  for (auto* view : dialog->findChildren<QAbstractItemView*>())
    if (view->isVisible() &&
        (view->objectName() == u"listView" || view->objectName() == u"treeView"))
      files = view;
  ASSERT_NE(files, nullptr);
  QModelIndex old;
  ASSERT_TRUE(QTest::qWaitFor([&] {
    const QModelIndex first = files->model()->index(0, 0, files->rootIndex());
    if (first.data() == QStringLiteral("old.png")) old = first;
    return old.isValid();
  }));
  QTest::mouseClick(files->viewport(), Qt::LeftButton, {}, files->visualRect(old).center());
  EXPECT_EQ(name()->text(), QStringLiteral("old.png"));
  save();
  ASSERT_NE(question(), nullptr);
  EXPECT_TRUE(question()->text().startsWith(u"“old.png” already exists."));
}

TEST_F(SaveDialogTest, GivenUpIsNotAccepted) {
  propose("photo.png");
  QSignalSpy rejected(dialog.get(), &QDialog::rejected);
  QTest::keyClick(dialog.get(), Qt::Key_Escape);
  EXPECT_EQ(rejected.count(), 1);
  EXPECT_EQ(chosen(), "");
}

}  // namespace
}  // namespace vantrel
