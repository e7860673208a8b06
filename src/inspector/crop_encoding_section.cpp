#include "inspector/crop_encoding_section.h"

#include <QLabel>

#include "controls/crop_reset_button.h"
#include "controls/edit_slider.h"
#include "controls/panel_text.h"
#include "controls/segmented_control.h"
#include "inspector/panel_numbers.h"
#include "model/edit_history.h"

namespace vantrel {
namespace {

constexpr int kBitratesPerMegabit = 2;

QStringList codecNames() {
  QStringList names;
  for (const EncodingSettings::Codec codec : EncodingSettings::kCodecs)
    names << EncodingSettings::rawValue(codec);
  return names;
}

}  // namespace

CropEncodingSection::CropEncodingSection(EditHistory& history, QWidget* parent)
    : CropInspectorSection(tr("Encoding"), parent),
      m_history(history),
      m_codec(new SegmentedControl(tr("Codec"), codecNames(), this)),
      m_bitrate(PanelText::figure(this)),
      m_match(new CropResetButton(tr("Match Original Bitrate"), this)),
      m_slider(new EditSlider(history, this)) {
  m_codec->setToolTip(tr("HEVC supports HDR. H.264 is available for SDR videos only."));
  m_slider->setAccessibleName(tr("Video bitrate in Mbps"));
  m_slider->setToolTip(tr("Higher bitrate preserves more detail and produces larger files."));
  addRow(tr("Codec"), {m_codec});
  addRow(tr("Bitrate"), {m_bitrate, m_match});
  addWide(m_slider);
  connect(m_codec, &SegmentedControl::chosen, this, &CropEncodingSection::selectCodec);
  connect(m_match, &QToolButton::clicked, this,
          [this] { m_history.setBitrate(m_originalBitrate); });
  connect(m_slider, &EditSlider::numberChosen, &history, &EditHistory::setBitrate);
}

void CropEncodingSection::selectCodec(int index) {
  const EncodingSettings::Codec codec = EncodingSettings::kCodecs.at(static_cast<size_t>(index));
  if (!m_isHDR || codec == EncodingSettings::Codec::hevc) m_history.setCodec(codec);
  showCodec();
}

void CropEncodingSection::showCodec() {
  m_codec->setSelected(static_cast<int>(m_history.codec()));
}

void CropEncodingSection::setSource(const InspectorSource& source) {
  m_isHDR = source.sourceIsHDR;
  m_originalBitrate = EncodingSettings::originalBitrate(source.sourceMbps);
  setEnabled(source.loaded && !source.busy);
  m_codec->setSegmentEnabled(static_cast<int>(EncodingSettings::Codec::h264), !m_isHDR);
  showCodec();
  const BitrateRange range = EncodingSettings::bitrateRange(source.sourceMbps);
  m_bitrate->setText(source.loaded ? PanelNumbers::bitrate(m_history.bitrate())
                                   : PanelNumbers::kNone);
  m_slider->showNumber(m_history.bitrate(), {range.lower, range.upper, kBitratesPerMegabit});
}

}  // namespace vantrel
