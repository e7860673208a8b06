#include "controls/picture_preview.h"

#include <exception>
#include <utility>

namespace vantrel {

PicturePreview::PicturePreview(QObject* parent) : QObject(parent) {}
PicturePreview::~PicturePreview() = default;

void PicturePreview::setPicture(Render render) {
  m_render = render ? std::make_shared<const Render>(std::move(render)) : nullptr;
  if (!m_image.isNull()) {
    m_image = {};
    Q_EMIT imageChanged();
  }
  update();
}

void PicturePreview::setSize(const QSize& size) {
  if (size == m_size) return;
  m_size = size;
  update();
}

void PicturePreview::update() {
  // A cancelled task is not waited for here: what is wanted by then starts when it has ended.
  if (m_task) {
    if (m_taskRender != m_render || m_taskSize != m_size) m_task->cancel();
    return;
  }
  if (!m_render || m_size.isEmpty()) return;
  m_taskRender = m_render;
  m_taskSize = m_size;
  m_task = std::make_unique<BackgroundTask<QImage>>(
      [render = m_render, size = m_size](const std::stop_token& stop) {
        return (*render)(size, stop);
      },
      [this](BackgroundTask<QImage>::Outcome outcome) { receive(std::move(outcome)); });
}

void PicturePreview::receive(BackgroundTask<QImage>::Outcome outcome) {
  m_task.reset();
  if (m_taskRender != m_render || m_taskSize != m_size) {
    update();
    return;
  }
  try {
    m_image = outcome.get();
  } catch (const std::exception&) {
    m_image = {};
  }
  Q_EMIT imageChanged();
}

}  // namespace vantrel
