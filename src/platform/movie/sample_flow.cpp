#include "platform/movie/sample_flow.h"

#include "platform/movie/sample_content.h"

namespace vantrel {

MovieSample::MovieSample(MediaTime presentationTime, MediaTime duration)
    : MovieSample(presentationTime, duration, nullptr) {}

MovieSample::MovieSample(MediaTime presentationTime, MediaTime duration,
                         std::unique_ptr<Content> content)
    : m_presentationTime(presentationTime), m_duration(duration), m_content(std::move(content)) {}

MovieSample::MovieSample(MovieSample&&) noexcept = default;
MovieSample& MovieSample::operator=(MovieSample&&) noexcept = default;
MovieSample::~MovieSample() = default;

}  // namespace vantrel
