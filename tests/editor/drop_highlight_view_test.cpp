#include "editor/drop_highlight_view.h"

#include <gtest/gtest.h>

#include <QAccessible>
#include <QPushButton>
#include <QTest>

namespace vantrel {
namespace {

class DropHighlightViewTest : public ::testing::Test {
 protected:
  DropHighlightViewTest() {
    QPalette colors = window.palette();
    colors.setColor(QPalette::Window, Qt::white);
    colors.setColor(QPalette::Highlight, QColor(10, 20, 200));
    window.setPalette(colors);
    window.resize(300, 200);
    button.resize(window.size());
    button.setFlat(true);
    highlight.show();
    highlight.raise();
    window.show();
  }
  QColor colorAt(int x, int y) {
    const QImage image = window.grab().toImage();
    return image.pixelColor(QPoint(x, y) * image.devicePixelRatio());
  }

  QWidget window;
  QPushButton button{&window};
  DropHighlightView highlight{&window};
};

TEST_F(DropHighlightViewTest, IsALineOfThreePointsSixFromTheEdgeInTheAccent) {
  const QColor accent(10, 20, 200);
  for (int inset = 0; inset < 20; ++inset) {
    const QColor expected = inset >= 6 && inset < 9 ? accent : QColor(Qt::white);
    EXPECT_EQ(colorAt(inset, 100), expected) << inset;
    EXPECT_EQ(colorAt(299 - inset, 100), expected) << inset;
    EXPECT_EQ(colorAt(150, inset), expected) << inset;
    EXPECT_EQ(colorAt(150, 199 - inset), expected) << inset;
  }
}

TEST_F(DropHighlightViewTest, KeepsToTheSizeOfTheWindow) {
  window.resize(400, 260);
  ASSERT_TRUE(QTest::qWaitFor([this] { return window.size() == QSize(400, 260); }));
  EXPECT_EQ(highlight.geometry(), window.rect());
}

TEST_F(DropHighlightViewTest, LetsTheMouseThrough) {
  ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));
  bool isClicked = false;
  QObject::connect(&button, &QPushButton::clicked, &window, [&] { isClicked = true; });
  QTest::mouseClick(window.windowHandle(), Qt::LeftButton, {}, QPoint(7, 100));
  EXPECT_TRUE(isClicked);
  EXPECT_FALSE(highlight.acceptDrops());
  EXPECT_EQ(highlight.focusPolicy(), Qt::NoFocus);
}

TEST_F(DropHighlightViewTest, IsHiddenFromAssistiveTools) {
  QAccessibleInterface* const root = QAccessible::queryAccessibleInterface(&window);
  ASSERT_NE(root, nullptr);
  ASSERT_EQ(root->childCount(), 1);
  EXPECT_EQ(root->child(0)->object(), &button);
}

}  // namespace
}  // namespace vantrel
