#include <gtest/gtest.h>

#include <QDBusConnection>
#include <QMimeData>
#include <QTest>
#include <QUrl>

#include "editor/media_loader.h"
#include "support/picture_files.h"
#include "support/temporary_folder.h"

namespace vantrel {
namespace {

/// The desktop's portal, on a connection of its own.
class FakePortal final : public QObject {
  Q_OBJECT
  Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.FileTransfer")

 public:
  FakePortal() {
    bus.registerService(QStringLiteral("org.freedesktop.portal.Documents"));
    bus.registerObject(QStringLiteral("/org/freedesktop/portal/documents"), this,
                       QDBusConnection::ExportAllSlots);
  }
  ~FakePortal() override {
    bus.unregisterService(QStringLiteral("org.freedesktop.portal.Documents"));
    QDBusConnection::disconnectFromBus(bus.name());
  }

  QStringList files;
  QString askedFor;

 public Q_SLOTS:
  // The portal's own name for it.
  QStringList RetrieveFiles(const QString& key, const QVariantMap& /*options*/) {
    askedFor = key;
    return files;
  }

 private:
  QDBusConnection bus =
      QDBusConnection::connectToBus(QDBusConnection::SessionBus, QStringLiteral("portal"));
};

class PortalDropTest : public ::testing::Test {
 protected:
  void SetUp() override { testing::savePng(folder / "a.png", 40, 30); }
  bool drop(const QByteArray& key, const QList<QUrl>& urls = {}) {
    QMimeData data;
    data.setData(QStringLiteral("application/vnd.portal.filetransfer"), key);
    if (!urls.isEmpty()) data.setUrls(urls);
    return loader.receiveMedia(data);
  }
  bool waitLoaded() {
    return QTest::qWaitFor([this] { return state.loaded() && !state.busy(); });
  }
  QString picture() const { return QString::fromStdString((folder / "a.png").string()); }

  testing::TemporaryFolder folder;
  EditorState state;
  MediaLoader loader{state};
};

TEST_F(PortalDropTest, LoadsTheFirstFileOfASandboxedDrop) {
  FakePortal portal;
  portal.files = {picture(), QStringLiteral("/nowhere/b.png")};
  EXPECT_TRUE(drop(QByteArray("key-1\0", 6)));
  ASSERT_TRUE(waitLoaded());
  EXPECT_EQ(portal.askedFor, QStringLiteral("key-1"));
  EXPECT_EQ(state.sourceSize(), QSizeF(40, 30));
}

TEST_F(PortalDropTest, AsksForALocalFileWhenThePortalHasNone) {
  FakePortal portal;
  EXPECT_TRUE(drop("key-2"));
  ASSERT_TRUE(QTest::qWaitFor([this] { return state.openError().has_value(); }));
  EXPECT_EQ(state.openError(), QStringLiteral("Drop a local image or video file."));
}

TEST_F(PortalDropTest, SaysWhyWhereThereIsNoPortal) {
  EXPECT_TRUE(drop("key-3"));
  ASSERT_TRUE(QTest::qWaitFor([this] { return state.openError().has_value(); }));
  EXPECT_FALSE(state.openError()->isEmpty());
  EXPECT_FALSE(state.loaded());
}

TEST_F(PortalDropTest, TakesThePlainFileWhereThereIsNoPortal) {
  EXPECT_TRUE(drop("key-4", {QUrl::fromLocalFile(picture())}));
  ASSERT_TRUE(waitLoaded());
  EXPECT_FALSE(state.openError());
}

TEST_F(PortalDropTest, AsksForALocalFileWhenTheKeyIsEmpty) {
  EXPECT_TRUE(drop({}));
  ASSERT_TRUE(QTest::qWaitFor([this] { return state.openError().has_value(); }));
  EXPECT_EQ(state.openError(), QStringLiteral("Drop a local image or video file."));
}

TEST_F(PortalDropTest, RefusesADropWhileBusy) {
  state.setBusy(true);
  EXPECT_FALSE(drop("key-5"));
}

}  // namespace
}  // namespace vantrel

#include "portal_drop_test.moc"
