#pragma once

#include <QWidget>

#include "export/export_summary.h"

namespace vantrel {

/// The summary line over a finished export: white on translucent black. Clicks pass through it.
class ExportInformation final : public QWidget {
  Q_OBJECT

 public:
  explicit ExportInformation(const ExportSummary& summary, QWidget* parent = nullptr);

  [[nodiscard]] const QString& description() const { return m_description; }
  [[nodiscard]] QSize sizeHint() const override;
  [[nodiscard]] QSize minimumSizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  QString m_description;
};

}  // namespace vantrel
