#include <QFontInfo>

#include "editor/tabbed_windows.h"
#include "inspector/inspector_view.h"
#include "support/film_folder.h"

namespace vantrel {
namespace {

/// Windows that are open when the application gets another font, beside ones that open after it.
class TextSizeTest : public testing::TabbedWindows {
 protected:
  void TearDown() override {
    TabbedWindows::TearDown();
    QApplication::setFont(m_before);
  }

  EditorWindow* open(const std::filesystem::path& path) {
    EditorWindow* const window = windows.openFile(path);
    EditorView* const editor = window->view();
    EXPECT_TRUE(QTest::qWaitFor([&] { return editor->state().loaded(); }));
    EXPECT_TRUE(QTest::qWaitForWindowExposed(window));
    window->resize(1300, 860);
    EXPECT_TRUE(QTest::qWaitFor([&] { return window->size() == QSize(1300, 860); }));
    return window;
  }
  static void setFont(const QString& family, int pixels) {
    QFont font(family);
    font.setPixelSize(pixels);
    QApplication::setFont(font);
  }
  /// The sizes and the fonts of all that is seen in a window.
  static QStringList looks(const EditorWindow* window) {
    QStringList all;
    for (const QWidget* widget : window->findChildren<QWidget*>()) {
      if (!widget->isVisible()) continue;
      const QFontInfo font(widget->font());
      all << QStringLiteral("%1 “%2”: %3 × %4, %5 %6 %7")
                 .arg(QString::fromLatin1(widget->metaObject()->className()),
                      widget->accessibleName())
                 .arg(widget->width())
                 .arg(widget->height())
                 .arg(font.family())
                 .arg(font.pixelSize())
                 .arg(font.weight());
    }
    return all;
  }
  static void expectAlike(const EditorWindow* old, const EditorWindow* fresh) {
    if (QTest::qWaitFor([&] { return looks(old) == looks(fresh); })) return;
    const QStringList got = looks(old), wanted = looks(fresh);
    for (qsizetype index = 0; index < std::max(got.size(), wanted.size()); ++index)
      EXPECT_EQ(got.value(index).toStdString(), wanted.value(index).toStdString());
  }

 private:
  const QFont m_before = QApplication::font();
};

TEST_F(TextSizeTest, OpenWindowsFollowTheFontOfTheApplication) {
  const testing::FilmFolder films;
  films.make("film.mov");
  for (const auto& path : {folder / "photo.png", films / "film.mov"}) {
    setFont(QStringLiteral("Sans Serif"), 13);
    EditorWindow* const window = open(path);
    EXPECT_EQ(window->view()->inspector()->width(), InspectorView::kWidth);
    setFont(QStringLiteral("Monospace"), 20);
    expectAlike(window, open(path));
    EXPECT_GT(window->view()->inspector()->width(), InspectorView::kWidth);
    setFont(QStringLiteral("Sans Serif"), 13);
    expectAlike(window, open(path));
    EXPECT_EQ(window->view()->inspector()->width(), InspectorView::kWidth);
  }
}

}  // namespace
}  // namespace vantrel
