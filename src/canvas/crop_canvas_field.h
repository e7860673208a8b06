#pragma once

#include <QString>

#include "controls/crop_panel.h"

namespace vantrel {

class CropNumberField;
class EditHistory;

/// One margin on the canvas: its name above its number, in a floating panel.
class CropCanvasField final : public CropPanel {
  Q_OBJECT

 public:
  /// In points.
  static constexpr int kWidth = 86, kHeight = 62;

  /// `history` outlives the field's editing.
  CropCanvasField(EditHistory& history, const QString& title, QWidget* parent);

  [[nodiscard]] CropNumberField* field() const { return m_field; }

  /// While it is off, neither mouse nor keyboard reaches the number; an editing of it ends.
  void setEditingEnabled(bool enabled);
  /// Unlike hiding alone, it leaves the focus with no other widget.
  void setShown(bool shown);

 protected:
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void releaseFocus();

  CropNumberField* m_field;
};

}  // namespace vantrel
