#include "editor/application_look.h"

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QPushButton>
#include <QTabBar>
#include <QTest>
#include <QToolButton>
#include <memory>

#include "canvas/canvas_scroll_view.h"
#include "canvas/crop_appearance.h"
#include "controls/look_palette.h"
#include "controls/motion.h"
#include "editor/editor_tool_bar.h"
#include "editor/editor_view.h"
#include "editor/editor_window.h"
#include "inspector/crop_export_footer.h"
#include "inspector/inspector_view.h"
#include "support/picture_files.h"
#include "support/temporary_folder.h"

namespace vantrel {
namespace {

/// The portal of a desktop.
class Desktop {
 public:
  void setDark(bool dark) const { change("color-scheme", dark ? 1U : 2U); }
  void setLessMotion(bool less) const { change("reduced-motion", less ? 1U : 0U); }

 private:
  void change(const char* key, uint value) const {
    QDBusMessage message = QDBusMessage::createSignal(
        QStringLiteral("/org/freedesktop/portal/desktop"),
        QStringLiteral("org.freedesktop.portal.Settings"), QStringLiteral("SettingChanged"));
    message << QStringLiteral("org.freedesktop.appearance") << QString::fromLatin1(key)
            << QVariant::fromValue(QDBusVariant(value));
    ASSERT_TRUE(m_bus.send(message));
  }

  const QDBusConnection m_bus = [] {
    QDBusConnection bus =
        QDBusConnection::connectToBus(QDBusConnection::SessionBus, QStringLiteral("portal"));
    bus.registerService(QStringLiteral("org.freedesktop.portal.Desktop"));
    return bus;
  }();
};

/// A window with a picture in the first of two tabs, in the program's own look.
class ApplicationLookTest : public ::testing::Test {
 protected:
  static void SetUpTestSuite() {
    s_desktop = std::make_unique<Desktop>();
    ApplicationLook::install();
  }
  static void TearDownTestSuite() { s_desktop.reset(); }
  void SetUp() override {
    m_font = QApplication::font();
    testing::savePng(m_folder / "photo.png", 4000, 3000);
  }
  void TearDown() override {
    m_window.reset();
    QApplication::setFont(m_font);
  }

  void open() {
    m_window = std::make_unique<EditorWindow>([](FinishedExport) {});
    auto* const second = new EditorView(QUuid::createUuid(), [](FinishedExport) {});
    EditorView* const first = m_window->view();
    m_window->addEditor(second);
    m_window->selectEditor(first);
    m_window->resize(1600, 1000);
    m_window->show();
    first->loader().loadMedia(m_folder / "photo.png");
    ASSERT_TRUE(QTest::qWaitFor([&] { return first->state().loaded() && !first->state().busy(); }));
    ASSERT_TRUE(QTest::qWaitFor([&] { return first->inspector()->isVisible(); }));
  }
  template <class Widget>
  [[nodiscard]] QList<Widget*> shown() const {
    QList<Widget*> found;
    for (Widget* widget : m_window->findChildren<Widget*>())
      if (widget->isVisible()) found << widget;
    return found;
  }

