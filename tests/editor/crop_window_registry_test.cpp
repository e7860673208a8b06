#include "editor/crop_window_registry.h"

#include <QDialog>
#include <QSignalSpy>

#include "editor/tabbed_windows.h"

namespace vantrel {
namespace {

class CropWindowRegistryTest : public testing::TabbedWindows {
 protected:
  EditorView* makeEditor(const QUuid& of) {
    return new EditorView(of, [](const FinishedExport&) {});
  }
  EditorWindow* show(EditorView* editor) {
    auto* const window = new EditorWindow(editor);
    window->show();
    return window;
  }

  CropWindowRegistry registry;
  const QUuid identity = QUuid::createUuid();
};

TEST_F(CropWindowRegistryTest, IsOneForTheProcess) {
  EXPECT_EQ(&CropWindowRegistry::shared(), &CropWindowRegistry::shared());
}

TEST_F(CropWindowRegistryTest, TakesANewEditorToTheWindowThatAsked) {
  EditorWindow* const parent = show(makeEditor(QUuid::createUuid()));
  registry.requestTab(identity, parent);
  EditorView* const editor = makeEditor(identity);
  EXPECT_TRUE(registry.attach(editor));
  EXPECT_EQ(editor->window(), parent);
  EXPECT_EQ(parent->view(), editor);
}

TEST_F(CropWindowRegistryTest, LeavesAnEditorAloneForWhichNobodyAsked) {
  EditorWindow* const parent = show(makeEditor(QUuid::createUuid()));
  registry.requestTab(QUuid::createUuid(), parent);
  const std::unique_ptr<EditorView> editor(makeEditor(identity));
  EXPECT_FALSE(registry.attach(editor.get()));
  EXPECT_EQ(parent->editors().size(), 1);
  EXPECT_EQ(editor->window(), editor.get());
}

TEST_F(CropWindowRegistryTest, UsesARequestOnce) {
  EditorWindow* const parent = show(makeEditor(QUuid::createUuid()));
  registry.requestTab(identity, parent);
  EditorView* const editor = makeEditor(identity);
  ASSERT_TRUE(registry.attach(editor));
  EditorWindow* const own = show(editor);
  EXPECT_FALSE(registry.attach(editor));
  EXPECT_EQ(editor->window(), own);
}

TEST_F(CropWindowRegistryTest, TheLastRequestForAnIdentityCounts) {
  EditorWindow* const first = show(makeEditor(QUuid::createUuid()));
  EditorWindow* const second = show(makeEditor(QUuid::createUuid()));
  registry.requestTab(identity, first);
  registry.requestTab(identity, second);
  EditorView* const editor = makeEditor(identity);
  EXPECT_TRUE(registry.attach(editor));
  EXPECT_EQ(editor->window(), second);
}

TEST_F(CropWindowRegistryTest, ARequestKeepsNoWindowAlive) {
  QPointer<EditorWindow> parent = show(makeEditor(QUuid::createUuid()));
  registry.requestTab(identity, parent);
  parent->close();
  const std::unique_ptr<EditorView> closing(makeEditor(identity));
  EXPECT_FALSE(registry.attach(closing.get()));

  registry.requestTab(identity, parent);
  settle();
  ASSERT_TRUE(parent.isNull());
  const std::unique_ptr<EditorView> editor(makeEditor(identity));
  EXPECT_FALSE(registry.attach(editor.get()));
}

TEST_F(CropWindowRegistryTest, AWindowIsNoTabOfItself) {
  EditorView* const editor = makeEditor(identity);
  EditorWindow* const window = show(editor);
  registry.requestTab(identity, window);
  EXPECT_FALSE(registry.attach(editor));
  EXPECT_EQ(window->editors(), QList{editor});
  // Asked for in vain, and yet used.
  EditorWindow* const other = show(makeEditor(QUuid::createUuid()));
  other->addEditor(editor);
  EXPECT_FALSE(registry.attach(editor));
  EXPECT_EQ(editor->window(), other);
}

TEST_F(CropWindowRegistryTest, FollowsTheReviewInFront) {
  const auto becomes = [this](const ExportReviewDocument* document) {
    return QTest::qWaitFor([this, document] { return registry.activeReview() == document; });
  };
  EditorWindow* const editor = openTabs(1);
  EXPECT_TRUE(becomes(nullptr));
  ReviewWindow* const review = openReview();
  ASSERT_TRUE(activate(review));
  EXPECT_TRUE(becomes(&review->document()));
  ASSERT_TRUE(activate(editor));
  EXPECT_TRUE(becomes(nullptr));
  EXPECT_EQ(registry.activeReviewWindow(), nullptr);
  ASSERT_TRUE(activate(review));
  EXPECT_TRUE(becomes(&review->document()));
  EXPECT_EQ(registry.activeReviewWindow(), review);
}

/// Windows that the system does not show, and what it tells of them.
class ActiveReviewTest : public CropWindowRegistryTest {
 protected:
  void TearDown() override {
    review.reset();
    other.reset();
    CropWindowRegistryTest::TearDown();
  }
  static void bringToFront(QWidget& window) {
    QEvent event(QEvent::WindowActivate);
    QCoreApplication::sendEvent(&window, &event);
  }

