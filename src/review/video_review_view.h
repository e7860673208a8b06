#pragma once

#include <QWidget>

class QLabel;

namespace vantrel {

class ExportInformation;
class ExportReviewDocument;
class PlayerSurface;
class ReviewControls;

/// A finished movie with its player: the picture on black, the summary in the top left corner, the
/// floating controls at the bottom. Has the document open its player. Main thread.
///
/// Space plays and pauses, the arrow keys seek a second back and on, F, F11 and a double click
/// toggle full screen, and Escape leaves it.
class VideoReviewView final : public QWidget {
  Q_OBJECT

 public:
  /// `document` outlives the view.
  explicit VideoReviewView(ExportReviewDocument& document, QWidget* parent = nullptr);

  /// Null where there is no OpenGL: the movie is heard then, and not seen, and a line says so.
  [[nodiscard]] PlayerSurface* surface() const { return m_surface; }
  [[nodiscard]] ExportInformation* information() const { return m_information; }
  [[nodiscard]] ReviewControls* controls() const { return m_controls; }

  /// Whether its window fills the screen.
  void setFullScreen(bool isFullScreen);

 Q_SIGNALS:
  /// The user wants its window to fill the screen, or no longer to.
  void fullScreenRequested(bool isFullScreen);

 protected:
  void resizeEvent(QResizeEvent* event) override;
  void showEvent(QShowEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void connectControls();
  void showNotice();
  void followPlayer();
  void toggleFullScreen();
  void seekBy(double seconds);

  ExportReviewDocument& m_document;
  PlayerSurface* const m_surface;
  /// In place of the surface; null beside it.
  QLabel* m_notice = nullptr;
  ExportInformation* m_information;
  ReviewControls* m_controls;
  bool m_isFullScreen = false;
};

}  // namespace vantrel
