#include "platform/movie/movie_error.h"

#include <QtGlobal>
#include <array>

#include "platform/movie/av_ptr.h"

namespace vantrel {
namespace {

/// For the catalogue: what the library says most.
[[maybe_unused]] constexpr std::array kLibraryWords{
    QT_TRANSLATE_NOOP("Failure", "Invalid data found when processing input"),
    QT_TRANSLATE_NOOP("Failure", "End of file"),
    QT_TRANSLATE_NOOP("Failure", "Decoder not found"),
    QT_TRANSLATE_NOOP("Failure", "Encoder not found"),
    QT_TRANSLATE_NOOP("Failure", "Demuxer not found"),
    QT_TRANSLATE_NOOP("Failure", "Stream not found"),
    QT_TRANSLATE_NOOP("Failure", "Generic error in an external library"),
    QT_TRANSLATE_NOOP("Failure", "Internal bug, should not have happened"),
    QT_TRANSLATE_NOOP("Failure", "Not yet implemented in FFmpeg, patches welcome"),
    QT_TRANSLATE_NOOP("Failure", "Unknown error occurred")};

std::string words(int code) {
  char text[AV_ERROR_MAX_STRING_SIZE] = {};
  av_strerror(code, text, sizeof text);
  return text;
}

}  // namespace

MovieError::MovieError(const std::filesystem::path& path, FileAction action, int code)
    : std::runtime_error(fileFailure(path, action, words(code))), m_code(code) {}

MovieError::MovieError(const std::filesystem::path& path, FileAction action,
                       const std::string& words)
    : std::runtime_error(fileFailure(path, action, words)) {}

}  // namespace vantrel
