#include "platform/movie/movie_error.h"

#include "platform/movie/av_ptr.h"

namespace vantrel {
namespace {

std::string words(int code) {
  char text[AV_ERROR_MAX_STRING_SIZE] = {};
  av_strerror(code, text, sizeof text);
  return text;
}

}  // namespace

MovieError::MovieError(const std::filesystem::path& path, FileAction action, int code)
    : std::runtime_error(fileFailure(path, action) + ": " + words(code)), m_code(code) {}

MovieError::MovieError(const std::filesystem::path& path, FileAction action,
                       const std::string& words)
    : std::runtime_error(fileFailure(path, action) + ": " + words) {}

}  // namespace vantrel
