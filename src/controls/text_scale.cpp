#include "controls/text_scale.h"

#include <QApplication>
#include <QEvent>
#include <QFontInfo>
#include <QPointer>
#include <QWidget>
#include <algorithm>
#include <cmath>

namespace vantrel {
namespace {

// Points.
constexpr double kDesignedText = 13;

/// Tells of a new font of the application when all widgets have taken it.
class TextWatch final : public QObject {
  Q_OBJECT

 public:
  static TextWatch& shared() {
    static QPointer<TextWatch> instance;
    if (!instance) instance = new TextWatch;
    return *instance;
  }

 Q_SIGNALS:
  void changed();

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override {
    if (watched == qApp && event->type() == QEvent::ApplicationFontChange) {
      QMetaObject::invokeMethod(this, &TextWatch::changed, Qt::QueuedConnection);
    }
    return QObject::eventFilter(watched, event);
  }

 private:
  TextWatch() : QObject(qApp) { qApp->installEventFilter(this); }
};

}  // namespace

double textScale() {
  // A desktop may name a font that is a little larger than the design's.
  constexpr double kTolerance = 1.2;
  const double scale = QFontInfo(QApplication::font()).pixelSize() / kDesignedText;
  return scale < kTolerance ? 1 : scale;
}

int scaledForText(int points) {
  return static_cast<int>(std::lround(points * textScale()));
}

void followText(QWidget& widget, const std::function<void()>& apply) {
  apply();
  QObject::connect(&TextWatch::shared(), &TextWatch::changed, &widget, apply);
}

void scaleFont(QWidget& widget, int points) {
  followText(widget, [&widget, points] {
    QFont font = widget.font();
    font.setPixelSize(scaledForText(points));
    widget.setFont(font);
  });
}

}  // namespace vantrel

#include "text_scale.moc"
