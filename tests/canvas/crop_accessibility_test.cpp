#include <gtest/gtest.h>

#include <QAccessible>
#include <algorithm>
#include <limits>
#include <memory>
#include <stdexcept>
#include <vector>

#include "canvas/overlay_window.h"

namespace vantrel {
namespace {

using Edge = CropMargins::Edge;

QString nameOf(QAccessibleInterface* item) {
  return item->text(QAccessible::Name);
}

/// Within its life, keeps what assistive tools are told: which events came for which name, in
/// order. They are told only while they listen, as they do on the bus that this test is run with.
class Listener {
 public:
  Listener() {
    if (!QAccessible::isActive()) throw std::runtime_error("no bus of assistive tools");
    s_heard.clear();
    m_before = QAccessible::installUpdateHandler(&Listener::hear);
  }
  ~Listener() { QAccessible::installUpdateHandler(m_before); }
  Listener(const Listener&) = delete;
  Listener& operator=(const Listener&) = delete;

  struct Heard {
    QAccessible::Event type;
    QString name;
  };

  static auto count(QAccessible::Event type, const QString& name) {
    return std::count_if(s_heard.begin(), s_heard.end(), [&](const Heard& heard) {
      return heard.type == type && heard.name == name;
    });
  }
  /// Empty if there was none.
  static QString last(QAccessible::Event type) {
    const auto found = std::find_if(s_heard.rbegin(), s_heard.rend(),
                                    [&](const Heard& heard) { return heard.type == type; });
    return found == s_heard.rend() ? QString() : found->name;
  }

 private:
  static void hear(QAccessibleEvent* event) {
    QAccessibleInterface* const item = event->accessibleInterface();
    s_heard.push_back({event->type(), item ? nameOf(item) : QString()});
  }

  static inline std::vector<Heard> s_heard;
  QAccessible::UpdateHandler m_before;
};

/// The crop of a window as assistive tools meet it.
class MetCrop : public OverlayWindow {
 public:
  using OverlayWindow::OverlayWindow;

