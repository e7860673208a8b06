#pragma once

#include <optional>

#include "inspector/crop_inspector_section.h"

class QColor;

namespace vantrel {

class ColorWell;
class CropResetButton;

/// The colour of the window behind the picture, which no undo and no export knows.
class CropCanvasSection final : public CropInspectorSection {
  Q_OBJECT

 public:
  explicit CropCanvasSection(QWidget* parent = nullptr);

  [[nodiscard]] ColorWell* colorWell() const { return m_color; }
  [[nodiscard]] CropResetButton* resetButton() const { return m_reset; }

  void setColor(const QColor& color);

 Q_SIGNALS:
  /// The user wants this one, or that of the palette.
  void colorChanged(const std::optional<QColor>& color);

 private:
  ColorWell* m_color;
  CropResetButton* m_reset;
};

}  // namespace vantrel
