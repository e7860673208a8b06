#pragma once

#include <array>
#include <functional>

#include "inspector/crop_inspector_section.h"
#include "inspector/inspector_source.h"
#include "model/crop_margins.h"

class QLabel;
class QLayout;

namespace vantrel {

class CropDimensionField;
class CropNumberField;
class CropResetButton;
class EditHistory;
class SelectingNumberField;

/// The crop in numbers: the four margins around the output's width and height.
class CropSection final : public CropInspectorSection {
  Q_OBJECT

 public:
  explicit CropSection(EditHistory& history, QWidget* parent = nullptr);

  [[nodiscard]] CropNumberField* marginField(CropMargins::Edge edge) const;
  [[nodiscard]] CropDimensionField* widthField() const { return m_width; }
  [[nodiscard]] CropDimensionField* heightField() const { return m_height; }
  [[nodiscard]] CropResetButton* resetButton() const { return m_reset; }
  [[nodiscard]] QLabel* outputSizeLabel() const { return m_outputSize; }

  /// Takes the source; the crop is read from the history.
  void setSource(const InspectorSource& source);

 private:
  using Reader = std::function<int64_t()>;
  using Writer = std::function<void(int64_t)>;

  [[nodiscard]] QLayout* makeCross();
  [[nodiscard]] QWidget* makeMargin(CropMargins::Edge edge, const QString& title);
  [[nodiscard]] QWidget* makeDimensions();
  [[nodiscard]] QWidget* makeDimension(bool horizontal, const QString& title);
  /// The field under its title, with a stepper at its side that moves what `read` gives.
  [[nodiscard]] QWidget* titled(const QString& title, int spacing, SelectingNumberField* field,
                                const Reader& read, const Writer& write);
  void setMargin(CropMargins::Edge edge, int64_t margin);
  void setDimension(bool horizontal, int64_t length);
  void resetCrop();
  void showCrop();
  [[nodiscard]] int64_t outputWidth() const;
  [[nodiscard]] int64_t outputHeight() const;

  EditHistory& m_history;
  QSizeF m_sourceSize{0, 0};
  QLabel* m_outputSize;
  CropResetButton* m_reset;
  std::array<CropNumberField*, CropMargins::kEdges.size()> m_margins{};
  CropDimensionField* m_width = nullptr;
  CropDimensionField* m_height = nullptr;
};

}  // namespace vantrel
