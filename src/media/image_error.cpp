#include "media/image_error.h"

#include <QCoreApplication>

namespace vantrel {
namespace {

const char* sourceText(ImageError::Case error) {
  switch (error) {
    case ImageError::unsupported:
      return QT_TRANSLATE_NOOP("ImageError", "Open a PNG, JPEG, HEIC, or TIFF image.");
    case ImageError::multipleImages:
      return QT_TRANSLATE_NOOP("ImageError",
                               "Animated images and images with multiple pages are not supported.");
    case ImageError::unreadable:
      return QT_TRANSLATE_NOOP("ImageError", "This image could not be read.");
    case ImageError::invalidCrop:
      return QT_TRANSLATE_NOOP(
          "ImageError", "The crop must stay inside the image and contain at least one pixel.");
    case ImageError::encodingFailed:
      return QT_TRANSLATE_NOOP("ImageError", "The cropped image could not be exported.");
  }
  return "";
}

}  // namespace

ImageError::ImageError(Case error)
    : m_case(error),
      m_description(
          QCoreApplication::translate("ImageError", sourceText(error)).toUtf8().toStdString()) {}

QString ImageError::errorDescription() const {
  return QString::fromStdString(m_description);
}

}  // namespace vantrel
