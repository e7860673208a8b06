#include "platform/movie/sound_resampler.h"

#include <algorithm>

namespace vantrel {
namespace {

constexpr int kChannels = 2;

}  // namespace

bool SoundResampler::fits(const AVFrame& frame) const {
  return m_context && frame.sample_rate == m_inputRate && frame.format == m_inputFormat &&
         frame.ch_layout.nb_channels == m_inputChannels;
}

int64_t SoundResampler::delay() const {
  return m_context ? swr_get_delay(m_context.get(), m_sampleRate) : 0;
}

bool SoundResampler::start(const AVFrame& frame) {
  m_context.reset();
  if (frame.sample_rate <= 0 || frame.ch_layout.nb_channels <= 0) return false;
  AVChannelLayout input = frame.ch_layout;
  // Without names the channels count as their usual arrangement.
  if (input.order == AV_CHANNEL_ORDER_UNSPEC) {
    av_channel_layout_default(&input, frame.ch_layout.nb_channels);
  }
  // Not const: versions before 7 want it so.
  AVChannelLayout output = AV_CHANNEL_LAYOUT_STEREO;
  SwrContext* context = nullptr;
  const int code =
      swr_alloc_set_opts2(&context, &output, AV_SAMPLE_FMT_FLT, m_sampleRate, &input,
                          static_cast<AVSampleFormat>(frame.format), frame.sample_rate, 0, nullptr);
  SwrContextPtr owner(context);
  if (code < 0 || swr_init(context) < 0) return false;
  m_context = std::move(owner);
  m_inputRate = frame.sample_rate;
  m_inputFormat = frame.format;
  m_inputChannels = frame.ch_layout.nb_channels;
  return true;
}

std::vector<float> SoundResampler::convert(const AVFrame& frame, int begin, int end) {
  const auto format = static_cast<AVSampleFormat>(frame.format);
  const bool isPlanar = av_sample_fmt_is_planar(format) != 0;
  const int planes = isPlanar ? m_inputChannels : 1;
  const ptrdiff_t step = av_get_bytes_per_sample(format) * (isPlanar ? 1 : m_inputChannels);
  std::vector<const uint8_t*> input;
  input.reserve(static_cast<size_t>(planes));
  for (int plane = 0; plane < planes; ++plane) {
    input.push_back(frame.extended_data[plane] + begin * step);
  }
  return run(input.data(), end - begin);
}

std::vector<float> SoundResampler::finish() {
  if (!m_context) return {};
  std::vector<float> rest = run(nullptr, 0);
  m_context.reset();
  return rest;
}

std::vector<float> SoundResampler::run(const uint8_t** input, int count) {
  const int most = swr_get_out_samples(m_context.get(), count);
  std::vector<float> samples(static_cast<size_t>(std::max(0, most)) * kChannels);
  auto* output = reinterpret_cast<uint8_t*>(samples.data());
  const int made = swr_convert(m_context.get(), &output, std::max(0, most), input, count);
  samples.resize(static_cast<size_t>(std::max(0, made)) * kChannels);
  return samples;
}

}  // namespace vantrel
