#include "platform/movie/picture_unpacker.h"

extern "C" {
#include <libavutil/pixdesc.h>
}

#include <bit>

#include "platform/movie/component_reader.h"

namespace vantrel {
namespace {

const AVPixFmtDescriptor& descriptorOf(AVPixelFormat format) {
  return *av_pix_fmt_desc_get(format);
}

}  // namespace

PictureUnpacker::PictureUnpacker(AVPixelFormat format, int width, int height)
    : m_format(format), m_width(width), m_height(height), m_planar(planarFormat(format).value()) {
  for (int i = 0; i < m_planar.planeCount(); ++i) {
    if (!isPlaneAsItStands(i)) m_unpacked[static_cast<size_t>(i)].emplace(shapeOf(i));
  }
}

PlanarPicture PictureUnpacker::unpack(const AVFrame& frame) {
  PlanarPicture picture;
  for (int i = 0; i < m_planar.planeCount(); ++i) {
    const auto index = static_cast<size_t>(i);
    if (m_unpacked[index]) {
      unpackComponent(frame, i, *m_unpacked[index]);
      picture.planes[index] = m_unpacked[index]->view();
      continue;
    }
    const int plane = descriptorOf(m_format).comp[i].plane;
    const PlaneShape shape = shapeOf(i);
    picture.planes[index] = {frame.data[plane], frame.linesize[plane], shape.width, shape.height,
                             shape.bytesPerSample};
    picture.framePlane[index] = plane;
  }
  return picture;
}

PlaneShape PictureUnpacker::shapeOf(int component) const {
  const bool isChroma = m_planar.family == PlanarFormat::Family::Yuv && component > 0;
  return {isChroma ? AV_CEIL_RSHIFT(m_width, m_planar.chromaShiftX) : m_width,
          isChroma ? AV_CEIL_RSHIFT(m_height, m_planar.chromaShiftY) : m_height,
          m_planar.depth > 8 ? 2 : 1};
}

bool PictureUnpacker::isPlaneAsItStands(int component) const {
  const AVPixFmtDescriptor& descriptor = descriptorOf(m_format);
  if (descriptor.flags & (AV_PIX_FMT_FLAG_PAL | AV_PIX_FMT_FLAG_BITSTREAM)) return false;
  const AVComponentDescriptor& samples = descriptor.comp[component];
  const bool isBigEndian = descriptor.flags & AV_PIX_FMT_FLAG_BE;
  const int bytes = m_planar.depth > 8 ? 2 : 1;
  return samples.step == bytes && samples.offset == 0 && samples.shift == 0 &&
         samples.depth == m_planar.depth &&
         (bytes == 1 || isBigEndian == (std::endian::native == std::endian::big));
}

void PictureUnpacker::unpackComponent(const AVFrame& frame, int component,
                                      const ScratchPlane& plane) const {
  ComponentReader reader(frame, component);
  const PlaneShape shape = shapeOf(component);
  for (int y = 0; y < shape.height; ++y)
    reader.readRow(y, shape.width, plane.target().row(y));
}

}  // namespace vantrel
