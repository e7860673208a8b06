#pragma once

#include <QWidget>

class QAbstractButton;

namespace vantrel {

/// Two halves beside a number field, one for more and one for less, which repeat while they are
/// held. Takes no focus: it ends the text editing of its window before each step. Main thread.
class PixelStepper final : public QWidget {
  Q_OBJECT

 public:
  /// In points.
  static constexpr int kWidth = 15, kHeight = 22;

  /// `title` names what is stepped to assistive tools.
  explicit PixelStepper(const QString& title, QWidget* parent = nullptr);

  [[nodiscard]] QAbstractButton* upButton() const { return m_up; }
  [[nodiscard]] QAbstractButton* downButton() const { return m_down; }

 Q_SIGNALS:
  /// `direction` is 1 for more, -1 for less.
  void stepped(int direction);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  [[nodiscard]] QAbstractButton* makeHalf(const QString& name, int direction);

  QAbstractButton* m_up;
  QAbstractButton* m_down;
};

}  // namespace vantrel
