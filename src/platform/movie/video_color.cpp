#include "platform/movie/video_color.h"

namespace vantrel {
namespace {

// Code points of ITU-T H.273.
constexpr ColorTags kBt709{1, 1, 1};
constexpr ColorTags kBt2020Pq{9, 16, 9};
constexpr int kPq = 16, kHlg = 18;
constexpr int kRgbMatrix = 0;

int specified(int code, int otherwise) {
  return code == ColorTags::kUnspecified ? otherwise : code;
}

}  // namespace

bool ColorTags::isHdr() const {
  return transfer == kPq || transfer == kHlg;
}

ColorTags ColorTags::completed() const {
  const ColorTags& usual = isHdr() ? kBt2020Pq : kBt709;
  return {specified(primaries, usual.primaries), specified(transfer, usual.transfer),
          specified(matrix == kRgbMatrix ? kUnspecified : matrix, usual.matrix)};
}

}  // namespace vantrel
