#include "controls/crop_panel.h"

#include <gtest/gtest.h>

#include <QImage>
#include <QMouseEvent>
#include <QPainter>
#include <QTest>
#include <vector>

namespace vantrel {
namespace {

constexpr int kGray = 51;

/// A gray area that a panel floats over. It keeps the buttons that were pressed on it.
class Ground final : public QWidget {
 public:
  explicit Ground(bool dark) {
    QPalette colors(QColor(kGray, kGray, kGray));
    colors.setColor(QPalette::Window, QColor(kGray, kGray, kGray));
    colors.setColor(QPalette::WindowText, dark ? Qt::white : Qt::black);
    setPalette(colors);
    resize(300, 200);
  }

  /// Of `panel` at `position`, drawn at `ratio` device pixels to a point.
  [[nodiscard]] QImage picture(double ratio = 1) {
    show();
    QImage image(size() * ratio, QImage::Format_RGB32);
    image.setDevicePixelRatio(ratio);
    render(&image);
    return image;
  }

  std::vector<Qt::MouseButton> pressed;

 protected:
  void mousePressEvent(QMouseEvent* event) override { pressed.push_back(event->button()); }
};

class White final : public QWidget {
 public:
  using QWidget::QWidget;

 protected:
  void paintEvent(QPaintEvent* /*event*/) override { QPainter(this).fillRect(rect(), Qt::white); }
};

constexpr QRect kBody(100, 60, 86, 62);

void expectNear(const QImage& image, const QPoint& point, const QColor& color) {
  const QColor found = image.pixelColor(point);
  EXPECT_NEAR(found.red(), color.red(), 1) << point.x() << ", " << point.y();
  EXPECT_NEAR(found.green(), color.green(), 1);
  EXPECT_NEAR(found.blue(), color.blue(), 1);
}

TEST(CropPanel, DrawsATranslucentBodyWithAHairline) {
  for (const bool dark : {true, false}) {
    Ground ground(dark);
    CropPanel panel(&ground);
    panel.setGeometry(kBody);
    const QImage image = ground.picture();
    const QColor body = dark ? QColor(35, 36, 40) : QColor(222, 222, 224);
    const QColor hairline = dark ? QColor(57, 58, 61) : QColor(200, 200, 201);
    expectNear(image, kBody.center(), body);
    expectNear(image, {kBody.left() + 1, kBody.center().y()}, body);
    expectNear(image, {kBody.left(), kBody.center().y()}, hairline);
    expectNear(image, {kBody.right(), kBody.center().y()}, hairline);
    expectNear(image, {kBody.center().x(), kBody.top()}, hairline);
    expectNear(image, {kBody.center().x(), kBody.bottom()}, hairline);
  }
}

TEST(CropPanel, IsDarkByItsOwnPalette) {
  Ground ground(false);
  CropPanel panel(&ground);
  panel.setGeometry(kBody);
  panel.setPalette(QPalette(Qt::black));
  expectNear(ground.picture(), kBody.center(), QColor(35, 36, 40));
}

TEST(CropPanel, CastsAShadowBeyondItsBody) {
  Ground ground(true);
  CropPanel panel(&ground);
  panel.setGeometry(kBody);
  const QImage image = ground.picture();
  const auto gray = [&image](int x, int y) { return image.pixelColor(x, y).red(); };
  const int middle = kBody.center().x();
  EXPECT_LT(gray(middle, kBody.bottom() + 1), 30);
  EXPECT_LT(gray(middle, kBody.bottom() + 10), 44);
  EXPECT_GT(gray(middle, kBody.bottom() + 10), gray(middle, kBody.bottom() + 4));
  EXPECT_LT(gray(middle, kBody.bottom() + 10), gray(middle, kBody.top() - 10))
      << "the light comes from above";
  EXPECT_LT(gray(kBody.left(), kBody.top()), kGray) << "corners are rounded";
  EXPECT_EQ(gray(2, 2), kGray);
  EXPECT_EQ(gray(middle, kBody.bottom() + 60), kGray);
}

TEST(CropPanel, LiesOnWholeDevicePixelsAtAnOddPlace) {
  Ground ground(true);
  CropPanel panel(&ground);
  panel.setGeometry(kBody.translated(1, 1));
  const QImage image = ground.picture(1.5);
  // 101 × 1.5 = 151.5 is drawn at 152, 129 device pixels wide.
  const int row = 138;
  const QColor body(35, 36, 40), hairline(57, 58, 61);
  expectNear(image, {152, row}, hairline);
  expectNear(image, {153, row}, body);
  expectNear(image, {279, row}, body);
  expectNear(image, {280, row}, hairline);
  EXPECT_LT(image.pixelColor(151, row).red(), kGray - 10);
  EXPECT_LT(image.pixelColor(281, row).red(), kGray - 10);
}

TEST(CropPanel, FadesWithAllItHolds) {
  Ground ground(true);
  CropPanel panel(&ground);
  panel.setGeometry(kBody);
  White child(&panel);
  child.setGeometry(12, 28, 62, 22);
  const QPoint onChild = kBody.topLeft() + QPoint(40, 40);
  expectNear(ground.picture(), onChild, Qt::white);
  panel.setOpacity(0.5);
  const QImage half = ground.picture();
  EXPECT_NEAR(half.pixelColor(onChild).red(), (255 + 43) / 2, 2);
  EXPECT_NEAR(half.pixelColor(kBody.center().x(), kBody.top() + 4).red(), (35 + kGray) / 2, 1);
  panel.setOpacity(0);
  const QImage none = ground.picture();
  expectNear(none, onChild, QColor(kGray, kGray, kGray));
  expectNear(none, {kBody.center().x(), kBody.bottom() + 1}, QColor(kGray, kGray, kGray));
  panel.setOpacity(1);
  expectNear(ground.picture(), onChild, Qt::white);
  EXPECT_EQ(panel.graphicsEffect(), nullptr);
}

TEST(CropPanel, KeepsLeftClicksAndLetsItsShadowPassThemOn) {
  Ground ground(true);
  CropPanel panel(&ground);
  panel.setGeometry(kBody);
  ground.show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(&ground));
  QWindow* const window = ground.windowHandle();
  QTest::mouseClick(window, Qt::LeftButton, {}, kBody.center());
  QTest::mouseDClick(window, Qt::LeftButton, {}, kBody.center());
  EXPECT_TRUE(ground.pressed.empty());
  QTest::mouseClick(window, Qt::MiddleButton, {}, kBody.center());
  EXPECT_EQ(ground.pressed, std::vector{Qt::MiddleButton});
  QTest::mouseClick(window, Qt::LeftButton, {}, kBody.bottomRight() + QPoint(5, 5));
  EXPECT_EQ(ground.pressed, (std::vector{Qt::MiddleButton, Qt::LeftButton}));
  EXPECT_EQ(panel.cursor().shape(), Qt::ArrowCursor);
}

TEST(CropPanel, ShadowFollowsThePanel) {
  Ground ground(true);
  auto* panel = new CropPanel(&ground);
  ground.show();
  const auto backdrops = [](const QWidget& parent) {
    return parent.findChildren<PanelBackdrop*>(QString(), Qt::FindDirectChildrenOnly);
  };
  ASSERT_EQ(backdrops(ground).size(), 1);
  panel->setGeometry(kBody);
  EXPECT_EQ(backdrops(ground).first()->geometry().center(), kBody.center() + QPoint(0, 10));
  panel->hide();
  EXPECT_TRUE(backdrops(ground).first()->isHidden());
  panel->show();
  EXPECT_FALSE(backdrops(ground).first()->isHidden());

  QWidget other(&ground);
  panel->raise();
  const QObjectList& order = ground.children();
  EXPECT_EQ(order.indexOf(panel), order.size() - 1);
  EXPECT_EQ(order.indexOf(backdrops(ground).first()), order.size() - 2);

  QWidget elsewhere;
  panel->setParent(&elsewhere);
  EXPECT_TRUE(backdrops(ground).isEmpty());
  EXPECT_EQ(backdrops(elsewhere).size(), 1);
  delete panel;
  EXPECT_TRUE(backdrops(elsewhere).isEmpty());
}

TEST(CropPanel, GoesInAnyOrderWithItsParent) {
  auto* ground = new Ground(true);
  new CropPanel(ground);
  auto* last = new CropPanel(ground);
  last->lower();
  EXPECT_NO_FATAL_FAILURE(delete ground);
  CropPanel alone;
  alone.setOpacity(0.5);
  EXPECT_TRUE(alone.findChildren<PanelBackdrop*>().isEmpty());
}

}  // namespace
}  // namespace vantrel
