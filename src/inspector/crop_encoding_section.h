#pragma once

#include "inspector/crop_inspector_section.h"
#include "inspector/inspector_source.h"

class QLabel;

namespace vantrel {

class CropResetButton;
class EditHistory;
class EditSlider;
class SegmentedControl;

/// How a video is encoded: codec and bitrate.
class CropEncodingSection final : public CropInspectorSection {
  Q_OBJECT

 public:
  explicit CropEncodingSection(EditHistory& history, QWidget* parent = nullptr);

  [[nodiscard]] SegmentedControl* codecPicker() const { return m_codec; }
  [[nodiscard]] EditSlider* bitrateSlider() const { return m_slider; }
  [[nodiscard]] CropResetButton* matchButton() const { return m_match; }
  [[nodiscard]] QLabel* bitrateLabel() const { return m_bitrate; }

  /// Takes the source; codec and bitrate are read from the history.
  void setSource(const InspectorSource& source);

 private:
  void selectCodec(int index);
  void showCodec();

  EditHistory& m_history;
  bool m_isHDR = false;
  double m_originalBitrate = 0;
  SegmentedControl* m_codec;
  QLabel* m_bitrate;
  CropResetButton* m_match;
  EditSlider* m_slider;
};

}  // namespace vantrel
