#include "media/image_source.h"

#include <QCoreApplication>
#include <memory>
#include <string>
#include <system_error>
#include <utility>

#include "platform/desktop/file_error.h"
#include "platform/image/color_profile.h"
#include "platform/image/image_reader.h"

namespace vantrel {
namespace {

ContentType contentTypeOf(ImageType type) {
  switch (type) {
    case ImageType::Png:
      return ContentType::png();
    case ImageType::Jpeg:
      return ContentType::jpeg();
    case ImageType::Heic:
      return ContentType::heic();
    case ImageType::Heif:
      return ContentType::heif();
    case ImageType::Tiff:
      return ContentType::tiff();
  }
  return {};
}

Bitmap decode(ImageReader& reader, const std::stop_token& stop) {
  try {
    return reader.decode(stop);
  } catch (const ImageDamaged&) {
    throw ImageError(ImageError::unreadable);
  }
}

int64_t sizeOf(const std::filesystem::path& path) {
  std::error_code error;
  const std::uintmax_t size = std::filesystem::file_size(path, error);
  if (error) throw fileError(path, FileAction::Read, error);
  return static_cast<int64_t>(size);
}

std::optional<QString> profileNameOf(const Bitmap& bitmap) {
  const std::optional<std::string> name = colorProfileName(bitmap);
  return name ? std::optional(QString::fromStdString(*name)) : std::nullopt;
}

}  // namespace

ImageSource ImageSource::load(const std::filesystem::path& path, const std::stop_token& stop) {
  const std::unique_ptr<ImageReader> reader = ImageReader::open(path);
  if (!reader) throw ImageError(ImageError::unsupported);
  if (reader->imageCount(stop) != 1) throw ImageError(ImageError::multipleImages);

  ImageSource source;
  source.image = decode(*reader, stop);
  source.type = contentTypeOf(reader->type());
  source.bytes = sizeOf(path);
  source.colorProfileName = profileNameOf(source.image);
  return source;
}

const std::vector<ContentType>& ImageSource::supportedTypes() {
  static const std::vector<ContentType> types = {ContentType::png(), ContentType::jpeg(),
                                                 ContentType::heic(), ContentType::heif(),
                                                 ContentType::tiff()};
  return types;
}

QString ImageSource::formatName() const {
  if (type == ContentType::jpeg()) return QStringLiteral("JPEG");
  if (type == ContentType::png()) return QStringLiteral("PNG");
  if (type == ContentType::tiff()) return QStringLiteral("TIFF");
  const QString extension = type.preferredFilenameExtension().toUpper();
  return extension.isEmpty() ? QCoreApplication::translate("ImageSource", "Image") : extension;
}

}  // namespace vantrel
