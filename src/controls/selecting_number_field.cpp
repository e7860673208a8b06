#include "controls/selecting_number_field.h"

#include <QFocusEvent>
#include <QFontInfo>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QStyleOptionFrame>
#include <algorithm>
#include <utility>

#include "controls/borrowed_focus.h"
#include "controls/tabular_digits.h"

namespace vantrel {
namespace {

// Points of the screen; the text itself keeps from the edges of its room, and has a caret.
constexpr int kLeastTextSize = 8;
constexpr int kTextMargins = 5;

}  // namespace

SelectingNumberField::SelectingNumberField(std::unique_ptr<NumberEntry> entry, QWidget* parent)
    : QLineEdit(parent), m_entry(std::move(entry)) {
  setFont(withTabularDigits(font()));
  setPlaceholderText(QStringLiteral("—"));
  setToolTip(tr("Pixels"));
  showEntry();
  connect(this, &QLineEdit::textChanged, this, [this](const QString& text) {
    fitText();
    if (text == m_entry->text()) return;
    m_entry->type(text);
    showEntry();
  });
}

void SelectingNumberField::setValue(int64_t value) {
  m_entry->setValue(value);
  showEntry();
}

void SelectingNumberField::setShowsPlaceholder(bool shows) {
  m_entry->setShowsPlaceholder(shows);
  showEntry();
}

bool SelectingNumberField::event(QEvent* event) {
  // In a window behind another, the focus leaves without a word.
  if (event->type() == QEvent::WindowActivate && window()->focusWidget() != this) endEditing();
  if (event->type() != QEvent::ShortcutOverride) return QLineEdit::event(event);
  auto* const key = static_cast<QKeyEvent*>(event);
  if (NumberEntry::isCommand(key->key(), key->modifiers())) {
    key->accept();
    return true;
  }
  // With no typing left to undo, the keys belong to the window's commands.
  const bool undo = key->matches(QKeySequence::Undo) && !isUndoAvailable();
  const bool redo = key->matches(QKeySequence::Redo) && !isRedoAvailable();
  if (undo || redo) {
    key->ignore();
    return true;
  }
  return QLineEdit::event(event);
}

void SelectingNumberField::focusInEvent(QFocusEvent* event) {
  m_selectOnFirstClick = event->reason() == Qt::MouseFocusReason;
  m_entry->begin();
  QLineEdit::focusInEvent(event);
}

void SelectingNumberField::focusOutEvent(QFocusEvent* event) {
  QLineEdit::focusOutEvent(event);
  if (!isBorrowedFocus(event->reason())) endEditing();
}

void SelectingNumberField::changeEvent(QEvent* event) {
  QLineEdit::changeEvent(event);
  if (event->type() == QEvent::EnabledChange && !isEnabled()) endEditing();
  if (event->type() == QEvent::FontChange && !m_fullFont) fitText();
}

void SelectingNumberField::resizeEvent(QResizeEvent* event) {
  QLineEdit::resizeEvent(event);
  fitText();
}

void SelectingNumberField::hideEvent(QHideEvent* event) {
  QLineEdit::hideEvent(event);
  if (!event->spontaneous()) endEditing();
}

void SelectingNumberField::keyPressEvent(QKeyEvent* event) {
  if (!NumberEntry::isCommand(event->key(), event->modifiers())) {
    QLineEdit::keyPressEvent(event);
    return;
  }
  m_entry->press(event->key(), event->modifiers());
  settleText();
  selectAll();
  event->accept();
}

void SelectingNumberField::mousePressEvent(QMouseEvent* event) {
  // The press that wakes a window up can come before the focus.
  const bool first = std::exchange(m_selectOnFirstClick, false) || !isEditing();
  m_selecting = first && event->button() == Qt::LeftButton;
  if (!m_selecting) {
    QLineEdit::mousePressEvent(event);
    return;
  }
  selectAll();
  event->accept();
}

void SelectingNumberField::mouseMoveEvent(QMouseEvent* event) {
  if (!m_selecting) QLineEdit::mouseMoveEvent(event);
}

void SelectingNumberField::mouseReleaseEvent(QMouseEvent* event) {
  if (!std::exchange(m_selecting, false)) QLineEdit::mouseReleaseEvent(event);
}

void SelectingNumberField::endEditing() {
  if (!m_entry->isEditing()) return;
  m_selectOnFirstClick = false;
  m_entry->end();
  settleText();
}

// Setting the text drops the typing that could be undone, so it happens only where it differs.
void SelectingNumberField::showEntry() {
  if (text() != m_entry->text()) settleText();
}

// What is committed is undone in the history, and no longer in the text.
void SelectingNumberField::settleText() {
  setText(m_entry->text());
}

void SelectingNumberField::fitText() {
  const QFont full = m_fullFont.value_or(font());
  QStyleOptionFrame option;
  initStyleOption(&option);
  const int room =
      style()->subElementRect(QStyle::SE_LineEditContents, &option, this).width() - kTextMargins;
  const int width = QFontMetrics(full).horizontalAdvance(text());
  if (width <= room) {
    if (std::exchange(m_fullFont, std::nullopt)) setFont(full);
    return;
  }
  m_fullFont = full;
  QFont small = full;
  small.setPixelSize(std::max(kLeastTextSize, QFontInfo(full).pixelSize() * room / width));
  setFont(small);
}

}  // namespace vantrel
