#pragma once

#include <QString>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <stop_token>
#include <vector>

#include "media/image_error.h"
#include "platform/desktop/content_type.h"
#include "platform/image/bitmap.h"

namespace vantrel {

/// One opened still image: a decoded, upright bitmap with the facts that the program shows. A
/// value; copies share the pixels. Every crop coordinate refers to the grid of `image`.
struct ImageSource {
  Bitmap image;
  /// What the decoder recognised, not what the file is called.
  ContentType type;
  /// Size of the file in bytes; 0 when not known.
  int64_t bytes = 0;
  std::optional<QString> colorProfileName;

  /// Decodes the whole file before it returns; blocking, any thread. Throws ImageError, Cancelled,
  /// or std::system_error when the file's size cannot be read.
  [[nodiscard]] static ImageSource load(const std::filesystem::path& path,
                                        const std::stop_token& stop = {});

  /// PNG, JPEG, HEIC, HEIF, TIFF, in this order.
  [[nodiscard]] static const std::vector<ContentType>& supportedTypes();

  /// "JPEG", "PNG" or "TIFF"; otherwise the type's extension in upper case; otherwise "Image".
  [[nodiscard]] QString formatName() const;
  /// Whether the layout has alpha, used or not.
  [[nodiscard]] bool hasTransparency() const { return image.hasAlpha(); }
};

}  // namespace vantrel
