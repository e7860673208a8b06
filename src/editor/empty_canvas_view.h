#pragma once

#include <QWidget>

class QAbstractButton;

namespace vantrel {

/// What an editor shows without a file: the artwork, a button, and a link to the sample.
class EmptyCanvasView final : public QWidget {
  Q_OBJECT

 public:
  explicit EmptyCanvasView(QWidget* parent = nullptr);

  [[nodiscard]] QAbstractButton* openButton() const { return m_open; }
  [[nodiscard]] QAbstractButton* sampleButton() const { return m_sample; }

 Q_SIGNALS:
  void openRequested();
  void sampleRequested();

 private:
  QAbstractButton* m_open;
  QAbstractButton* m_sample;
};

}  // namespace vantrel
