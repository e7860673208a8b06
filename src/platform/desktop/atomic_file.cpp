#include "platform/desktop/atomic_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QtGlobal>
#include <cerrno>
#include <cstdio>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include "base/cancelled.h"
#include "platform/desktop/file_descriptor.h"
#include "platform/desktop/file_error.h"
#include "platform/desktop/regular_file.h"

namespace vantrel {
namespace {

constexpr mode_t kPermissions = 0777;
constexpr mode_t kOwnerReadsAndWrites = S_IRUSR | S_IWUSR;
constexpr mode_t kEverybodyReadsAndWrites = 0666;
constexpr int kNameAttempts = 100;
/// Bytes copied between two looks at the stop token.
constexpr size_t kCopyChunk = size_t{4} << 20;

/// Short, so that it fits wherever the destination's own name does.
std::string randomName() {
  static thread_local std::mt19937_64 random{std::random_device{}()};
  char name[32];
  std::snprintf(name, sizeof name, ".vantrel-%016llx", static_cast<unsigned long long>(random()));
  return name;
}

/// Copies one file to another with both at their start.
class Copy {
 public:
  Copy(const std::filesystem::path& source, const std::filesystem::path& destination)
      : m_source(source), m_destination(destination), m_input(openRegularFile(source)) {}

  /// `temporary` is where the destination is written.
  void run(const std::filesystem::path& temporary, const std::stop_token& stop,
           const std::function<void(int64_t copied)>& progress) {
    m_output = FileDescriptor(::open(temporary.c_str(), O_WRONLY | O_CLOEXEC));
    if (!m_output.isOpen()) throw fileError(m_destination, FileAction::Save);
    int64_t copied = 0;
    for (;;) {
      throwIfCancelled(stop);
      const size_t chunk = copyChunk();
      if (chunk == 0) return;
      copied += static_cast<int64_t>(chunk);
      if (progress) progress(copied);
    }
  }

 private:
  /// Bytes copied, up to kCopyChunk; 0 at the end.
  size_t copyChunk() {
    if (m_systemCopies) {
      const size_t copied = copyChunkBySystem();
      if (copied > 0) return copied;
      // The end, or a pair of files that the system cannot copy: reading tells.
      m_systemCopies = false;
    }
    return copyChunkByHand();
  }

  /// Leaves the bytes to the file systems, which may share them instead. 0 when it cannot be done.
  size_t copyChunkBySystem() {
#ifdef Q_OS_LINUX
    const ssize_t copied =
        ::copy_file_range(m_input.get(), nullptr, m_output.get(), nullptr, kCopyChunk, 0);
    return copied > 0 ? static_cast<size_t>(copied) : 0;
#else
    return 0;
#endif
  }

  size_t copyChunkByHand() {
    m_buffer.resize(kCopyChunk);
    ssize_t got = 0;
    do {
      got = ::read(m_input.get(), m_buffer.data(), m_buffer.size());
    } while (got < 0 && errno == EINTR);
    if (got < 0) throw fileError(m_source, FileAction::Read);
    const auto size = static_cast<size_t>(got);
    for (size_t written = 0; written < size;) {
      const ssize_t put = ::write(m_output.get(), m_buffer.data() + written, size - written);
      if (put < 0 && errno == EINTR) continue;
      if (put < 0) throw fileError(m_destination, FileAction::Save);
      written += static_cast<size_t>(put);
    }
    return size;
  }

  const std::filesystem::path& m_source;
  const std::filesystem::path& m_destination;
  FileDescriptor m_input, m_output;
  bool m_systemCopies = true;
  std::vector<char> m_buffer;
};

}  // namespace

AtomicFile::AtomicFile(const std::filesystem::path& destination) : m_destination(destination) {
  const std::optional<mode_t> oldMode = m_destination.oldPermissions();
  FileDescriptor file;
  for (int attempt = 0; attempt < kNameAttempts && !file.isOpen(); ++attempt) {
    m_temporary = m_destination.path().parent_path() / randomName();
    // The process's mask takes away from these permissions what a new file shall not have.
    const mode_t mode = oldMode ? kOwnerReadsAndWrites : kEverybodyReadsAndWrites;
    file = FileDescriptor(
        ::open(m_temporary.c_str(), O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, mode));
    if (!file.isOpen() && errno != EEXIST) break;
  }
  if (!file.isOpen()) throw fileError(destination, FileAction::Save);

  struct stat status {};
  const bool known = ::fstat(file.get(), &status) == 0;
  m_mode = oldMode.value_or(status.st_mode & kPermissions);
  // Writable to this process until it is finished, whatever it will be then.
  if (!known || ::fchmod(file.get(), m_mode | kOwnerReadsAndWrites) != 0) {
    const std::system_error error = fileError(destination, FileAction::Save);
    ::unlink(m_temporary.c_str());
    throw error;
  }
}

AtomicFile::~AtomicFile() {
  if (!m_committed) ::unlink(m_temporary.c_str());
}

void AtomicFile::commit() {
  m_destination.take(m_temporary, m_mode);
  m_committed = true;
}

void atomicCopy(const std::filesystem::path& source, const std::filesystem::path& destination,
                const std::stop_token& stop, const std::function<void(int64_t copied)>& progress) {
  throwIfCancelled(stop);
  Copy copy(source, destination);
  AtomicFile file(destination);
  copy.run(file.temporaryPath(), stop, progress);
  throwIfCancelled(stop);
  file.commit();
}

}  // namespace vantrel
