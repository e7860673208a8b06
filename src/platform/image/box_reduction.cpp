#include "platform/image/box_reduction.h"

#include <algorithm>
#include <type_traits>

namespace vantrel {
namespace {

template <typename Sample>
using SumOf = std::conditional_t<std::is_same_v<Sample, float>, double, uint64_t>;

template <typename Sample>
SumOf<Sample> sampleValue(Sample sample) {
  if constexpr (std::is_same_v<Sample, float>) {
    return sample >= 0 ? std::min<double>(sample, 1) : 0;  // NaN becomes 0
  } else {
    return sample;
  }
}

template <typename Sample>
Sample quotient(SumOf<Sample> sum, SumOf<Sample> divisor) {
  if constexpr (std::is_same_v<Sample, float>) {
    return static_cast<float>(sum / divisor);
  } else {
    return static_cast<Sample>((sum + divisor / 2) / divisor);
  }
}

template <typename Sample, int Colors, bool Alpha>
void addPixels(const std::byte* pixels, int64_t width, int64_t reduction, SumOf<Sample>* sums) {
  constexpr int kChannels = Colors + (Alpha ? 1 : 0);
  const auto* sample = reinterpret_cast<const Sample*>(pixels);
  for (int64_t left = width; left > 0; left -= reduction, sums += kChannels) {
    SumOf<Sample> box[kChannels] = {};
    for (int64_t x = std::min(left, reduction); x > 0; --x, sample += kChannels) {
      const SumOf<Sample> weight = Alpha ? sampleValue(sample[kChannels - 1]) : 1;
      for (int c = 0; c < Colors; ++c) {
        box[c] += Alpha ? sampleValue(sample[c]) * weight : sampleValue(sample[c]);
      }
      if (Alpha) box[kChannels - 1] += weight;
    }
    for (int c = 0; c < kChannels; ++c) {
      sums[c] += box[c];
    }
  }
}

/// As many rows of 16-bit samples add up in 32 bits.
constexpr int64_t kMostColumnRows = 65536;

template <typename Sample>
void addToColumns(const std::byte* pixels, std::vector<uint32_t>& columns) {
  const auto* sample = reinterpret_cast<const Sample*>(pixels);
  uint32_t* column = columns.data();
  for (size_t index = 0; index < columns.size(); ++index)
    column[index] += sample[index];
}

template <int Channels>
void addColumns(const uint32_t* column, int64_t width, int64_t reduction, uint64_t* sums) {
  for (int64_t left = width; left > 0; left -= reduction, sums += Channels) {
    uint64_t box[Channels] = {};
    for (int64_t x = std::min(left, reduction); x > 0; --x, column += Channels) {
      for (int c = 0; c < Channels; ++c)
        box[c] += column[c];
    }
    for (int c = 0; c < Channels; ++c)
      sums[c] += box[c];
  }
}

template <typename Sample, int Colors, bool Alpha>
void takePixels(std::byte* pixels, int64_t width, int64_t reduction, int64_t rows,
                SumOf<Sample>* sums) {
  constexpr int kChannels = Colors + (Alpha ? 1 : 0);
  auto* sample = reinterpret_cast<Sample*>(pixels);
  for (int64_t left = width; left > 0; left -= reduction, sums += kChannels, sample += kChannels) {
    const auto count = static_cast<SumOf<Sample>>(std::min(left, reduction) * rows);
    const SumOf<Sample> weight = Alpha ? sums[kChannels - 1] : count;
    for (int c = 0; c < Colors; ++c) {
      sample[c] = weight == 0 ? Sample{0} : quotient<Sample>(sums[c], weight);
    }
    if (Alpha) sample[kChannels - 1] = quotient<Sample>(weight, count);
    std::fill_n(sums, kChannels, SumOf<Sample>{0});
  }
}

/// Calls `operation` with the sample type, the number of colour channels and whether there is alpha
/// as compile-time values.
template <typename Sample, typename Operation>
void withChannels(const PixelLayout& layout, Operation operation) {
  const auto call = [&]<int Colors>(std::integral_constant<int, Colors>) {
    if (layout.alpha) {
      operation.template operator()<Sample, Colors, true>();
    } else {
      operation.template operator()<Sample, Colors, false>();
    }
  };
  switch (layout.colorChannels()) {
    case 1:
      return call(std::integral_constant<int, 1>());
    case 3:
      return call(std::integral_constant<int, 3>());
    default:
      return call(std::integral_constant<int, 4>());
  }
}

}  // namespace

BoxReduction::BoxReduction(PixelLayout layout, int64_t width, int64_t reduction)
    : m_layout(layout),
      m_width(width),
      m_reduction(reduction),
      m_reducedWidth((width - 1) / reduction + 1) {
  const size_t sums = static_cast<size_t>(m_reducedWidth) * static_cast<size_t>(layout.channels());
  if (layout.sample == SampleFormat::Float32) {
    m_floatSums.resize(sums);
  } else {
    m_sums.resize(sums);
    const auto columns = static_cast<size_t>(width) * static_cast<size_t>(layout.channels());
    if (!layout.alpha) m_columns.resize(columns);
  }
}

void BoxReduction::foldColumns() {
  if (m_columnRows == 0) return;
  switch (m_layout.colorChannels()) {
    case 1:
      addColumns<1>(m_columns.data(), m_width, m_reduction, m_sums.data());
      break;
    case 3:
      addColumns<3>(m_columns.data(), m_width, m_reduction, m_sums.data());
      break;
    default:
      addColumns<4>(m_columns.data(), m_width, m_reduction, m_sums.data());
      break;
  }
  std::fill(m_columns.begin(), m_columns.end(), 0U);
  m_columnRows = 0;
}

void BoxReduction::addRow(const std::byte* pixels) {
  ++m_rows;
  if (!m_columns.empty()) {
    if (m_layout.sample == SampleFormat::UInt8) {
      addToColumns<uint8_t>(pixels, m_columns);
    } else {
      addToColumns<uint16_t>(pixels, m_columns);
    }
    if (++m_columnRows == kMostColumnRows) foldColumns();
    return;
  }
  const auto add = [&]<typename Sample, int Colors, bool Alpha>() {
    if constexpr (std::is_same_v<Sample, float>) {
      addPixels<Sample, Colors, Alpha>(pixels, m_width, m_reduction, m_floatSums.data());
    } else {
      addPixels<Sample, Colors, Alpha>(pixels, m_width, m_reduction, m_sums.data());
    }
  };
  switch (m_layout.sample) {
    case SampleFormat::UInt8:
      return withChannels<uint8_t>(m_layout, add);
    case SampleFormat::UInt16:
      return withChannels<uint16_t>(m_layout, add);
    case SampleFormat::Float32:
      return withChannels<float>(m_layout, add);
  }
}

void BoxReduction::takeRow(std::byte* pixels) {
  foldColumns();
  const auto take = [&]<typename Sample, int Colors, bool Alpha>() {
    if constexpr (std::is_same_v<Sample, float>) {
      takePixels<Sample, Colors, Alpha>(pixels, m_width, m_reduction, m_rows, m_floatSums.data());
    } else {
      takePixels<Sample, Colors, Alpha>(pixels, m_width, m_reduction, m_rows, m_sums.data());
    }
  };
  switch (m_layout.sample) {
    case SampleFormat::UInt8:
      withChannels<uint8_t>(m_layout, take);
      break;
    case SampleFormat::UInt16:
      withChannels<uint16_t>(m_layout, take);
      break;
    case SampleFormat::Float32:
      withChannels<float>(m_layout, take);
      break;
  }
  m_rows = 0;
}

}  // namespace vantrel
