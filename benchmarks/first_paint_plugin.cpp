// A plugin of Qt's (QT_QPA_GENERIC_PLUGINS=first_paint): ends the program that it is loaded into
// when its first window has been painted, and prints when that was, in seconds of the monotonic
// clock, and the processor time until then, in seconds.

#include <unistd.h>

#include <QCoreApplication>
#include <QEvent>
#include <QGenericPlugin>
#include <cstdio>
#include <ctime>

namespace vantrel::bench {
namespace {

double secondsOf(clockid_t clock) {
  timespec time{};
  clock_gettime(clock, &time);
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
}

class FirstPaint final : public QObject {
 public:
  FirstPaint() { QCoreApplication::instance()->installEventFilter(this); }

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override {
    if (event->type() != QEvent::Paint || !watched->isWidgetType() || m_isPainting) return false;
    m_isPainting = true;
    // After all widgets, when the window has been handed to the display.
    QMetaObject::invokeMethod(this, &FirstPaint::end, Qt::QueuedConnection);
    return false;
  }

 private:
  static void end() {
    std::printf("%.6f %.6f\n", secondsOf(CLOCK_MONOTONIC), secondsOf(CLOCK_PROCESS_CPUTIME_ID));
    std::fflush(stdout);
    ::_exit(0);
  }

  bool m_isPainting = false;
};

}  // namespace

class FirstPaintPlugin final : public QGenericPlugin {
  Q_OBJECT
  Q_PLUGIN_METADATA(IID QGenericPluginFactoryInterface_iid FILE "first_paint_plugin.json")

 public:
  QObject* create(const QString& /*name*/, const QString& /*spec*/) override {
    return new FirstPaint;
  }
};

}  // namespace vantrel::bench

#include "first_paint_plugin.moc"
