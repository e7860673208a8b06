#include "inspector/crop_section.h"

#include <QGridLayout>
#include <QLabel>
#include <QPainter>
#include <algorithm>

#include "controls/crop_dimension_field.h"
#include "controls/crop_number_field.h"
#include "controls/panel_text.h"
#include "model/edit_history.h"

namespace vantrel {
namespace {

// Points.
constexpr int kSpacing = 8;
constexpr int kTitleSpacing = 4;
constexpr int kGroupSpacing = 3;
constexpr int kFieldHeight = 22;
constexpr int kCenterWidth = 132;
constexpr double kBoxRadius = 8;

/// The frame around the output's dimensions.
class DimensionBox final : public QWidget {
 public:
  using QWidget::QWidget;

 protected:
  void paintEvent(QPaintEvent* /*event*/) override {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QColor fill = palette().color(QPalette::WindowText);
    fill.setAlphaF(0.035F);
    painter.setBrush(fill);
    painter.setPen(palette().color(QPalette::Mid));
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), kBoxRadius, kBoxRadius);
  }
};

/// A caption over a field.
QWidget* titled(const QString& title, QWidget* field, int spacing, QWidget* parent) {
  auto* group = new QWidget(parent);
  auto* layout = new QVBoxLayout(group);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(spacing);
  layout->addWidget(PanelText::caption(title, group));
  layout->addWidget(field);
  return group;
}

}  // namespace

CropSection::CropSection(EditHistory& history, QWidget* parent)
    : QWidget(parent), m_history(history) {
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(kSpacing);

  auto* header = new QHBoxLayout;
  m_outputSize = PanelText::caption({}, this);
  header->addWidget(PanelText::title(tr("Crop"), this), 1);
  header->addWidget(m_outputSize);
  layout->addLayout(header);

  auto* cross = new QGridLayout;
  cross->setSpacing(kSpacing);
  cross->setColumnStretch(0, 1);
  cross->setColumnStretch(2, 1);
  cross->addWidget(makeMargin(CropMargins::Edge::top, tr("Top")), 0, 1);
  cross->addWidget(makeMargin(CropMargins::Edge::left, tr("Left")), 1, 0, Qt::AlignVCenter);
  cross->addWidget(makeDimensions(), 1, 1);
  cross->addWidget(makeMargin(CropMargins::Edge::right, tr("Right")), 1, 2, Qt::AlignVCenter);
  cross->addWidget(makeMargin(CropMargins::Edge::bottom, tr("Bottom")), 2, 1);
  layout->addLayout(cross);
}

CropNumberField* CropSection::marginField(CropMargins::Edge edge) const {
  return m_margins.at(static_cast<size_t>(edge));
}

QWidget* CropSection::makeMargin(CropMargins::Edge edge, const QString& title) {
  auto* field = new CropNumberField(m_history, title, this);
  field->setFixedHeight(kFieldHeight);
  field->setAcceptDrops(false);  // A file dropped here is for the window.
  field->setMinimumWidth(0);
  field->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
  connect(field, &SelectingNumberField::valueEdited, this,
          [this, edge](int64_t margin) { setMargin(edge, margin); });
  m_margins.at(static_cast<size_t>(edge)) = field;
  return titled(title, field, kTitleSpacing, this);
}

QWidget* CropSection::makeDimensions() {
  auto* box = new DimensionBox(this);
  box->setFixedWidth(kCenterWidth);
  auto* layout = new QVBoxLayout(box);
  layout->setContentsMargins(kSpacing, kSpacing, kSpacing, kSpacing);
  layout->setSpacing(kSpacing);
  m_width = makeDimension(true, tr("Width"));
  m_height = makeDimension(false, tr("Height"));
  layout->addWidget(titled(tr("Width"), m_width, kGroupSpacing, box));
  layout->addWidget(titled(tr("Height"), m_height, kGroupSpacing, box));
  return box;
}

CropDimensionField* CropSection::makeDimension(bool horizontal, const QString& title) {
  auto* field = new CropDimensionField(m_history, title, this);
  field->setFixedHeight(kFieldHeight);
  field->setAcceptDrops(false);  // A file dropped here is for the window.
  connect(field, &SelectingNumberField::valueEdited, this,
          [this, horizontal](int64_t length) { setDimension(horizontal, length); });
  return field;
}

void CropSection::setMargin(CropMargins::Edge edge, int64_t margin) {
  CropMargins crop = m_history.crop();
  crop.set(edge, margin, m_sourceSize, m_history.pixelStep());
  m_history.setCrop(crop);
  marginField(edge)->setValue(crop[edge]);
}

void CropSection::setDimension(bool horizontal, int64_t length) {
  m_history.resizeCrop(horizontal ? length : outputWidth(), horizontal ? outputHeight() : length,
                       m_sourceSize);
  m_width->setValue(outputWidth());
  m_height->setValue(outputHeight());
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
                                      : QStringLiteral("— × —"));
  for (const CropMargins::Edge edge : CropMargins::kEdges) {
    marginField(edge)->setShowsPlaceholder(!source.loaded);
    marginField(edge)->setValue(m_history.crop()[edge]);
  }
  for (CropDimensionField* field : {m_width, m_height}) {
    const bool horizontal = field == m_width;
    field->setShowsPlaceholder(!source.loaded);
    field->setMaximum(
        static_cast<int64_t>(horizontal ? m_sourceSize.width() : m_sourceSize.height()));
    field->setValue(horizontal ? outputWidth() : outputHeight());
  }
}

}  // namespace vantrel
