#include "canvas/crop_accessibility.h"

#include <QAccessible>
#include <algorithm>
#include <optional>

#include "canvas/crop_accessible_items.h"
#include "canvas/crop_overlay_view.h"

namespace vantrel {
namespace {

QAccessibleInterface* makeInterface(const QString& className, QObject* object) {
  if (className != QLatin1String(CropOverlayView::staticMetaObject.className())) return nullptr;
  auto* const view = qobject_cast<CropOverlayView*>(object);
  return view ? makeCropInterface(*view) : nullptr;
}

/// For the whole crop when no child is named.
void announce(CropOverlayView& view, QAccessible::Event type,
              const std::optional<CropHandle>& handle = {}) {
  QAccessibleEvent event(&view, type);
  if (handle) event.setChild(static_cast<int>(*handle));
  QAccessible::updateAccessibility(&event);
}

void announceHandle(CropOverlayView& view, CropHandle handle, const CropMargins& before) {
  const CropMargins& crop = view.overlay().crop();
  const auto& edges = CropOverlayGeometry::edgesOf(handle);
  if (std::all_of(edges.begin(), edges.end(),
                  [&](CropMargins::Edge edge) { return crop[edge] == before[edge]; })) {
    return;
  }
  if (crop[edges.front()] != before[edges.front()]) {
    QAccessibleValueChangeEvent event(&view, static_cast<double>(crop[edges.front()]));
    event.setChild(static_cast<int>(handle));
    QAccessible::updateAccessibility(&event);
  }
  announce(view, QAccessible::DescriptionChanged, handle);
}

}  // namespace

void CropAccessibility::install() {
  [[maybe_unused]] static const bool installed = [] {
    QAccessible::installFactory(makeInterface);
    return true;
  }();
}

void CropAccessibility::forget(CropOverlayView& view) {
  QAccessibleInterface* const interface = QAccessible::queryAccessibleInterface(&view);
  if (interface) QAccessible::deleteAccessibleInterface(QAccessible::uniqueId(interface));
}

void CropAccessibility::announceCrop(CropOverlayView& view, const CropMargins& before) {
  if (!QAccessible::isActive() || view.overlay().crop() == before) return;
  announce(view, QAccessible::DescriptionChanged);
  for (const CropHandle handle : kCropHandles)
    announceHandle(view, handle, before);
  announcePlaces(view);
}

void CropAccessibility::announcePlaces(CropOverlayView& view) {
  if (!QAccessible::isActive()) return;
  announce(view, QAccessible::LocationChanged);
  for (const CropHandle handle : kCropHandles) {
    announce(view, QAccessible::LocationChanged, handle);
  }
}

void CropAccessibility::announceFocus(CropOverlayView& view) {
  if (QAccessible::isActive() && view.hasFocus()) {
    announce(view, QAccessible::Focus, view.focusedHandle());
  }
}

void CropAccessibility::announceShown(CropOverlayView& view) {
  if (!QAccessible::isActive()) return;
  QAccessible::State changed;
  changed.invisible = true;
  changed.focusable = true;
  QAccessibleStateChangeEvent whole(&view, changed);
  QAccessible::updateAccessibility(&whole);
  for (const CropHandle handle : kCropHandles) {
    QAccessibleStateChangeEvent event(&view, changed);
    event.setChild(static_cast<int>(handle));
    QAccessible::updateAccessibility(&event);
  }
}

}  // namespace vantrel
