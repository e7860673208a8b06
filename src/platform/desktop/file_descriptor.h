#pragma once

#include <unistd.h>

#include <utility>

namespace vantrel {

/// Owns an open file descriptor; closes it. Negative is none.
class FileDescriptor final {
 public:
  FileDescriptor() = default;
  explicit FileDescriptor(int descriptor) : m_descriptor(descriptor) {}
  FileDescriptor(const FileDescriptor&) = delete;
  FileDescriptor& operator=(const FileDescriptor&) = delete;
  FileDescriptor(FileDescriptor&& other) noexcept
      : m_descriptor(std::exchange(other.m_descriptor, -1)) {}
  FileDescriptor& operator=(FileDescriptor&& other) noexcept {
    std::swap(m_descriptor, other.m_descriptor);
    return *this;
  }
  ~FileDescriptor() {
    if (isOpen()) ::close(m_descriptor);
  }

  [[nodiscard]] bool isOpen() const { return m_descriptor >= 0; }
  [[nodiscard]] int get() const { return m_descriptor; }
  /// The caller closes it, and sees whether that fails.
  [[nodiscard]] int release() { return std::exchange(m_descriptor, -1); }

 private:
  int m_descriptor = -1;
};

}  // namespace vantrel
