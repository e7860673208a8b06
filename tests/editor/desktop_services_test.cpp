#include <gtest/gtest.h>

#include <QApplication>
#include <QDBusConnection>
#include <QSignalSpy>
#include <QTest>
#include <QWidget>
#include <memory>
#include <optional>
#include <vector>

#include "editor/desktop_notification.h"
#include "editor/editor_view.h"
#include "editor/editor_window.h"
#include "editor/export_notices.h"
#include "editor/export_session.h"
#include "editor/media_loader.h"
#include "editor/task_bar_progress.h"
#include "support/picture_files.h"
#include "support/temporary_folder.h"

namespace vantrel {
namespace {

/// The desktop's service, on a connection of its own.
class FakeNotifications final : public QObject {
  Q_OBJECT
  Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Notifications")

 public:
  struct Notice {
    QString application, icon, title, body;
    QStringList actions;
    QVariantMap hints;
    int timeout = 0;
  };

  FakeNotifications() {
    bus.registerService(QStringLiteral("org.freedesktop.Notifications"));
    bus.registerObject(QStringLiteral("/org/freedesktop/Notifications"), this,
                       QDBusConnection::ExportAllSlots | QDBusConnection::ExportAllSignals);
  }
  ~FakeNotifications() override {
    bus.unregisterService(QStringLiteral("org.freedesktop.Notifications"));
    QDBusConnection::disconnectFromBus(bus.name());
  }

  std::vector<Notice> shown;
  std::vector<uint> closed;

 public Q_SLOTS:
  // The service's own names.
  uint Notify(const QString& application, uint /*replaces*/, const QString& icon,
              const QString& title, const QString& body, const QStringList& actions,
              const QVariantMap& hints, int timeout) {
    shown.push_back({application, icon, title, body, actions, hints, timeout});
    return static_cast<uint>(shown.size()) + 100;
  }
  void CloseNotification(uint id) { closed.push_back(id); }

 Q_SIGNALS:
  void ActionInvoked(uint id, const QString& key);
  void ActivationToken(uint id, const QString& token);
  void NotificationClosed(uint id, uint reason);

 private:
  QDBusConnection bus =
      QDBusConnection::connectToBus(QDBusConnection::SessionBus, QStringLiteral("notifications"));
};

/// Another program's task bar.
class FakeTaskBar final : public QObject {
  Q_OBJECT

 public:
  FakeTaskBar() {
    bus.connect({}, {}, QStringLiteral("com.canonical.Unity.LauncherEntry"),
                QStringLiteral("Update"), this, SLOT(take(QString, QVariantMap)));
  }
  ~FakeTaskBar() override { QDBusConnection::disconnectFromBus(bus.name()); }

  struct Update {
    double progress = 0;
    bool visible = false;
    friend bool operator==(const Update&, const Update&) = default;
  };
  QString entry;
  std::vector<Update> updates;

 private Q_SLOTS:
  void take(const QString& of, const QVariantMap& properties) {
    entry = of;
    updates.push_back({properties.value(QStringLiteral("progress")).toDouble(),
                       properties.value(QStringLiteral("progress-visible")).toBool()});
  }

 private:
  QDBusConnection bus =
      QDBusConnection::connectToBus(QDBusConnection::SessionBus, QStringLiteral("task bar"));
};

bool activate(QWidget& window) {
  window.show();
  window.activateWindow();
  return QTest::qWaitForWindowActive(&window);
}

class DesktopServicesTest : public ::testing::Test {
 protected:
  static void SetUpTestSuite() {
    QApplication::setApplicationName(QStringLiteral("Vantrel"));
    QGuiApplication::setDesktopFileName(QStringLiteral("org.vantrel.Vantrel"));
  }
  void SetUp() override {
    testing::savePng(folder / "photo.png", 40, 30);
    review->setAttribute(Qt::WA_ShowWithoutActivating);
    notices.watch(exports, editor);
    loader.loadMedia(folder / "photo.png");
    ASSERT_TRUE(QTest::qWaitFor([this] { return state.loaded() && !state.busy(); }));
    editor.show();
  }

  /// Exports while another window has the keyboard.
  void exportUnseen() {
    ASSERT_TRUE(activate(elsewhere));
    exports.exportMedia();
    ASSERT_TRUE(QTest::qWaitFor([this] { return !state.busy(); }));
  }
  bool waitShown(size_t count) {
    return QTest::qWaitFor([&] { return service.shown.size() == count; });
  }
  bool waitClosed() {
    return QTest::qWaitFor([&] { return service.closed == std::vector<uint>{101}; });
  }

