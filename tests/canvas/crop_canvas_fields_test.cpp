#include "canvas/crop_canvas_fields.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QGraphicsEffect>
#include <QKeyEvent>
#include <QLabel>
#include <QTest>
#include <QWidget>
#include <vector>

#include "controls/crop_number_field.h"
#include "controls/crop_undo_routing.h"
#include "model/edit_history.h"

namespace vantrel {
namespace {

using Edge = CropMargins::Edge;

constexpr QSizeF kSource{401, 301};

/// Stands for the view beneath the fields; it takes the focus at a click, as the crop does.
class Overlay final : public QWidget {
 public:
  explicit Overlay(QWidget* parent) : QWidget(parent) { setFocusPolicy(Qt::StrongFocus); }

  int presses = 0;
  std::vector<int> keys;

 protected:
  void mousePressEvent(QMouseEvent* /*event*/) override { ++presses; }
  void keyPressEvent(QKeyEvent* event) override {
    if (event->key() != Qt::Key_Alt && event->key() != Qt::Key_Control)
      keys.push_back(event->key());
  }
};

/// A window with the fields of a crop in a source of 401 × 301 pixels, at a pixel step of 2.
class FieldCanvas {
 public:
  FieldCanvas() {
    window.resize(800, 640);
    overlay = new Overlay(&window);
    overlay->setGeometry(window.rect());
    fields = new CropCanvasFields(history, overlay);
    QObject::connect(fields, &CropCanvasFields::marginEdited, &window,
                     [this](Edge edge, int64_t value) {
                       CropMargins crop = history.crop();
                       crop.set(edge, value, kSource, history.pixelStep());
                       history.setCrop(crop);
                       update();
                     });
    QObject::connect(&history, &EditHistory::cropChanged, &window, [this] { update(); });
    history.reset({CropMargins::fullImage(kSource, 2), {}, {}});
    overlay->setFocus();
    window.show();
    window.activateWindow();
  }

  /// Whether the window has the keyboard; without it, no test of focus means anything.
  [[nodiscard]] bool isReady() { return QTest::qWaitForWindowActive(&window); }

  void update() {
    const QRectF frame(origin, source * scale);
    const QRectF crop = history.crop().rectangle(source);
    fields->update({history.crop(), source, frame},
                   {origin + crop.topLeft() * scale, crop.size() * scale});
  }
  [[nodiscard]] CropCanvasField& panel(Edge edge) const { return *fields->field(edge); }
  [[nodiscard]] CropNumberField& number(Edge edge) const { return *panel(edge).field(); }
  [[nodiscard]] int64_t steps() const { return history.manager().count(); }

