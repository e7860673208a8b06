#include "review/export_review_document.h"

#include <gmock/gmock.h>

#include <QPointer>
#include <QSignalSpy>
#include <QTest>
#include <atomic>
#include <memory>
#include <stdexcept>

#include "support/fake_player.h"
#include "support/picture_files.h"
#include "support/temporary_folder.h"

namespace vantrel {
namespace {

using ::testing::ElementsAre;
using testing::FakePlayer;
using ::testing::IsEmpty;

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

TEST_F(ExportReviewDocumentTest, ShowsAnImageThatCanBeRead) {
  const auto image = document(QStringLiteral("photo"), ContentType::png());
  EXPECT_FALSE(image->showsImage()) << "its bytes are no picture";
  testing::savePng(temporary, 4, 4);
  EXPECT_TRUE(image->showsImage());
  const auto movie = document(QStringLiteral("film"), ContentType::quickTimeMovie());
  testing::savePng(temporary, 4, 4);
  EXPECT_FALSE(movie->showsImage());
}

class ExportReviewPlayerTest : public ::testing::Test {
 protected:
  ExportReviewPlayerTest() {
    testing::writeFile(temporary, "finished bytes");
    review = std::make_unique<ExportReviewDocument>(
        FinishedExport{TemporaryExport(temporary),
                       {},
                       ContentType::quickTimeMovie(),
                       QStringLiteral("film-framed")},
        [this](const std::filesystem::path& path, const std::stop_token&) -> MakePlayer {
          ++openings;
          if (path != temporary || isBroken) throw std::runtime_error("no movie");
          return [this] {
            auto made = std::make_unique<FakePlayer>();
            player = made.get();
            return made;
          };
        });
  }
  void open() {
    review->openPlayer();
    ASSERT_TRUE(QTest::qWaitFor([this] { return review->reviewPlayer() != nullptr; }));
    ASSERT_EQ(review->reviewPlayer(), player);
  }
  void playToTheEnd() {
    review->playback().togglePlayback();
    player->log.clear();
    player->setRate(0);
    Q_EMIT player->ended();
  }

  testing::TemporaryFolder folder;
  std::filesystem::path temporary = folder / "Vantrel-1.mov";
  std::atomic<int> openings = 0;
  std::atomic<bool> isBroken = false;
  QPointer<FakePlayer> player;
  std::unique_ptr<ExportReviewDocument> review;
};

TEST_F(ExportReviewPlayerTest, HasNoPlayerUntilItIsOpened) {
  EXPECT_EQ(review->reviewPlayer(), nullptr);
  EXPECT_FALSE(review->loopEnabled());
  open();
  EXPECT_EQ(review->playback().player(), player);
  EXPECT_DOUBLE_EQ(review->playback().duration(), player->duration());
  EXPECT_THAT(player->log, IsEmpty()) << "nothing plays by itself";
}

TEST_F(ExportReviewPlayerTest, OpensOnce) {
  review->openPlayer();
  open();
  review->openPlayer();
  EXPECT_EQ(openings, 1);
  EXPECT_EQ(review->reviewPlayer(), player);
}

TEST_F(ExportReviewPlayerTest, HasNoPlayerOfAFileThatCannotBePlayed) {
  isBroken = true;
  // Another attempt begins when the first one is over.
  ASSERT_TRUE(QTest::qWaitFor([this] {
    review->openPlayer();
    return openings == 2;
  }));
  EXPECT_EQ(review->reviewPlayer(), nullptr);
  EXPECT_EQ(review->playback().player(), nullptr);
}

TEST_F(ExportReviewPlayerTest, StaysAtTheEnd) {
  open();
  playToTheEnd();
  EXPECT_THAT(player->log, IsEmpty());
  EXPECT_FALSE(review->playback().isPlaying());
  EXPECT_DOUBLE_EQ(review->playback().position(), player->duration());
}

TEST_F(ExportReviewPlayerTest, StartsOverAtTheEndWhenItLoops) {
  open();
  QSignalSpy changed(review.get(), &ExportReviewDocument::loopEnabledChanged);
  review->toggleLoop();
  EXPECT_TRUE(review->loopEnabled());
  EXPECT_EQ(changed.count(), 1);
  playToTheEnd();
  EXPECT_THAT(player->log, ElementsAre("seek 0/600"));
  player->land(true);
  EXPECT_THAT(player->log, ElementsAre("seek 0/600", "play"));
  EXPECT_TRUE(review->playback().isPlaying());

  review->toggleLoop();
  EXPECT_FALSE(review->loopEnabled());
  playToTheEnd();
  EXPECT_THAT(player->log, IsEmpty());
}

TEST_F(ExportReviewPlayerTest, PlaysOnOnlyWhenTheSeekToTheStartHasFinished) {
  open();
  review->toggleLoop();
  playToTheEnd();
  player->land(false);
  EXPECT_THAT(player->log, ElementsAre("seek 0/600"));
  EXPECT_FALSE(review->playback().isPlaying());
}

TEST_F(ExportReviewPlayerTest, NothingMovesWhenLoopIsChosenAtTheEnd) {
  open();
  playToTheEnd();
  review->toggleLoop();
  EXPECT_THAT(player->log, IsEmpty());
}

TEST_F(ExportReviewPlayerTest, LetsGoOfThePlayerBeforeTheFile) {
  open();
  review->playback().togglePlayback();
  std::vector<std::string> events;
  const auto note = [&](const std::string& event) {
    events.push_back(event + (std::filesystem::exists(temporary) ? "" : " too late"));
  };
  QObject::connect(player, &Player::rateChanged, player, [&] { note("paused"); });
  QObject::connect(player, &QObject::destroyed, review.get(), [&] { note("gone"); });
  review->close();
  EXPECT_THAT(events, ElementsAre("paused", "gone"));
  EXPECT_EQ(review->reviewPlayer(), nullptr);
  EXPECT_FALSE(std::filesystem::exists(temporary));
  review->openPlayer();
  EXPECT_EQ(openings, 1);
}

TEST_F(ExportReviewPlayerTest, GivesUpOpeningWhenItIsClosed) {
  review->openPlayer();
  review->close();
  QCoreApplication::processEvents();
  EXPECT_EQ(review->reviewPlayer(), nullptr);
  EXPECT_TRUE(player.isNull());
  EXPECT_FALSE(std::filesystem::exists(temporary));
}

}  // namespace
}  // namespace vantrel
