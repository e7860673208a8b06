#include <gtest/gtest.h>

#include <array>
#include <random>

#include "model/crop_margins.h"
#include "model/edit_history.h"
#include "model/printers.h"

namespace vantrel {
namespace {

using Edge = CropMargins::Edge;

constexpr int kRounds = 20000;
constexpr int64_t kWidest = int64_t{1} << 31;

/// Sources, legal crops and pointer movements of all magnitudes, the same in each run.
class Chance {
 public:
  explicit Chance(uint64_t seed) : m_engine(seed) {}

  int64_t between(int64_t low, int64_t high) {
    return std::uniform_int_distribution<int64_t>(low, high)(m_engine);
  }
  /// From `low` to 2³¹, each magnitude as likely as the others.
  int64_t extent(int64_t low) {
    const int64_t limit = int64_t{1} << between(0, 31);
    return between(low, std::max(low, limit));
  }
  int64_t movement(int64_t reach) { return between(-reach, reach); }
  double distance(int64_t reach) {
    const auto limit = static_cast<double>(reach);
    return std::uniform_real_distribution<double>(-limit, limit)(m_engine);
  }

 private:
  std::mt19937_64 m_engine;
};

struct Case {
  int64_t multiple = 1, width = 0, height = 0;
  QSizeF source;
  CropMargins crop;
};

/// A legal span: the margins before and after it.
std::pair<int64_t, int64_t> legalSpan(Chance& chance, int64_t extent, int64_t multiple) {
  const int64_t length = chance.between(1, extent / multiple) * multiple;
  const int64_t start = chance.between(0, extent - length);
  return {start, extent - length - start};
}

Case legalCase(Chance& chance) {
  Case result;
  result.multiple = chance.between(1, 2);
  result.width = chance.extent(result.multiple);
  result.height = chance.extent(result.multiple);
  result.source = QSizeF(static_cast<double>(result.width), static_cast<double>(result.height));
  const auto [left, right] = legalSpan(chance, result.width, result.multiple);
  const auto [top, bottom] = legalSpan(chance, result.height, result.multiple);
  result.crop = {left, top, right, bottom};
  return result;
}

::testing::AssertionResult isLegal(const CropMargins& crop, const Case& in) {
  const int64_t width = in.width - crop.left - crop.right;
  const int64_t height = in.height - crop.top - crop.bottom;
  const bool inside = crop.left >= 0 && crop.top >= 0 && crop.right >= 0 && crop.bottom >= 0;
  const bool large = width >= in.multiple && height >= in.multiple;
  const bool even = width % in.multiple == 0 && height % in.multiple == 0;
  if (inside && large && even) return ::testing::AssertionSuccess();
  return ::testing::AssertionFailure()
         << ::testing::PrintToString(crop) << " in " << in.width << " × " << in.height << ", step "
         << in.multiple << ", from " << ::testing::PrintToString(in.crop);
}

TEST(CropProperties, FullImageIsLegalAndWidest) {
  Chance chance(1);
  for (int round = 0; round < kRounds; ++round) {
    const Case in = legalCase(chance);
    const CropMargins full = CropMargins::fullImage(in.source, in.multiple);
    ASSERT_TRUE(isLegal(full, in));
    ASSERT_LT(full.right + full.bottom, 2 * in.multiple);
  }
}

TEST(CropProperties, SetStaysLegalAndMovesOneEdge) {
  Chance chance(2);
  for (int round = 0; round < kRounds; ++round) {
    const Case in = legalCase(chance);
    for (const Edge edge : CropMargins::kEdges) {
      const int64_t wanted = chance.movement(2 * chance.extent(1));
      CropMargins crop = in.crop;
      crop.set(edge, wanted, in.source, in.multiple);
      ASSERT_TRUE(isLegal(crop, in));
      CropMargins others = crop;
      others[edge] = in.crop[edge];
      ASSERT_EQ(others, in.crop);
      crop.set(edge, in.crop[edge], in.source, in.multiple);
      ASSERT_EQ(crop, in.crop) << "the edge did not come back";
    }
  }
}

TEST(CropProperties, SetIsTheNearestLegalMarginAndNeverOutward) {
  Chance chance(3);
  for (int round = 0; round < kRounds; ++round) {
    const Case in = legalCase(chance);
    const int64_t most = in.width - in.crop.right - in.multiple;
    const int64_t wanted = chance.between(0, most);
    CropMargins crop = in.crop;
    crop.set(Edge::left, wanted, in.source, in.multiple);
    ASSERT_GE(crop.left, wanted);
    ASSERT_LT(crop.left, wanted + in.multiple);
  }
}

TEST(CropProperties, TranslationKeepsTheSizeAndComesBack) {
  Chance chance(4);
  for (int round = 0; round < kRounds; ++round) {
    const Case in = legalCase(chance);
    const int64_t dx = chance.movement(2 * in.width), dy = chance.movement(2 * in.height);
    const CropMargins moved = in.crop.translated(dx, dy);
    ASSERT_TRUE(isLegal(moved, in));
    ASSERT_EQ(moved.rectangle(in.source).size(), in.crop.rectangle(in.source).size());
    const int64_t backX = in.crop.left - moved.left, backY = in.crop.top - moved.top;
    ASSERT_LE(std::abs(backX), std::abs(dx));
    ASSERT_EQ(moved.translated(backX, backY), in.crop);
  }
}

TEST(CropProperties, ResizedIsLegalAndCentred) {
  Chance chance(5);
  for (int round = 0; round < kRounds; ++round) {
    const Case in = legalCase(chance);
    const int64_t width = chance.movement(2 * in.width), height = chance.extent(1);
    const CropMargins crop = in.crop.resized(width, height, in.source, in.multiple);
    ASSERT_TRUE(isLegal(crop, in));
    const double before = in.crop.rectangle(in.source).center().x();
    const double after = crop.rectangle(in.source).center().x();
    // Half a pixel is what rounding can move it, unless a border is in the way.
    ASSERT_TRUE(std::abs(after - before) <= 0.5 || crop.left == 0 || crop.right == 0);
  }
}

TEST(CropProperties, ResizingToTheSameSizeIsTheIdentity) {
  Chance chance(6);
  for (int round = 0; round < kRounds; ++round) {
    const Case in = legalCase(chance);
    const int64_t width = in.width - in.crop.left - in.crop.right;
    const int64_t height = in.height - in.crop.top - in.crop.bottom;
    ASSERT_EQ(in.crop.resized(width, height, in.source, in.multiple), in.crop);
  }
}

TEST(CropProperties, RatioDragIsLegalAndKeepsTheOppositeCorner) {
  Chance chance(7);
  constexpr std::array kSides{Edge::left, Edge::right}, kEnds{Edge::top, Edge::bottom};
  for (int round = 0; round < kRounds; ++round) {
    const Case in = legalCase(chance);
    const bool right = chance.between(0, 1) == 1, bottom = chance.between(0, 1) == 1;
    const std::vector<Edge> corner{kSides[right], kEnds[bottom]};
    const double dx = chance.distance(in.width), dy = chance.distance(in.height);
    const CropMargins crop = in.crop.resizedKeepingRatio(dx, dy, corner, in.source, in.multiple);
    ASSERT_TRUE(isLegal(crop, in));
    ASSERT_EQ(crop[kSides[!right]], in.crop[kSides[!right]]);
    ASSERT_EQ(crop[kEnds[!bottom]], in.crop[kEnds[!bottom]]);
    ASSERT_EQ(in.crop.resizedKeepingRatio(0, 0, corner, in.source, in.multiple), in.crop)
        << "a drag there and back";
  }
}

TEST(CropProperties, RatioDragBendsTheShapeByHalfAStepAtMost) {
  Chance chance(8);
  for (int round = 0; round < kRounds; ++round) {
    const Case in = legalCase(chance);
    const QSizeF before = in.crop.rectangle(in.source).size();
    const CropMargins crop = in.crop.resizedKeepingRatio(
        chance.distance(in.width), chance.distance(in.height), {}, in.source, in.multiple);
    const QSizeF after = crop.rectangle(in.source).size();
    if (crop.right < in.multiple || crop.bottom < in.multiple) continue;  // The border cut it.
    const auto step = static_cast<double>(in.multiple);
    const double lowest = std::max((after.width() - step / 2) / before.width(),
                                   (after.height() - step / 2) / before.height());
    const double highest = std::min((after.width() + step / 2) / before.width(),
                                    (after.height() + step / 2) / before.height());
    ASSERT_LE(lowest, highest * (1 + 1e-9)) << "no one scale gives this size";
  }
}

/// A change of any kind through the history's own operations.
void editAtRandom(EditHistory& history, Chance& chance, const Case& in) {
  CropMargins crop = history.crop();
  switch (chance.between(0, 6)) {
    case 0:
      crop.set(CropMargins::kEdges[size_t(chance.between(0, 3))], chance.extent(1), in.source,
               history.pixelStep());
      return history.setCrop(crop);
    case 1:
      return history.setCrop(crop.translated(chance.movement(9), chance.movement(9)));
    case 2:
      return history.resizeCrop(chance.extent(1), chance.extent(1), in.source);
    case 3:
      return history.setBitrate(static_cast<double>(chance.between(1, 9)));
    case 4:
      return history.setCodec(EncodingSettings::kCodecs[size_t(chance.between(0, 1))]);
    case 5:
      return history.begin();
    default:
      return history.end();
  }
}

TEST(CropProperties, UndoThenRedoIsTheIdentity) {
  Chance chance(9);
  for (int round = 0; round < 200; ++round) {
    const Case in = legalCase(chance);
    EditHistory history;
    history.setPixelStep(in.multiple);
    history.reset({in.crop, {}, {}});
    const CropEdit first = history.value();
    for (int edit = 0; edit < 30; ++edit) {
      editAtRandom(history, chance, in);
      ASSERT_TRUE(isLegal(history.crop(), in));
    }
    history.end();
    const CropEdit last = history.value();
    std::vector<CropEdit> states;
    while (history.canUndo()) {
      states.push_back(history.value());
      history.undo();
      ASSERT_NE(history.value(), states.back()) << "an empty step";
    }
    ASSERT_EQ(history.value(), first);
    for (; history.canRedo(); states.pop_back()) {
      history.redo();
      ASSERT_EQ(history.value(), states.back());
    }
    ASSERT_EQ(history.value(), last);
  }
}

TEST(CropProperties, WidestSourceIsExact) {
  const auto side = static_cast<double>(kWidest);
  CropMargins crop;
  crop.set(Edge::left, kWidest, {side, side}, 2);
  EXPECT_EQ(crop, (CropMargins{kWidest - 2, 0, 0, 0}));
  EXPECT_EQ(CropMargins().resized(kWidest - 1, kWidest, {side, side}, 1),
            (CropMargins{1, 0, 0, 0}));
}

}  // namespace
}  // namespace vantrel
