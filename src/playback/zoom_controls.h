#pragma once

#include <QWidget>

class QPushButton;
class QSlider;
class QToolButton;

namespace vantrel {

/// The zoom of the canvas in the toolbar: out, slider, in, the percentage, fit. Pure view of a zoom
/// that is held elsewhere. Main thread.
class ZoomControls final : public QWidget {
  Q_OBJECT

 public:
  /// Zooms from `least` to `most`.
  ZoomControls(double least, double most, QWidget* parent = nullptr);

  [[nodiscard]] QToolButton* zoomOutButton() const { return m_zoomOut; }
  [[nodiscard]] QSlider* slider() const { return m_slider; }
  [[nodiscard]] QToolButton* zoomInButton() const { return m_zoomIn; }
  [[nodiscard]] QToolButton* percentageButton() const { return m_percentage; }
  [[nodiscard]] QPushButton* fitButton() const { return m_fit; }
  /// Such as "13%": rounded half away from zero.
  [[nodiscard]] static QString percentage(double zoom);

  /// Device pixels for each source pixel; emits nothing.
  void setZoom(double zoom);

 Q_SIGNALS:
  /// The user has moved the slider: this zoom, and no fit.
  void zoomChosen(double zoom);
  void stepRequested(bool increasing);
  void actualSizeRequested();
  void fitRequested();

 protected:
  void changeEvent(QEvent* event) override;

 private:
  [[nodiscard]] QToolButton* stepButton(const QString& text, bool increasing);
  void showSymbols();

  double m_least, m_most;
  QToolButton* m_zoomOut;
  QSlider* m_slider;
  QToolButton* m_zoomIn;
  QToolButton* m_percentage;
  QPushButton* m_fit;
};

}  // namespace vantrel
