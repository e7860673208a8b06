#pragma once

#include <QLineEdit>
#include <cstdint>
#include <memory>
#include <optional>

#include "controls/number_entry.h"

namespace vantrel {

/// A text field for one number in source pixels. The first click selects the whole number, the
/// second places the caret. While it has the focus, the history has an open transaction, and the
/// text is the user's. A number that is wider than the field stands in smaller figures, so that no
/// digit of it is out of sight.
class SelectingNumberField : public QLineEdit {
  Q_OBJECT

 public:
  [[nodiscard]] bool isEditing() const { return m_entry->isEditing(); }

  /// The number to show; one that arrives while the field is edited shows when editing ends.
  void setValue(int64_t value);
  /// Shows "—" in the number's place, for when there is no file.
  void setShowsPlaceholder(bool shows);
  /// Commits what is typed and closes the transaction; nothing while the field is not edited.
  void endEditing();

 Q_SIGNALS:
  /// The user wants this number, legal or not. A direct connection takes it and calls setValue with
  /// the number that is then in force, before it returns.
  void valueEdited(int64_t value);

 protected:
  SelectingNumberField(std::unique_ptr<NumberEntry> entry, QWidget* parent);

  [[nodiscard]] NumberEntry* entry() const { return m_entry.get(); }

  bool event(QEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;
  void changeEvent(QEvent* event) override;
  void hideEvent(QHideEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;

 private:
  void showEntry();
  void settleText();
  void fitText();

  std::unique_ptr<NumberEntry> m_entry;
  /// The field's own font, while its text stands in a smaller one.
  std::optional<QFont> m_fullFont;
  bool m_selectOnFirstClick = false;
  /// From the click that selected the whole number to its release.
  bool m_selecting = false;
};

}  // namespace vantrel
