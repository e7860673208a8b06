#pragma once

#include <QWidget>
#include <initializer_list>

class QHBoxLayout;
class QVBoxLayout;

namespace vantrel {

/// A titled part of the panel. Its frame reaches beyond the edge that its contents keep to by
/// CropResetButton::overhang(), for the frames of reset buttons.
class CropInspectorSection : public QWidget {
  Q_OBJECT

 public:
  /// Points.
  static constexpr int kSpacing = 8, kRowHeight = 20;

  explicit CropInspectorSection(const QString& title, QWidget* parent = nullptr);

 protected:
  /// The title's own row, in which more may stand.
  [[nodiscard]] QHBoxLayout* header() const { return m_header; }
  [[nodiscard]] QVBoxLayout* rows() const { return m_rows; }

  /// A title at the left, controls at the right.
  QWidget* addRow(const QString& title, std::initializer_list<QWidget*> controls);
  /// A control as wide as the section.
  QWidget* addWide(QWidget* control);
  /// Ends a row at the contents' edge, or beyond it for a reset button.
  void endRow(QHBoxLayout* row, const QWidget* last);

 private:
  QHBoxLayout* m_header;
  QVBoxLayout* m_rows;
};

}  // namespace vantrel
