#pragma once

#include <functional>

#include "model/encoding_settings.h"

namespace vantrel {

/// What one editor offers to the menus, and which of it is allowed at the moment. Main thread.
struct CropWindowActions {
  using Action = std::function<void()>;

  /// Shows the open panel.
  Action open;
  /// Closes the open file, not the window.
  Action close;
  Action exportMedia;
  Action fit;
  Action actualSize;
  Action zoomIn;
  Action zoomOut;
  /// Flips the preview.
  Action preview;
  /// Flips the inspector.
  Action inspector;
  /// The full frame, as one undoable edit.
  Action resetCrop;
  /// Sets the bitrate to the source's.
  Action matchBitrate;

  bool canOpen = false;
  bool canExport = false;
  /// A file is open and nothing runs.
  bool canEdit = false;
  /// A video is open and nothing runs.
  bool canMatchBitrate = false;
  bool isImage = false;
  bool isHDR = false;
  BitrateRange bitrateRange;
  bool previewing = false;
  /// The wish, also while no file is open and the inspector hidden.
  bool inspecting = false;
};

}  // namespace vantrel
