#pragma once

#include <QHash>
#include <QObject>
#include <QPointer>
#include <QUuid>

namespace vantrel {

class EditorView;
class EditorWindow;
class ExportReviewDocument;
class ReviewWindow;

/// What the windows of the process know of each other: which editor is to become a tab of which
/// window, and which review is in front. Keeps no window alive. Main thread.
class CropWindowRegistry final : public QObject {
  Q_OBJECT

 public:
  /// The instance of the process, made on first use; a QApplication must exist.
  [[nodiscard]] static CropWindowRegistry& shared();

  CropWindowRegistry();
  ~CropWindowRegistry() override;

  /// The editor with this identity, which has yet to be made, is to open as a tab of `parent`. The
  /// last request for an identity counts.
  void requestTab(const QUuid& identity, EditorWindow* parent);
  /// Puts the editor into the window that asked for it; true if it is a tab there now. False if
  /// none asked, or it is gone, or the editor is in it: then nothing moves. A request is used once.
  bool attach(EditorView* editor);

  /// The document of the review in front; null while any other window is in front. While another
  /// program is, the last window of this one counts.
  [[nodiscard]] ExportReviewDocument* activeReview() const;
  [[nodiscard]] ReviewWindow* activeReviewWindow() const;

 Q_SIGNALS:
  void activeReviewChanged();

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void setActiveReview(ReviewWindow* window);

  QHash<QUuid, QPointer<EditorWindow>> m_tabParents;
  QPointer<ReviewWindow> m_activeReview;
  /// Of the active review.
  QMetaObject::Connection m_closed;
};

}  // namespace vantrel
