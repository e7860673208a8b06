#pragma once

// Private to this folder.

#include <QObject>
#include <cstdint>
#include <memory>

#include "platform/gl/picture_view.h"
#include "platform/image/bitmap.h"
#include "platform/movie/video_picture.h"

namespace vantrel {

/// What a PictureRenderer draws; the meaning of each function is told there.
class PictureContent : public QObject {
  Q_OBJECT

 public:
  /// Whether this content shows the same pixels already.
  [[nodiscard]] virtual bool shows(const Bitmap& /*image*/) const { return false; }
  /// Takes another picture of the same video; false when the content cannot.
  [[nodiscard]] virtual bool take(const std::shared_ptr<const VideoPicture>& /*picture*/) {
    return false;
  }
  [[nodiscard]] virtual bool isComplete() const = 0;
  [[nodiscard]] virtual int64_t textureBytes() const = 0;
  virtual void draw(const PictureView& view) = 0;
  /// It will not be drawn again; only `release` follows. Ends what runs in the background.
  virtual void retire() {}
  virtual void release() = 0;

 Q_SIGNALS:
  void improved();
};

/// Tiles of a bitmap that is not empty.
[[nodiscard]] std::unique_ptr<PictureContent> makeImageContent(const Bitmap& image);
/// The planes of a picture that is not null.
[[nodiscard]] std::unique_ptr<PictureContent> makeVideoContent(
    std::shared_ptr<const VideoPicture> picture);

}  // namespace vantrel
