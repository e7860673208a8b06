#include "platform/movie/movie_file.h"

extern "C" {
#include <libavutil/mem.h>
}

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <new>
#include <utility>

#include "platform/desktop/file_error.h"
#include "platform/movie/movie_error.h"

namespace vantrel {
namespace {

constexpr int kBufferSize = 1 << 18;
constexpr mode_t kEverybodyReadsAndWrites = 0666;

#if LIBAVFORMAT_VERSION_MAJOR >= 61
using WrittenByte = const uint8_t;
#else
using WrittenByte = uint8_t;
#endif

}  // namespace

MovieFile::MovieFile(const std::filesystem::path& path, std::filesystem::path name)
    : m_name(std::move(name)),
      m_descriptor(
          ::open(path.c_str(), O_RDWR | O_CREAT | O_TRUNC | O_CLOEXEC, kEverybodyReadsAndWrites)) {
  if (!m_descriptor.isOpen()) throw fileError(m_name, FileAction::Save);
  auto* buffer = static_cast<uint8_t*>(av_malloc(kBufferSize));
  if (!buffer) throw std::bad_alloc();
  m_context = avio_alloc_context(
      buffer, kBufferSize, 1, this, nullptr,
      [](void* file, WrittenByte* bytes, int size) {
        return static_cast<MovieFile*>(file)->write(bytes, static_cast<size_t>(size));
      },
      [](void* file, int64_t offset, int whence) {
        return static_cast<MovieFile*>(file)->seek(offset, whence);
      });
  if (m_context) return;
  av_free(buffer);
  throw std::bad_alloc();
}

MovieFile::~MovieFile() {
  av_freep(&m_context->buffer);
  avio_context_free(&m_context);
}

int MovieFile::write(const uint8_t* bytes, size_t size) {
  for (size_t written = 0; written < size;) {
    const ssize_t put = ::write(m_descriptor.get(), bytes + written, size - written);
    if (put < 0 && errno == EINTR) continue;
    if (put < 0) {
      if (m_errno == 0) m_errno = errno;
      return AVERROR(errno);
    }
    written += static_cast<size_t>(put);
  }
  return static_cast<int>(size);
}

int64_t MovieFile::seek(int64_t offset, int whence) {
  if (whence == AVSEEK_SIZE) return AVERROR(ENOSYS);
  const off_t position = ::lseek(m_descriptor.get(), offset, whence & ~AVSEEK_FORCE);
  return position < 0 ? AVERROR(errno) : position;
}

void MovieFile::check(int code) const {
  if (m_errno != 0) {
    throw fileError(m_name, FileAction::Save, {m_errno, std::generic_category()});
  }
  if (code < 0) throw MovieError(m_name, FileAction::Save, code);
  if (m_context->error < 0) throw MovieError(m_name, FileAction::Save, m_context->error);
}

void MovieFile::close(bool flushes) {
  avio_flush(m_context);
  check(0);
  if (flushes && ::fsync(m_descriptor.get()) != 0) throw fileError(m_name, FileAction::Save);
  if (::close(m_descriptor.release()) != 0) throw fileError(m_name, FileAction::Save);
}

}  // namespace vantrel
