#include "platform/movie/plane_resampler.h"

#include <QtGlobal>

#include <zimg.h>

#include <array>
#include <limits>

#include "base/failure.h"
#include "platform/desktop/user_text.h"
#include "platform/movie/plane_turn.h"

namespace vantrel {
namespace {

using Content = ResamplingStep::Content;

/// Sharper than the default at half-sample shifts, where detail of chroma is lost first.
constexpr zimg_resample_filter_e kFilter = ZIMG_RESIZE_LANCZOS;
constexpr double kFilterTaps = 4;
/// Of zimg on the processors it knows.
constexpr uintptr_t kSourceAlignment = 32;

zimg_image_format imageFormat(int width, int height, const SampleFormat& format, Content content) {
  zimg_image_format image;
  zimg_image_format_default(&image, ZIMG_API_VERSION);
  image.width = static_cast<unsigned>(width);
  image.height = static_cast<unsigned>(height);
  image.pixel_type = format.bytesPerSample() == 1 ? ZIMG_PIXEL_BYTE : ZIMG_PIXEL_WORD;
  image.depth = static_cast<unsigned>(format.depth);
  image.pixel_range = format.isFullRange ? ZIMG_RANGE_FULL : ZIMG_RANGE_LIMITED;
  image.color_family = content == Content::OnePlane ? ZIMG_COLOR_GREY : ZIMG_COLOR_YUV;
  return image;
}

zimg_graph_builder_params builderParameters(bool dithers) {
  zimg_graph_builder_params parameters;
  zimg_graph_builder_params_default(&parameters, ZIMG_API_VERSION);
  parameters.resample_filter = parameters.resample_filter_uv = kFilter;
  parameters.filter_param_a = parameters.filter_param_a_uv = kFilterTaps;
  parameters.dither_type = dithers ? ZIMG_DITHER_ORDERED : ZIMG_DITHER_NONE;
  parameters.cpu_type = ZIMG_CPU_AUTO;
  return parameters;
}

[[noreturn]] void fail() {
  std::array<char, 256> message{};
  zimg_get_last_error(message.data(), message.size());
  throw Failure(
      failureText(QT_TRANSLATE_NOOP("Failure", "The video's pictures cannot be converted: %1"),
                  message.data()));
}

zimg_filter_graph* buildGraph(const ResamplingStep& step) {
  auto source = imageFormat(step.sourceWidth, step.sourceHeight, step.source, step.content);
  auto target = imageFormat(step.targetWidth, step.targetHeight, step.target, step.content);
  if (step.content == Content::RgbToYuv) {
    source.color_family = ZIMG_COLOR_RGB;
    source.matrix_coefficients = ZIMG_MATRIX_RGB;
    target.matrix_coefficients = static_cast<zimg_matrix_coefficients_e>(step.matrix);
  }
  if (step.region)
    source.active_region = {step.region->left, step.region->top, step.region->width,
                            step.region->height};
  const auto parameters = builderParameters(step.dithers);
  zimg_filter_graph* graph = zimg_filter_graph_build(&source, &target, &parameters);
  if (!graph) fail();
  return graph;
}

ScratchPlane workspaceOf(const zimg_filter_graph* graph) {
  size_t size = 0;
  if (zimg_filter_graph_get_tmp_size(graph, &size) != ZIMG_ERROR_SUCCESS) fail();
  const size_t rows = size / kPlaneAlignment + 1;
  if (rows > static_cast<size_t>(std::numeric_limits<int>::max())) throw std::bad_alloc();
  return ScratchPlane({kPlaneAlignment, static_cast<int>(rows), 1});
}

bool isAligned(const PlaneView& view) {
  return (reinterpret_cast<uintptr_t>(view.data) | static_cast<uintptr_t>(view.stride)) %
             kSourceAlignment ==
         0;
}

/// `source`, or its copy in `copy` if its rows are not aligned.
PlaneView aligned(const PlaneView& source, std::optional<ScratchPlane>& copy) {
  if (isAligned(source)) return source;
  if (!copy) copy.emplace(PlaneShape{source.width, source.height, source.bytesPerSample});
  turnPlane(source, {}, copy->target());
  return copy->view();
}

}  // namespace

PlaneResampler::PlaneResampler(const ResamplingStep& step)
    : m_graph(buildGraph(step)),
      m_workspace(workspaceOf(m_graph.get())),
      m_alignedSources(step.content == Content::OnePlane ? 1 : 3) {}

PlaneResampler::PlaneResampler(PlaneResampler&&) noexcept = default;
PlaneResampler& PlaneResampler::operator=(PlaneResampler&&) noexcept = default;
PlaneResampler::~PlaneResampler() = default;

void PlaneResampler::process(std::span<const PlaneView> sources,
                             std::span<const PlaneTarget> targets) {
  zimg_image_buffer_const source{};
  zimg_image_buffer target{};
  source.version = target.version = ZIMG_API_VERSION;
  for (size_t i = 0; i < m_alignedSources.size(); ++i) {
    const PlaneView view = aligned(sources[i], m_alignedSources[i]);
    source.plane[i] = {view.data, view.stride, ZIMG_BUFFER_MAX};
    target.plane[i] = {targets[i].data, targets[i].stride, ZIMG_BUFFER_MAX};
  }
  if (zimg_filter_graph_process(m_graph.get(), &source, &target, m_workspace->target().data,
                                nullptr, nullptr, nullptr, nullptr) != ZIMG_ERROR_SUCCESS)
    fail();
}

void PlaneResampler::FreeGraph::operator()(zimg_filter_graph* graph) const {
  zimg_filter_graph_free(graph);
}

}  // namespace vantrel
