#pragma once

#include <cstddef>
#include <filesystem>
#include <system_error>

namespace vantrel {

/// A file that is written once from its beginning to its end. One thread at a time.
class OutputFile {
 public:
  /// Creates the file, or empties the one that is there. Throws std::system_error.
  explicit OutputFile(std::filesystem::path path);
  /// Closes a file that was given up; what is written so far stays on disk.
  ~OutputFile();
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;

  /// Appends `size` bytes. Throws std::system_error.
  void write(const void* data, size_t size);
  /// The same for callers that no exception may pass through: returns the error instead.
  [[nodiscard]] std::error_code tryWrite(const void* data, size_t size) noexcept;

  /// Ends the file: some systems report only now that it could not be stored. Throws
  /// std::system_error.
  void close();

 private:
  [[noreturn]] void fail(const std::error_code& error) const;

  std::filesystem::path m_path;
  int m_descriptor;
};

}  // namespace vantrel
