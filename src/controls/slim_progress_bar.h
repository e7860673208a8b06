#pragma once

#include <QBasicTimer>
#include <QColor>
#include <QElapsedTimer>
#include <QProgressBar>

namespace vantrel {

/// A thin rounded bar in one accent colour. Without a range (0 to 0) a part of it travels, or
/// all of it is faintly coloured where the desktop asks for less motion.
class SlimProgressBar final : public QProgressBar {
  Q_OBJECT

 public:
  explicit SlimProgressBar(const QColor& accent, QWidget* parent = nullptr);

  [[nodiscard]] QSize sizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void timerEvent(QTimerEvent* event) override;
  void showEvent(QShowEvent* event) override;
  void hideEvent(QHideEvent* event) override;

 private:
  QColor m_accent;
  QBasicTimer m_frames;
  QElapsedTimer m_clock;
};

}  // namespace vantrel
