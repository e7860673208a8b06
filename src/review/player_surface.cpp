#include "review/player_surface.h"

#include "platform/movie/video_picture.h"
#include "review/fitted_rect.h"

namespace vantrel {

PlayerSurface::PlayerSurface(QWidget* parent) : PictureSurface(parent) {
  setBackground(Qt::black);
}

PlayerSurface::~PlayerSurface() {
  leaveContext();
}

void PlayerSurface::pictureTaken(const VideoPicture* picture) {
  m_pictureSize = {};
  if (!picture) return;
  const PictureSize size = picture->displayedSize();
  m_pictureSize = {static_cast<double>(size.width), static_cast<double>(size.height)};
}

PictureView PlayerSurface::pictureView() const {
  PictureView view;
  view.target = deviceSize();
  view.frame = fittedRect(m_pictureSize, view.target);
  view.frame.moveTopLeft(view.frame.topLeft().toPoint());
  view.retained = QRectF(QPointF(0, 0), view.target);
  return view;
}

void PlayerSurface::drawFrame() {
  const PictureView view = pictureView();
  if (!view.frame.isEmpty()) pictures().draw(view);
}

}  // namespace vantrel

#include "moc_player_surface.cpp"
