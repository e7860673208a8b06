#pragma once

// Owners of FFmpeg's objects; the only place that frees them.

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavcodec/bsf.h>
#include <libavformat/avformat.h>
#include <libavutil/buffer.h>
#include <libavutil/dict.h>
#include <libavutil/frame.h>
}

#include <memory>
#include <new>

namespace vantrel {

template <auto free>
struct AvDelete {
  template <class Object>
  void operator()(Object* object) const {
    free(&object);
  }
};

using AvFramePtr = std::unique_ptr<AVFrame, AvDelete<av_frame_free>>;
using AvPacketPtr = std::unique_ptr<AVPacket, AvDelete<av_packet_free>>;
using AvCodecContextPtr = std::unique_ptr<AVCodecContext, AvDelete<avcodec_free_context>>;
using AvCodecParametersPtr = std::unique_ptr<AVCodecParameters, AvDelete<avcodec_parameters_free>>;
using AvInputPtr = std::unique_ptr<AVFormatContext, AvDelete<avformat_close_input>>;
using AvBsfPtr = std::unique_ptr<AVBSFContext, AvDelete<av_bsf_free>>;
using AvBufferPtr = std::unique_ptr<AVBufferRef, AvDelete<av_buffer_unref>>;
using AvDictionaryPtr = std::unique_ptr<AVDictionary, AvDelete<av_dict_free>>;

/// Throws std::bad_alloc for null, which is what FFmpeg's allocators give.
template <class Pointer>
[[nodiscard]] Pointer owned(typename Pointer::pointer object) {
  if (!object) throw std::bad_alloc();
  return Pointer(object);
}

[[nodiscard]] inline AvFramePtr makeFrame() {
  return owned<AvFramePtr>(av_frame_alloc());
}
[[nodiscard]] inline AvPacketPtr makePacket() {
  return owned<AvPacketPtr>(av_packet_alloc());
}

}  // namespace vantrel
