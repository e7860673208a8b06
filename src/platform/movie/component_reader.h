#pragma once

#include <array>
#include <vector>

#include "platform/movie/av_ptr.h"

struct AVPixFmtDescriptor;

namespace vantrel {

/// Reads one component of a frame of any readable pixel format, row by row, spreading those of
/// fewer than eight bits over eight.
class ComponentReader final {
 public:
  /// `component` counts as in PlanarPicture. A palette is that of `frame`.
  ComponentReader(const AVFrame& frame, int component);

  /// Writes `width` samples of row `y`, of one byte each up to eight bits of depth, and of two
  /// above.
  void readRow(int y, int width, uint8_t* target);

 private:
  void readBits(int y, int width, uint8_t* target);
  void makeTable();

  const AVFrame& m_frame;
  const AVPixFmtDescriptor& m_descriptor;
  /// Of the pixel format.
  int m_component = 0;
  /// Of the palette's entries, or -1.
  int m_paletteComponent = -1;
  bool m_needsTable = false;
  std::array<uint8_t, 256> m_table{};
  std::vector<uint16_t> m_row;
};

}  // namespace vantrel
