#pragma once

#include <QToolButton>

namespace vantrel {

/// Puts one value back to where it started: an icon that assistive tools hear by its title. Main
/// thread.
class CropResetButton final : public QToolButton {
  Q_OBJECT

 public:
  explicit CropResetButton(const QString& title, QWidget* parent = nullptr);

  /// What of its frame reaches beyond the edge that the icon keeps to, in points.
  [[nodiscard]] static int overhang();

 protected:
  void changeEvent(QEvent* event) override;
};

}  // namespace vantrel
