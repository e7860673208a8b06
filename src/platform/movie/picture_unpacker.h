#pragma once

#include <array>
#include <optional>

#include "platform/movie/planar_format.h"

namespace vantrel {

/// The planes of one picture: Y, U, V or R, G, B or luma alone. `framePlane` is the plane of the
/// frame that a plane lies in as it stands, or -1 if it was unpacked.
struct PlanarPicture {
  std::array<PlaneView, 3> planes;
  std::array<int, 3> framePlane{-1, -1, -1};
};

/// Brings frames of one pixel format and size into planes of their own in the machine's byte order,
/// of samples that begin at the lowest bit. Components that lie so already are left where they are.
/// One thread at a time.
class PictureUnpacker final {
 public:
  /// `format` has a planarFormat.
  PictureUnpacker(AVPixelFormat format, int width, int height);

  [[nodiscard]] const PlanarFormat& format() const { return m_planar; }
  /// What it gives holds until the next call, and as long as `frame`. `frame` has the format and
  /// size given to the constructor.
  [[nodiscard]] PlanarPicture unpack(const AVFrame& frame);

 private:
  [[nodiscard]] PlaneShape shapeOf(int component) const;
  [[nodiscard]] bool isPlaneAsItStands(int component) const;
  void unpackComponent(const AVFrame& frame, int component, const ScratchPlane& plane) const;

  const AVPixelFormat m_format;
  const int m_width, m_height;
  const PlanarFormat m_planar;
  std::array<std::optional<ScratchPlane>, 3> m_unpacked;
};

}  // namespace vantrel
