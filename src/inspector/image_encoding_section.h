#pragma once

#include "inspector/crop_inspector_section.h"
#include "inspector/inspector_source.h"
#include "model/image_encoding_settings.h"

class QLabel;

namespace vantrel {

class ColorWell;
class CropResetButton;
class EditHistory;
class EditSlider;
class SegmentedControl;

/// How a still image is encoded: the format, and for a JPEG its quality and what transparent
/// pixels become.
class ImageEncodingSection final : public CropInspectorSection {
  Q_OBJECT

 public:
  explicit ImageEncodingSection(EditHistory& history, QWidget* parent = nullptr);

  [[nodiscard]] SegmentedControl* formatPicker() const { return m_format; }
  [[nodiscard]] QLabel* qualityLabel() const { return m_quality; }
  [[nodiscard]] CropResetButton* qualityReset() const { return m_qualityReset; }
  [[nodiscard]] EditSlider* qualitySlider() const { return m_slider; }
  [[nodiscard]] ColorWell* fillWell() const { return m_fill; }
  [[nodiscard]] CropResetButton* fillReset() const { return m_fillReset; }

  /// Takes the source, an image; its encoding is read from the history.
  void setSource(const InspectorSource& source);

 private:
  void addJpegRows();
  /// One edit of one field.
  template <typename Value>
  void set(Value ImageEncodingSettings::*field, const Value& value);

  EditHistory& m_history;
  SegmentedControl* m_format;
  QLabel* m_quality;
  CropResetButton* m_qualityReset;
  EditSlider* m_slider;
  ColorWell* m_fill;
  CropResetButton* m_fillReset;
  QWidget* m_qualityRow = nullptr;
  QWidget* m_sliderRow = nullptr;
  QWidget* m_fillRow = nullptr;
};

}  // namespace vantrel
