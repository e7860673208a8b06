#include "editor/first_paint.h"

#include <QApplication>
#include <QEvent>
#include <QTimer>
#include <utility>

namespace vantrel {
namespace {

/// In which what has been painted gets to the screen, and is painted again in its final place.
constexpr int kSettlingMilliseconds = 100;

class FirstPaint final : public QObject {
 public:
  explicit FirstPaint(std::function<void()> then) : QObject(qApp), m_then(std::move(then)) {
    qApp->installEventFilter(this);
  }

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override {
    if (event->type() != QEvent::Paint || !watched->isWidgetType()) return false;
    qApp->removeEventFilter(this);
    QTimer::singleShot(kSettlingMilliseconds, this, &FirstPaint::end);
    return false;
  }

 private:
  void end() {
    m_then();
    deleteLater();
  }

  std::function<void()> m_then;
};

}  // namespace

void afterFirstPaint(std::function<void()> then) {
  new FirstPaint(std::move(then));
}

}  // namespace vantrel
