#include "platform/gl/video_content.h"

#include <utility>

#include "platform/gl/video_textures.h"

namespace vantrel {
namespace {

bool hasPixels(const VideoPicture& picture) {
  for (int i = 0; i < picture.planeCount(); ++i) {
    const PlaneView& plane = picture.planes[static_cast<size_t>(i)];
    if (!plane.data || plane.width <= 0 || plane.height <= 0) return false;
  }
  return true;
}

}  // namespace

VideoContent::VideoContent(std::shared_ptr<const VideoPicture> picture)
    : m_picture(std::move(picture)) {}

VideoContent::~VideoContent() = default;

bool VideoContent::take(const std::shared_ptr<const VideoPicture>& picture) {
  if (m_picture != picture) m_isShown = false;
  m_picture = picture;
  return true;
}

int64_t VideoContent::textureBytes() const {
  return m_textures ? m_textures->byteCount() : 0;
}

void VideoContent::draw(const PictureView& view) {
  if (m_textures && !m_textures->isOfCurrentContext()) m_textures.reset();
  m_isShown = true;
  if (!hasPixels(*m_picture)) return;
  const auto placement = VideoPlacement::of(*m_picture, view);
  if (!placement) return;
  if (!m_textures) m_textures = std::make_unique<VideoTextures>();
  m_textures->draw(m_picture, *placement, view);
}

void VideoContent::release() {
  m_textures.reset();
  m_isShown = false;
}

std::unique_ptr<PictureContent> makeVideoContent(std::shared_ptr<const VideoPicture> picture) {
  return std::make_unique<VideoContent>(std::move(picture));
}

}  // namespace vantrel
