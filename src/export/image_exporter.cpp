#include "export/image_exporter.h"

#include <array>
#include <cmath>
#include <exception>

#include "base/cancelled.h"
#include "media/image_error.h"
#include "platform/image/image_writer.h"

namespace vantrel {
namespace {

bool isWhole(double value) {
  return std::floor(value) == value;
}

// The tests are written so that what is not a number fails them.
bool isLegal(const QRectF& crop, const Bitmap& image) {
  if (!(crop.width() >= 1) || !(crop.height() >= 1)) return false;
  if (!isWhole(crop.x()) || !isWhole(crop.y())) return false;
  if (!isWhole(crop.width()) || !isWhole(crop.height())) return false;
  return crop.x() >= 0 && crop.y() >= 0 &&
         crop.x() + crop.width() <= static_cast<double>(image.width()) &&
         crop.y() + crop.height() <= static_cast<double>(image.height());
}

PixelRect pixelsOf(const QRectF& crop) {
  return {static_cast<int64_t>(crop.x()), static_cast<int64_t>(crop.y()),
          static_cast<int64_t>(crop.width()), static_cast<int64_t>(crop.height())};
}

void encode(const Bitmap& image, const PixelRect& area, const std::filesystem::path& destination,
            const ImageEncodingSettings& settings, const std::stop_token& stop) {
  switch (settings.format) {
    case ImageEncodingSettings::Format::png:
      writePng(image, area, destination, stop);
      return;
    case ImageEncodingSettings::Format::jpeg:
      const ImageBackground& background = settings.background;
      writeJpeg(image, area, destination, settings.quality,
                {background.red, background.green, background.blue}, stop);
      return;
  }
}

}  // namespace

void ImageExporter::write(const ImageSource& source, const std::filesystem::path& destination,
                          const QRectF& crop, const ImageEncodingSettings& settings,
                          const std::stop_token& stop) {
  throwIfCancelled(stop);
  if (!isLegal(crop, source.image)) throw ImageError(ImageError::invalidCrop);
  try {
    encode(source.image, pixelsOf(crop), destination, settings, stop);
  } catch (const Cancelled&) {
    throw;
  } catch (const std::exception&) {
    throw ImageError(ImageError::encodingFailed);
  }
  throwIfCancelled(stop);
}

}  // namespace vantrel
