#include "inspector/crop_canvas_section.h"

#include "controls/color_well.h"
#include "controls/crop_reset_button.h"

namespace vantrel {

CropCanvasSection::CropCanvasSection(QWidget* parent)
    : CropInspectorSection(tr("Canvas"), parent),
      m_color(new ColorWell(tr("Background"), this)),
      m_reset(new CropResetButton(tr("Reset Background"), this)) {
  m_color->setToolTip(tr("Canvas background"));
  addRow(tr("Background"), {m_color, m_reset});
  connect(m_color, &ColorWell::colorChosen, this, &CropCanvasSection::colorChanged);
  connect(m_reset, &QToolButton::clicked, this, [this] { Q_EMIT colorChanged({}); });
}

void CropCanvasSection::setColor(const QColor& color) {
  m_color->setColor(color);
}

}  // namespace vantrel
