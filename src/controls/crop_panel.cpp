#include "controls/crop_panel.h"

#include <QEvent>
#include <QGraphicsOpacityEffect>
#include <QMouseEvent>
#include <algorithm>

namespace vantrel {
namespace {

/// Left clicks are not for what lies beneath; the other buttons may pan it.
void keepLeft(QMouseEvent* event) {
  event->setAccepted(event->button() == Qt::LeftButton);
}

}  // namespace

CropPanel::CropPanel(QWidget* parent) : QWidget(parent) {
  setContentsMargins(kPadding, kPadding, kPadding, kPadding);
  setCursor(Qt::ArrowCursor);
  followParent();
}

CropPanel::~CropPanel() {
  delete m_backdrop.data();
}

void CropPanel::setOpacity(double opacity) {
  m_opacity = std::clamp(opacity, 0.0, 1.0);
  if (m_backdrop) m_backdrop->setOpacity(m_opacity);
  if (m_opacity >= 1) {
    setGraphicsEffect(nullptr);
    return;
  }
  auto* effect = static_cast<QGraphicsOpacityEffect*>(graphicsEffect());
  if (!effect) {
    effect = new QGraphicsOpacityEffect(this);
    setGraphicsEffect(effect);
  }
  effect->setOpacity(m_opacity);
}

bool CropPanel::event(QEvent* event) {
  const bool result = QWidget::event(event);
  switch (event->type()) {
    case QEvent::ParentChange:
      followParent();
      break;
    case QEvent::Move:
    case QEvent::Resize:
      if (m_backdrop) m_backdrop->setBody(geometry());
      break;
    case QEvent::ShowToParent:
    case QEvent::HideToParent:
      // While it is hidden, the panel hears nothing of its moves.
      if (m_backdrop) m_backdrop->setBody(geometry());
      if (m_backdrop) m_backdrop->setVisible(!isHidden());
      break;
    case QEvent::PaletteChange:
      if (m_backdrop) m_backdrop->setPalette(palette());
      break;
    case QEvent::ZOrderChange:
      if (m_backdrop) m_backdrop->stackUnder(this);
      break;
    default:
      break;
  }
  return result;
}

void CropPanel::mousePressEvent(QMouseEvent* event) {
  keepLeft(event);
}

void CropPanel::mouseReleaseEvent(QMouseEvent* event) {
  keepLeft(event);
}

void CropPanel::mouseDoubleClickEvent(QMouseEvent* event) {
  keepLeft(event);
}

void CropPanel::followParent() {
  delete m_backdrop.data();
  if (!parentWidget()) return;
  m_backdrop = new PanelBackdrop(parentWidget());
  m_backdrop->setPalette(palette());
  m_backdrop->setOpacity(m_opacity);
  m_backdrop->setBody(geometry());
  m_backdrop->stackUnder(this);
  m_backdrop->setVisible(!isHidden() && testAttribute(Qt::WA_WState_ExplicitShowHide));
}

}  // namespace vantrel
