#pragma once

#include <QScrollArea>

namespace vantrel {

class FloatingScrollBar;

/// Scrolls its content up and down. The bar floats over the content, which keeps its width.
class InspectorScrollArea final : public QScrollArea {
  Q_OBJECT

 public:
  explicit InspectorScrollArea(QWidget* parent = nullptr);

  [[nodiscard]] FloatingScrollBar* floatingBar() const { return m_bar; }

 protected:
  void resizeEvent(QResizeEvent* event) override;

 private:
  void mirror();

  FloatingScrollBar* m_bar;
};

}  // namespace vantrel
