#pragma once

#include <filesystem>
#include <stdexcept>
#include <string>

#include "platform/desktop/file_error.h"

namespace vantrel {

/// What went wrong in a container or a codec, as one line for the user with the library's own
/// words, for example "“clip.mov” could not be read: Invalid data found when processing input".
class MovieError final : public std::runtime_error {
 public:
  /// `code` is an AVERROR. A code that stands for errno gives the system's words.
  MovieError(const std::filesystem::path& path, FileAction action, int code);
  /// The same with words of our own in the place of the library's, which are in the catalogue under
  /// "Failure".
  MovieError(const std::filesystem::path& path, FileAction action, const std::string& words);

  /// The AVERROR; 0 where there was none.
  [[nodiscard]] int code() const { return m_code; }

 private:
  int m_code = 0;
};

}  // namespace vantrel
