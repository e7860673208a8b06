#include "canvas/crop_canvas_field.h"

#include <QKeyEvent>
#include <QLabel>

#include "controls/crop_number_field.h"
#include "controls/panel_text.h"
#include "controls/text_scale.h"

namespace vantrel {
namespace {

// Points.
constexpr int kFieldWidth = 62;
constexpr int kFieldHeight = 22;
constexpr int kSpacing = 4;
constexpr int kFieldTop = CropCanvasField::kHeight - CropPanel::kPadding - kFieldHeight;

/// The panel is of one size, and so is its text.
void fixFont(QWidget& widget, int points) {
  followText(widget, [&widget, points] {
    QFont font = widget.font();
    font.setPixelSize(points);
    widget.setFont(font);
  });
}

}  // namespace

CropCanvasField::CropCanvasField(EditHistory& history, const QString& title, QWidget* parent)
    : CropPanel(parent), m_field(new CropNumberField(history, title, this)) {
  setFixedSize(kWidth, kHeight);
  // The padding above is the caption's too, so that no font is cut off.
  QLabel* const caption = PanelText::caption(title, this);
  caption->setGeometry(kPadding, 0, kFieldWidth, kFieldTop - kSpacing);
  fixFont(*caption, PanelText::kCaptionSize);
  fixFont(*m_field, PanelText::kTextSize);
  caption->setAlignment(Qt::AlignLeading | Qt::AlignBottom);
  m_field->setGeometry(kPadding, kFieldTop, kFieldWidth, kFieldHeight);
  m_field->setAcceptDrops(false);  // A file dropped here is for the window.
}

void CropCanvasField::setEditingEnabled(bool enabled) {
  setAttribute(Qt::WA_TransparentForMouseEvents, !enabled);
  m_field->setFocusPolicy(enabled ? Qt::StrongFocus : Qt::NoFocus);
  if (!enabled) releaseFocus();
}

void CropCanvasField::setShown(bool shown) {
  if (!shown) releaseFocus();
  setVisible(shown);
}

// The arrows that are no command of the number are none of the crop beneath either.
void CropCanvasField::keyPressEvent(QKeyEvent* event) {
  switch (event->key()) {
    case Qt::Key_Left:
    case Qt::Key_Right:
    case Qt::Key_Up:
    case Qt::Key_Down:
      event->accept();
      return;
    default:
      CropPanel::keyPressEvent(event);
  }
}

void CropCanvasField::releaseFocus() {
  m_field->clearFocus();
  m_field->endEditing();
}

}  // namespace vantrel
