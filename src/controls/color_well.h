#pragma once

#include <QAbstractButton>
#include <QColor>
#include <QColorDialog>
#include <QPointer>

namespace vantrel {

/// A button that shows an opaque colour and asks for another one. Main thread.
class ColorWell final : public QAbstractButton {
  Q_OBJECT

 public:
  /// `title` names the colour to assistive tools and in the dialog.
  explicit ColorWell(const QString& title, QWidget* parent = nullptr);

  [[nodiscard]] const QColor& color() const { return m_color; }
  /// Asks for a colour; null otherwise.
  [[nodiscard]] QColorDialog* dialog() const { return m_dialog; }
  [[nodiscard]] QSize sizeHint() const override;

  /// Emits nothing.
  void setColor(const QColor& color);

 Q_SIGNALS:
  /// The user has accepted this one.
  void colorChosen(const QColor& color);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  void ask();

  QColor m_color;
  QPointer<QColorDialog> m_dialog;
};

}  // namespace vantrel
