#include "canvas/crop_workspace_layout.h"

#include <algorithm>

namespace vantrel {
namespace {

constexpr double kSmallestWidth = 240, kLargestWidth = 650;
/// What the bar leaves free of the workspace's width, and below and above it.
constexpr double kSideRoom = 48, kMargin = 20;

}  // namespace

double CropWorkspaceLayout::playbackWidth() const {
  return std::max(kSmallestWidth, std::min(kLargestWidth, size.width() - kSideRoom));
}

QPointF CropWorkspaceLayout::playbackCenter() const {
  return {size.width() / 2, size.height() - kMargin - playbackHeight / 2};
}

QMarginsF CropWorkspaceLayout::framingInsets() const {
  return {0, 0, 0, playbackHeight + 2 * kMargin};
}

}  // namespace vantrel
