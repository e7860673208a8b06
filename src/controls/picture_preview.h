#pragma once

#include <QImage>
#include <QObject>
#include <QSize>
#include <functional>
#include <memory>
#include <stop_token>

#include "platform/desktop/background_task.h"

namespace vantrel {

/// The picture of a view, rendered in the background for the size at which the view shows it. A
/// changed size or picture cancels what runs; until the new rendering is there, the old one of the
/// same picture stays. Main thread.
class PicturePreview final : public QObject {
  Q_OBJECT

 public:
  /// Renders the whole picture `size` device pixels large. Called on another thread, once at a
  /// time; throws Cancelled when stopped, and may throw anything else: nothing is shown then.
  using Render = std::function<QImage(const QSize& size, const std::stop_token& stop)>;

  explicit PicturePreview(QObject* parent = nullptr);
  ~PicturePreview() override;

  /// Null while nothing has been rendered.
  [[nodiscard]] const QImage& image() const { return m_image; }
  /// Whether the image is, or is about to be, out of date.
  [[nodiscard]] bool isRendering() const { return m_task != nullptr; }

  /// Another picture; without a function, none.
  void setPicture(Render render);
  /// The size in device pixels at which the picture is shown; nothing is rendered for an empty one.
  void setSize(const QSize& size);

 Q_SIGNALS:
  void imageChanged();

 private:
  void update();
  void receive(BackgroundTask<QImage>::Outcome outcome);

  std::shared_ptr<const Render> m_render;
  QSize m_size;
  QImage m_image;
  // What the running task renders, to see whether its outcome is still wanted.
  std::shared_ptr<const Render> m_taskRender;
  QSize m_taskSize;
  std::unique_ptr<BackgroundTask<QImage>> m_task;
};

}  // namespace vantrel
