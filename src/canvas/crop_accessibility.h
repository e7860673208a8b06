#pragma once

#include "model/crop_margins.h"

/// The crop as assistive tools meet it: a group with the eight handles and the four fields as its
/// children. A handle in the middle of an edge has that edge's margin as its value; one at a corner
/// tells both of its margins. In preview none of them is to be seen. Main thread.
namespace vantrel {

class CropOverlayView;

namespace CropAccessibility {

/// Makes the overlays known; may be called again.
void install();
/// To be called before the view is gone.
void forget(CropOverlayView& view);

// What has happened to an overlay; free of cost while nobody listens.

void announceCrop(CropOverlayView& view, const CropMargins& before);
/// Crop and handles lie elsewhere on the screen.
void announcePlaces(CropOverlayView& view);
/// The crop or another handle has the keyboard.
void announceFocus(CropOverlayView& view);
/// Crop and handles have come or gone.
void announceShown(CropOverlayView& view);

}  // namespace CropAccessibility
}  // namespace vantrel