  testing::TemporaryFolder folder;
  FakeNotifications service;
  QWidget editor, elsewhere;
  std::unique_ptr<QWidget> review = std::make_unique<QWidget>();
  ExportNotices notices;
  EditorState state;
  MediaLoader loader{state};
  std::optional<FinishedExport> finished;
  ExportSession exports{state, [this](FinishedExport done) {
                          finished.emplace(std::move(done));
                          notices.setReview(*review);
                          review->show();
                        }};
};

TEST_F(DesktopServicesTest, TellsOfAnExportThatEndsUnseen) {
  exportUnseen();
  ASSERT_TRUE(waitShown(1));
  const FakeNotifications::Notice& notice = service.shown[0];
  EXPECT_EQ(notice.application, QStringLiteral("Vantrel"));
  EXPECT_EQ(notice.icon, QStringLiteral("org.vantrel.Vantrel"));
  EXPECT_EQ(notice.title, QStringLiteral("Export finished"));
  EXPECT_EQ(notice.body, QStringLiteral("photo-framed"));
  EXPECT_EQ(notice.actions.value(0), QStringLiteral("default"));
  EXPECT_EQ(notice.hints.value(QStringLiteral("desktop-entry")),
            QStringLiteral("org.vantrel.Vantrel"));
  EXPECT_EQ(notice.hints.value(QStringLiteral("category")), QStringLiteral("transfer.complete"));
  EXPECT_EQ(notice.timeout, -1);
}

TEST_F(DesktopServicesTest, SaysNothingOfAnExportInTheActiveWindow) {
  ASSERT_TRUE(activate(editor));
  exports.exportMedia();
  ASSERT_TRUE(QTest::qWaitFor([this] { return !state.busy(); }));
  ASSERT_TRUE(finished);
  exportUnseen();
  ASSERT_TRUE(waitShown(1));
  EXPECT_EQ(service.shown.size(), 1U);
}

TEST_F(DesktopServicesTest, SaysNothingOfACancelledExport) {
  ASSERT_TRUE(activate(elsewhere));
  exports.exportMedia();
  exports.cancel();
  ASSERT_TRUE(QTest::qWaitFor([this] { return !state.busy(); }));
  EXPECT_FALSE(finished);
  exportUnseen();
  ASSERT_TRUE(waitShown(1));
  EXPECT_EQ(service.shown[0].title, QStringLiteral("Export finished"));
}

TEST_F(DesktopServicesTest, TellsOfAFailureAndLeadsToTheEditor) {
  ASSERT_TRUE(activate(elsewhere));
  Q_EMIT exports.failed(QStringLiteral("“a<b>.mov” & more are gone."));
  ASSERT_TRUE(waitShown(1));
  EXPECT_EQ(service.shown[0].title, QStringLiteral("Export failed"));
  EXPECT_EQ(service.shown[0].body, QStringLiteral("“a&lt;b&gt;.mov” &amp; more are gone."));
  EXPECT_EQ(service.shown[0].hints.value(QStringLiteral("category")),
            QStringLiteral("transfer.error"));
  Q_EMIT service.ActionInvoked(101, QStringLiteral("default"));
  EXPECT_TRUE(QTest::qWaitForWindowActive(&editor));
  EXPECT_TRUE(waitClosed());
}

TEST_F(DesktopServicesTest, LeadsToTheReviewAndGoesWithIt) {
  exportUnseen();
  ASSERT_TRUE(waitShown(1));
  review->showMinimized();
  ASSERT_TRUE(activate(elsewhere));
  Q_EMIT service.ActivationToken(101, QStringLiteral("token-1"));
  Q_EMIT service.ActionInvoked(7, QStringLiteral("default"));
  Q_EMIT service.ActionInvoked(101, QStringLiteral("default"));
  EXPECT_TRUE(QTest::qWaitForWindowActive(review.get()));
  EXPECT_TRUE(QTest::qWaitFor([this] { return !review->isMinimized(); }));
  EXPECT_EQ(qgetenv("XDG_ACTIVATION_TOKEN"), "token-1");
  EXPECT_TRUE(waitClosed());
}

/// A window of two tabs, the first of which is seen.
class TabNoticesTest : public ::testing::Test {
 protected:
  void SetUp() override {
    window.setAttribute(Qt::WA_DeleteOnClose, false);
    window.addEditor(second);
    window.selectEditor(first);
    notices.watch(second->exports(), *second);
    ASSERT_TRUE(activate(window));
  }
  bool endUnseen() {
    Q_EMIT second->exports().finished(QStringLiteral("photo-framed"));
    return QTest::qWaitFor([this] { return service.shown.size() == 1; });
  }
  bool waitClosed() {
    return QTest::qWaitFor([&] { return service.closed == std::vector<uint>{101}; });
  }

