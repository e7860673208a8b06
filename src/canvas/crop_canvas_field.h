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

  CropCanvasField(EditHistory& history, const QString& title, QWidget* parent);

  [[nodiscard]] CropNumberField* field() const { return m_field; }

 private:
  CropNumberField* m_field;
};

}  // namespace vantrel