  [[nodiscard]] QAccessibleInterface* crop() const {
    return QAccessible::queryAccessibleInterface(&overlay);
  }
  [[nodiscard]] QAccessibleInterface* handle(CropHandle which) const {
    return crop()->child(static_cast<int>(which));
  }
};

/// The first item of this role at or below `item`.
QAccessibleInterface* find(QAccessibleInterface* item, QAccessible::Role role) {
  if (item->role() == role) return item;
  for (int index = 0; index < item->childCount(); ++index) {
    if (QAccessibleInterface* const found = find(item->child(index), role)) return found;
  }
  return nullptr;
}

TEST(CropAccessibility, CropIsAGroupThatTellsSizeAndPlace) {
  MetCrop met;
  ASSERT_TRUE(met.isReady());
  QAccessibleInterface* const crop = met.crop();
  ASSERT_NE(crop, nullptr);
  EXPECT_EQ(crop->role(), QAccessible::Grouping);
  EXPECT_EQ(nameOf(crop), QStringLiteral("Crop"));
  EXPECT_EQ(crop->text(QAccessible::Description), QStringLiteral("160 × 60 pixels at 20, 20"));
  EXPECT_EQ(crop->rect(), QRect(met.overlay.mapToGlobal(met.selection().topLeft().toPoint()),
                                met.selection().size().toSize()));
  EXPECT_TRUE(crop->state().focusable);
  EXPECT_FALSE(crop->state().invisible);
}

TEST(CropAccessibility, CropIsFoundFromTheWindow) {
  MetCrop met;
  ASSERT_TRUE(met.isReady());
  QAccessibleInterface* const window = QAccessible::queryAccessibleInterface(&met.window);
  EXPECT_EQ(find(window, QAccessible::Grouping), met.crop());
  EXPECT_NE(met.crop()->parent()->indexOfChild(met.crop()), -1);
}

TEST(CropAccessibility, HandlesAndFieldsAreItsChildren) {
  MetCrop met;
  ASSERT_TRUE(met.isReady());
  QAccessibleInterface* const crop = met.crop();
  ASSERT_EQ(crop->childCount(), 12);
  const QStringList fields{QStringLiteral("Left crop margin in pixels"),
                           QStringLiteral("Top crop margin in pixels"),
                           QStringLiteral("Right crop margin in pixels"),
                           QStringLiteral("Bottom crop margin in pixels")};
  for (int index = 0; index < 12; ++index) {
    QAccessibleInterface* const child = crop->child(index);
    ASSERT_NE(child, nullptr);
    EXPECT_EQ(child->parent(), crop);
    EXPECT_EQ(crop->indexOfChild(child), index);
    EXPECT_FALSE(child->state().invisible);
    if (index < 8) continue;
    QAccessibleInterface* const field = find(child, QAccessible::EditableText);
    ASSERT_NE(field, nullptr);
    EXPECT_EQ(nameOf(field), fields[index - 8]);
    EXPECT_EQ(field->text(QAccessible::Value), QStringLiteral("20"));
  }
  EXPECT_EQ(crop->child(12), nullptr);
  EXPECT_EQ(crop->child(-1), nullptr);
  EXPECT_EQ(crop->indexOfChild(nullptr), -1);
}

TEST(CropAccessibility, HandlesAreFoundWhereTheyAreDrawn) {
  MetCrop met;
  ASSERT_TRUE(met.isReady());
  for (const CropHandle which : kCropHandles) {
    QAccessibleInterface* const handle = met.handle(which);
    EXPECT_TRUE(handle->isValid());
    const QPoint middle = met.overlay.mapToGlobal(met.middleOf(which));
    EXPECT_TRUE(handle->rect().contains(middle));
    EXPECT_EQ(met.crop()->childAt(middle.x(), middle.y()), handle);
  }
}

TEST(CropAccessibility, HandleOfAnEdgeIsASliderOfItsMargin) {
  MetCrop met;
  ASSERT_TRUE(met.isReady());
  QAccessibleInterface* const handle = met.handle(CropHandle::right);
  EXPECT_EQ(handle->role(), QAccessible::Slider);
  EXPECT_EQ(nameOf(handle), QStringLiteral("Right handle"));
  EXPECT_EQ(handle->text(QAccessible::Description), QStringLiteral("Right 20 pixels"));
  QAccessibleValueInterface* const value = handle->valueInterface();
  ASSERT_NE(value, nullptr);
  EXPECT_EQ(value->currentValue().toDouble(), 20);
  EXPECT_EQ(value->minimumValue().toDouble(), 0);
  EXPECT_EQ(value->maximumValue().toDouble(), 179);
  EXPECT_EQ(value->minimumStepSize().toDouble(), 1);
  value->setCurrentValue(31.6);
  EXPECT_EQ(met.history.crop(), (CropMargins{20, 20, 32, 20}));
  EXPECT_EQ(met.history.manager().count(), 1);
  EXPECT_EQ(value->currentValue().toDouble(), 32);
}

TEST(CropAccessibility, ValuesOfASliderStayLegal) {
  MetCrop met;
  ASSERT_TRUE(met.isReady());
  met.history.setPixelStep(2);
  QAccessibleValueInterface* const value = met.handle(CropHandle::top)->valueInterface();
  EXPECT_EQ(value->minimumStepSize().toDouble(), 2);
  EXPECT_EQ(value->maximumValue().toDouble(), 78);
  value->setCurrentValue(1e300);
  EXPECT_EQ(met.history.crop().top, 78);
  value->setCurrentValue(-1e300);
  EXPECT_EQ(met.history.crop().top, 0);
  value->setCurrentValue(std::numeric_limits<double>::quiet_NaN());
  EXPECT_EQ(met.history.crop().top, 0);
}

TEST(CropAccessibility, SliderOfAnEdgeIsIncreasedAndDecreased) {
  MetCrop met;
  ASSERT_TRUE(met.isReady());
  QAccessibleActionInterface* const actions = met.handle(CropHandle::left)->actionInterface();
  ASSERT_NE(actions, nullptr);
  actions->doAction(QAccessibleActionInterface::increaseAction());
  EXPECT_EQ(met.history.crop().left, 21);
  actions->doAction(QAccessibleActionInterface::decreaseAction());
  actions->doAction(QAccessibleActionInterface::decreaseAction());
  EXPECT_EQ(met.history.crop(), (CropMargins{19, 20, 20, 20}));
  EXPECT_FALSE(met.overlay.hasFocus());
}

TEST(CropAccessibility, HandleOfACornerTellsBothMarginsAndMovesInFourDirections) {
  MetCrop met;
  ASSERT_TRUE(met.isReady());
  QAccessibleInterface* const handle = met.handle(CropHandle::bottomLeft);
  EXPECT_EQ(handle->role(), QAccessible::Slider);
  EXPECT_EQ(nameOf(handle), QStringLiteral("Bottom left handle"));
  EXPECT_EQ(handle->text(QAccessible::Description), QStringLiteral("Bottom 20, left 20 pixels"));
  ASSERT_NE(handle->valueInterface(), nullptr);
  EXPECT_EQ(handle->valueInterface()->currentValue().toDouble(), 20);
  QAccessibleActionInterface* const actions = handle->actionInterface();
  ASSERT_EQ(actions->actionNames().size(), 7);
  EXPECT_EQ(actions->localizedActionName(QStringLiteral("MoveLeft")), QStringLiteral("Move left"));
  for (const QString& name : actions->actionNames().mid(3))
    actions->doAction(name);
  EXPECT_EQ(met.history.crop(), OverlayWindow::kCrop);
  EXPECT_EQ(met.history.manager().count(), 4);
  actions->doAction(QStringLiteral("MoveLeft"));
  actions->doAction(QStringLiteral("MoveUp"));
  EXPECT_EQ(met.history.crop(), (CropMargins{19, 20, 20, 21}));
  actions->doAction(QAccessibleActionInterface::increaseAction());
  EXPECT_EQ(met.history.crop(), (CropMargins{19, 20, 20, 22}));
  handle->valueInterface()->setCurrentValue(30.0);
  EXPECT_EQ(met.history.crop(), (CropMargins{19, 20, 20, 30}));
}

TEST(CropAccessibility, CropMovesInFourDirections) {
  MetCrop met;
  ASSERT_TRUE(met.isReady());
  QAccessibleActionInterface* const actions = met.crop()->actionInterface();
  EXPECT_TRUE(actions->actionNames().contains(QStringLiteral("MoveRight")));
  actions->doAction(QStringLiteral("MoveRight"));
  actions->doAction(QStringLiteral("MoveDown"));
  EXPECT_EQ(met.history.crop(), (CropMargins{21, 21, 19, 19}));
}

TEST(CropAccessibility, SetFocusReachesHandleAndCrop) {
  MetCrop met;
  ASSERT_TRUE(met.isReady());
  met.handle(CropHandle::top)
      ->actionInterface()
      ->doAction(QAccessibleActionInterface::setFocusAction());
  EXPECT_TRUE(met.overlay.hasFocus());
  EXPECT_EQ(met.overlay.focusedHandle(), CropHandle::top);
  EXPECT_TRUE(met.handle(CropHandle::top)->state().focused);
  EXPECT_FALSE(met.crop()->state().focused);
  EXPECT_EQ(met.crop()->focusChild(), met.handle(CropHandle::top));
  met.crop()->actionInterface()->doAction(QAccessibleActionInterface::setFocusAction());
  EXPECT_FALSE(met.overlay.focusedHandle());
  EXPECT_TRUE(met.crop()->state().focused);
  EXPECT_FALSE(met.handle(CropHandle::top)->state().focused);
}

TEST(CropAccessibility, FieldTakesATypedMargin) {
  MetCrop met;
  ASSERT_TRUE(met.isReady());
  QAccessibleInterface* const field = find(met.crop()->child(9), QAccessible::EditableText);
  QAccessibleEditableTextInterface* const text = field->editableTextInterface();
  ASSERT_NE(text, nullptr);
  text->replaceText(0, 2, QStringLiteral("33"));
  EXPECT_EQ(met.history.crop(), (CropMargins{20, 33, 20, 20}));
  EXPECT_EQ(field->text(QAccessible::Value), QStringLiteral("33"));
}

TEST(CropAccessibility, NothingIsToBeSeenInPreview) {
  MetCrop met;
  ASSERT_TRUE(met.isReady());
  met.setPreviewOnly(true);
  // The fields go when they have faded.
  CropCanvasField* const field = met.overlay.fields()->field(Edge::left);
  ASSERT_TRUE(QTest::qWaitFor([&] { return !field->isVisible(); }));
  EXPECT_TRUE(met.crop()->state().invisible);
  EXPECT_FALSE(met.crop()->state().focusable);
  for (int index = 0; index < met.crop()->childCount(); ++index) {
    EXPECT_TRUE(met.crop()->child(index)->state().invisible);
  }
  met.handle(CropHandle::left)
      ->actionInterface()
      ->doAction(QAccessibleActionInterface::increaseAction());
  met.handle(CropHandle::left)->valueInterface()->setCurrentValue(50);
  met.crop()->actionInterface()->doAction(QStringLiteral("MoveLeft"));
  EXPECT_EQ(met.history.crop(), OverlayWindow::kCrop);
}

TEST(CropAccessibility, NothingIsToBeSeenWithoutASource) {
  MetCrop met{QSizeF(0, 0)};
  ASSERT_TRUE(met.isReady());
  EXPECT_TRUE(met.crop()->state().invisible);
  QAccessibleInterface* const handle = met.handle(CropHandle::left);
  EXPECT_TRUE(handle->state().invisible);
  EXPECT_EQ(handle->valueInterface()->maximumValue().toDouble(), 0);
  handle->valueInterface()->setCurrentValue(7);
  EXPECT_EQ(met.history.crop(), CropMargins{});
}

TEST(CropAccessibility, ChangesOfTheCropAreTold) {
  MetCrop met;
  ASSERT_TRUE(met.isReady());
  const Listener listener;
  CropMargins crop = OverlayWindow::kCrop;
  crop.left = 30;
  met.history.setCrop(crop);
  const auto left = QStringLiteral("Left handle");
  const auto corner = QStringLiteral("Top left handle");
  const auto right = QStringLiteral("Right handle");
  EXPECT_EQ(Listener::count(QAccessible::DescriptionChanged, QStringLiteral("Crop")), 1);
  EXPECT_EQ(Listener::count(QAccessible::ValueChanged, left), 1);
  EXPECT_EQ(Listener::count(QAccessible::DescriptionChanged, left), 1);
  EXPECT_EQ(Listener::count(QAccessible::DescriptionChanged, corner), 1);
  EXPECT_EQ(Listener::count(QAccessible::ValueChanged, corner), 0);
  EXPECT_EQ(Listener::count(QAccessible::ValueChanged, right), 0);
  EXPECT_EQ(Listener::count(QAccessible::DescriptionChanged, right), 0);
  EXPECT_EQ(Listener::count(QAccessible::LocationChanged, left), 1);
  EXPECT_EQ(Listener::count(QAccessible::LocationChanged, QStringLiteral("Crop")), 1);
}

TEST(CropAccessibility, NudgeIsToldOnce) {
  MetCrop met;
  ASSERT_TRUE(met.isReady());
  met.overlay.setFocus();
  const Listener listener;
  QTest::keyClick(&met.overlay, Qt::Key_Right);
  EXPECT_EQ(Listener::count(QAccessible::ValueChanged, QStringLiteral("Left handle")), 1);
  EXPECT_EQ(Listener::count(QAccessible::ValueChanged, QStringLiteral("Right handle")), 1);
  EXPECT_EQ(Listener::count(QAccessible::ValueChanged, QStringLiteral("Top handle")), 0);
}

TEST(CropAccessibility, FocusOfAHandleIsTheLastThatIsTold) {
  MetCrop met;
  ASSERT_TRUE(met.isReady());
  const Listener listener;
  const auto heard = [] {
    QCoreApplication::processEvents();
    return Listener::last(QAccessible::Focus);
  };
  QTest::keyClick(&met.before, Qt::Key_Tab);
  EXPECT_EQ(heard(), QStringLiteral("Crop"));
  QTest::keyClick(&met.overlay, Qt::Key_Tab);
  EXPECT_EQ(heard(), QStringLiteral("Top left handle"));
  QTest::keyClick(&met.overlay, Qt::Key_Backtab, Qt::ShiftModifier);
  EXPECT_EQ(heard(), QStringLiteral("Crop"));
  met.overlay.fields()->field(Edge::left)->field()->setFocus();
  QTest::keyClick(met.overlay.fields()->field(Edge::left)->field(), Qt::Key_Backtab,
                  Qt::ShiftModifier);
  EXPECT_EQ(heard(), QStringLiteral("Left handle"));
}

TEST(CropAccessibility, PreviewIsTold) {
  MetCrop met;
  ASSERT_TRUE(met.isReady());
  const Listener listener;
  met.setPreviewOnly(true);
  EXPECT_EQ(Listener::count(QAccessible::StateChanged, QStringLiteral("Crop")), 1);
  EXPECT_EQ(Listener::count(QAccessible::StateChanged, QStringLiteral("Top handle")), 1);
}

TEST(CropAccessibility, HandlesGoWithTheirCrop) {
  auto met = std::make_unique<MetCrop>();
  ASSERT_TRUE(met->isReady());
  const Listener listener;
  const QAccessible::Id crop = QAccessible::uniqueId(met->crop());
  const QAccessible::Id handle = QAccessible::uniqueId(met->handle(CropHandle::top));
  EXPECT_NE(QAccessible::accessibleInterface(handle), nullptr);
  met.reset();
  EXPECT_EQ(QAccessible::accessibleInterface(handle), nullptr);
  EXPECT_EQ(QAccessible::accessibleInterface(crop), nullptr);
}

}  // namespace
}  // namespace vantrel
