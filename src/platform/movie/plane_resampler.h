#pragma once

#include <optional>
#include <span>
#include <vector>

#include "platform/movie/plane_store.h"

struct zimg_filter_graph;

namespace vantrel {

/// Depth in bits and range of samples: video range (16 to 235 and 240 of 255) or full range.
struct SampleFormat {
  int depth = 8;
  bool isFullRange = false;

  [[nodiscard]] int bytesPerSample() const { return depth > 8 ? 2 : 1; }
  friend bool operator==(const SampleFormat&, const SampleFormat&) = default;
};

/// What a PlaneResampler makes of what.
struct ResamplingStep {
  enum class Content {
    /// One plane, luma or of any kind if the range stays.
    OnePlane,
    /// Luma and two chroma planes, all of one size.
    Yuv,
    /// Red, green and blue, of which Y, U and V of the same size are made.
    RgbToYuv,
  };
  /// Part of the source in samples, from its left and top edge; it may begin and end within
  /// samples, and reach a little beyond the edges.
  struct Region {
    double left = 0, top = 0, width = 0, height = 0;
  };

  Content content = Content::OnePlane;
  int sourceWidth = 0, sourceHeight = 0;
  SampleFormat source;
  /// What fills the target; the whole source if there is none.
  std::optional<Region> region;
  int targetWidth = 0, targetHeight = 0;
  SampleFormat target;
  bool dithers = false;
  /// ITU-T H.273, for RgbToYuv.
  int matrix = 1;
};

/// Resamples planes and changes their depth, range and colour model, rounding once. Prepared for
/// one step and used for every frame; one thread at a time.
class PlaneResampler final {
 public:
  /// Throws Failure if the step is impossible, as for a matrix that needs more than three numbers.
  explicit PlaneResampler(const ResamplingStep& step);
  PlaneResampler(PlaneResampler&&) noexcept;
  PlaneResampler& operator=(PlaneResampler&&) noexcept;
  ~PlaneResampler();

  /// As many sources and targets as the content has planes. The rows of the targets are aligned to
  /// kPlaneAlignment, those of the sources need not be.
  void process(std::span<const PlaneView> sources, std::span<const PlaneTarget> targets);

 private:
  struct FreeGraph {
    void operator()(zimg_filter_graph* graph) const;
  };
  std::unique_ptr<zimg_filter_graph, FreeGraph> m_graph;
  std::optional<ScratchPlane> m_workspace;
  /// Sources that came without alignment.
  std::vector<std::optional<ScratchPlane>> m_alignedSources;
};

}  // namespace vantrel