  EditHistory history;
  QPointF origin{200, 150};
  double scale = 1;
  QSizeF source = kSource;
  QWidget window;
  Overlay* overlay;
  CropCanvasFields* fields;
};

TEST(CropCanvasFields, StandBesideTheMiddleOfEachEdge) {
  const QRectF selection(200.5, 150, 300, 201);
  EXPECT_EQ(CropCanvasFields::frame(Edge::left, selection), QRectF(92.5, 219.5, 86, 62));
  EXPECT_EQ(CropCanvasFields::frame(Edge::right, selection), QRectF(522.5, 219.5, 86, 62));
  EXPECT_EQ(CropCanvasFields::frame(Edge::top, selection), QRectF(307.5, 70, 86, 62));
  EXPECT_EQ(CropCanvasFields::frame(Edge::bottom, selection), QRectF(307.5, 369, 86, 62));
}

TEST(CropCanvasFields, ShowTheMarginsAndTheirNames) {
  FieldCanvas canvas;
  canvas.history.setCrop({2, 4, 7, 9});
  const struct {
    Edge edge;
    QString title, text;
  } expected[] = {{Edge::left, QStringLiteral("Left"), QStringLiteral("2")},
                  {Edge::top, QStringLiteral("Top"), QStringLiteral("4")},
                  {Edge::right, QStringLiteral("Right"), QStringLiteral("7")},
                  {Edge::bottom, QStringLiteral("Bottom"), QStringLiteral("9")}};
  for (const auto& [edge, title, text] : expected) {
    EXPECT_EQ(canvas.number(edge).text(), text);
    EXPECT_EQ(canvas.number(edge).accessibleName(),
              title + QStringLiteral(" crop margin in pixels"));
    EXPECT_EQ(canvas.panel(edge).findChild<QLabel*>()->text(), title);
    EXPECT_EQ(canvas.number(edge).geometry(), QRect(12, 28, 62, 22));
    EXPECT_TRUE(canvas.panel(edge).isVisible());
  }
}

TEST(CropCanvasFields, ArePlacedOnceForEachState) {
  FieldCanvas canvas;
  CropCanvasField& left = canvas.panel(Edge::left);
  left.move(3, 3);
  left.field()->setValue(77);
  canvas.update();
  EXPECT_EQ(left.pos(), QPoint(3, 3)) << "touched without need";
  EXPECT_EQ(left.field()->text(), QStringLiteral("77"));
  canvas.scale = 2;
  canvas.update();
  EXPECT_EQ(left.pos(), QPoint(92, 419));
  EXPECT_EQ(left.field()->text(), QStringLiteral("0"));
}

TEST(CropCanvasFields, KeepTheirSizeAtEveryZoom) {
  FieldCanvas canvas;
  for (const double scale : {0.01, 0.33, 1.0, 7.3, 10.0, 1e12}) {
    canvas.scale = scale;
    canvas.update();
    for (const Edge edge : CropMargins::kEdges) {
      EXPECT_EQ(canvas.panel(edge).size(), QSize(86, 62));
      EXPECT_FALSE(canvas.panel(edge).isHidden());
    }
  }
}

TEST(CropCanvasFields, StayWhereTheyAreBeyondTheViewport) {
  FieldCanvas canvas;
  canvas.origin = {-3000.4, 5000.6};
  canvas.update();
  EXPECT_EQ(canvas.panel(Edge::left).pos(), QPoint(-3108, 5120));
  EXPECT_FALSE(canvas.panel(Edge::left).isHidden());
}

TEST(CropCanvasFields, ExistButHideWithoutASource) {
  FieldCanvas canvas;
  canvas.source = {0, 0};
  canvas.update();
  for (const Edge edge : CropMargins::kEdges)
    EXPECT_TRUE(canvas.panel(edge).isHidden());
  canvas.fields->setOpacity(1);
  EXPECT_TRUE(canvas.panel(Edge::left).isHidden());
  canvas.source = kSource;
  canvas.update();
  for (const Edge edge : CropMargins::kEdges)
    EXPECT_TRUE(canvas.panel(edge).isVisible());
}

TEST(CropCanvasFields, HideOnceTheyHaveFaded) {
  FieldCanvas canvas;
  ASSERT_TRUE(canvas.isReady());
  canvas.number(Edge::right).setFocus();
  canvas.fields->setOpacity(0.4);
  EXPECT_TRUE(canvas.panel(Edge::right).isVisible());
  EXPECT_NE(canvas.panel(Edge::right).graphicsEffect(), nullptr);
  canvas.fields->setOpacity(0);
  for (const Edge edge : CropMargins::kEdges) {
    EXPECT_FALSE(canvas.panel(edge).isVisible());
    EXPECT_FALSE(canvas.number(edge).isEditing()) << "the focus went on to the next field";
  }
  canvas.fields->setOpacity(1);
  EXPECT_TRUE(canvas.panel(Edge::right).isVisible());
  EXPECT_EQ(canvas.panel(Edge::right).graphicsEffect(), nullptr);
}

TEST(CropCanvasField, TypingMovesTheCropAndTheFields) {
  FieldCanvas canvas;
  ASSERT_TRUE(canvas.isReady());
  const QPoint before = canvas.panel(Edge::left).pos();
  QTest::mouseClick(canvas.window.windowHandle(), Qt::LeftButton, {},
                    canvas.number(Edge::left).mapTo(&canvas.window, QPoint(10, 11)));
  EXPECT_EQ(canvas.number(Edge::left).selectedText(), QStringLiteral("0"));
  QTest::keyClick(canvas.window.windowHandle(), Qt::Key_1);
  QTest::keyClick(canvas.window.windowHandle(), Qt::Key_2);
  EXPECT_EQ(canvas.history.crop().left, 12);
  EXPECT_EQ(canvas.panel(Edge::left).pos(), before + QPoint(12, 0));
  EXPECT_EQ(canvas.overlay->presses, 0);
  canvas.overlay->setFocus();
  EXPECT_EQ(canvas.steps(), 1);
  CropUndoRouting::perform(canvas.history, false);
  EXPECT_EQ(canvas.history.crop().left, 0);
  EXPECT_EQ(canvas.number(Edge::left).text(), QStringLiteral("0"));
}

TEST(CropCanvasField, TypingIsUndoneApartFromTheCrop) {
  FieldCanvas canvas;
  ASSERT_TRUE(canvas.isReady());
  canvas.history.setCrop({0, 20, 1, 1});
  canvas.number(Edge::left).setFocus(Qt::TabFocusReason);
  QTest::keyClicks(&canvas.number(Edge::left), QStringLiteral("12"));
  CropUndoRouting::perform(canvas.history, false);
  EXPECT_EQ(canvas.number(Edge::left).text(), QStringLiteral("0"));
  EXPECT_TRUE(canvas.number(Edge::left).hasFocus());
  EXPECT_EQ(canvas.history.crop().top, 20);
  CropUndoRouting::perform(canvas.history, false);
  EXPECT_EQ(canvas.history.crop().top, 0);
}

TEST(CropCanvasField, ClampedNumberShowsWhenEditingEnds) {
  FieldCanvas canvas;
  ASSERT_TRUE(canvas.isReady());
  // The second time, the crop does not change at all.
  for (int time = 0; time < 2; ++time) {
    canvas.number(Edge::top).setFocus(Qt::TabFocusReason);
    QTest::keyClicks(&canvas.number(Edge::top), QStringLiteral("5000"));
    EXPECT_EQ(canvas.number(Edge::top).text(), QStringLiteral("5000"));
    canvas.overlay->setFocus();
    EXPECT_EQ(canvas.number(Edge::top).text(), QStringLiteral("298"));
    EXPECT_EQ(canvas.history.crop().top, 298);
  }
}

TEST(CropCanvasField, ArrowAtTheLimitKeepsTheNumber) {
  FieldCanvas canvas;
  ASSERT_TRUE(canvas.isReady());
  canvas.history.setCrop({0, 298, 1, 1});
  canvas.number(Edge::top).setFocus();
  QTest::keyClick(&canvas.number(Edge::top), Qt::Key_Up, Qt::ShiftModifier);
  EXPECT_EQ(canvas.number(Edge::top).text(), QStringLiteral("298"));
  QTest::keyClick(&canvas.number(Edge::top), Qt::Key_Down);
  EXPECT_EQ(canvas.history.crop().top, 296);
}

TEST(CropCanvasField, TextInEditingOutlivesADragOfTheCrop) {
  FieldCanvas canvas;
  ASSERT_TRUE(canvas.isReady());
  canvas.number(Edge::left).setFocus();
  canvas.history.setCrop({40, 10, 1, 1});
  EXPECT_EQ(canvas.number(Edge::left).text(), QStringLiteral("0"));
  EXPECT_EQ(canvas.number(Edge::top).text(), QStringLiteral("10"));
  EXPECT_EQ(canvas.panel(Edge::left).x(), 132);
  canvas.overlay->setFocus();
  EXPECT_EQ(canvas.number(Edge::left).text(), QStringLiteral("40"));
  EXPECT_EQ(canvas.history.crop().left, 40);
}

TEST(CropCanvasField, KeysThatAreNoCommandOfTheNumberDoNotMoveTheCrop) {
  FieldCanvas canvas;
  ASSERT_TRUE(canvas.isReady());
  canvas.number(Edge::left).setFocus();
  for (const int key : {Qt::Key_Left, Qt::Key_Right, Qt::Key_Up, Qt::Key_Down}) {
    QTest::keyClick(canvas.window.windowHandle(), static_cast<Qt::Key>(key), Qt::AltModifier);
    QTest::keyClick(canvas.window.windowHandle(), static_cast<Qt::Key>(key), Qt::ControlModifier);
  }
  EXPECT_TRUE(canvas.overlay->keys.empty());
  QTest::keyClick(canvas.window.windowHandle(), Qt::Key_Escape);
  EXPECT_EQ(canvas.overlay->keys, std::vector<int>{Qt::Key_Escape});
}

TEST(CropCanvasFields, TakeNeitherMouseNorFocusInAPreview) {
  FieldCanvas canvas;
  ASSERT_TRUE(canvas.isReady());
  canvas.number(Edge::left).setFocus(Qt::TabFocusReason);
  QTest::keyClick(&canvas.number(Edge::left), '8');
  canvas.fields->setEditingEnabled(false);
  EXPECT_FALSE(canvas.number(Edge::left).isEditing());
  EXPECT_EQ(canvas.steps(), 1);
  EXPECT_EQ(QApplication::focusWidget(), nullptr);
  for (const Edge edge : CropMargins::kEdges) {
    EXPECT_TRUE(canvas.number(edge).isEnabled()) << "looks disabled while it fades";
    QTest::mouseClick(canvas.window.windowHandle(), Qt::LeftButton, {},
                      canvas.panel(edge).geometry().center() + QPoint(0, 8));
    EXPECT_FALSE(canvas.number(edge).hasFocus());
  }
  EXPECT_EQ(canvas.overlay->presses, 4);
  for (int tab = 0; tab < 5; ++tab) {
    QTest::keyClick(canvas.window.windowHandle(), Qt::Key_Tab);
    for (const Edge edge : CropMargins::kEdges)
      EXPECT_FALSE(canvas.number(edge).isEditing());
  }
  canvas.fields->setEditingEnabled(true);
  QTest::mouseClick(canvas.window.windowHandle(), Qt::LeftButton, {},
                    canvas.panel(Edge::left).geometry().center() + QPoint(0, 8));
  EXPECT_TRUE(canvas.number(Edge::left).isEditing());
}

TEST(CropCanvasFields, EndTheirEditingBehindAnotherWindowToo) {
  FieldCanvas canvas;
  ASSERT_TRUE(canvas.isReady());
  canvas.number(Edge::left).setFocus(Qt::TabFocusReason);
  QTest::keyClick(&canvas.number(Edge::left), '8');
  QWidget other;
  other.show();
  other.activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&other));
  EXPECT_TRUE(canvas.number(Edge::left).isEditing());
  canvas.fields->setEditingEnabled(false);
  EXPECT_FALSE(canvas.number(Edge::left).isEditing());
  EXPECT_EQ(canvas.steps(), 1);
}

