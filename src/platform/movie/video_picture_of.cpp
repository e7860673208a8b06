#include "platform/movie/video_picture_of.h"

#include <utility>

#include "platform/movie/picture_unpacker.h"

namespace vantrel {
namespace {

/// The memory of a picture.
struct Pixels {
  Pixels(AvFramePtr decoded, AVPixelFormat format)
      : frame(std::move(decoded)), unpacker(format, frame->width, frame->height) {}

  const AvFramePtr frame;
  PictureUnpacker unpacker;
};

VideoPicture::Model modelOf(PlanarFormat::Family family) {
  switch (family) {
    case PlanarFormat::Family::Gray:
      return VideoPicture::Model::Gray;
    case PlanarFormat::Family::Rgb:
      return VideoPicture::Model::Rgb;
    case PlanarFormat::Family::Yuv:
      break;
  }
  return VideoPicture::Model::Yuv;
}

}  // namespace

std::shared_ptr<const VideoPicture> videoPictureOf(AvFramePtr frame, const MovieTrack& track) {
  const PlanarFormat planar = requiredPlanarFormat(*frame);
  const auto format = static_cast<AVPixelFormat>(frame->format);
  auto picture = std::make_shared<VideoPicture>();
  picture->model = modelOf(planar.family);
  picture->depth = planar.depth;
  picture->chromaShiftX = planar.chromaShiftX;
  picture->chromaShiftY = planar.chromaShiftY;
  picture->chromaSiting = chromaSitingOf(frame->chroma_location);
  const ColorTags tags =
      track.formatDescriptions.empty() ? ColorTags() : track.formatDescriptions.front();
  picture->color = tags.completed();
  picture->isFullRange = usesFullRange(format, frame->color_range);
  picture->hdrMetadata = track.hdrMetadata;
  picture->naturalSize = track.naturalSize;
  picture->preferredTransform = track.preferredTransform;

  const auto pixels = std::make_shared<Pixels>(std::move(frame), format);
  picture->planes = pixels->unpacker.unpack(*pixels->frame).planes;
  picture->owner = pixels;
  return picture;
}

}  // namespace vantrel
