#include "platform/movie/plane_store.h"

#include <cstdint>

namespace vantrel {

ptrdiff_t PlaneShape::stride() const {
  const ptrdiff_t bytes = static_cast<ptrdiff_t>(width) * bytesPerSample;
  return (bytes + kPlaneAlignment - 1) / kPlaneAlignment * kPlaneAlignment;
}

ScratchPlane::ScratchPlane(const PlaneShape& shape)
    : m_shape(shape),
      m_bytes(static_cast<uint8_t*>(
          ::operator new(shape.byteCount(), std::align_val_t(kPlaneAlignment)))) {}

PlanePool::PlanePool(const PlaneShape& shape)
    : m_shape(shape),
      m_pool(owned<decltype(m_pool)>(
          av_buffer_pool_init(shape.byteCount() + kPlaneAlignment, nullptr))) {}

PlanePool::Plane PlanePool::take() {
  auto buffer = owned<AvBufferPtr>(av_buffer_pool_get(m_pool.get()));
  const auto address = reinterpret_cast<uintptr_t>(buffer->data);
  uint8_t* aligned = buffer->data + (kPlaneAlignment - address % kPlaneAlignment) % kPlaneAlignment;
  return {std::move(buffer), {aligned, m_shape.stride()}};
}

}  // namespace vantrel
