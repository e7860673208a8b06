#pragma once

#include <QObject>
#include <cstdint>
#include <memory>
#include <vector>

#include "platform/gl/picture_view.h"
#include "platform/image/bitmap.h"

namespace vantrel {

class PictureContent;
struct VideoPicture;

/// Draws one picture with OpenGL: a bitmap of any size, from tiles that are made in the background
/// as they come into view, or a picture of a video, from its planes. Alpha lets through what is
/// drawn already. Magnified, each source pixel is a sharp square whose edges lie where the
/// picture's frame puts them, rounded to device pixels; reduced, it is smooth.
///
/// Main thread. `draw` and `release` need the context current, always the same one until `release`;
/// nothing else touches it. Textures stay within kMostTextureBytes.
class PictureRenderer final : public QObject {
  Q_OBJECT

 public:
  static constexpr int64_t kMostTextureBytes = int64_t{512} << 20;

  explicit PictureRenderer(QObject* parent = nullptr);
  /// `release` has been called, or the context is gone.
  ~PictureRenderer() override;

  /// Takes the place of whatever was shown; an empty bitmap for none. One over the same pixels
  /// changes nothing.
  void setImage(const Bitmap& image);
  /// Takes the place of whatever was shown; null for none.
  void setVideoPicture(std::shared_ptr<const VideoPicture> picture);

  /// Whether the last `draw` showed all that was in view as sharp as it will be.
  [[nodiscard]] bool isComplete() const;
  /// What the textures take, in bytes.
  [[nodiscard]] int64_t textureBytes() const;

  /// Draws into the bound framebuffer over what is there; leaves its own state of the context. Of
  /// what is not ready yet, something coarser is shown. Does no work that grows with the picture.
  void draw(const PictureView& view);
  /// Gives back everything that lives in the context; `draw` makes it anew.
  void release();

 Q_SIGNALS:
  /// Another `draw` would show more.
  void pictureImproved();

 private:
  void show(std::unique_ptr<PictureContent> content);

  /// Null for none.
  std::unique_ptr<PictureContent> m_content;
  /// Whether m_content may own something that lives in the context.
  bool m_isDrawn = false;
  /// Replaced contents whose textures wait for a current context.
  std::vector<std::unique_ptr<PictureContent>> m_replaced;
};

}  // namespace vantrel
