#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>

#include "platform/movie/box_file.h"

namespace vantrel {

/// Walks from block to block through a file beside its demuxer, which passes over damaged stretches
/// without a word. One thread.
class ContainerWalk {
 public:
  virtual ~ContainerWalk() = default;

  /// Null for files that are neither Matroska, WebM nor AVI. Throws std::system_error.
  [[nodiscard]] static std::unique_ptr<ContainerWalk> open(const std::filesystem::path& path);

  /// Whether all that begins up to an offset, or anywhere, is where it belongs. Once it is not it
  /// never is. Throws std::system_error.
  [[nodiscard]] bool isSoundUpTo(uint64_t offset);
  [[nodiscard]] bool isSound() { return isSoundUpTo(UINT64_MAX); }

 protected:
  explicit ContainerWalk(const std::filesystem::path& path) : m_file(path) {}

  /// Goes on to what follows. False for damage.
  [[nodiscard]] virtual bool step() = 0;

  [[nodiscard]] BoxFile& file() { return m_file; }
  [[nodiscard]] uint64_t offset() const { return m_offset; }
  void goTo(uint64_t offset) { m_offset = offset; }
  /// There is nothing more to look at.
  void goToEnd() { m_offset = m_file.size(); }

 private:
  BoxFile m_file;
  uint64_t m_offset = 0;
  bool m_isSound = true;
};

}  // namespace vantrel