  static inline std::unique_ptr<Desktop> s_desktop;
  testing::TemporaryFolder m_folder;
  QFont m_font;
  // The window of an editor belongs to itself until it is closed.
  std::unique_ptr<EditorWindow> m_window;
};

/// The strongest colour of an icon, as its button shows it.
QColor inkOf(const QAbstractButton& button) {
  const QImage image =
      button.icon()
          .pixmap(button.iconSize(), button.isEnabled() ? QIcon::Normal : QIcon::Disabled)
          .toImage();
  QColor ink = Qt::transparent;
  for (int y = 0; y < image.height(); ++y)
    for (int x = 0; x < image.width(); ++x)
      if (image.pixelColor(x, y).alpha() > ink.alpha()) ink = image.pixelColor(x, y);
  return ink;
}

bool isNear(const QColor& one, const QColor& other) {
  constexpr int kRounding = 4;
  return std::abs(one.red() - other.red()) <= kRounding &&
         std::abs(one.green() - other.green()) <= kRounding &&
         std::abs(one.blue() - other.blue()) <= kRounding;
}

TEST_F(ApplicationLookTest, FollowsTheDesktopWhileWindowsAreOpen) {
  open();
  EXPECT_EQ(m_window->toolBar()->height(), 48);
  for (const bool dark : {true, false}) {
    s_desktop->setDark(dark);
    const QColor window = lookPalette(dark).color(QPalette::Window);
    ASSERT_TRUE(
        QTest::qWaitFor([&] { return m_window->palette().color(QPalette::Window) == window; }));
    QCoreApplication::processEvents();
    EXPECT_EQ(m_window->view()->inspector()->palette().color(QPalette::Window),
              inspectorPalette(dark).color(QPalette::Window));
    int icons = 0;
    for (const QAbstractButton* button : shown<QAbstractButton>()) {
      if (button->icon().isNull()) continue;
      ++icons;
      const QPalette::ColorGroup group =
          button->isEnabled() ? QPalette::Active : QPalette::Disabled;
      const QColor ink = inkOf(*button);
      EXPECT_TRUE(isNear(ink, button->palette().color(group, QPalette::WindowText)) ||
                  isNear(ink, button->palette().color(group, QPalette::PlaceholderText)))
          << button->metaObject()->className() << ' ' << qPrintable(button->accessibleName())
          << qPrintable(button->toolTip()) << ' ' << qPrintable(ink.name());
    }
    EXPECT_GE(icons, 8);
  }
}

TEST_F(ApplicationLookTest, MovesNothingWhereTheDesktopAsksForLessMotion) {
  open();
  ASSERT_TRUE(showsMotion(*m_window));
  s_desktop->setLessMotion(true);
  EXPECT_TRUE(QTest::qWaitFor([this] { return !showsMotion(*m_window->view()->canvas()); }));
  s_desktop->setLessMotion(false);
  EXPECT_TRUE(QTest::qWaitFor([this] { return showsMotion(*m_window); }));
}

/// Whether a label says all it has to say, or ends in "…" where it may be long.
void expectWholeText(const QLabel& label) {
  const QFontMetrics metrics(label.font());
  EXPECT_LE(metrics.height(), label.height()) << qPrintable(label.text());
  if (label.wordWrap() || label.sizePolicy().horizontalPolicy() == QSizePolicy::Ignored) return;
  EXPECT_LE(metrics.horizontalAdvance(label.text()), label.width()) << qPrintable(label.text());
}

void expectWholeText(const QAbstractButton& button) {
  const QFontMetrics metrics(button.font());
  EXPECT_LE(metrics.height(), button.height()) << qPrintable(button.text());
  EXPECT_LE(metrics.horizontalAdvance(button.text()), button.width()) << qPrintable(button.text());
}

void expectWholeText(const QLineEdit& field) {
  constexpr int kFrame = 2;
  const QFontMetrics metrics(field.font());
  EXPECT_LE(metrics.height(), field.height() + kFrame) << qPrintable(field.accessibleName());
  EXPECT_LE(metrics.horizontalAdvance(field.text()) + 2 * kFrame, field.width())
      << qPrintable(field.accessibleName());
}

/// The size of text, of what it was designed for.
class LargeTextTest : public ApplicationLookTest, public ::testing::WithParamInterface<double> {
 protected:
  void SetUp() override {
    ApplicationLookTest::SetUp();
    QFont large = m_font;
    large.setPixelSize(qRound(m_font.pixelSize() * GetParam()));
    QApplication::setFont(large);
    QApplication::setFont(large, "QPushButton");
  }
  void TearDown() override {
    QFont button = m_font;
    button.setWeight(QFont::Medium);
    QApplication::setFont(button, "QPushButton");
    ApplicationLookTest::TearDown();
  }
};

TEST_P(LargeTextTest, IsNowhereCutOff) {
  open();
  CropMargins crop;
  crop.left = crop.top = crop.right = crop.bottom = 1234;
  m_window->view()->state().history().setCrop(crop);
  QCoreApplication::processEvents();
  int texts = 0;
  for (const QLabel* label : shown<QLabel>()) {
    if (label->text().isEmpty()) continue;
    ++texts;
    expectWholeText(*label);
  }
  for (const QAbstractButton* button : shown<QAbstractButton>()) {
    EXPECT_TRUE(button->parentWidget()->rect().contains(button->geometry()))
        << qPrintable(button->accessibleName()) << qPrintable(button->text());
    const auto* tool = qobject_cast<const QToolButton*>(button);
    const bool isIcon =
        tool && tool->toolButtonStyle() == Qt::ToolButtonIconOnly && !tool->icon().isNull();
    if (button->text().isEmpty() || isIcon) continue;
    ++texts;
    expectWholeText(*button);
  }
  for (const QLineEdit* field : shown<QLineEdit>()) {
    ++texts;
    expectWholeText(*field);
  }
  EXPECT_GE(texts, 30);
  for (const QTabBar* tabs : shown<QTabBar>())
    EXPECT_LE(QFontMetrics(tabs->font()).height(), tabs->tabRect(0).height());
  for (QAction* menu : m_window->menuBar()->actions()) {
    const QSize size = m_window->menuBar()->actionGeometry(menu).size();
    const QFontMetrics metrics(m_window->menuBar()->font());
    EXPECT_LE(metrics.height(), size.height());
    EXPECT_LE(metrics.horizontalAdvance(menu->text().remove(u'&')), size.width());
  }
}

TEST_P(LargeTextTest, FitsTheFooterWhileAnExportRuns) {
  open();
  EditorState& state = m_window->view()->state();
  state.setBusy(true);
  state.exportState().setProgress(0.5);
  QCoreApplication::processEvents();
  const CropExportFooter* footer = m_window->view()->inspector()->footer();
  for (const QLabel* label : {footer->phaseLabel(), footer->bytesLabel(), footer->statusLabel()})
    expectWholeText(*label);
  expectWholeText(*footer->cancelButton());
  state.exportState().setProgress({});
  state.setBusy(false);
}

INSTANTIATE_TEST_SUITE_P(Sizes, LargeTextTest, ::testing::Values(1.0, 1.25, 1.5, 2.0));

}  // namespace
}  // namespace vantrel
