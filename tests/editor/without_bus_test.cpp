#include <gtest/gtest.h>

#include <QDBusConnection>
#include <QMimeData>
#include <QTest>
#include <QUrl>

#include "editor/desktop_notification.h"
#include "editor/media_loader.h"
#include "editor/task_bar_progress.h"
#include "export/crop_export_state.h"
#include "support/picture_files.h"
#include "support/temporary_folder.h"

namespace vantrel {
namespace {

class WithoutBusTest : public ::testing::Test {
 protected:
  void SetUp() override { ASSERT_FALSE(QDBusConnection::sessionBus().isConnected()); }
  void drop(const QList<QUrl>& urls) {
    QMimeData data;
    data.setData(QStringLiteral("application/vnd.portal.filetransfer"), "key");
    if (!urls.isEmpty()) data.setUrls(urls);
    EXPECT_TRUE(loader.receiveMedia(data));
    EXPECT_FALSE(state.busy());
  }

  EditorState state;
  MediaLoader loader{state};
};

TEST_F(WithoutBusTest, TakesThePlainFileOfASandboxedDrop) {
  const testing::TemporaryFolder folder;
  testing::savePng(folder / "a.png", 40, 30);
  drop({QUrl::fromLocalFile(QString::fromStdString((folder / "a.png").string()))});
  ASSERT_TRUE(QTest::qWaitFor([this] { return state.loaded() && !state.busy(); }));
  EXPECT_EQ(state.sourceSize(), QSizeF(40, 30));
  EXPECT_FALSE(state.openError());
}

TEST_F(WithoutBusTest, AsksForALocalFileWhereASandboxedDropHasNone) {
  drop({});
  ASSERT_TRUE(QTest::qWaitFor([this] { return state.openError().has_value(); }));
  EXPECT_EQ(state.openError(), QStringLiteral("Drop a local image or video file."));
}

TEST_F(WithoutBusTest, TellsTheDesktopNothingWithoutAnError) {
  // A warning would fail the test.
  const DesktopNotification notification({QStringLiteral("Title"), QStringLiteral("Text")});
  CropExportState progress;
  TaskBarProgress taskBar;
  taskBar.watch(progress);
  progress.setProgress(0.5);
}

}  // namespace
}  // namespace vantrel
