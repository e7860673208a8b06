#pragma once

#include <gtest/gtest.h>

#include <array>

#include "editor/crop_window_commands.h"

namespace vantrel::testing {

/// What a window can show while its menus are looked at, as bits of a set.
enum Situation : unsigned {
  /// A review, which has no editor.
  inReview = 1,
  empty = 2,
  /// Pictures whose format is PNG or JPEG, the latter at a quality of 0.5.
  png = 4,
  jpeg = 8,
  /// Videos at 5 megabits per second.
  video = 16,
  hdr = 32,
  /// The same while something runs.
  emptyBusy = 64,
  jpegBusy = 128,
  videoBusy = 256,
};
inline constexpr std::array kSituations{inReview, empty,     png,      jpeg,     video,
                                        hdr,      emptyBusy, jpegBusy, videoBusy};
inline constexpr unsigned kEverywhere = 511;
inline constexpr unsigned kEditors = kEverywhere & ~inReview;
inline constexpr unsigned kImages = png | jpeg | jpegBusy;
inline constexpr unsigned kVideos = video | hdr;
/// Where a file is open and nothing runs. There is something to undo there, and to redo.
inline constexpr unsigned kEditable = png | jpeg | kVideos;

/// One item of the menus.
struct CommandRow {
  CropCommand command;
  const char* title;
  /// As on Linux.
  const char* key;
  /// Where it may be chosen.
  unsigned enabled;
  /// Where it is seen.
  unsigned visible = kEverywhere;
};

inline constexpr std::array kCommandRows{
    CommandRow{CropCommand::undo, "Undo", "Ctrl+Z", kEditable},
    CommandRow{CropCommand::redo, "Redo", "Ctrl+Shift+Z", kEditable},
    CommandRow{CropCommand::newWindow, "New Window", "Ctrl+N", kEverywhere},
    CommandRow{CropCommand::newTab, "New Tab", "Ctrl+T", kEditors},
    CommandRow{CropCommand::open, "Open…", "Ctrl+O", empty | kEditable},
    CommandRow{CropCommand::closeFile, "Close File", "Ctrl+Alt+W", kEditable},
    CommandRow{CropCommand::save, "Save…", "Ctrl+S", inReview},
    CommandRow{CropCommand::exportCrop, "Export Crop…", "Ctrl+Shift+E", kEditable},
    CommandRow{CropCommand::closeWindow, "Close Window", "Ctrl+W", kEverywhere},
    CommandRow{CropCommand::quit, "Quit", "Ctrl+Q", kEverywhere},
    CommandRow{CropCommand::zoomIn, "Zoom In", "Ctrl++", kEditable},
    CommandRow{CropCommand::zoomOut, "Zoom Out", "Ctrl+-", kEditable},
    CommandRow{CropCommand::zoomToFit, "Zoom to Fit", "Ctrl+0", kEditable},
    CommandRow{CropCommand::actualSize, "Actual Size", "Ctrl+1", kEditable},
    CommandRow{CropCommand::preview, "Preview Crop", "Ctrl+P", kEditable},
    CommandRow{CropCommand::resetCrop, "Reset Crop", "", kEditable},
    CommandRow{CropCommand::format, "Format", "", png | jpeg, kImages},
    CommandRow{CropCommand::png, "PNG", "", png | jpeg, kImages},
    CommandRow{CropCommand::jpeg, "JPEG", "", png | jpeg, kImages},
    CommandRow{CropCommand::increaseQuality, "Increase Quality", "", jpeg, kImages},
    CommandRow{CropCommand::decreaseQuality, "Decrease Quality", "", jpeg, kImages},
    CommandRow{CropCommand::resetQuality, "Reset Quality", "", jpeg, kImages},
    CommandRow{CropCommand::codec, "Codec", "", kVideos, kEverywhere & ~kImages},
    CommandRow{CropCommand::h264, "H.264", "", video, kEverywhere & ~kImages},
    CommandRow{CropCommand::hevc, "HEVC", "", kVideos, kEverywhere & ~kImages},
    CommandRow{CropCommand::increaseBitrate, "Increase Bitrate", "", kVideos,
               kEverywhere & ~kImages},
    CommandRow{CropCommand::decreaseBitrate, "Decrease Bitrate", "", kVideos,
               kEverywhere & ~kImages},
    CommandRow{CropCommand::matchOriginalBitrate, "Match Original Bitrate", "", kVideos,
               kEverywhere & ~kImages},
};
/// The item whose title depends on more than the situation.
inline constexpr CommandRow kInspectorRow{CropCommand::inspector, "Hide Inspector", "Ctrl+Alt+I",
                                          kEditable};
static_assert(kCommandRows.size() + 1 == kCropCommands);

}  // namespace vantrel::testing
