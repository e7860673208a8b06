#include "review/export_review_document.h"

#include <gtest/gtest.h>

#include <QSignalSpy>
#include <QTest>
#include <memory>

#include "support/temporary_folder.h"

namespace vantrel {
namespace {

class ExportReviewDocumentTest : public ::testing::Test {
 protected:
  std::unique_ptr<ExportReviewDocument> document(const QString& title, const ContentType& type) {
    testing::writeFile(temporary, "finished bytes");
    return std::make_unique<ExportReviewDocument>(
        FinishedExport{TemporaryExport(temporary), {}, type, title});
  }

  testing::TemporaryFolder folder;
  std::filesystem::path temporary = folder / "Vantrel-1.png";
};

TEST_F(ExportReviewDocumentTest, IsUnsavedFromTheStart) {
  const auto review = document(QStringLiteral("photo-framed"), ContentType::png());
  EXPECT_TRUE(review->isUnsaved());
  EXPECT_FALSE(review->isClosed());
  EXPECT_EQ(review->displayName(), QStringLiteral("photo-framed"));
  EXPECT_EQ(review->temporaryExportPath(), temporary);
}

TEST_F(ExportReviewDocumentTest, ProposesTheTitleWithTheExtensionOfItsType) {
  const QString title = QStringLiteral("photo-framed");
  EXPECT_EQ(document(title, ContentType::png())->suggestedFileName(),
            QStringLiteral("photo-framed.png"));
  EXPECT_EQ(document(title, ContentType::jpeg())->suggestedFileName(),
            QStringLiteral("photo-framed.jpg"));
  EXPECT_EQ(document(title, ContentType())->suggestedFileName(),
            QStringLiteral("photo-framed.mov"));
}

TEST_F(ExportReviewDocumentTest, AddsNoSecondExtension) {
  EXPECT_EQ(document(QStringLiteral("photo.jpg"), ContentType::jpeg())->suggestedFileName(),
            QStringLiteral("photo.jpg"));
  EXPECT_EQ(document(QStringLiteral("photopng"), ContentType::png())->suggestedFileName(),
            QStringLiteral("photopng.png"));
}

TEST_F(ExportReviewDocumentTest, SavesACopyAndKeepsTheTemporaryFile) {
  const auto review = document(QStringLiteral("photo"), ContentType::png());
  QSignalSpy saved(review.get(), &ExportReviewDocument::saved);
  review->save(folder / "one.png");
  EXPECT_TRUE(review->isSaving());
  ASSERT_TRUE(saved.wait());
  EXPECT_FALSE(review->isSaving());
  EXPECT_FALSE(review->isUnsaved());
  EXPECT_EQ(testing::readFile(folder / "one.png"), "finished bytes");
  EXPECT_TRUE(std::filesystem::exists(temporary));

  review->save(folder / "two.png");
  ASSERT_TRUE(saved.wait());
  EXPECT_EQ(testing::readFile(folder / "two.png"), "finished bytes");
}

TEST_F(ExportReviewDocumentTest, StaysUnsavedWhenSavingFails) {
  const auto review = document(QStringLiteral("photo"), ContentType::png());
  QSignalSpy failed(review.get(), &ExportReviewDocument::saveFailed);
  review->save(folder / "missing" / "photo.png");
  ASSERT_TRUE(failed.wait());
  EXPECT_FALSE(failed.first().first().toString().isEmpty());
  EXPECT_TRUE(review->isUnsaved());
  EXPECT_TRUE(std::filesystem::exists(temporary));

  QSignalSpy saved(review.get(), &ExportReviewDocument::saved);
  review->save(folder / "photo.png");
  EXPECT_TRUE(saved.wait());
}

TEST_F(ExportReviewDocumentTest, DeletesTheTemporaryFileWhenClosed) {
  const auto review = document(QStringLiteral("photo"), ContentType::png());
  QSignalSpy closed(review.get(), &ExportReviewDocument::closed);
  review->close();
  review->close();
  EXPECT_EQ(closed.count(), 1);
  EXPECT_TRUE(review->isClosed());
  EXPECT_EQ(testing::namesIn(folder.path()), std::vector<std::string>());
}

TEST_F(ExportReviewDocumentTest, DeletesTheTemporaryFileWhenItGoes) {
  document(QStringLiteral("photo"), ContentType::png()).reset();
  EXPECT_FALSE(std::filesystem::exists(temporary));
}

TEST_F(ExportReviewDocumentTest, SavesNothingAfterItIsClosed) {
  const auto review = document(QStringLiteral("photo"), ContentType::png());
  review->close();
  review->save(folder / "one.png");
  EXPECT_FALSE(review->isSaving());
  EXPECT_EQ(testing::namesIn(folder.path()), std::vector<std::string>());
}

TEST_F(ExportReviewDocumentTest, LeavesNoHalfFileWhenClosedInTheMiddleOfASave) {
  const auto review = document(QStringLiteral("photo"), ContentType::png());
  testing::writeFile(temporary, std::string(64U << 20U, 'x'));
  review->save(folder / "one.png");
  review->close();
  EXPECT_FALSE(std::filesystem::exists(temporary));
  for (const std::string& name : testing::namesIn(folder.path()))
    EXPECT_EQ(name, "one.png");
  if (std::filesystem::exists(folder / "one.png")) {
    EXPECT_EQ(std::filesystem::file_size(folder / "one.png"), 64U << 20U);
  }
}

}  // namespace
}  // namespace vantrel
