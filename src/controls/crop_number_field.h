#pragma once

#include "controls/selecting_number_field.h"

namespace vantrel {

/// The field of one margin. The crop follows each number that is typed; the text is corrected when
/// editing ends or an arrow key is used.
class CropNumberField final : public SelectingNumberField {
  Q_OBJECT

 public:
  /// `label` names the edge to assistive tools. `history` outlives the field's editing.
  CropNumberField(EditHistory& history, const QString& label, QWidget* parent = nullptr);
};

}  // namespace vantrel
