#pragma once

#include <array>
#include <cstdint>
#include <filesystem>
#include <stop_token>

#include "platform/image/bitmap.h"

namespace vantrel {

/// Writes `area` of `bitmap` as PNG to `path`, replacing what is there. Gray, Rgb and Indexed keep
/// layout, depth and profile; Cmyk, Lab and float pixels are converted through their profile to
/// RGB. No metadata is written but the colour profile. Stripes are compressed on all cores; `stop`
/// is checked between them. Throws Cancelled, std::system_error or std::bad_alloc, and may leave an
/// unfinished file behind then. Any thread.
void writePng(const Bitmap& bitmap, const PixelRect& area, const std::filesystem::path& path,
              const std::stop_token& stop);

/// Writes `area` of `bitmap` as JPEG with `quality` from 0 to 1 to `path`, replacing what is there.
/// Gray, Rgb and Cmyk stay so with their profile; deeper samples are rounded to 8 bits; Indexed
/// becomes Rgb, Lab is converted to sRGB. Transparent pixels are laid over `background`, an sRGB
/// colour with channels from 0 to 1: such a picture stays in its own space if that is Rgb, and
/// becomes sRGB otherwise. Throws as writePng does, and std::length_error for more than 65,500
/// pixels on a side.
void writeJpeg(const Bitmap& bitmap, const PixelRect& area, const std::filesystem::path& path,
               double quality, const std::array<double, 3>& background,
               const std::stop_token& stop);

}  // namespace vantrel
