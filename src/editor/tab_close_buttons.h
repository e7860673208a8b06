#pragma once

#include <QObject>

class QTabBar;

namespace vantrel {

/// Shows the buttons that close tabs where one looks for them: on the current tab, and on the one
/// under the pointer. Main thread.
class TabCloseButtons final : public QObject {
 public:
  /// `tabs` outlives this.
  explicit TabCloseButtons(QTabBar& tabs);

  /// To be called when a tab has come.
  void update();

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  QTabBar& m_tabs;
  /// The tab under the pointer, -1 for none.
  int m_hovered = -1;
};

}  // namespace vantrel
