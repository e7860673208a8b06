#include "inspector/inspector_view.h"

#include <QPainter>
#include <QVBoxLayout>

#include "controls/crop_reset_button.h"
#include "controls/device_pixels.h"
#include "controls/text_scale.h"
#include "inspector/crop_canvas_section.h"
#include "inspector/crop_encoding_section.h"
#include "inspector/crop_export_footer.h"
#include "inspector/crop_section.h"
#include "inspector/image_encoding_section.h"
#include "inspector/inspector_scroll_area.h"
#include "inspector/original_section.h"
#include "model/edit_history.h"

namespace vantrel {
namespace {

// Points.
constexpr int kPadding = 16;
constexpr int kSectionSpacing = 20;

/// A line of one point between areas.
class Hairline final : public QWidget {
 public:
  explicit Hairline(QWidget* parent) : QWidget(parent) { setFixedHeight(1); }

 protected:
  void paintEvent(QPaintEvent* /*event*/) override {
    QPainter painter(this);
    drawHairline(painter, rect(), palette().color(QPalette::Midlight));
  }
};

CropExportFooter::Output outputOf(const EditHistory& history, const InspectorSource& source) {
  const CropMargins& crop = history.crop();
  return {source.canExport, source.loaded,
          static_cast<int64_t>(source.sourceSize.width()) - crop.left - crop.right,
          static_cast<int64_t>(source.sourceSize.height()) - crop.top - crop.bottom,
          source.imageSource ? ImageEncodingSettings::rawValue(history.imageEncoding().format)
                             : EncodingSettings::rawValue(history.codec())};
}

}  // namespace

InspectorView::InspectorView(EditHistory& history, const CropExportState& exportState,
                             const QColor& accent, QWidget* parent)
    : QWidget(parent), m_history(history) {
  followText(*this, [this] { setFixedWidth(scaledForText(kWidth)); });
  setAttribute(Qt::WA_OpaquePaintEvent);
  auto* scroll = new InspectorScrollArea(this);
  scroll->setWidget(makeSections());
  scroll->widget()->setAutoFillBackground(false);

  // After the sections, for the keyboard comes to it after their fields.
  m_footer = new CropExportFooter(exportState, accent, this);
  connect(m_footer, &CropExportFooter::exportRequested, this, &InspectorView::exportRequested);
  connect(m_footer, &CropExportFooter::cancelRequested, this, &InspectorView::cancelRequested);

  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(1, 0, 0, 0);
  layout->setSpacing(0);
  layout->addWidget(scroll, 1);
  layout->addWidget(new Hairline(this));
  layout->addWidget(m_footer);
}

QWidget* InspectorView::makeSections() {
  auto* sections = new QWidget(this);
  auto* layout = new QVBoxLayout(sections);
  followText(*this, [layout] {
    layout->setContentsMargins(kPadding, kPadding, kPadding - CropResetButton::overhang(),
                               kPadding);
  });
  layout->setSpacing(kSectionSpacing);
  layout->addWidget(m_original = new OriginalSection(sections));
  layout->addWidget(m_crop = new CropSection(m_history, sections));
  layout->addWidget(m_videoEncoding = new CropEncodingSection(m_history, sections));
  layout->addWidget(m_imageEncoding = new ImageEncodingSection(m_history, sections));
  layout->addWidget(m_canvas = new CropCanvasSection(sections));
  layout->addStretch();
  connect(m_canvas, &CropCanvasSection::colorChanged, this, &InspectorView::canvasColorChanged);
  return sections;
}

void InspectorView::setSource(const InspectorSource& source) {
  m_original->setSource(source);
  m_crop->setSource(source);
  m_videoEncoding->setSource(source);
  m_imageEncoding->setSource(source);
  m_videoEncoding->setVisible(!source.imageSource);
  m_imageEncoding->setVisible(source.imageSource.has_value());
  m_canvas->setColor(source.canvasColor);
  m_footer->setOutput(outputOf(m_history, source));
}

void InspectorView::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.fillRect(rect(), palette().window());
  drawHairline(painter, QRect(0, 0, 1, height()), palette().color(QPalette::Midlight));
}

}  // namespace vantrel
