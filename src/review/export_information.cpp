#include "review/export_information.h"

#include <QFontMetricsF>
#include <QPainter>
#include <cmath>

#include "controls/text_scale.h"

namespace vantrel {
namespace {

// Points.
constexpr int kHorizontalPadding = 10;
constexpr int kVerticalPadding = 6;
constexpr double kRadius = 6;
constexpr int kCaptionPixels = 11;
constexpr float kBackgroundOpacity = 0.6F;

}  // namespace

ExportInformation::ExportInformation(const ExportSummary& summary, QWidget* parent)
    : QWidget(parent), m_description(summary.description()) {
  setAttribute(Qt::WA_TransparentForMouseEvents);
  setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Fixed);
  scaleFont(*this, kCaptionPixels);
  setAccessibleName(m_description);
}

QSize ExportInformation::sizeHint() const {
  const QFontMetricsF metrics(font());
  return {static_cast<int>(std::ceil(metrics.horizontalAdvance(m_description))) +
              2 * kHorizontalPadding,
          static_cast<int>(std::ceil(metrics.height())) + 2 * kVerticalPadding};
}

QSize ExportInformation::minimumSizeHint() const {
  return {2 * kHorizontalPadding, sizeHint().height()};
}

void ExportInformation::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  painter.setBrush(QColor::fromRgbF(0, 0, 0, kBackgroundOpacity));
  painter.drawRoundedRect(QRectF(rect()), kRadius, kRadius);
  painter.setPen(Qt::white);
  const QRect line = rect().adjusted(kHorizontalPadding, 0, -kHorizontalPadding, 0);
  // Text laid out for a fractional display can be wider than its metrics; what fits by these is
  // neither cut short nor clipped.
  const bool fits = QFontMetricsF(font()).horizontalAdvance(m_description) <= line.width();
  painter.drawText(
      line, Qt::AlignVCenter | Qt::AlignLeft | Qt::TextDontClip,
      fits ? m_description : fontMetrics().elidedText(m_description, Qt::ElideRight, line.width()));
}

}  // namespace vantrel
