#pragma once

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <filesystem>
#include <functional>
#include <stdexcept>
#include <thread>
#include <utility>

namespace vantrel::testing {

/// Within its life no file of this process can grow past a number of bytes, as on a full disk.
class FileSizeLimit final {
 public:
  explicit FileSizeLimit(rlim_t bytes) : m_handler(std::signal(SIGXFSZ, SIG_IGN)) {
    ::getrlimit(RLIMIT_FSIZE, &m_before);
    const rlimit limit{bytes, m_before.rlim_max};
    if (::setrlimit(RLIMIT_FSIZE, &limit) != 0) throw std::runtime_error("no file size limit");
  }
  ~FileSizeLimit() {
    ::setrlimit(RLIMIT_FSIZE, &m_before);
    std::signal(SIGXFSZ, m_handler);
  }
  FileSizeLimit(const FileSizeLimit&) = delete;
  FileSizeLimit& operator=(const FileSizeLimit&) = delete;

 private:
  void (*m_handler)(int);
  rlimit m_before{};
};

/// A pipe with a name. It holds 64 KiB, so that who writes more to it is certainly not done when
/// its first byte comes out: `onFirstByte` is called then, on a thread of its own. After that the
/// pipe is emptied until its writer closes it.
class WatchedPipe final {
 public:
  WatchedPipe(std::filesystem::path path, std::function<void()> onFirstByte)
      : m_path(std::move(path)) {
    if (::mkfifo(m_path.c_str(), 0600) != 0) throw std::runtime_error("no pipe");
    m_thread = std::thread([this, call = std::move(onFirstByte)] { drain(call); });
  }
  ~WatchedPipe() { m_thread.join(); }
  WatchedPipe(const WatchedPipe&) = delete;
  WatchedPipe& operator=(const WatchedPipe&) = delete;

  [[nodiscard]] const std::filesystem::path& path() const { return m_path; }

 private:
  void drain(const std::function<void()>& onFirstByte) {
    const int pipe = ::open(m_path.c_str(), O_RDONLY | O_CLOEXEC);
    std::array<char, 4096> bytes{};
    if (::read(pipe, bytes.data(), 1) == 1) onFirstByte();
    while (::read(pipe, bytes.data(), bytes.size()) > 0) {
    }
    ::close(pipe);
  }

  std::filesystem::path m_path;
  std::thread m_thread;
};

}  // namespace vantrel::testing
