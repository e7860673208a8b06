#include "photo.h"

#include <algorithm>
#include <array>
#include <fstream>
#include <stdexcept>
#include <string>

namespace vantrel::bench {
namespace {

// Integers only, so that every compiler and processor makes the same picture.

uint32_t hash(uint32_t x, uint32_t y, uint32_t layer) {
  uint32_t value = x * 0x9E3779B1U ^ y * 0x85EBCA77U ^ layer * 0xC2B2AE3DU;
  value = (value ^ value >> 15) * 0x2C1B3C6DU;
  value = (value ^ value >> 12) * 0x297A2D39U;
  return value ^ value >> 15;
}

/// Values from 0 to 65535 on a grid of cells of 2^shift pixels, interpolated between them.
int smoothNoise(int64_t x, int64_t y, int shift, uint32_t layer) {
  const auto cell = int64_t{1} << shift;
  const auto cellX = static_cast<uint32_t>(x >> shift);
  const auto cellY = static_cast<uint32_t>(y >> shift);
  const int64_t partX = x & (cell - 1);
  const int64_t partY = y & (cell - 1);
  const auto corner = [&](uint32_t dx, uint32_t dy) -> int64_t {
    return hash(cellX + dx, cellY + dy, layer) & 0xFFFF;
  };
  const int64_t top = corner(0, 0) * (cell - partX) + corner(1, 0) * partX;
  const int64_t bottom = corner(0, 1) * (cell - partX) + corner(1, 1) * partX;
  return static_cast<int>((top * (cell - partY) + bottom * partY) >> (2 * shift));
}

/// Grain of a sensor: the sum of four dice, bell-shaped around 0.
int grain(int64_t x, int64_t y, uint32_t layer, int strength) {
  const uint32_t bits = hash(static_cast<uint32_t>(x), static_cast<uint32_t>(y), layer);
  int sum = -510;
  for (int shift = 0; shift < 32; shift += 8)
    sum += static_cast<int>(bits >> shift & 0xFF);
  return sum * strength / 1024;
}

}  // namespace

Photo makePhoto(int64_t width, int64_t height) {
  constexpr std::array shifts{10, 8, 6, 4, 2};
  constexpr std::array weights{110, 56, 30, 22, 18};
  Photo photo{width, height, std::vector<uint8_t>(static_cast<size_t>(width * height * 3))};
  uint8_t* pixel = photo.pixels.data();
  for (int64_t y = 0; y < height; ++y) {
    for (int64_t x = 0; x < width; ++x, pixel += 3) {
      int light = 14;
      for (size_t i = 0; i < shifts.size(); ++i) {
        light += smoothNoise(x, y, shifts[i], static_cast<uint32_t>(i)) * weights[i] >> 16;
      }
      // Objects before a background.
      if (smoothNoise(x, y, 7, 20) > 40000) light = 255 - light;
      // Part of the grain is common to the channels, as after a camera has interpolated colours.
      const int common = grain(x, y, 30, 10);
      for (uint32_t channel = 0; channel < 3; ++channel) {
        const int tint = smoothNoise(x, y, 9, 40 + channel) * 40 >> 16;
        const int value = light + tint + common + grain(x, y, 50 + channel, 7);
        pixel[channel] = static_cast<uint8_t>(std::clamp(value, 0, 255));
      }
    }
  }
  return photo;
}

Photo readPhoto(const char* path) {
  std::ifstream file(path, std::ios::binary);
  std::string type;
  Photo photo;
  int full = 0;
  file >> type >> photo.width >> photo.height >> full;
  file.get();
  if (!file || type != "P6" || full != 255 || photo.width < 1 || photo.height < 1) {
    throw std::runtime_error(std::string(path) + ": not a PPM file of 8 bits");
  }
  photo.pixels.resize(static_cast<size_t>(photo.width * photo.height * 3));
  file.read(reinterpret_cast<char*>(photo.pixels.data()),
            static_cast<std::streamsize>(photo.pixels.size()));
  if (!file) throw std::runtime_error(std::string(path) + ": too short");
  return photo;
}

void writePhoto(const Photo& photo, const char* path) {
  std::ofstream file(path, std::ios::binary);
  file << "P6\n" << photo.width << ' ' << photo.height << "\n255\n";
  file.write(reinterpret_cast<const char*>(photo.pixels.data()),
             static_cast<std::streamsize>(photo.pixels.size()));
  file.close();
  if (!file) throw std::runtime_error(std::string(path) + ": could not be written");
}

}  // namespace vantrel::bench
