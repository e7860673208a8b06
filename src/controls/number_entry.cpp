#include "controls/number_entry.h"

#include <utility>

#include "model/crop_dimension_validation.h"
#include "model/integer_text.h"

namespace vantrel {
namespace {

constexpr int64_t kLargeStep = 10;

/// Stays where it is at the ends of 64 bits.
int64_t moved(int64_t value, int64_t by) {
  int64_t result = 0;
  return __builtin_add_overflow(value, by, &result) ? value : result;
}

}  // namespace

NumberEntry::NumberEntry(EditHistory& history, Setter setter)
    : m_history(&history), m_setter(std::move(setter)) {
  show();
}

NumberEntry::~NumberEntry() {
  if (m_editing && m_history) m_history->end();
}

bool NumberEntry::isCommand(int key, Qt::KeyboardModifiers modifiers) {
  const Qt::KeyboardModifiers held = modifiers & ~Qt::KeypadModifier;
  switch (key) {
    case Qt::Key_Up:
    case Qt::Key_Down:
    case Qt::Key_Return:
    case Qt::Key_Enter:
      return held == Qt::NoModifier || held == Qt::ShiftModifier;
    default:
      return false;
  }
}

void NumberEntry::setValue(int64_t value) {
  m_value = value;
  if (!m_editing) show();
}

void NumberEntry::setShowsPlaceholder(bool shows) {
  m_showsPlaceholder = shows;
  if (!m_editing) show();
}

void NumberEntry::begin() {
  if (std::exchange(m_editing, true)) return;
  m_history->begin();
}

void NumberEntry::type(const QString& text) {
  m_text = text;
  if (m_editing) {
    typed();
    return;
  }
  // Without the focus no end of editing will come, as when an assistive tool fills in the field.
  commit();
  show();
}

void NumberEntry::press(int key, Qt::KeyboardModifiers modifiers) {
  if (key == Qt::Key_Up || key == Qt::Key_Down) {
    const int64_t size = modifiers.testFlag(Qt::ShiftModifier) ? kLargeStep : pixelStep();
    step(key == Qt::Key_Up ? size : -size);
  } else {
    commit();
    m_history->end();
    m_history->begin();
  }
  show();
}

void NumberEntry::end() {
  if (!m_editing) return;
  commit();
  m_editing = false;
  show();
  m_history->end();
}

void NumberEntry::take(int64_t value) {
  m_value = value;
  m_setter(value);
}

void NumberEntry::show() {
  m_text = m_showsPlaceholder ? QString() : QString::number(m_value);
  m_shown = m_text;
}

MarginEntry::MarginEntry(EditHistory& history, Setter setter)
    : NumberEntry(history, std::move(setter)) {}

void MarginEntry::typed() {
  if (const auto number = integerFromText(text())) take(*number);
}

void MarginEntry::commit() {
  if (isTyped()) typed();
}

void MarginEntry::step(int64_t by) {
  take(moved(value(), by));
}

DimensionEntry::DimensionEntry(EditHistory& history, Setter setter, std::function<void()> rejected)
    : NumberEntry(history, std::move(setter)), m_rejected(std::move(rejected)) {}

void DimensionEntry::commit() {
  if (isTyped()) apply(text());
}

void DimensionEntry::step(int64_t by) {
  commit();
  apply(QString::number(moved(value(), by)));
}

void DimensionEntry::apply(const QString& text) {
  const auto [number, rejected] =
      CropDimensionValidation::resolve(text, value(), m_maximum, pixelStep());
  take(number);
  show();
  if (rejected) m_rejected();
}

}  // namespace vantrel
