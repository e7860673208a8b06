#include "review/export_review_document.h"

#include <gmock/gmock.h>

#include <QPointer>
#include <QSignalSpy>
#include <QTest>
#include <atomic>
#include <fstream>
#include <memory>
#include <stdexcept>
#include <thread>

#include "review/held_copy.h"
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

TEST_F(ExportReviewDocumentTest, SavesUnderAnyNameAndOverItself) {
  const auto review = document(QStringLiteral("photo"), ContentType::png());
  QSignalSpy saved(review.get(), &ExportReviewDocument::saved);
  for (const std::string& name :
       {std::string("two  words .png"), std::string("He said \"hi\".png"), std::string("🦊.png"),
        std::string("שלום.png"), std::string(".hidden"), std::string("-n"), std::string("a\nb"),
        std::string("caf\xe9\xff.png"), std::string(255, 'n')}) {
    review->save(folder / name);
    ASSERT_TRUE(saved.wait()) << name;
    EXPECT_EQ(testing::readFile(folder / name), "finished bytes") << name;
  }
  const size_t files = testing::namesIn(folder.path()).size();
  review->save(temporary);
  ASSERT_TRUE(saved.wait());
  EXPECT_EQ(testing::readFile(temporary), "finished bytes");
  EXPECT_EQ(testing::namesIn(folder.path()).size(), files) << "nothing is left behind";
}

TEST_F(ExportReviewDocumentTest, SavesOntoTheSourceInOneStep) {
  testing::writeFile(folder / "photo.png", "the source");
  std::filesystem::permissions(folder / "photo.png", std::filesystem::perms(0640));
  std::ifstream source(folder / "photo.png");
  const auto review = document(exportTitle(folder / "photo.png"), ContentType::png());
  QSignalSpy saved(review.get(), &ExportReviewDocument::saved);
  review->save(folder / "photo.png");
  ASSERT_TRUE(saved.wait());
  EXPECT_EQ(testing::readFile(folder / "photo.png"), "finished bytes");
  EXPECT_EQ(testing::modeOf(folder / "photo.png"), 0640U);
  std::string old;
  std::getline(source, old);
  EXPECT_EQ(old, "the source") << "who has it open goes on reading what was there";
}

TEST_F(ExportReviewDocumentTest, CompletesAChosenName) {
  const auto image = document(QStringLiteral("photo"), ContentType::jpeg());
  EXPECT_EQ(image->withExtension(QStringLiteral("/a.b/c")), u"/a.b/c.jpg");
  EXPECT_EQ(image->withExtension(QStringLiteral("c.png")), u"c.png.jpg");
  EXPECT_EQ(image->withExtension(QStringLiteral("c.JPEG")), u"c.JPEG");
  const auto unknown = document(QStringLiteral("film"), ContentType());
  EXPECT_EQ(unknown->withExtension(QStringLiteral("c")), u"c.mov");
  EXPECT_EQ(unknown->withExtension(QStringLiteral("c.mov")), u"c.mov");
}

TEST_F(ExportReviewDocumentTest, SaysThatItsFileIsGone) {
  const auto review = document(QStringLiteral("photo"), ContentType::png());
  std::filesystem::remove(temporary);
  testing::writeFile(folder / "one.png", "old");
  QSignalSpy failed(review.get(), &ExportReviewDocument::saveFailed);
  review->save(folder / "one.png");
  ASSERT_TRUE(failed.wait());
  EXPECT_EQ(failed.first().first().toString(),
            u"“one.png” could not be saved: The finished export was deleted from the temporary "
            "folder");
  EXPECT_EQ(testing::readFile(folder / "one.png"), "old");
  review->close();
  EXPECT_EQ(testing::namesIn(folder.path()), std::vector<std::string>{"one.png"});
}

class ExportReviewSaveTest : public ExportReviewDocumentTest {
 protected:
  ExportReviewSaveTest() {
    testing::writeFile(temporary, "0123456789");
    testing::writeFile(folder / "out.png", "old");
    review = std::make_unique<ExportReviewDocument>(
        FinishedExport{TemporaryExport(temporary), {}, ContentType::png(), QStringLiteral("photo")},
        &openMoviePlayer, held.copy());
    QObject::connect(review.get(), &ExportReviewDocument::savingChanged, review.get(),
                     [this] { log.push_back(review->isSaving() ? "saving" : "not saving"); });
    QObject::connect(review.get(), &ExportReviewDocument::saveProgressed, review.get(),
                     [this](double fraction) {
                       log.push_back(std::to_string(static_cast<int>(fraction * 100)) + " %");
                     });
    QObject::connect(review.get(), &ExportReviewDocument::saved, review.get(),
                     [this] { log.emplace_back("saved"); });
    QObject::connect(review.get(), &ExportReviewDocument::saveCancelled, review.get(),
                     [this] { log.emplace_back("cancelled"); });
    QObject::connect(review.get(), &ExportReviewDocument::saveFailed, review.get(),
                     [this] { log.emplace_back("failed"); });
    review->save(folder / "out.png");
  }
  void waitFor(const std::string& event) {
    ASSERT_TRUE(QTest::qWaitFor([&] { return log.back() == event; }));
  }

  testing::HeldCopy held;
  std::vector<std::string> log;
  std::unique_ptr<ExportReviewDocument> review;
};

TEST_F(ExportReviewSaveTest, TellsHowFarItIs) {
  EXPECT_EQ(review->savingName(), u"out.png");
  held.tell(4);
  waitFor("40 %");
  held.finish();
  waitFor("saved");
  EXPECT_THAT(log, ElementsAre("saving", "40 %", "100 %", "not saving", "saved"));
}

TEST_F(ExportReviewSaveTest, CancelLeavesEverythingAsItWas) {
  held.tell(4);
  waitFor("40 %");
  review->cancelSave();
  waitFor("cancelled");
  EXPECT_THAT(log, ElementsAre("saving", "40 %", "not saving", "cancelled"));
  EXPECT_TRUE(review->isUnsaved());
  EXPECT_EQ(testing::readFile(folder / "out.png"), "old");
  EXPECT_EQ(testing::namesIn(folder.path()),
            (std::vector<std::string>{"Vantrel-1.png", "out.png"}));

  review->save(folder / "out.png");
  held.finish();
  waitFor("saved");
  EXPECT_EQ(testing::readFile(folder / "out.png"), "0123456789");
}

TEST_F(ExportReviewSaveTest, IsSavedWhenCancelComesTooLate) {
  held.finish();
  while (testing::readFile(folder / "out.png") == "old")
    std::this_thread::yield();
  review->cancelSave();
  waitFor("saved");
  EXPECT_FALSE(review->isUnsaved());
}

TEST_F(ExportReviewSaveTest, TellsNothingAfterItIsClosed) {
  held.tell(4);
  held.tell(5);
  review->close();
  QCoreApplication::processEvents();
  EXPECT_THAT(log, ElementsAre("saving"));
  review->cancelSave();
  EXPECT_EQ(testing::namesIn(folder.path()), std::vector<std::string>{"out.png"});
  EXPECT_EQ(testing::readFile(folder / "out.png"), "old");
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
