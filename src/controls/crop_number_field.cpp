#include "controls/crop_number_field.h"

namespace vantrel {

CropNumberField::CropNumberField(EditHistory& history, const QString& label, QWidget* parent)
    : SelectingNumberField(std::make_unique<MarginEntry>(
                               history, [this](int64_t value) { Q_EMIT valueEdited(value); }),
                           parent) {
  setAccessibleName(tr("%1 crop margin in pixels").arg(label));
}

}  // namespace vantrel
