#pragma once

#include <QLabel>

class QStyleOptionTab;

namespace vantrel {

/// The picture of a tab that follows the pointer outside of all windows.
class TabDragImage final : public QLabel {
  Q_OBJECT

 public:
  /// `tab` as `bar` draws it.
  TabDragImage(const QStyleOptionTab& tab, QWidget& bar);

  void follow(const QPoint& globalPosition);
};

}  // namespace vantrel
