#pragma once

#include <QToolButton>

namespace vantrel {

/// Puts one value back to where it started: an icon that assistive tools hear by its title. Main
/// thread.
class CropResetButton final : public QToolButton {
  Q_OBJECT

 public:
  /// Of its frame, and what of it reaches beyond the edge that the icon keeps to; in points.
  static constexpr int kSize = 24, kOverhang = 4;

  explicit CropResetButton(const QString& title, QWidget* parent = nullptr);

 protected:
  void changeEvent(QEvent* event) override;
};

}  // namespace vantrel
