#include "inspector/crop_section.h"

#include <QGridLayout>
#include <QLabel>
#include <QPainter>

#include "controls/crop_dimension_field.h"
#include "controls/crop_number_field.h"
#include "controls/crop_reset_button.h"
#include "controls/look_palette.h"
#include "controls/panel_text.h"
#include "controls/pixel_stepper.h"
#include "controls/plate.h"
#include "controls/text_scale.h"
#include "inspector/panel_numbers.h"
#include "model/edit_history.h"

namespace vantrel {
namespace {

// Points.
constexpr int kTitleSpacing = 4;
constexpr int kGroupSpacing = 3;
constexpr int kStepperSpacing = 4;
constexpr int kFieldHeight = 22;
constexpr int kCenterWidth = 132;
constexpr double kBoxRadius = 8;

constexpr float kBoxFill = 0.035F;

/// The frame around the output's dimensions.
class DimensionBox final : public QWidget {
 public:
  using QWidget::QWidget;

 protected:
  void paintEvent(QPaintEvent* /*event*/) override {
    QPainter painter(this);
    if (!isEnabled()) painter.setOpacity(kDisabledOpacity);
    QColor fill = palette().color(QPalette::Active, QPalette::WindowText);
    fill.setAlphaF(kBoxFill);
    drawPlate(&painter, rect(), kBoxRadius, fill, palette().color(QPalette::Active, QPalette::Mid),
              1);
  }
};

}  // namespace

CropSection::CropSection(EditHistory& history, QWidget* parent)
    : CropInspectorSection(tr("Crop"), parent),
      m_history(history),
      m_outputSize(PanelText::caption({}, this)),
      m_reset(new CropResetButton(tr("Reset Crop"), this)) {
  header()->addWidget(m_outputSize);
  header()->addWidget(m_reset);
  rows()->addLayout(makeCross());
  connect(m_reset, &QToolButton::clicked, this, &CropSection::resetCrop);
}

QLayout* CropSection::makeCross() {
  auto* cross = new QGridLayout;
  followText(*this, [cross] { cross->setContentsMargins(0, 0, CropResetButton::overhang(), 0); });
  cross->setSpacing(kSpacing);
  cross->setColumnStretch(0, 1);
  cross->setColumnStretch(2, 1);
  cross->addWidget(makeMargin(CropMargins::Edge::top, tr("Top")), 0, 1);
  cross->addWidget(makeMargin(CropMargins::Edge::left, tr("Left")), 1, 0, Qt::AlignVCenter);
  cross->addWidget(makeDimensions(), 1, 1);
  cross->addWidget(makeMargin(CropMargins::Edge::right, tr("Right")), 1, 2, Qt::AlignVCenter);
  cross->addWidget(makeMargin(CropMargins::Edge::bottom, tr("Bottom")), 2, 1);
  return cross;
}

CropNumberField* CropSection::marginField(CropMargins::Edge edge) const {
  return m_margins.at(static_cast<size_t>(edge));
}

QWidget* CropSection::makeMargin(CropMargins::Edge edge, const QString& title) {
  auto* field = new CropNumberField(m_history, title, this);
  m_margins.at(static_cast<size_t>(edge)) = field;
  return titled(
      title, kTitleSpacing, field, [this, edge] { return m_history.crop()[edge]; },
      [this, edge](int64_t margin) { setMargin(edge, margin); });
}

QWidget* CropSection::makeDimensions() {
  auto* box = new DimensionBox(this);
  followText(*box, [box] { box->setFixedWidth(scaledForText(kCenterWidth)); });
  auto* layout = new QVBoxLayout(box);
  layout->setContentsMargins(kSpacing, kSpacing, kSpacing, kSpacing);
  layout->setSpacing(kSpacing);
  layout->addWidget(makeDimension(true, tr("Width")));
  layout->addWidget(makeDimension(false, tr("Height")));
  return box;
}

QWidget* CropSection::makeDimension(bool horizontal, const QString& title) {
  auto* field = new CropDimensionField(m_history, title, this);
  (horizontal ? m_width : m_height) = field;
  return titled(
      title, kGroupSpacing, field,
      [this, horizontal] { return horizontal ? outputWidth() : outputHeight(); },
      [this, horizontal](int64_t length) { setDimension(horizontal, length); });
}

QWidget* CropSection::titled(const QString& title, int spacing, SelectingNumberField* field,
                             const Reader& read, const Writer& write) {
  auto* group = new QWidget(this);
  auto* layout = new QGridLayout(group);
  layout->setContentsMargins({});
  layout->setHorizontalSpacing(kStepperSpacing);
  layout->setVerticalSpacing(spacing);
  auto* stepper = new PixelStepper(title, group);
  layout->addWidget(PanelText::caption(title, group), 0, 0, 1, 2);
  layout->addWidget(field, 1, 0);
  layout->addWidget(stepper, 1, 1);

  followText(*field, [field] { field->setFixedHeight(scaledForText(kFieldHeight)); });
  field->setAcceptDrops(false);  // A file dropped here is for the window.
  field->setMinimumWidth(0);
  field->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
  connect(field, &SelectingNumberField::valueEdited, this, write);
  connect(stepper, &PixelStepper::stepped, this, [this, read, write](int direction) {
    write(read() + direction * m_history.pixelStep());
  });
  return group;
}

void CropSection::setMargin(CropMargins::Edge edge, int64_t margin) {
  CropMargins crop = m_history.crop();
  crop.set(edge, margin, m_sourceSize, m_history.pixelStep());
  m_history.setCrop(crop);
  showCrop();
}

void CropSection::setDimension(bool horizontal, int64_t length) {
  m_history.resizeCrop(horizontal ? length : outputWidth(), horizontal ? outputHeight() : length,
                       m_sourceSize);
  showCrop();
}

// At once after an edit from here: the next key may lead into a field, which then keeps its text.
void CropSection::showCrop() {
  for (const CropMargins::Edge edge : CropMargins::kEdges)
    marginField(edge)->setValue(m_history.crop()[edge]);
  m_width->setValue(outputWidth());
  m_height->setValue(outputHeight());
}

void CropSection::resetCrop() {
  m_history.setCrop(CropMargins::fullImage(m_sourceSize, m_history.pixelStep()));
}

int64_t CropSection::outputWidth() const {
  const CropMargins& crop = m_history.crop();
  return static_cast<int64_t>(m_sourceSize.width()) - crop.left - crop.right;
}

int64_t CropSection::outputHeight() const {
  const CropMargins& crop = m_history.crop();
  return static_cast<int64_t>(m_sourceSize.height()) - crop.top - crop.bottom;
}

void CropSection::setSource(const InspectorSource& source) {
  m_sourceSize = source.sourceSize;
  setEnabled(source.loaded && !source.busy);
  m_outputSize->setText(source.loaded ? PanelText::pixelSize(outputWidth(), outputHeight()) +
                                            QStringLiteral(" px")
                                      : PanelNumbers::kNoSize);
  for (SelectingNumberField* field : findChildren<SelectingNumberField*>())
    field->setShowsPlaceholder(!source.loaded);
  m_width->setMaximum(static_cast<int64_t>(m_sourceSize.width()));
  m_height->setMaximum(static_cast<int64_t>(m_sourceSize.height()));
  showCrop();
}

}  // namespace vantrel
