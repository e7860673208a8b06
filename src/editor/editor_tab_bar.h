#pragma once

#include <QPointer>
#include <QTabBar>
#include <optional>

#include "editor/tab_close_buttons.h"

namespace vantrel {

class TabDragImage;

/// The tabs of a window. They are moved by dragging; one that is dragged away from the bar and let
/// go comes off. It holds no editors: its owner keeps them in the order of the tabs. Main thread.
class EditorTabBar final : public QTabBar {
  Q_OBJECT

 public:
  explicit EditorTabBar(QWidget* parent = nullptr);
  ~EditorTabBar() override;

  /// `name` stands on the tab and in its tool tip, whatever characters it has.
  void setTabName(int index, const QString& name);
  /// How much of its work is done, from 0 to 1; absent when there is none.
  void setTabProgress(int index, std::optional<double> progress);
  [[nodiscard]] std::optional<double> tabProgress(int index) const;
  /// Where a tab that is let go at `position` belongs.
  [[nodiscard]] int insertionIndex(const QPoint& position) const;
  /// Whether a tab is being held outside the bar.
  [[nodiscard]] bool isTabOff() const;
  /// As if the button that holds a tab were released over the bar: all tabs stay.
  void endDrag();

 Q_SIGNALS:
  /// A tab was let go outside the bar, at this point of the screen.
  void tornOff(int index, const QPoint& globalPosition);
  void closeOthersRequested(int index);
  void newWindowRequested(int index);

 protected:
  QSize tabSizeHint(int index) const override;
  QSize minimumTabSizeHint(int index) const override;
  void tabInserted(int index) override;
  void tabRemoved(int index) override;
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void hideEvent(QHideEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;

 private:
  [[nodiscard]] bool isAway(const QPointF& position) const;
  void takeOff(const QMouseEvent& event);
  void putBack(const QMouseEvent& event);
  void letGo();
  void followMove(int from, int to);

  /// The tab under a held button, -1 for none.
  int m_held = -1;
  int m_middlePressed = -1;
  TabCloseButtons m_closeButtons{*this};
  /// What follows the pointer.
  QPointer<TabDragImage> m_dragImage;
};

}  // namespace vantrel
