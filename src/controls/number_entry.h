#pragma once

#include <QPointer>
#include <QString>
#include <cstdint>
#include <functional>

#include "model/edit_history.h"

namespace vantrel {

/// The editing of one number in source pixels as text: what typing, keys and the end of editing do
/// to the text, the value and the history's transaction. Knows no widget. Main thread.
class NumberEntry {
 public:
  /// Takes an edited value and, before it returns, gives what became of it to setValue.
  using Setter = std::function<void(int64_t)>;

  virtual ~NumberEntry();
  NumberEntry(const NumberEntry&) = delete;
  NumberEntry& operator=(const NumberEntry&) = delete;

  /// What the field is to show.
  [[nodiscard]] const QString& text() const { return m_text; }
  [[nodiscard]] int64_t value() const { return m_value; }
  [[nodiscard]] bool isEditing() const { return m_editing; }
  /// Whether the key steps the number (Up, Down) or commits it (Return), rather than editing text.
  [[nodiscard]] static bool isCommand(int key, Qt::KeyboardModifiers modifiers);

  /// A text in editing is not overwritten.
  void setValue(int64_t value);
  void setShowsPlaceholder(bool shows);

  /// The number got the focus; opens a transaction.
  void begin();
  /// The user has changed the text.
  void type(const QString& text);
  /// A key for which isCommand holds. Afterwards the text is the value, to be selected.
  void press(int key, Qt::KeyboardModifiers modifiers);
  /// The number lost the focus: commits and closes the transaction.
  void end();

 protected:
  NumberEntry(EditHistory& history, Setter setter);

  [[nodiscard]] int64_t pixelStep() const { return m_history->pixelStep(); }
  /// Whether the text is not the one last shown by the program.
  [[nodiscard]] bool isTyped() const { return m_text != m_shown; }
  void take(int64_t value);
  void show();

  virtual void typed() = 0;
  /// Takes what has been typed, so far as it is not taken yet.
  virtual void commit() = 0;
  virtual void step(int64_t by) = 0;

 private:
  QPointer<EditHistory> m_history;
  Setter m_setter;
  int64_t m_value = 0;
  bool m_showsPlaceholder = false;
  bool m_editing = false;
  QString m_text, m_shown;
};

/// A margin: follows each text that is a number at once, and takes the last one again at the end.
class MarginEntry final : public NumberEntry {
 public:
  MarginEntry(EditHistory& history, Setter setter);

 private:
  void typed() override;
  void commit() override;
  void step(int64_t by) override;
};

/// An output width or height: takes a typed text at Return, at an arrow key and at the end.
class DimensionEntry final : public NumberEntry {
 public:
  /// `rejected` is called for an entry that is not a number or out of range.
  DimensionEntry(EditHistory& history, Setter setter, std::function<void()> rejected);

  /// The source's extent on this axis.
  void setMaximum(int64_t maximum) { m_maximum = maximum; }

 private:
  void typed() override {}
  void commit() override;
  void step(int64_t by) override;
  void apply(const QString& text);

  std::function<void()> m_rejected;
  int64_t m_maximum = 0;
};

}  // namespace vantrel
