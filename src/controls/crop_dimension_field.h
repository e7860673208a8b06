#pragma once

#include <QVariantAnimation>

#include "controls/selecting_number_field.h"

namespace vantrel {

/// The field of the output width or height. Typing changes nothing until Return, an arrow key or
/// the end of editing; an entry that is rejected flashes red.
class CropDimensionField final : public SelectingNumberField {
  Q_OBJECT

 public:
  /// `label` names the dimension to assistive tools. `history` outlives the field's editing.
  CropDimensionField(EditHistory& history, const QString& label, QWidget* parent = nullptr);

  static constexpr int kFlashMilliseconds = 700;

  /// From 1, as a flash begins, down to 0; at once where the desktop asks for less motion.
  [[nodiscard]] double flashOpacity() const;
  /// The running flash; ended when there is none.
  [[nodiscard]] QVariantAnimation& flash() { return m_flash; }

  /// The source's extent on this axis, in source pixels.
  void setMaximum(int64_t maximum);
  /// Colours the border red for a moment; a second flash replaces the first.
  void flashValidation();

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  DimensionEntry* m_dimension;
  QVariantAnimation m_flash;
};

}  // namespace vantrel
