#include "editor/crop_window_registry.h"

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
  QSignalSpy changed(&registry, &CropWindowRegistry::activeReviewChanged);
  EditorWindow* const editor = openTabs(1);
  EXPECT_EQ(registry.activeReview(), nullptr);
  ReviewWindow* const review = openReview();
  ASSERT_TRUE(activate(review));
  EXPECT_EQ(registry.activeReview(), &review->document());
  EXPECT_EQ(registry.activeReviewWindow(), review);
  EXPECT_EQ(changed.count(), 1);

  ASSERT_TRUE(activate(editor));
  EXPECT_EQ(registry.activeReview(), nullptr);
  EXPECT_EQ(registry.activeReviewWindow(), nullptr);
  ASSERT_TRUE(activate(review));
  EXPECT_EQ(registry.activeReview(), &review->document());
  EXPECT_EQ(changed.count(), 3);
}

TEST_F(CropWindowRegistryTest, AnyOtherWindowInFrontLeavesNoActiveReview) {
  ReviewWindow* const review = openReview();
  ASSERT_TRUE(activate(review));
  ASSERT_NE(registry.activeReview(), nullptr);
  QWidget other;
  other.show();
  ASSERT_TRUE(activate(&other));
  EXPECT_EQ(registry.activeReview(), nullptr);
}

TEST_F(CropWindowRegistryTest, ForgetsTheActiveReviewWhenItCloses) {
  ReviewWindow* const review = openReview();
  ASSERT_TRUE(activate(review));
  ASSERT_EQ(registry.activeReview(), &review->document());
  QSignalSpy changed(&registry, &CropWindowRegistry::activeReviewChanged);
  review->document().close();
  EXPECT_EQ(registry.activeReview(), nullptr);
  EXPECT_EQ(changed.count(), 1);
}

TEST_F(CropWindowRegistryTest, ForgetsTheActiveReviewWithItsWindow) {
  ReviewWindow* const review = openReview();
  ASSERT_TRUE(activate(review));
  ASSERT_NE(registry.activeReview(), nullptr);
  delete review;
  EXPECT_EQ(registry.activeReview(), nullptr);
}

TEST_F(CropWindowRegistryTest, KeepsTheActiveReviewWhenAnotherCloses) {
  ReviewWindow* const behind = openReview();
  ASSERT_TRUE(activate(behind));
  ReviewWindow* const front = openReview();
  ASSERT_TRUE(activate(front));
  QSignalSpy changed(&registry, &CropWindowRegistry::activeReviewChanged);
  behind->document().close();
  EXPECT_EQ(registry.activeReview(), &front->document());
  EXPECT_EQ(changed.count(), 0);
}

}  // namespace
}  // namespace vantrel
