#pragma once

#include <QColor>
#include <QStringList>
#include <QVector>
#include <QWidget>

class QAbstractButton;

namespace vantrel {

/// A few choices in a row, of which one holds. To the keyboard and to assistive tools they are
/// radio buttons in a group. Main thread.
class SegmentedControl final : public QWidget {
  Q_OBJECT

 public:
  /// `name` names the group to assistive tools.
  SegmentedControl(const QString& name, const QStringList& titles, QWidget* parent = nullptr);

  [[nodiscard]] QAbstractButton* segment(int index) const { return m_segments.at(index); }
  [[nodiscard]] int selected() const;

  /// Emits nothing.
  void setSelected(int index);
  void setSegmentEnabled(int index, bool enabled);

 Q_SIGNALS:
  /// The user wants another one than the one that held.
  void chosen(int index);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  [[nodiscard]] QColor faded(const QColor& color) const;

  QVector<QAbstractButton*> m_segments;
};

}  // namespace vantrel