  std::unique_ptr<ReviewWindow> review = std::make_unique<ReviewWindow>(finishedExport());
  std::unique_ptr<ReviewWindow> other = std::make_unique<ReviewWindow>(finishedExport());
  QSignalSpy changed{&registry, &CropWindowRegistry::activeReviewChanged};
};

TEST_F(ActiveReviewTest, IsThatOfTheLastWindowInFront) {
  bringToFront(*review);
  EXPECT_EQ(registry.activeReview(), &review->document());
  bringToFront(*other);
  EXPECT_EQ(registry.activeReview(), &other->document());
  EXPECT_EQ(changed.count(), 2);
  // The same again is no change.
  bringToFront(*other);
  EXPECT_EQ(changed.count(), 2);
}

TEST_F(ActiveReviewTest, IsAbsentWithAnyOtherWindowInFront) {
  bringToFront(*review);
  QDialog dialog(review.get());
  bringToFront(dialog);
  EXPECT_EQ(registry.activeReview(), nullptr);
  EXPECT_EQ(registry.activeReviewWindow(), nullptr);
  bringToFront(*review);
  EXPECT_EQ(registry.activeReview(), &review->document());
  // A part of a window that hears of the same is no window.
  bringToFront(*review->centralWidget());
  EXPECT_EQ(registry.activeReview(), &review->document());
  EditorWindow editor([](const FinishedExport&) {});
  bringToFront(editor);
  EXPECT_EQ(registry.activeReview(), nullptr);
}

TEST_F(ActiveReviewTest, StaysWhileAnotherProgramIsInFront) {
  bringToFront(*review);
  QEvent event(QEvent::WindowDeactivate);
  QCoreApplication::sendEvent(review.get(), &event);
  EXPECT_EQ(registry.activeReview(), &review->document());
}

TEST_F(ActiveReviewTest, EndsWhenItCloses) {
  bringToFront(*review);
  review->document().close();
  EXPECT_EQ(registry.activeReview(), nullptr);
  EXPECT_EQ(changed.count(), 2);
  bringToFront(*review);
  EXPECT_EQ(registry.activeReview(), nullptr);
}

TEST_F(ActiveReviewTest, EndsWithItsWindow) {
  bringToFront(*review);
  review.reset();
  EXPECT_EQ(registry.activeReview(), nullptr);
  EXPECT_EQ(registry.activeReviewWindow(), nullptr);
  EXPECT_EQ(changed.count(), 2);
}

TEST_F(ActiveReviewTest, StaysWhenAnotherCloses) {
  bringToFront(*other);
  bringToFront(*review);
  other->document().close();
  other.reset();
  EXPECT_EQ(registry.activeReview(), &review->document());
  EXPECT_EQ(changed.count(), 2);
}

TEST_F(ActiveReviewTest, IsStillAbsentWhenOneClosesThatWasNot) {
  review->document().close();
  EXPECT_EQ(registry.activeReview(), nullptr);
  EXPECT_EQ(changed.count(), 0);
}

}  // namespace
}  // namespace vantrel
