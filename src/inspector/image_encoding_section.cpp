#include "inspector/image_encoding_section.h"

#include <QLabel>

#include "controls/color_well.h"
#include "controls/crop_reset_button.h"
#include "controls/edit_slider.h"
#include "controls/panel_text.h"
#include "controls/segmented_control.h"
#include "inspector/panel_numbers.h"
#include "model/edit_history.h"

namespace vantrel {
namespace {

constexpr SliderScale kQualities{0, 1, 100};

QStringList formatNames() {
  QStringList names;
  for (const ImageEncodingSettings::Format format : ImageEncodingSettings::kFormats)
    names << ImageEncodingSettings::rawValue(format);
  return names;
}

}  // namespace

ImageEncodingSection::ImageEncodingSection(EditHistory& history, QWidget* parent)
    : CropInspectorSection(tr("Encoding"), parent),
      m_history(history),
      m_format(new SegmentedControl(tr("Format"), formatNames(), this)),
      m_quality(PanelText::figure(this)),
      m_qualityReset(new CropResetButton(tr("Reset Quality"), this)),
      m_slider(new EditSlider(history, this)),
      m_fill(new ColorWell(tr("Fill Color"), this)),
      m_fillReset(new CropResetButton(tr("Reset JPEG Background"), this)) {
  addRow(tr("Format"), {m_format});
  addJpegRows();
  using Settings = ImageEncodingSettings;
  connect(m_format, &SegmentedControl::chosen, this, [this](int index) {
    set(&Settings::format, Settings::kFormats.at(static_cast<size_t>(index)));
  });
  connect(m_slider, &EditSlider::numberChosen, this,
          [this](double quality) { set(&Settings::quality, quality); });
  connect(m_qualityReset, &QToolButton::clicked, this,
          [this] { set(&Settings::quality, Settings().quality); });
  connect(m_fill, &ColorWell::colorChosen, this,
          [this](const QColor& color) { set(&Settings::background, ImageBackground(color)); });
  connect(m_fillReset, &QToolButton::clicked, this,
          [this] { set(&Settings::background, ImageBackground()); });
}

void ImageEncodingSection::addJpegRows() {
  m_slider->setAccessibleName(tr("JPEG quality"));
  m_slider->setToolTip(tr("Higher quality produces larger files"));
  m_fill->setToolTip(tr("Fill transparent areas"));
  m_qualityRow = addRow(tr("Quality"), {m_quality, m_qualityReset});
  m_sliderRow = addWide(m_slider);
  m_fillRow = addRow(tr("Fill Color"), {m_fill, m_fillReset});
}

template <typename Value>
void ImageEncodingSection::set(Value ImageEncodingSettings::*field, const Value& value) {
  ImageEncodingSettings settings = m_history.imageEncoding();
  settings.*field = value;
  m_history.setImageEncoding(settings);
}

void ImageEncodingSection::setSource(const InspectorSource& source) {
  const ImageEncodingSettings& settings = m_history.imageEncoding();
  const bool isJpeg = settings.format == ImageEncodingSettings::Format::jpeg;
  setEnabled(!source.busy);
  m_format->setSelected(static_cast<int>(settings.format));
  m_quality->setText(PanelNumbers::quality(settings.quality));
  m_slider->showNumber(settings.quality, kQualities);
  m_fill->setColor(settings.background.color());
  m_qualityRow->setVisible(isJpeg);
  m_sliderRow->setVisible(isJpeg);
  m_fillRow->setVisible(isJpeg && source.imageSource && source.imageSource->hasTransparency());
}

}  // namespace vantrel
