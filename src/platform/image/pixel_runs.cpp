#include "platform/image/pixel_runs.h"

#include <cmath>
#include <cstring>
#include <limits>

namespace vantrel {
namespace {

template <typename T>
T load(const std::byte* from, size_t index) {
  T value;
  std::memcpy(&value, from + index * sizeof(T), sizeof(T));
  return value;
}

template <typename T>
void store(std::byte* to, size_t index, T value) {
  std::memcpy(to + index * sizeof(T), &value, sizeof(T));
}

template <typename T>
constexpr uint64_t kFull = std::numeric_limits<T>::max();

}  // namespace

template <typename T>
void floatsToIntegers(const std::byte* from, std::byte* to, size_t samples) {
  constexpr auto full = static_cast<float>(kFull<T>);
  for (size_t i = 0; i < samples; ++i) {
    const auto value = load<float>(from, i);
    // Written so that what is not a number fails the first test.
    const float bounded = value > 0 ? (value < 1 ? value : 1.0F) : 0.0F;
    store(to, i, static_cast<T>(std::lround(bounded * full)));
  }
}

void wordsToBytes(const std::byte* from, std::byte* to, size_t samples) {
  for (size_t i = 0; i < samples; ++i) {
    store(to, i, static_cast<uint8_t>((uint32_t{load<uint16_t>(from, i)} + 128) / 257));
  }
}

template <typename T>
void grayToRgb(const std::byte* from, std::byte* to, size_t pixels, bool alpha) {
  const size_t in = alpha ? 2 : 1;
  const size_t out = alpha ? 4 : 3;
  for (size_t i = 0; i < pixels; ++i) {
    const T gray = load<T>(from, i * in);
    for (size_t channel = 0; channel < 3; ++channel)
      store(to, i * out + channel, gray);
    if (alpha) store(to, i * out + 3, load<T>(from, i * in + 1));
  }
}

template <typename T>
void inkToRgb(const std::byte* from, std::byte* to, size_t pixels, bool alpha) {
  const size_t in = alpha ? 5 : 4;
  const size_t out = alpha ? 4 : 3;
  for (size_t i = 0; i < pixels; ++i) {
    const uint64_t light = kFull<T> - load<T>(from, i * in + 3);
    for (size_t channel = 0; channel < 3; ++channel) {
      const uint64_t passed = kFull<T> - load<T>(from, i * in + channel);
      store(to, i * out + channel, static_cast<T>((passed * light + kFull<T> / 2) / kFull<T>));
    }
    if (alpha) store(to, i * out + 3, load<T>(from, i * in + 4));
  }
}

template <typename T>
void rgbOverColor(const std::byte* from, std::byte* to, size_t pixels,
                  const std::array<uint8_t, 3>& color) {
  // A mixture in units of a full sample times a full alpha, which 255 times `unit` is.
  constexpr uint64_t unit = kFull<T> * kFull<T> / 255;
  for (size_t i = 0; i < pixels; ++i) {
    const uint64_t alpha = load<T>(from, i * 4 + 3);
    for (size_t channel = 0; channel < 3; ++channel) {
      const uint64_t below = color[channel] * (kFull<T> / 255);
      const uint64_t mixture = load<T>(from, i * 4 + channel) * alpha + below * (kFull<T> - alpha);
      store(to, i * 3 + channel, static_cast<uint8_t>((mixture + unit / 2) / unit));
    }
  }
}

void indicesToRgb(const std::byte* from, std::byte* to, size_t pixels,
                  const std::array<PaletteEntry, 256>& table, bool alpha) {
  const size_t out = alpha ? 4 : 3;
  for (size_t i = 0; i < pixels; ++i) {
    const PaletteEntry& entry = table[load<uint8_t>(from, i)];
    store(to, i * out, entry.red);
    store(to, i * out + 1, entry.green);
    store(to, i * out + 2, entry.blue);
    if (alpha) store(to, i * out + 3, entry.alpha);
  }
}

template void floatsToIntegers<uint8_t>(const std::byte*, std::byte*, size_t);
template void floatsToIntegers<uint16_t>(const std::byte*, std::byte*, size_t);
template void grayToRgb<uint8_t>(const std::byte*, std::byte*, size_t, bool);
template void grayToRgb<uint16_t>(const std::byte*, std::byte*, size_t, bool);
template void inkToRgb<uint8_t>(const std::byte*, std::byte*, size_t, bool);
template void inkToRgb<uint16_t>(const std::byte*, std::byte*, size_t, bool);
template void rgbOverColor<uint8_t>(const std::byte*, std::byte*, size_t,
                                    const std::array<uint8_t, 3>&);
template void rgbOverColor<uint16_t>(const std::byte*, std::byte*, size_t,
                                     const std::array<uint8_t, 3>&);

}  // namespace vantrel
