#pragma once

#include <memory>
#include <new>

#include "platform/movie/av_ptr.h"
#include "platform/movie/plane_view.h"

namespace vantrel {

/// Bytes to which the rows of planes are aligned, for the vector instructions of zimg and FFmpeg.
inline constexpr int kPlaneAlignment = 64;

/// Size and sample size of a plane whose rows are aligned.
struct PlaneShape {
  int width = 0, height = 0;
  /// 1 or 2.
  int bytesPerSample = 1;

  [[nodiscard]] ptrdiff_t stride() const;
  [[nodiscard]] size_t byteCount() const { return static_cast<size_t>(stride() * height); }
};

/// A plane of its own, for what stands between two steps. Its samples are not initialized.
class ScratchPlane final {
 public:
  explicit ScratchPlane(const PlaneShape& shape);

  [[nodiscard]] PlaneTarget target() const { return {m_bytes.get(), m_shape.stride()}; }
  [[nodiscard]] PlaneView view() const {
    return {m_bytes.get(), m_shape.stride(), m_shape.width, m_shape.height, m_shape.bytesPerSample};
  }

 private:
  struct Free {
    void operator()(uint8_t* bytes) const {
      ::operator delete(bytes, std::align_val_t(kPlaneAlignment));
    }
  };
  PlaneShape m_shape;
  std::unique_ptr<uint8_t, Free> m_bytes;
};

/// Gives out planes of one shape again and again. Whoever holds a plane may outlive the pool, and
/// may let go of it on any thread.
class PlanePool final {
 public:
  explicit PlanePool(const PlaneShape& shape);

  struct Plane {
    AvBufferPtr buffer;
    PlaneTarget target;
  };
  [[nodiscard]] Plane take();
  [[nodiscard]] const PlaneShape& shape() const { return m_shape; }

 private:
  PlaneShape m_shape;
  std::unique_ptr<AVBufferPool, AvDelete<av_buffer_pool_uninit>> m_pool;
};

}  // namespace vantrel
