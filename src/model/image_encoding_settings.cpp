#include "model/image_encoding_settings.h"

#include <QRgba64>
#include <algorithm>
#include <cmath>

namespace vantrel {
namespace {

// A QColor has 16 bits for each channel. Its channels as floats have only 24 bits of precision, so
// that a multiple of 1/255 would not come back as it went in.
constexpr double kChannelMaximum = 65535;

quint16 toChannel(double value) {
  const double inside = value > 0 ? std::min(value, 1.0) : 0.0;
  return static_cast<quint16>(std::round(inside * kChannelMaximum));
}

}  // namespace

ImageBackground::ImageBackground(const QColor& color) {
  if (!color.isValid()) return;
  const QRgba64 channels = color.rgba64();
  red = channels.red() / kChannelMaximum;
  green = channels.green() / kChannelMaximum;
  blue = channels.blue() / kChannelMaximum;
}

QColor ImageBackground::color() const {
  return QColor::fromRgba64(toChannel(red), toChannel(green), toChannel(blue));
}

QString ImageEncodingSettings::rawValue(Format format) {
  return format == Format::png ? QStringLiteral("PNG") : QStringLiteral("JPEG");
}

QString ImageEncodingSettings::fileExtension(Format format) {
  return format == Format::png ? QStringLiteral("png") : QStringLiteral("jpg");
}

}  // namespace vantrel
