#pragma once

#include <array>
#include <cstring>
#include <functional>
#include <memory>
#include <vector>

#include "platform/movie/video_picture.h"

namespace vantrel::testing {

/// What a picture for tests is made of; the rest is as VideoPicture has it.
struct MadePicture {
  int width = 0, height = 0;
  VideoPicture::Model model = VideoPicture::Model::Yuv;
  int depth = 8;
  int chromaShiftX = 0, chromaShiftY = 0;
  ColorTags color{1, 1, 1};
  bool isFullRange = false;
  /// Bytes from a row to the next beyond those of its samples.
  int padding = 0;
  /// The rows lie from the last to the first.
  bool isUpsideDown = false;
};

/// The sample of plane `c` at (x, y) of it.
using SampleFunction = std::function<int(int c, int x, int y)>;

[[nodiscard]] inline std::shared_ptr<VideoPicture> makePicture(const MadePicture& made,
                                                               const SampleFunction& sample) {
  auto picture = std::make_shared<VideoPicture>();
  picture->model = made.model;
  picture->depth = made.depth;
  picture->chromaShiftX = made.chromaShiftX;
  picture->chromaShiftY = made.chromaShiftY;
  picture->color = made.color;
  picture->isFullRange = made.isFullRange;
  picture->naturalSize = {double(made.width), double(made.height)};
  auto memory = std::make_shared<std::array<std::vector<uint8_t>, 3>>();
  const int bytes = made.depth > 8 ? 2 : 1;
  for (int c = 0; c < picture->planeCount(); ++c) {
    const auto index = static_cast<size_t>(c);
    const bool isChroma = made.model == VideoPicture::Model::Yuv && c > 0;
    const auto shifted = [isChroma](int size, int shift) {
      return isChroma ? (size + (1 << shift) - 1) >> shift : size;
    };
    const int width = shifted(made.width, made.chromaShiftX);
    const int height = shifted(made.height, made.chromaShiftY);
    ptrdiff_t stride = ptrdiff_t{width} * bytes + made.padding;
    std::vector<uint8_t>& plane = (*memory)[index];
    plane.resize(static_cast<size_t>(stride * height), 0xA5);
    uint8_t* first = plane.data();
    if (made.isUpsideDown) {
      first += stride * (height - 1);
      stride = -stride;
    }
    for (int y = 0; y < height; ++y) {
      for (int x = 0; x < width; ++x) {
        const auto value = static_cast<uint16_t>(sample(c, x, y));
        const auto byte = static_cast<uint8_t>(value);
        uint8_t* at = first + y * stride + ptrdiff_t{x} * bytes;
        std::memcpy(at, bytes == 2 ? static_cast<const void*>(&value) : &byte,
                    static_cast<size_t>(bytes));
      }
    }
    picture->planes[index] = {first, stride, width, height, bytes};
  }
  picture->owner = memory;
  return picture;
}

}  // namespace vantrel::testing
