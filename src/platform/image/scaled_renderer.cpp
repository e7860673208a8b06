#include "platform/image/scaled_renderer.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cmath>
#include <thread>

#include "base/cancelled.h"

namespace vantrel {
namespace {

constexpr int kChannels = 4;
// Source pixels that one thread renders between two looks at the stop token: a few milliseconds.
constexpr int64_t kPixelsPerPiece = 512 * 1024;
constexpr unsigned kMostThreads = 8;

/// Calls `piece(index)` for each index below `count`, on all cores, until `stop` is requested.
template <class Piece>
void forEachPiece(int64_t count, const std::stop_token& stop, const Piece& piece) {
  std::atomic<int64_t> next = 0;
  const auto work = [&] {
    for (int64_t index = next++; index < count && !stop.stop_requested(); index = next++) {
      piece(index);
    }
  };
  {
    std::vector<std::jthread> helpers;
    const unsigned threads = std::clamp(std::thread::hardware_concurrency(), 1U, kMostThreads);
    for (unsigned helper = 1; helper < threads && helper < count; ++helper) {
      helpers.emplace_back(work);
    }
    work();
  }
  throwIfCancelled(stop);
}

/// The samples of one axis that an output sample covers: the first, and the weight of each.
struct Span {
  int64_t first = 0;
  std::vector<float> weights;
};

/// How `from` samples are averaged to `to` ≤ `from`: each output sample covers from / to of them.
std::vector<Span> areaSpans(int64_t from, int64_t to) {
  std::vector<Span> spans(static_cast<size_t>(to));
  const double step = static_cast<double>(from) / static_cast<double>(to);
  for (int64_t index = 0; index < to; ++index) {
    Span& span = spans[static_cast<size_t>(index)];
    const double start = static_cast<double>(index) * step;
    const double end = static_cast<double>(index + 1) * step;
    span.first = std::min(from - 1, static_cast<int64_t>(start));
    const int64_t last = std::clamp<int64_t>(static_cast<int64_t>(std::ceil(end)), 1, from) - 1;
    for (int64_t sample = span.first; sample <= last; ++sample) {
      const double covered = std::min(end, static_cast<double>(sample + 1)) -
                             std::max(start, static_cast<double>(sample));
      span.weights.push_back(static_cast<float>(std::max(0.0, covered) / step));
    }
  }
  return spans;
}

void addScaled(std::vector<float>& sums, const uint8_t* row, float weight) {
  for (size_t index = 0; index < sums.size(); ++index) {
    sums[index] += weight * static_cast<float>(row[index]);
  }
}

void writeRow(const std::vector<float>& sums, const std::vector<Span>& columns, uint8_t* output) {
  for (const Span& column : columns) {
    std::array<float, kChannels> pixel{0.5F, 0.5F, 0.5F, 0.5F};
    const float* sample = sums.data() + column.first * kChannels;
    for (const float weight : column.weights) {
      for (int channel = 0; channel < kChannels; ++channel) {
        pixel[static_cast<size_t>(channel)] += weight * *sample++;
      }
    }
    for (const float value : pixel)
      *output++ = static_cast<uint8_t>(std::min(value, 255.0F));
  }
}

}  // namespace

void ScaledRenderer::reduce(int64_t reduction, const std::stop_token& stop) {
  if (m_reduction == reduction) return;
  const PixelRect whole = bitmap().bounds();
  const PixelRect size = DisplayRenderer::reducedSize(whole, reduction);
  const auto stride = static_cast<size_t>(size.width) * kChannels;
  m_reduction = 0;
  m_reduced.resize(stride * static_cast<size_t>(size.height));

  const int64_t rowsPerPiece =
      std::max<int64_t>(1, kPixelsPerPiece / (whole.width * reduction)) * reduction;
  const int64_t pieces = (whole.height + rowsPerPiece - 1) / rowsPerPiece;
  forEachPiece(pieces, stop, [&](int64_t index) {
    const int64_t top = index * rowsPerPiece;
    const PixelRect piece{0, top, whole.width, std::min(rowsPerPiece, whole.height - top)};
    m_renderer.render(piece, reduction,
                      m_reduced.data() + static_cast<size_t>(top / reduction) * stride, stride);
  });
  m_reducedSize = size;
  m_reduction = reduction;
}

void ScaledRenderer::render(int64_t width, int64_t height, uint8_t* output, size_t stride,
                            const std::stop_token& stop) {
  width = std::clamp<int64_t>(width, 1, bitmap().width());
  height = std::clamp<int64_t>(height, 1, bitmap().height());
  reduce(std::max<int64_t>(1, std::min(bitmap().width() / width, bitmap().height() / height)),
         stop);

  const auto reducedStride = static_cast<size_t>(m_reducedSize.width) * kChannels;
  const std::vector<Span> columns = areaSpans(m_reducedSize.width, width);
  const std::vector<Span> rows = areaSpans(m_reducedSize.height, height);
  const int64_t rowsPerPiece = std::max<int64_t>(1, kPixelsPerPiece / m_reducedSize.width);
  forEachPiece((height + rowsPerPiece - 1) / rowsPerPiece, stop, [&](int64_t index) {
    std::vector<float> sums(reducedStride);
    const int64_t end = std::min(height, (index + 1) * rowsPerPiece);
    for (int64_t y = index * rowsPerPiece; y < end; ++y) {
      const Span& span = rows[static_cast<size_t>(y)];
      std::fill(sums.begin(), sums.end(), 0.0F);
      const uint8_t* row = m_reduced.data() + static_cast<size_t>(span.first) * reducedStride;
      for (const float weight : span.weights) {
        addScaled(sums, row, weight);
        row += reducedStride;
      }
      writeRow(sums, columns, output + static_cast<size_t>(y) * stride);
    }
  });
}

}  // namespace vantrel
