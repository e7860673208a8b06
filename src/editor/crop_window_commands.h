#pragma once

#include <QCoreApplication>
#include <QString>
#include <optional>

#include "editor/crop_window_actions.h"

namespace vantrel {

class EditHistory;

/// The items of the menus. `format` and `codec` are the names over their choices.
enum class CropCommand {
  undo,
  redo,
  newWindow,
  newTab,
  open,
  closeFile,
  save,
  exportCrop,
  closeWindow,
  quit,
  zoomIn,
  zoomOut,
  zoomToFit,
  actualSize,
  inspector,
  preview,
  resetCrop,
  format,
  png,
  jpeg,
  increaseQuality,
  decreaseQuality,
  resetQuality,
  codec,
  h264,
  hevc,
  increaseBitrate,
  decreaseBitrate,
  matchOriginalBitrate,
};
inline constexpr int kCropCommands = static_cast<int>(CropCommand::matchOriginalBitrate) + 1;

/// What the items of one menu bar are at this moment, and what they do, for the editor that they
/// belong to. Made anew whenever it is asked. Main thread.
struct CropWindowCommands {
  Q_DECLARE_TR_FUNCTIONS(CropWindowCommands)

 public:
  /// Both absent where there is no editor, as in the window of a review.
  std::optional<CropWindowActions> actions;
  EditHistory* history = nullptr;
  /// A text field has the keyboard.
  bool isEditingText = false;
  /// The window in front is that of a review.
  bool hasActiveReview = false;
  /// The editor is one of several in its window.
  bool isInTabs = false;

  [[nodiscard]] QString title(CropCommand command) const;
  /// Never where it is not visible.
  [[nodiscard]] bool isEnabled(CropCommand command) const;
  /// Of the choices of a format or a codec.
  [[nodiscard]] bool isChecked(CropCommand command) const;
  [[nodiscard]] bool isVisible(CropCommand command) const;

  /// What editor and history do for it; nothing where they are absent. Of the items that act on
  /// windows, and of "Save…", it knows nothing.
  void perform(CropCommand command) const;

 private:
  [[nodiscard]] bool passes(bool CropWindowActions::*test) const;
  [[nodiscard]] bool isEnabledEncoding(CropCommand command) const;
  void performEncoding(CropCommand command) const;
  void adjustQuality(double by) const;
  /// In megabits per second.
  void adjustBitrate(double by) const;
};

}  // namespace vantrel
