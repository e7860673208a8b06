#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <stop_token>
#include <string>

#include "platform/image/bitmap.h"

namespace vantrel {

/// What a decoder recognised in a file, whatever the file is called.
enum class ImageType { Png, Jpeg, Heic, Heif, Tiff };

/// The file is of a known type but its picture cannot be decoded: damage, a size over the limit, or
/// a variant that its codec does not read.
class ImageDamaged final : public std::exception {
 public:
  [[nodiscard]] const char* what() const noexcept override {
    return "The picture cannot be decoded";
  }
};

/// A file opened for decoding. One thread at a time.
class ImageReader {
 public:
  virtual ~ImageReader() = default;
  ImageReader(const ImageReader&) = delete;
  ImageReader& operator=(const ImageReader&) = delete;

  /// Opens a regular file and recognises its type by its content. Absent when the file cannot be
  /// opened, is not a regular file, or holds none of the types.
  [[nodiscard]] static std::unique_ptr<ImageReader> open(const std::filesystem::path& path);

  [[nodiscard]] virtual ImageType type() const = 0;

  /// Pictures in the file: frames of an animation, pages, top-level images. Reduced copies and
  /// masks of a page are not pictures. 0 when the file names none; one that is damaged counts.
  /// Throws Cancelled.
  [[nodiscard]] virtual int imageCount(const std::stop_token& stop) = 0;

  /// Decodes the first picture, turned upright. Throws ImageDamaged, Cancelled or std::bad_alloc;
  /// memory is taken only after the size has been checked.
  [[nodiscard]] virtual Bitmap decode(const std::stop_token& stop) = 0;

 protected:
  ImageReader() = default;
};

}  // namespace vantrel
