#include "review/image_review_view.h"

#include <QPainter>
#include <QVBoxLayout>
#include <algorithm>
#include <memory>

#include "controls/picture_preview.h"
#include "platform/image/image_reader.h"
#include "platform/image/scaled_renderer.h"
#include "review/export_information.h"
#include "review/fitted_rect.h"

namespace vantrel {
namespace {

// Points.
constexpr int kInformationPadding = 12;
constexpr QSize kMinimumSize{300, 200};

/// Decodes the file on the first call. The calls come one at a time.
PicturePreview::Render renderOf(const std::filesystem::path& file) {
  const auto decoded = std::make_shared<std::unique_ptr<ScaledRenderer>>();
  return [file, decoded](const QSize& size, const std::stop_token& stop) {
    std::unique_ptr<ScaledRenderer>& renderer = *decoded;
    if (!renderer) {
      const std::unique_ptr<ImageReader> reader = ImageReader::open(file);
      if (!reader) throw ImageDamaged();
      renderer = std::make_unique<ScaledRenderer>(reader->decode(stop));
    }
    QImage image(size, QImage::Format_RGBA8888_Premultiplied);
    renderer->render(size.width(), size.height(), image.bits(),
                     static_cast<size_t>(image.bytesPerLine()), stop);
    return image;
  };
}

}  // namespace

ImageReviewView::ImageReviewView(const std::filesystem::path& file, const ExportSummary& summary,
                                 QWidget* parent)
    : QWidget(parent), m_imageSize(summary.resolution), m_preview(new PicturePreview(this)) {
  setMinimumSize(kMinimumSize);
  setAccessibleName(tr("Exported image"));
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(kInformationPadding, kInformationPadding, kInformationPadding,
                             kInformationPadding);
  layout->addWidget(new ExportInformation(summary, this), 0, Qt::AlignLeft | Qt::AlignTop);
  layout->addStretch();
  connect(m_preview, &PicturePreview::imageChanged, this, qOverload<>(&QWidget::update));
  m_preview->setPicture(renderOf(file));
}

bool ImageReviewView::isImageShown() const {
  return !m_preview->image().isNull() && !m_preview->isRendering();
}

void ImageReviewView::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.fillRect(rect(), palette().window());
  // On whole device pixels, so that the rendering is shown pixel by pixel.
  const QTransform toDevice = painter.deviceTransform();
  const QRectF place = toDevice.mapRect(fittedRect(m_imageSize, size()));
  const QRect device(place.topLeft().toPoint(), place.size().toSize().expandedTo({1, 1}));
  m_preview->setSize(device.size().boundedTo(m_imageSize.toSize()));
  if (m_preview->image().isNull()) return;
  painter.setRenderHint(QPainter::SmoothPixmapTransform,
                        m_preview->image().size() != device.size());
  painter.drawImage(toDevice.inverted().mapRect(QRectF(device)), m_preview->image());
}

}  // namespace vantrel
