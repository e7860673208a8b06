#include "canvas/crop_canvas_fields.h"

#include <algorithm>
#include <cmath>

#include "controls/crop_number_field.h"

namespace vantrel {
namespace {

// Points.
constexpr double kDistance = 22;
constexpr double kVerticalDistance = 18;
/// A field farther away than any screen need not be told apart from one still farther.
constexpr double kFarAway = 1 << 20;

int wholePoint(double coordinate) {
  return qRound(std::clamp(coordinate, -kFarAway, kFarAway));
}

QString title(CropMargins::Edge edge) {
  switch (edge) {
    case CropMargins::Edge::left:
      return CropCanvasFields::tr("Left");
    case CropMargins::Edge::top:
      return CropCanvasFields::tr("Top");
    case CropMargins::Edge::right:
      return CropCanvasFields::tr("Right");
    case CropMargins::Edge::bottom:
      return CropCanvasFields::tr("Bottom");
  }
  return {};
}

}  // namespace

CropCanvasFields::CropCanvasFields(EditHistory& history, QWidget* overlay) : QObject(overlay) {
  for (const CropMargins::Edge edge : CropMargins::kEdges) {
    auto* const field = new CropCanvasField(history, title(edge), overlay);
    field->hide();
    connect(field->field(), &SelectingNumberField::valueEdited, this,
            [this, edge](int64_t value) { edit(edge, value); });
    m_fields.at(static_cast<size_t>(edge)) = field;
  }
}

CropCanvasFields::~CropCanvasFields() {
  for (const auto& field : m_fields)
    delete field.data();
}

QRectF CropCanvasFields::frame(CropMargins::Edge edge, const QRectF& selection) {
  constexpr double kWidth = CropCanvasField::kWidth, kHeight = CropCanvasField::kHeight;
  const QPointF middle = selection.center() - QPointF(kWidth / 2, kHeight / 2);
  switch (edge) {
    case CropMargins::Edge::left:
      return {selection.left() - kDistance - kWidth, middle.y(), kWidth, kHeight};
    case CropMargins::Edge::right:
      return {selection.right() + kDistance, middle.y(), kWidth, kHeight};
    case CropMargins::Edge::top:
      return {middle.x(), selection.top() - kVerticalDistance - kHeight, kWidth, kHeight};
    case CropMargins::Edge::bottom:
      return {middle.x(), selection.bottom() + kVerticalDistance, kWidth, kHeight};
  }
  return {};
}

CropCanvasField* CropCanvasFields::field(CropMargins::Edge edge) const {
  return m_fields.at(static_cast<size_t>(edge));
}

void CropCanvasFields::update(const CropFieldState& state, const QRectF& selection) {
  if (m_displayed == state) return;
  m_displayed = state;
  for (const CropMargins::Edge edge : CropMargins::kEdges) {
    field(edge)->field()->setValue(state.crop[edge]);
    const QPointF place = frame(edge, selection).topLeft();
    field(edge)->move(wholePoint(place.x()), wholePoint(place.y()));
  }
  showFields();
}

void CropCanvasFields::setOpacity(double opacity) {
  m_opacity = opacity;
  for (const CropMargins::Edge edge : CropMargins::kEdges)
    field(edge)->setOpacity(opacity);
  showFields();
}

void CropCanvasFields::setEditingEnabled(bool enabled) {
  for (const CropMargins::Edge edge : CropMargins::kEdges)
    field(edge)->setEditingEnabled(enabled);
}

// Where the crop stays as it is, `update` does nothing; the number is then given back here.
void CropCanvasFields::edit(CropMargins::Edge edge, int64_t value) {
  Q_EMIT marginEdited(edge, value);
  field(edge)->field()->setValue(m_displayed ? m_displayed->crop[edge] : 0);
}

void CropCanvasFields::showFields() {
  const bool shown = m_displayed && m_displayed->size.width() != 0 && m_opacity > 0;
  for (const CropMargins::Edge edge : CropMargins::kEdges)
    field(edge)->setShown(shown);
}

}  // namespace vantrel
