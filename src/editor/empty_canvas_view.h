#pragma once

#include <QWidget>

class QAbstractButton;
class QSpacerItem;
class QSvgRenderer;

namespace vantrel {

/// What an editor shows without a file: the artwork, of which assistive tools are not told, a
/// button, and a link to the sample.
class EmptyCanvasView final : public QWidget {
  Q_OBJECT

 public:
  explicit EmptyCanvasView(QWidget* parent = nullptr);

  /// Where the artwork is, in points.
  [[nodiscard]] QRect artworkFrame() const;
  [[nodiscard]] QAbstractButton* openButton() const { return m_open; }
  [[nodiscard]] QAbstractButton* sampleButton() const { return m_sample; }

 Q_SIGNALS:
  void openRequested();
  void sampleRequested();

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  QSvgRenderer* m_artwork;
  /// With the space below.
  QSpacerItem* m_artworkPlace;
  QAbstractButton* m_open;
  QAbstractButton* m_sample;
};

}  // namespace vantrel
