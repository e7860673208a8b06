#include "editor/crop_window_commands.h"

#include <algorithm>
#include <array>

#include "controls/crop_undo_routing.h"
#include "model/edit_history.h"

namespace vantrel {
namespace {

using Codec = EncodingSettings::Codec;
using Format = ImageEncodingSettings::Format;

constexpr double kQualityStep = 0.05;
/// Megabits per second; the bounds are those without an editor.
constexpr double kBitrateStep = 0.5, kLeastBitrate = 0.5, kMostBitrate = 40;

struct Title {
  const char* text;
  /// Of an item that then offers the way back.
  const char* whenOn = nullptr;
};

/// In the order of the enumeration.
constexpr std::array<Title, kCropCommands> kTitles{{
    {QT_TRANSLATE_NOOP("CropWindowCommands", "Undo")},
    {QT_TRANSLATE_NOOP("CropWindowCommands", "Redo")},
    {QT_TRANSLATE_NOOP("CropWindowCommands", "New Window")},
    {QT_TRANSLATE_NOOP("CropWindowCommands", "New Tab")},
    {QT_TRANSLATE_NOOP("CropWindowCommands", "Open…")},
    {QT_TRANSLATE_NOOP("CropWindowCommands", "Close File")},
    {QT_TRANSLATE_NOOP("CropWindowCommands", "Save…")},
    {QT_TRANSLATE_NOOP("CropWindowCommands", "Export Crop…")},
    {QT_TRANSLATE_NOOP("CropWindowCommands", "Close Window"),
     QT_TRANSLATE_NOOP("CropWindowCommands", "Close Tab")},
    {QT_TRANSLATE_NOOP("CropWindowCommands", "Quit")},
    {QT_TRANSLATE_NOOP("CropWindowCommands", "Zoom In")},
    {QT_TRANSLATE_NOOP("CropWindowCommands", "Zoom Out")},
    {QT_TRANSLATE_NOOP("CropWindowCommands", "Zoom to Fit")},
    {QT_TRANSLATE_NOOP("CropWindowCommands", "Actual Size")},
    {QT_TRANSLATE_NOOP("CropWindowCommands", "Show Inspector"),
     QT_TRANSLATE_NOOP("CropWindowCommands", "Hide Inspector")},
    {QT_TRANSLATE_NOOP("CropWindowCommands", "Preview Crop"),
     QT_TRANSLATE_NOOP("CropWindowCommands", "Exit Preview")},
    {QT_TRANSLATE_NOOP("CropWindowCommands", "Reset Crop")},
    {QT_TRANSLATE_NOOP("CropWindowCommands", "Format")},
    {"PNG"},
    {"JPEG"},
    {QT_TRANSLATE_NOOP("CropWindowCommands", "Increase Quality")},
    {QT_TRANSLATE_NOOP("CropWindowCommands", "Decrease Quality")},
    {QT_TRANSLATE_NOOP("CropWindowCommands", "Reset Quality")},
    {QT_TRANSLATE_NOOP("CropWindowCommands", "Codec")},
    {"H.264"},
    {"HEVC"},
    {QT_TRANSLATE_NOOP("CropWindowCommands", "Increase Bitrate")},
    {QT_TRANSLATE_NOOP("CropWindowCommands", "Decrease Bitrate")},
    {QT_TRANSLATE_NOOP("CropWindowCommands", "Match Original Bitrate")},
}};

/// What an editor offers for an item; null for what its history or nobody does.
CropWindowActions::Action CropWindowActions::*actionFor(CropCommand command) {
  switch (command) {
    case CropCommand::open:
      return &CropWindowActions::open;
    case CropCommand::closeFile:
      return &CropWindowActions::close;
    case CropCommand::exportCrop:
      return &CropWindowActions::exportMedia;
    case CropCommand::zoomIn:
      return &CropWindowActions::zoomIn;
    case CropCommand::zoomOut:
      return &CropWindowActions::zoomOut;
    case CropCommand::zoomToFit:
      return &CropWindowActions::fit;
    case CropCommand::actualSize:
      return &CropWindowActions::actualSize;
    case CropCommand::inspector:
      return &CropWindowActions::inspector;
    case CropCommand::preview:
      return &CropWindowActions::preview;
    case CropCommand::resetCrop:
      return &CropWindowActions::resetCrop;
    case CropCommand::matchOriginalBitrate:
      return &CropWindowActions::matchBitrate;
    default:
      return nullptr;
  }
}

bool isOfImages(CropCommand command) {
  return command >= CropCommand::format && command <= CropCommand::resetQuality;
}

bool isOfVideos(CropCommand command) {
  return command >= CropCommand::codec && command <= CropCommand::matchOriginalBitrate;
}

void setFormat(EditHistory& history, Format format) {
  ImageEncodingSettings settings = history.imageEncoding();
  settings.format = format;
  history.setImageEncoding(settings);
}

void setQuality(EditHistory& history, double quality) {
  ImageEncodingSettings settings = history.imageEncoding();
  settings.quality = quality;
  history.setImageEncoding(settings);
}

}  // namespace

QString CropWindowCommands::title(CropCommand command) const {
  const bool isOn = (command == CropCommand::closeWindow && isInTabs) ||
                    (command == CropCommand::inspector && passes(&CropWindowActions::inspecting)) ||
                    (command == CropCommand::preview && passes(&CropWindowActions::previewing));
  const Title& title = kTitles.at(static_cast<size_t>(command));
  return tr(isOn ? title.whenOn : title.text);
}

bool CropWindowCommands::passes(bool CropWindowActions::*test) const {
  return actions && (*actions).*test;
}

bool CropWindowCommands::isEnabled(CropCommand command) const {
  const bool canEdit = passes(&CropWindowActions::canEdit);
  switch (command) {
    case CropCommand::newWindow:
    case CropCommand::closeWindow:
    case CropCommand::quit:
      return true;
    case CropCommand::newTab:
      return actions.has_value();
    case CropCommand::open:
      return passes(&CropWindowActions::canOpen);
    case CropCommand::save:
      return hasActiveReview;
    case CropCommand::exportCrop:
      return passes(&CropWindowActions::canExport);
    case CropCommand::undo:
      return canEdit && (isEditingText || (history && history->canUndo()));
    case CropCommand::redo:
      return canEdit && (isEditingText || (history && history->canRedo()));
    default:
      return canEdit && isVisible(command) && isEnabledEncoding(command);
  }
}

bool CropWindowCommands::isEnabledEncoding(CropCommand command) const {
  const bool isJpeg = history && history->imageEncoding().format == Format::jpeg;
  const double bitrate = history ? history->bitrate() : 0;
  switch (command) {
    case CropCommand::increaseQuality:
      return isJpeg && history->imageEncoding().quality < 1;
    case CropCommand::decreaseQuality:
      return isJpeg && history->imageEncoding().quality > 0;
    case CropCommand::resetQuality:
      return isJpeg;
    case CropCommand::h264:
      return !passes(&CropWindowActions::isHDR);
    case CropCommand::increaseBitrate:
      return bitrate < (actions ? actions->bitrateRange.upper : kMostBitrate);
    case CropCommand::decreaseBitrate:
      return bitrate > (actions ? actions->bitrateRange.lower : kLeastBitrate);
    case CropCommand::matchOriginalBitrate:
      return passes(&CropWindowActions::canMatchBitrate);
    default:
      return true;
  }
}

bool CropWindowCommands::isChecked(CropCommand command) const {
  const Format format = history ? history->imageEncoding().format : Format::png;
  const Codec codec = history ? history->codec() : Codec::hevc;
  switch (command) {
    case CropCommand::png:
      return format == Format::png;
    case CropCommand::jpeg:
      return format == Format::jpeg;
    case CropCommand::h264:
      return codec == Codec::h264;
    case CropCommand::hevc:
      return codec == Codec::hevc;
    default:
      return false;
  }
}

bool CropWindowCommands::isVisible(CropCommand command) const {
  const bool isImage = passes(&CropWindowActions::isImage);
  return isImage ? !isOfVideos(command) : !isOfImages(command);
}

void CropWindowCommands::perform(CropCommand command) const {
  if (const auto action = actionFor(command)) {
    if (actions && (*actions).*action) ((*actions).*action)();
  } else if (!history) {
    return;
  } else if (command == CropCommand::undo || command == CropCommand::redo) {
    CropUndoRouting::perform(*history, command == CropCommand::redo);
  } else {
    performEncoding(command);
  }
}

void CropWindowCommands::performEncoding(CropCommand command) const {
  switch (command) {
    case CropCommand::png:
      return setFormat(*history, Format::png);
    case CropCommand::jpeg:
      return setFormat(*history, Format::jpeg);
    case CropCommand::increaseQuality:
      return adjustQuality(kQualityStep);
    case CropCommand::decreaseQuality:
      return adjustQuality(-kQualityStep);
    case CropCommand::resetQuality:
      return setQuality(*history, ImageEncodingSettings().quality);
    case CropCommand::h264:
      return history->setCodec(Codec::h264);
    case CropCommand::hevc:
      return history->setCodec(Codec::hevc);
    case CropCommand::increaseBitrate:
      return adjustBitrate(kBitrateStep);
    case CropCommand::decreaseBitrate:
      return adjustBitrate(-kBitrateStep);
    default:
      return;
  }
}

void CropWindowCommands::adjustQuality(double by) const {
  const double quality = history->imageEncoding().quality + by;
  setQuality(*history, std::min(1.0, std::max(0.0, quality)));
}

void CropWindowCommands::adjustBitrate(double by) const {
  if (!actions) return;
  // The upper bound comes last, so that it wins.
  const double bitrate = std::max(actions->bitrateRange.lower, history->bitrate() + by);
  history->setBitrate(std::min(actions->bitrateRange.upper, bitrate));
}

}  // namespace vantrel
