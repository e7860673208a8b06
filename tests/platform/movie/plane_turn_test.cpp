#include "platform/movie/plane_turn.h"

#include <gtest/gtest.h>

#include <vector>

namespace vantrel {
namespace {

template <class Sample>
void expectEveryTurn(int width, int height) {
  std::vector<Sample> source(static_cast<size_t>(width * height));
  for (size_t i = 0; i < source.size(); ++i)
    source[i] = static_cast<Sample>(i * 2654435761U >> 7);
  const auto bytes = [](int samples) { return samples * static_cast<ptrdiff_t>(sizeof(Sample)); };
  const PlaneView view{reinterpret_cast<const uint8_t*>(source.data()), bytes(width), width, height,
                       sizeof(Sample)};
  for (int turn = 0; turn < 8; ++turn) {
    const PictureOrientation orientation{turn % 2 != 0, turn / 2 % 2 != 0, turn / 4 != 0};
    const int turnedWidth = orientation.transposes ? height : width;
    std::vector<Sample> target(source.size());
    turnPlane(view, orientation, {reinterpret_cast<uint8_t*>(target.data()), bytes(turnedWidth)});
    int differences = 0;
    for (int y = 0; y < height; ++y) {
      for (int x = 0; x < width; ++x) {
        const int u = orientation.flipsX ? width - 1 - x : x;
        const int v = orientation.flipsY ? height - 1 - y : y;
        const int place = orientation.transposes ? u * turnedWidth + v : v * turnedWidth + u;
        differences +=
            target[static_cast<size_t>(place)] != source[static_cast<size_t>(y * width + x)];
      }
    }
    EXPECT_EQ(differences, 0) << width << " × " << height << ", turn " << turn;
  }
}

TEST(PlaneTurn, EverySampleGoesToItsPlace) {
  for (const int width : {1, 7, 8, 16, 33, 50}) {
    for (const int height : {1, 5, 8, 16, 31, 64}) {
      expectEveryTurn<uint8_t>(width, height);
      expectEveryTurn<uint16_t>(width, height);
    }
  }
}

TEST(PlaneTurn, AnEmptyPlaneIsNoTrouble) {
  turnPlane({}, {true, true, true}, {});
}

}  // namespace
}  // namespace vantrel
