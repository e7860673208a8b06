#pragma once

#include <QColor>
#include <QString>
#include <array>

namespace vantrel {

/// What transparent pixels become in a JPEG: an opaque sRGB colour, channels from 0 to 1.
struct ImageBackground {
  double red = 1, green = 1, blue = 1;

  ImageBackground() = default;
  ImageBackground(double r, double g, double b) : red(r), green(g), blue(b) {}
  /// The colour converted to sRGB, its alpha dropped; white if it is not a colour.
  explicit ImageBackground(const QColor& color);

  [[nodiscard]] QColor color() const;

  friend bool operator==(const ImageBackground&, const ImageBackground&) = default;
};

/// How a cropped still image is encoded.
struct ImageEncodingSettings {
  enum class Format { png, jpeg };
  static constexpr std::array kFormats{Format::png, Format::jpeg};

  Format format = Format::png;
  /// From 0 to 1; only read for JPEG.
  double quality = 0.9;
  ImageBackground background;

  /// "PNG" or "JPEG": the label shown, the same in every language.
  [[nodiscard]] static QString rawValue(Format format);
  /// "png" or "jpg".
  [[nodiscard]] static QString fileExtension(Format format);

  friend bool operator==(const ImageEncodingSettings&, const ImageEncodingSettings&) = default;
};

}  // namespace vantrel
