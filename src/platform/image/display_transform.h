#pragma once

// Private to this folder.

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "platform/image/display_renderer.h"
#include "platform/image/lcms_ptr.h"
#include "platform/image/matrix_shaper.h"

namespace vantrel {

/// What turns rows of the bitmap into rows for the display; immutable once made.
class DisplayRenderer::Transform {
 public:
  explicit Transform(const Bitmap& bitmap);

  /// The layout in which rows are reduced and converted: the bitmap's, but colours for Indexed.
  [[nodiscard]] const PixelLayout& layout() const { return m_layout; }
  [[nodiscard]] bool isIndexed() const { return !m_palette.empty(); }
  /// Replaces indices by their colours, already sRGB.
  void lookUp(const std::byte* indices, int64_t count, std::byte* colors) const;
  /// Converts `count` pixels of layout(); `scratch` is the caller's, for reuse from row to row.
  void convert(const std::byte* pixels, int64_t count, uint8_t* output,
               std::vector<uint16_t>& scratch) const;

 private:
  using Rgba = std::array<uint8_t, 4>;

  [[nodiscard]] LcmsProfile sourceProfile(const Bitmap& bitmap) const;
  void prepareColors(const LcmsProfile& profile);
  [[nodiscard]] LcmsTransform transformFrom(cmsHPROFILE profile, cmsUInt32Number format) const;
  void takePalette(const Bitmap& bitmap);

  PixelLayout m_layout;
  LcmsContext m_context = makeLcmsContext();
  /// Both are null when the samples are sRGB, or ink, as they are; otherwise one is not.
  LcmsTransform m_colors;
  std::unique_ptr<const MatrixShaper> m_shaper;
  /// The colours of all 256 indices, alpha straight; empty unless Indexed.
  std::vector<Rgba> m_palette;
};

}  // namespace vantrel
