#pragma once

#include <QRectF>

namespace vantrel {

/// Where a picture of `picture` pixels lies in a view of size `view`: in the middle, as large as
/// fits. Empty when either is.
[[nodiscard]] QRectF fittedRect(const QSizeF& picture, const QSizeF& view);

}  // namespace vantrel
