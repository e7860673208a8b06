#pragma once

#include "editor/crop_window_actions.h"
#include "inspector/inspector_source.h"

namespace vantrel {

class EditorState;

// What an editor offers to what stands around it, by its state at this moment. Main thread.

/// What menus do to `state` alone; opening, closing and exporting take more, and are left out.
/// `state` outlives the actions.
[[nodiscard]] CropWindowActions actionsOn(EditorState& state);

/// What the inspector shows, but for the colour of the canvas.
[[nodiscard]] InspectorSource inspectorSourceOf(const EditorState& state);

}  // namespace vantrel
