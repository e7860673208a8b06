#include "platform/gl/picture_renderer.h"

#include <utility>

#include "platform/gl/picture_content.h"

namespace vantrel {

PictureRenderer::PictureRenderer(QObject* parent) : QObject(parent) {}
PictureRenderer::~PictureRenderer() = default;

void PictureRenderer::setImage(const Bitmap& image) {
  if (image.isEmpty()) {
    show(nullptr);
  } else if (!m_content || !m_content->shows(image)) {
    show(makeImageContent(image));
  }
}

void PictureRenderer::setVideoPicture(std::shared_ptr<const VideoPicture> picture) {
  if (!picture) {
    show(nullptr);
  } else if (!m_content || !m_content->take(picture)) {
    show(makeVideoContent(std::move(picture)));
  }
}

void PictureRenderer::show(std::unique_ptr<PictureContent> content) {
  if (m_content && m_isDrawn) {
    m_content->retire();
    m_content->disconnect(this);
    m_replaced.push_back(std::move(m_content));
  }
  m_content = std::move(content);
  m_isDrawn = false;
  if (!m_content) return;
  connect(m_content.get(), &PictureContent::improved, this, &PictureRenderer::pictureImproved);
}

bool PictureRenderer::isComplete() const {
  return !m_content || m_content->isComplete();
}

int64_t PictureRenderer::textureBytes() const {
  return m_content ? m_content->textureBytes() : 0;
}

void PictureRenderer::draw(const PictureView& view) {
  for (const auto& content : std::exchange(m_replaced, {}))
    content->release();
  if (!m_content) return;
  m_isDrawn = true;
  m_content->draw(view);
}

void PictureRenderer::release() {
  for (const auto& content : std::exchange(m_replaced, {}))
    content->release();
  if (m_content) m_content->release();
}

}  // namespace vantrel
