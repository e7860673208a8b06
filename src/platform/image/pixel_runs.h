#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "platform/image/bitmap.h"

namespace vantrel {

// Conversions of runs of pixels that need no colour profile. `from` and `to` never overlap; T is
// uint8_t or uint16_t in the machine's byte order.

/// Float samples become integers: below 0 and not a number is 0, above 1 is full, the rest is
/// rounded.
template <typename T>
void floatsToIntegers(const std::byte* from, std::byte* to, size_t samples);

/// 16-bit samples become 8-bit ones, rounded.
void wordsToBytes(const std::byte* from, std::byte* to, size_t samples);

/// Grey becomes three equal channels; alpha, if there is any, follows as it is.
template <typename T>
void grayToRgb(const std::byte* from, std::byte* to, size_t pixels, bool alpha);

/// Uncalibrated ink: each of red, green and blue is what its ink and the black let through.
template <typename T>
void inkToRgb(const std::byte* from, std::byte* to, size_t pixels, bool alpha);

/// Rgb with straight alpha is laid over an opaque colour; the exact mixture is rounded to 8 bits.
template <typename T>
void rgbOverColor(const std::byte* from, std::byte* to, size_t pixels,
                  const std::array<uint8_t, 3>& color);

/// Positions in a table of colours become 8-bit Rgb, with alpha if wanted.
void indicesToRgb(const std::byte* from, std::byte* to, size_t pixels,
                  const std::array<PaletteEntry, 256>& table, bool alpha);

}  // namespace vantrel
