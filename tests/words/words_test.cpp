#include <QAction>
#include <QFile>
#include <QLibraryInfo>
#include <QProcess>
#include <QRegularExpression>
#include <QTranslator>

#include "base/failure.h"
#include "journey/accessible_tree.h"
#include "journey/journey.h"
#include "journey/numbered_waves.h"
#include "media/image_error.h"
#include "platform/desktop/file_error.h"
#include "platform/desktop/translations.h"
#include "platform/desktop/user_text.h"
#include "platform/movie/movie_error.h"
#include "support/picture_files.h"

namespace vantrel {
namespace {

using testing::waitFor;

/// The program in a language whose every text is the written one between angle quotes.
class Words : public testing::Journey {
 protected:
  void SetUp() override {
    Journey::SetUp();
    if (QString::fromLatin1(VANTREL_LRELEASE).isEmpty()) {
      GTEST_SKIP() << "there is no tool here that compiles a catalogue";
    }
    ASSERT_NO_FATAL_FAILURE(makeCatalogue());
    ASSERT_EQ(installTranslations({QStringLiteral("de-AT"), QStringLiteral("de")}, catalogues()),
              QStringLiteral("de"));
  }
  void TearDown() override {
    Journey::TearDown();
    qDeleteAll(qApp->findChildren<QTranslator*>());
  }

  QString catalogues() const { return QString::fromStdString(folder.path().string()); }
  void makeCatalogue() {
    QFile written(QStringLiteral(VANTREL_CATALOGUE));
    ASSERT_TRUE(written.open(QIODevice::ReadOnly));
    QString text = QString::fromUtf8(written.readAll());
    text.replace(
        QRegularExpression(QStringLiteral(
            "<source>([^<]*)</source>\\s*<translation type=\"unfinished\"></translation>")),
        QStringLiteral("<source>\\1</source><translation>«\\1»</translation>"));
    ASSERT_FALSE(text.contains(QLatin1String("unfinished")));
    QFile made(catalogues() + QStringLiteral("/vantrel_de.ts"));
    ASSERT_TRUE(made.open(QIODevice::WriteOnly));
    made.write(text.toUtf8());
    made.close();
    ASSERT_EQ(QProcess::execute(QStringLiteral(VANTREL_LRELEASE),
                                {QStringLiteral("-silent"), made.fileName()}),
              0);
  }

