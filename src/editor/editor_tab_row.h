#pragma once

#include <QToolBar>

class QToolButton;

namespace vantrel {

class EditorTabBar;

/// The row with the tabs of a window, and at its end the button for another one. Main thread.
class EditorTabRow final : public QToolBar {
  Q_OBJECT

 public:
  explicit EditorTabRow(QWidget* parent = nullptr);

  [[nodiscard]] EditorTabBar* tabs() const { return m_tabs; }
  [[nodiscard]] QToolButton* newTabButton() const { return m_newTab; }

 protected:
  void changeEvent(QEvent* event) override;

 private:
  void updateLook();

  EditorTabBar* m_tabs = nullptr;
  QToolButton* m_newTab = nullptr;
};

}  // namespace vantrel
