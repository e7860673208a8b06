#pragma once

#include <QMainWindow>
#include <memory>

#include "review/export_review_document.h"

class QCloseEvent;

namespace vantrel {

class VideoReviewView;

/// The window of a finished export: it shows the file and asks for what the document needs to know:
/// where to save, and whether to when it is closed unsaved. Closing it deletes it and its document.
/// Whoever opens it gives it a menu bar, which is hidden while the window fills the screen.
class ReviewWindow final : public QMainWindow {
  Q_OBJECT

 public:
  explicit ReviewWindow(std::unique_ptr<ExportReviewDocument> document, QWidget* parent = nullptr);
  ~ReviewWindow() override;

  [[nodiscard]] ExportReviewDocument& document() { return *m_document; }

  /// Where a window of this size opens in the free part of a screen: in the middle, no larger than
  /// it.
  [[nodiscard]] static QRect placeIn(const QRect& room, const QSize& size);

  /// Asks where to save, and saves there.
  void save();

 Q_SIGNALS:
  /// The user went back on closing the window, or the save before it failed or was given up.
  void closeRefused();

 protected:
  void changeEvent(QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void closeEvent(QCloseEvent* event) override;

 private:
  void showVideo();
  void setFullScreen(bool isFullScreen);
  void updateTitle();
  void askBeforeClosing();
  void refuseClose();
  void finishSave();
  void showSaveFailure(const QString& message);

  std::unique_ptr<ExportReviewDocument> m_document;
  /// Null for images.
  VideoReviewView* m_video = nullptr;
  bool m_asking = false;
  /// The place to save to is being asked for.
  bool m_choosing = false;
  /// The save that runs, or is being asked for, is the answer to closing the window.
  bool m_closeAfterSave = false;
  bool m_discard = false;
};

}  // namespace vantrel
