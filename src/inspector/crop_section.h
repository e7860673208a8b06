#pragma once

#include <QWidget>
#include <array>

#include "inspector/inspector_source.h"
#include "model/crop_margins.h"

class QLabel;

namespace vantrel {

class CropDimensionField;
class CropNumberField;
class EditHistory;
class SelectingNumberField;

/// The crop in numbers: the four margins around the output's width and height.
class CropSection final : public QWidget {
  Q_OBJECT

 public:
  explicit CropSection(EditHistory& history, QWidget* parent = nullptr);

  [[nodiscard]] CropNumberField* marginField(CropMargins::Edge edge) const;

  /// Takes the source; the crop is read from the history.
  void setSource(const InspectorSource& source);

 private:
  [[nodiscard]] QWidget* makeMargin(CropMargins::Edge edge, const QString& title);
  [[nodiscard]] QWidget* makeDimensions();
  [[nodiscard]] CropDimensionField* makeDimension(bool horizontal, const QString& title);
  void setMargin(CropMargins::Edge edge, int64_t margin);
  void setDimension(bool horizontal, int64_t length);
  [[nodiscard]] int64_t outputWidth() const;
  [[nodiscard]] int64_t outputHeight() const;

  EditHistory& m_history;
  QSizeF m_sourceSize{0, 0};
  QLabel* m_outputSize;
  std::array<CropNumberField*, CropMargins::kEdges.size()> m_margins{};
  CropDimensionField* m_width = nullptr;
  CropDimensionField* m_height = nullptr;
};

}  // namespace vantrel
