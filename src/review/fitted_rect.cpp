#include "review/fitted_rect.h"

namespace vantrel {

QRectF fittedRect(const QSizeF& picture, const QSizeF& view) {
  if (picture.isEmpty() || view.isEmpty()) return {};
  const QSizeF size = picture.scaled(view, Qt::KeepAspectRatio);
  return {QPointF((view.width() - size.width()) / 2, (view.height() - size.height()) / 2), size};
}

}  // namespace vantrel
