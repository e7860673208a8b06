#pragma once

#include <QMarginsF>
#include <QWidget>

namespace vantrel {

class CanvasScrollView;
class CropPanel;
class EditHistory;
class EmptyCanvasView;
class PlaybackControls;
class Player;

/// The area beside the inspector, filled by the canvas. Over it comes what stands there without a
/// file, and over all floats the playback bar of a video. Main thread.
///
/// Canvas and bar are null until `makeCanvas`: a window without a file is there sooner.
class EditorWorkspace final : public QWidget {
  Q_OBJECT

 public:
  explicit EditorWorkspace(QWidget* parent = nullptr);

  /// With the playback bar. `history` outlives the workspace. Once only.
  void makeCanvas(EditHistory& history);
  [[nodiscard]] CanvasScrollView* canvas() const { return m_canvas; }
  [[nodiscard]] EmptyCanvasView* emptyView() const { return m_empty; }
  [[nodiscard]] PlaybackControls* playback() const { return m_playback; }
  /// What floats, with the playback controls in it.
  [[nodiscard]] CropPanel* playbackPanel() const { return m_panel; }
  /// What a framed picture keeps clear of, in points from the edges.
  [[nodiscard]] QMarginsF framingInsets() const;

  /// Shows the bar of this player, or none for null. `duration` in seconds.
  void setPlayer(Player* player, double duration);

 Q_SIGNALS:
  void framingInsetsChanged();

 protected:
  void resizeEvent(QResizeEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void placePlayback();

  EmptyCanvasView* m_empty;
  CanvasScrollView* m_canvas = nullptr;
  CropPanel* m_panel = nullptr;
  PlaybackControls* m_playback = nullptr;
  bool m_hasPlayer = false;
  /// As last measured, in points.
  double m_playbackHeight = 48;
};

}  // namespace vantrel