TEST(CropCanvasFields, AreDisabledWithTheirCanvas) {
  FieldCanvas canvas;
  ASSERT_TRUE(canvas.isReady());
  canvas.number(Edge::left).setFocus(Qt::TabFocusReason);
  QTest::keyClick(&canvas.number(Edge::left), '8');
  canvas.overlay->setEnabled(false);
  EXPECT_FALSE(canvas.number(Edge::left).isEditing());
  EXPECT_EQ(canvas.steps(), 1);
}

TEST(CropCanvasFields, EndTheirEditingWhenTheyGo) {
  for (const bool withOverlay : {false, true}) {
    FieldCanvas canvas;
    ASSERT_TRUE(canvas.isReady());
    canvas.number(Edge::bottom).setFocus(Qt::TabFocusReason);
    QTest::keyClick(&canvas.number(Edge::bottom), '8');
    canvas.panel(Edge::bottom).lower();
    EXPECT_EQ(canvas.steps(), 0);
    QObject::disconnect(&canvas.history, nullptr, &canvas.window, nullptr);
    if (withOverlay) {
      delete canvas.overlay;
    } else {
      delete canvas.fields;
      EXPECT_TRUE(canvas.overlay->findChildren<QWidget*>().isEmpty());
    }
    EXPECT_EQ(canvas.steps(), 1);
    EXPECT_EQ(canvas.history.crop().bottom, 9) << "an odd span moves the edge inward";
  }
}

}  // namespace
}  // namespace vantrel
