#include "controls/color_well.h"

#include <QColorDialog>
#include <QEvent>
#include <QPainter>

#include "controls/look_palette.h"
#include "controls/plate.h"

namespace vantrel {
namespace {

// Points.
constexpr QSize kSize(40, 20);
constexpr int kInset = 3;
constexpr double kRadius = 5, kSwatchRadius = 3;

constexpr int kPressDarker = 112;
constexpr QColor kSwatchEdge(127, 127, 127, 60);

}  // namespace

ColorWell::ColorWell(const QString& title, QWidget* parent) : QAbstractButton(parent) {
  setAccessibleName(title);
  setFocusPolicy(Qt::StrongFocus);
  setAttribute(Qt::WA_Hover);
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
  connect(this, &QAbstractButton::clicked, this, &ColorWell::ask);
}

QSize ColorWell::sizeHint() const {
  return kSize;
}

void ColorWell::setColor(const QColor& color) {
  m_color = color;
  m_color.setAlpha(255);
  setAccessibleDescription(m_color.name().toUpper());
  update();
}

void ColorWell::ask() {
  if (m_dialog) return;
  m_dialog = new QColorDialog(m_color, this);
  m_dialog->setWindowTitle(accessibleName());
  m_dialog->setAttribute(Qt::WA_DeleteOnClose);
  connect(m_dialog, &QColorDialog::colorSelected, this, &ColorWell::colorChosen);
  m_dialog->open();
}

void ColorWell::changeEvent(QEvent* event) {
  QAbstractButton::changeEvent(event);
  // What may not be changed any more is not asked for either.
  if (event->type() == QEvent::EnabledChange && !isEnabled() && m_dialog) m_dialog->reject();
}

void ColorWell::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  if (!isEnabled()) painter.setOpacity(kDisabledOpacity);
  const auto color = [this](QPalette::ColorRole role) {
    return palette().color(QPalette::Active, role);
  };
  const bool isFocused = hasFocus() && window()->testAttribute(Qt::WA_KeyboardFocusChange);
  QColor border = isFocused ? color(QPalette::Highlight) : outlineColor(palette());
  if (isEnabled() && underMouse() && !isFocused) border = color(QPalette::PlaceholderText);
  QColor fill = color(QPalette::Base);
  if (isDown()) fill = fill.darker(kPressDarker);
  drawPlate(&painter, rect(), kRadius, fill, border, isFocused ? kFocusWidth : 1);
  drawPlate(&painter, rect().adjusted(kInset, kInset, -kInset, -kInset), kSwatchRadius, m_color,
            kSwatchEdge, 1);
}

}  // namespace vantrel
