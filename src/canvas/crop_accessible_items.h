#pragma once

#include <QAccessible>

namespace vantrel {

class CropOverlayView;

/// The crop of an overlay as assistive tools meet it: a group with the eight handles, in their
/// order, and the fields, in that of their edges, as its children. Owned by who registers it; it
/// must go before the view does.
[[nodiscard]] QAccessibleInterface* makeCropInterface(CropOverlayView& view);

}  // namespace vantrel
