#include "platform/desktop/atomic_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <optional>
#include <random>
#include <string>

#include "base/cancelled.h"
#include "platform/desktop/file_copy.h"
#include "platform/desktop/file_descriptor.h"
#include "platform/desktop/file_error.h"
#include "platform/desktop/regular_file.h"

namespace vantrel {
namespace {

constexpr mode_t kPermissions = 0777;
constexpr mode_t kOwnerReadsAndWrites = S_IRUSR | S_IWUSR;
constexpr mode_t kEverybodyReadsAndWrites = 0666;
constexpr int kNameAttempts = 100;
/// Bytes of a copy that wait for the disk at most. What is only in memory is no progress, and would
/// all have to be waited for at the end.
constexpr uint64_t kMostUnflushed = uint64_t{32} << 20;

void flush(const FileDescriptor& file, const std::filesystem::path& name) {
  if (::fsync(file.get()) != 0) throw fileError(name, FileAction::Save);
}

/// Short, so that it fits wherever the destination's own name does.
std::string randomName() {
  static thread_local std::mt19937_64 random{std::random_device{}()};
  char name[32];
  std::snprintf(name, sizeof name, ".vantrel-%016llx", static_cast<unsigned long long>(random()));
  return name;
}

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
  const FileDescriptor input = openRegularFile(source);
  AtomicFile file(destination);
  const FileDescriptor output(::open(file.temporaryPath().c_str(), O_WRONLY | O_CLOEXEC));
  if (!output.isOpen()) throw fileError(destination, FileAction::Save);
  FileCopy copy({input.get(), source}, {output.get(), destination});
  uint64_t copied = 0, flushed = 0;
  while (const size_t chunk = copy.copySome(copied)) {
    copied += chunk;
    if (copied - flushed >= kMostUnflushed) {
      flush(output, destination);
      flushed = copied;
    }
    if (progress) progress(static_cast<int64_t>(copied));
    throwIfCancelled(stop);
  }
  flush(output, destination);
  throwIfCancelled(stop);
  file.commit();
}

}  // namespace vantrel
