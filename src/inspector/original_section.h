#pragma once

#include <vector>

#include "inspector/crop_inspector_section.h"
#include "inspector/inspector_source.h"

class QLabel;

namespace vantrel {

/// The facts of the open file, one to a row.
class OriginalSection final : public CropInspectorSection {
  Q_OBJECT

 public:
  explicit OriginalSection(QWidget* parent = nullptr);

  void setSource(const InspectorSource& source);

 private:
  struct Row {
    QWidget* widget;
    QLabel* title;
    QLabel* value;
  };
  [[nodiscard]] Row makeRow();

  std::vector<Row> m_factRows;
};

}  // namespace vantrel
