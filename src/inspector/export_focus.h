#pragma once

#include <QObject>

class QWidget;

namespace vantrel {

/// Leads the keyboard focus from the button that starts an export to the one that cancels it, and
/// back when the export ends, if it is still there. Focus that is elsewhere stays there. A click
/// leads it nowhere: with the focus on what cancels, a stray key would do that. Main thread.
class ExportFocus final : public QObject {
 public:
  /// Both are in one window, and outlive this.
  ExportFocus(QWidget& start, QWidget& cancel);

  /// An export is asked for. Where the focus is now counts, whoever takes it away until then.
  void begin();
  /// An export runs; `cancel` can be seen, and `start` is about to go.
  void enterCancel();
  /// The export has ended; `cancel` is about to go.
  void leaveCancel();
  /// `start` is there again, and can be pressed.
  void enterStart();
  /// `start` is there, but cannot be pressed any more.
  void forget() { m_returns = false; }

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  QWidget& m_start;
  QWidget& m_cancel;
  /// What came last to `start`.
  bool m_isByMouse = false;
  /// The focus was on `start` when the export was asked for.
  bool m_begins = false;
  /// The focus was on `cancel`, and is nowhere since.
  bool m_returns = false;
};

}  // namespace vantrel
