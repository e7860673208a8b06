#pragma once

// Private to this folder.

#include <memory>

#include "platform/gl/picture_content.h"

namespace vantrel {

class VideoTextures;

/// The picture of a video, drawn from its planes. They are uploaded when a picture comes and when
/// the zoom crosses a power of two below 1: reduced, they are made smaller by whole steps on the
/// way. One thread at a time.
class VideoContent final : public PictureContent {
  Q_OBJECT

 public:
  explicit VideoContent(std::shared_ptr<const VideoPicture> picture);
  ~VideoContent() override;

  [[nodiscard]] bool take(const std::shared_ptr<const VideoPicture>& picture) override;
  [[nodiscard]] bool isComplete() const override { return m_isShown; }
  [[nodiscard]] int64_t textureBytes() const override;
  void draw(const PictureView& view) override;
  void release() override;

 private:
  std::shared_ptr<const VideoPicture> m_picture;
  /// Whether the last `draw` was of this picture.
  bool m_isShown = false;
  /// Null before the first `draw` and after `release`.
  std::unique_ptr<VideoTextures> m_textures;
};

}  // namespace vantrel
