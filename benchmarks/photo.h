#pragma once

#include <cstdint>
#include <vector>

namespace vantrel::bench {

/// An 8-bit RGB picture in memory, rows without gaps.
struct Photo {
  int64_t width = 0, height = 0;
  std::vector<uint8_t> pixels;
};

/// A made-up picture that compresses like a photograph: soft shapes of all sizes, edges, and the
/// grain of a sensor. The same for the same size, on every machine.
[[nodiscard]] Photo makePhoto(int64_t width, int64_t height);

/// Reads a PPM file of 8 bits (P6). Throws std::runtime_error.
[[nodiscard]] Photo readPhoto(const char* path);

/// Writes a PPM file (P6). Throws std::runtime_error.
void writePhoto(const Photo& photo, const char* path);

}  // namespace vantrel::bench