  /// What of a text no catalogue can reach: letters that are no unit, name or key.
  static QString untranslated(QString text) {
    static const QRegularExpression inner(QStringLiteral("«[^«»]*»"));
    while (text.contains(inner))
      text.remove(inner);
    static const QRegularExpression known(
        QStringLiteral("photo(-framed|\\.png)|clip(-framed|\\.mp4)|broken\\.png|words_test|sRGB "
                       "IEC[-0-9.]+|#[0-9A-F]{6}|"
                       "\\b(px|Mbps|kB|MB|bytes|PNG|JPEG|HEVC|H\\.264|HDR|SDR|Ctrl|Shift|Alt|OK|"
                       "Save|Cancel)\\b|</?p>"));
    text.remove(known);
    static const QRegularExpression word(QStringLiteral("\\p{L}{2,}"));
    return word.match(text).captured();
  }
  static void expectTranslated(QWidget* window) {
    ASSERT_NE(window, nullptr);
    const auto check = [](const QString& text, const std::string& where) {
      EXPECT_EQ(untranslated(text), QString()) << where << ": " << text.toStdString();
    };
    testing::visitAccessible(QAccessible::queryAccessibleInterface(window),
                             [&](QAccessibleInterface& item) {
                               check(item.text(QAccessible::Name), testing::inWords(item));
                               if (item.role() != QAccessible::Window)
                                 check(item.text(QAccessible::Description), testing::inWords(item));
                             });
    for (const QAction* action : window->findChildren<QAction*>()) {
      check(action->text(), "an action");
      check(action->toolTip(), "a tool tip");
    }
  }
};

TEST_F(Words, OfAnImageAndItsReviewAreInTheCatalogue) {
  editor = windows.openEditor();
  expectTranslated(editor);
  testing::savePng(folder / "photo.png", 120, 90);
  ASSERT_NO_FATAL_FAILURE(openByDialog(folder / "photo.png"));
  expectTranslated(editor);
  ImageEncodingSettings jpeg = state().history().imageEncoding();
  jpeg.format = ImageEncodingSettings::Format::jpeg;
  state().history().setImageEncoding(jpeg);
  state().setPreviewOnly(true);
  windows.openTab(editor);
  QCoreApplication::processEvents();
  expectTranslated(editor);
  editor->selectEditor(editor->editors().first());
  state().setPreviewOnly(false);

  ReviewWindow* const review = exportCrop();
  expectTranslated(review);
  review->close();
  expectTranslated(waitFor<QMessageBox>());
}

TEST_F(Words, OfAVideoAndItsReviewAreInTheCatalogue) {
  testing::NumberedWaves::make(folder / "clip.mp4", 30);
  ASSERT_NO_FATAL_FAILURE(openByDialog(folder / "clip.mp4"));
  expectTranslated(editor);
  expectTranslated(exportCrop());
}

TEST_F(Words, OfFailuresAreInTheCatalogue) {
  const auto shown = [](const auto& error) {
    return userText(std::make_exception_ptr(error)).toStdString();
  };
  EXPECT_EQ(shown(Failure("Choose a positive supported video bitrate.")),
            "«Choose a positive supported video bitrate.»");
  EXPECT_EQ(shown(std::bad_alloc()), "«There is not enough memory.»");
  EXPECT_EQ(shown(42), "«An unknown error occurred.»");
  EXPECT_EQ(shown(ImageError(ImageError::unreadable)), "«This image could not be read.»");
  EXPECT_EQ(shown(std::runtime_error("As others say.")), "As others say.");
  EXPECT_EQ(shown(Failure(failureText("The video's pictures cannot be converted: %1", "gray7"))),
            "«The video's pictures cannot be converted: gray7»");
}

TEST_F(Words, OfFailuresOfFilesAreInTheCatalogue) {
  const auto shown = [](const auto& error) {
    return userText(std::make_exception_ptr(error)).toStdString();
  };
  const auto full = std::make_error_code(std::errc::no_space_on_device);
  EXPECT_EQ(shown(fileError("a/%1.png", FileAction::Save, full)),
            "«“%1.png” could not be saved»: «No space left on device»");
  EXPECT_EQ(shown(fileError("a.png", FileAction::Read, std::make_error_code(std::errc::io_error))),
            "«“a.png” could not be read»: «Input/output error»");
  EXPECT_EQ(shown(fileError("pipe", FileAction::Open, FileFault::NotAFile)),
            "«“pipe” could not be opened»: «Not a regular file»");
  EXPECT_EQ(
      shown(MovieError("a.mov", FileAction::Read, "Invalid data found when processing input")),
      "«“a.mov” could not be read»: «Invalid data found when processing input»");
  EXPECT_EQ(shown(MovieError("a.mov", FileAction::Read, "The file ends too early")),
            "«“a.mov” could not be read»: «The file ends too early»");
}

TEST_F(Words, OfAnAlertAreInTheCatalogue) {
  testing::saveBytes(folder / "broken.png", {'n', 'o'});
  editor = windows.openFile(folder / "broken.png");
  expectTranslated(waitFor<QMessageBox>());
}

TEST_F(Words, AreThoseOfTheFirstLanguageThatIsThere) {
  qDeleteAll(qApp->findChildren<QTranslator*>());
  const auto found = [this](const QStringList& languages) {
    return installTranslations(languages, catalogues());
  };
  const QString english = QStringLiteral("en-GB"), french = QStringLiteral("fr-FR"),
                german = QStringLiteral("de-DE");
  EXPECT_EQ(found({english, german}), QString());
  EXPECT_EQ(found({QStringLiteral("C"), german}), QString());
  EXPECT_EQ(found({french, english, german}), QString());
  EXPECT_EQ(found({}), QString());
  EXPECT_EQ(installTranslations({german}, catalogues() + QStringLiteral("/none")), QString());
  EXPECT_TRUE(qApp->findChildren<QTranslator*>().isEmpty());
  EXPECT_EQ(userText(std::make_exception_ptr(std::bad_alloc())),
            QStringLiteral("There is not enough memory."));
  EXPECT_EQ(found({french, german}), QStringLiteral("de"));
  EXPECT_FALSE(qApp->findChildren<QTranslator*>().isEmpty());
}

}  // namespace
}  // namespace vantrel
