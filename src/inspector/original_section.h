#pragma once

#include <QWidget>

#include "inspector/inspector_source.h"

class QLabel;

namespace vantrel {

/// The facts of the open file, one to a row.
class OriginalSection final : public QWidget {
  Q_OBJECT

 public:
  explicit OriginalSection(QWidget* parent = nullptr);

  void setSource(const InspectorSource& source);

 private:
  struct Row {
    QWidget* row;
    QLabel* value;
  };
  Row addRow(const QString& title);
  void setImage(const ImageSource& image);

  Row m_format, m_resolution, m_size, m_colorProfile;
};

}  // namespace vantrel