  FakeNotifications service;
  QWidget elsewhere;
  EditorWindow window{[](const FinishedExport&) {}};
  EditorView* const first = window.view();
  EditorView* const second = new EditorView(QUuid::createUuid(), [](const FinishedExport&) {});
  ExportNotices notices;
};

TEST_F(TabNoticesTest, TellOfAnExportBehindAnotherTabOfTheActiveWindow) {
  ASSERT_TRUE(endUnseen());
  ASSERT_TRUE(activate(elsewhere));
  ASSERT_TRUE(activate(window));
  EXPECT_TRUE(service.closed.empty()) << "its tab has not been seen";
  window.selectEditor(second);
  EXPECT_TRUE(waitClosed());
}

TEST_F(TabNoticesTest, LeadToTheTab) {
  ASSERT_TRUE(endUnseen());
  ASSERT_TRUE(activate(elsewhere));
  Q_EMIT service.ActionInvoked(101, QStringLiteral("default"));
  EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
  EXPECT_EQ(window.view(), second);
  EXPECT_TRUE(waitClosed());
}

TEST_F(TabNoticesTest, LeadToTheTabAlsoInAnotherWindow) {
  ASSERT_TRUE(endUnseen());
  EditorWindow other([](const FinishedExport&) {});
  other.setAttribute(Qt::WA_DeleteOnClose, false);
  EditorView* const front = other.view();
  other.addEditor(second);
  other.selectEditor(front);
  ASSERT_TRUE(activate(other));
  ASSERT_TRUE(activate(window));
  Q_EMIT service.ActionInvoked(101, QStringLiteral("default"));
  EXPECT_TRUE(QTest::qWaitForWindowActive(&other));
  EXPECT_EQ(other.view(), second);
}

TEST_F(DesktopServicesTest, ClosesTheNoticeOfAReviewThatBecomesActive) {
  exportUnseen();
  ASSERT_TRUE(waitShown(1));
  EXPECT_TRUE(service.closed.empty());
  ASSERT_TRUE(activate(*review));
  EXPECT_TRUE(waitClosed());
}

TEST_F(DesktopServicesTest, ClosesTheNoticeOfAReviewThatIsClosed) {
  exportUnseen();
  ASSERT_TRUE(waitShown(1));
  review.reset();
  EXPECT_TRUE(waitClosed());
}

TEST_F(DesktopServicesTest, ClosesANoticeThatIsAnsweredTooLate) {
  { const DesktopNotification brief({QStringLiteral("Title"), QStringLiteral("Text")}); }
  EXPECT_TRUE(waitClosed());
}

TEST_F(DesktopServicesTest, LeavesANoticeAloneThatTheUserHasClosed) {
  auto first = std::make_unique<DesktopNotification>(
      ExportNotice{QStringLiteral("First"), QStringLiteral("Text")});
  auto second = std::make_unique<DesktopNotification>(
      ExportNotice{QStringLiteral("Second"), QStringLiteral("Text")});
  ASSERT_TRUE(waitShown(2));
  QSignalSpy activated(second.get(), &DesktopNotification::activated);
  Q_EMIT service.NotificationClosed(101, 2);
  Q_EMIT service.ActionInvoked(102, QStringLiteral("default"));
  ASSERT_TRUE(activated.wait());
  first.reset();
  second.reset();
  ASSERT_TRUE(QTest::qWaitFor([this] { return !service.closed.empty(); }));
  EXPECT_EQ(service.closed, std::vector<uint>{102});
}

TEST(DesktopNotification, IsNoErrorWhereThereIsNoService) {
  // A warning would fail the test.
  const DesktopNotification notification({QStringLiteral("Title"), QStringLiteral("Text")});
  FakeTaskBar afterwards;
  CropExportState state;
  TaskBarProgress progress;
  progress.watch(state);
  state.setProgress(0.5);
  EXPECT_TRUE(QTest::qWaitFor([&] { return !afterwards.updates.empty(); }));
}

TEST(TaskBarProgress, TellsTheMeanOfAllRunningExports) {
  using Update = FakeTaskBar::Update;
  QGuiApplication::setDesktopFileName(QStringLiteral("org.vantrel.Vantrel"));
  FakeTaskBar bar;
  TaskBarProgress progress;
  CropExportState first;
  auto second = std::make_unique<CropExportState>();
  progress.watch(first);
  progress.watch(*second);
  first.setProgress(0.2);
  second->setProgress(0.6);
  second->setProgress(0.601);
  second.reset();
  first.setProgress({});
  ASSERT_TRUE(QTest::qWaitFor([&] { return bar.updates.size() >= 4; }));
  EXPECT_EQ(bar.entry, QStringLiteral("application://org.vantrel.Vantrel.desktop"));
  EXPECT_EQ(bar.updates, (std::vector<Update>{{0.2, true}, {0.4, true}, {0.2, true}, {0, false}}));
}

TEST(TaskBarProgress, LeavesOutWhatHasNoPercentage) {
  using Update = FakeTaskBar::Update;
  FakeTaskBar bar;
  TaskBarProgress progress;
  CropExportState image, video;
  progress.watch(image);
  progress.watch(video);
  image.setIndeterminate(true);
  image.setProgress(0.0);
  video.setProgress(0.5);
  video.setProgress({});
  image.setProgress({});
  ASSERT_TRUE(QTest::qWaitFor([&] { return bar.updates.size() >= 2; }));
  EXPECT_EQ(bar.updates, (std::vector<Update>{{0.5, true}, {0, false}}));
}

}  // namespace
}  // namespace vantrel

#include "desktop_services_test.moc"
