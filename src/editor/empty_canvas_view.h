#pragma once

#include <QWidget>

class QPushButton;

namespace vantrel {

/// What an editor shows without a file: the artwork and a button.
class EmptyCanvasView final : public QWidget {
  Q_OBJECT

 public:
  explicit EmptyCanvasView(QWidget* parent = nullptr);

  [[nodiscard]] QPushButton* openButton() const { return m_open; }

 Q_SIGNALS:
  void openRequested();

 private:
  QPushButton* m_open;
};

}  // namespace vantrel
