#pragma once

#include <QRectF>
#include <QSizeF>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <span>
#include <stdexcept>

#include "model/crop_margins.h"
#include "model/encoding_settings.h"
#include "model/image_encoding_settings.h"

namespace vantrel {

/// What is wrong with a command line, for the person who typed it.
class WrongUsage final : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// The command line of crop-once. What was not given is absent, and for the program to choose.
struct CropOnceOptions {
  std::filesystem::path source, destination;
  /// Source pixels, as typed: not yet known to be legal.
  std::optional<int64_t> left, top, right, bottom;
  std::optional<EncodingSettings::Codec> codec;
  /// Within the limits of EncodingSettings.
  std::optional<double> megabitsPerSecond;
  std::optional<ImageEncodingSettings::Format> format;
  /// Finite.
  std::optional<double> quality;
  std::optional<ImageBackground> background;
  bool progress = false;

  /// Reads the arguments that follow the program's name. Every one must be known, given once and
  /// whole. Throws WrongUsage.
  [[nodiscard]] static CropOnceOptions parse(std::span<const char* const> arguments);

  /// The typed margins as a crop of a picture of this size; an axis without any keeps all of the
  /// picture but what `multiple`, the pixel step of its output, cuts off. Absent when a margin is
  /// negative or nothing is left; nothing is moved to make them fit, nor to keep the step.
  [[nodiscard]] std::optional<QRectF> crop(const QSizeF& size, int64_t multiple) const;

  /// What the program takes, in a few lines.
  [[nodiscard]] static const char* usage();
};

}  // namespace vantrel
