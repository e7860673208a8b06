#pragma once

#include <QObject>
#include <QPointer>
#include <QRectF>
#include <array>
#include <cstdint>
#include <optional>

#include "canvas/crop_canvas_field.h"
#include "model/crop_margins.h"

namespace vantrel {

class EditHistory;

/// For what the fields were last placed.
struct CropFieldState {
  CropMargins crop;
  /// In source pixels.
  QSizeF size;
  /// Where the whole source lies, in points of the overlay.
  QRectF imageFrame;
  friend bool operator==(const CropFieldState&, const CropFieldState&) = default;
};

/// The four fields that float beside the crop, one for each margin, as children of the overlay.
/// They stand still at whole points, beyond the viewport too. Main thread.
class CropCanvasFields final : public QObject {
  Q_OBJECT

 public:
  /// `history` outlives the fields; `overlay` is the parent of their widgets.
  CropCanvasFields(EditHistory& history, QWidget* overlay);
  ~CropCanvasFields() override;

  /// Where a field of 86 × 62 points stands beside `selection`.
  [[nodiscard]] static QRectF frame(CropMargins::Edge edge, const QRectF& selection);
  [[nodiscard]] CropCanvasField* field(CropMargins::Edge edge) const;

  /// Shows the margins and places the fields; nothing at all if nothing has changed. `selection` is
  /// the crop in points of the overlay. Without a source the fields are hidden.
  void update(const CropFieldState& state, const QRectF& selection);
  /// From 0 to 1, that of all of them; at 0 they are hidden.
  void setOpacity(double opacity);
  /// While it is off, neither mouse nor keyboard reaches the fields; an editing ends.
  void setEditingEnabled(bool enabled);

 Q_SIGNALS:
  /// The user wants this margin, legal or not. A direct connection takes it and calls `update` with
  /// the crop that is then in force, before it returns.
  void marginEdited(vantrel::CropMargins::Edge edge, int64_t value);

 private:
  void edit(CropMargins::Edge edge, int64_t value);
  void showFields();

  std::array<QPointer<CropCanvasField>, CropMargins::kEdges.size()> m_fields;
  std::optional<CropFieldState> m_displayed;
  double m_opacity = 1;
};

}  // namespace vantrel
