#include "platform/movie/box_file.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <limits>
#include <utility>

#include "platform/desktop/file_error.h"
#include "platform/desktop/regular_file.h"
#include "platform/movie/box_bytes.h"

namespace vantrel {
namespace {

/// Types of boxes that files of this family begin with.
constexpr std::array kFirstTypes = {fourCC("ftyp"), fourCC("styp"), fourCC("moov"), fourCC("mdat"),
                                    fourCC("moof"), fourCC("wide"), fourCC("free"), fourCC("skip"),
                                    fourCC("pnot"), fourCC("uuid"), fourCC("sidx"), fourCC("junk")};

}  // namespace

BoxFile::BoxFile(std::filesystem::path path, uint64_t mostLoaded)
    : m_path(std::move(path)), m_file(openRegularFile(m_path)), m_loadable(mostLoaded) {
  struct stat status {};
  if (::fstat(m_file.get(), &status) != 0) throw fileError(m_path, FileAction::Read);
  m_size = static_cast<uint64_t>(status.st_size);
}

bool BoxFile::isQuickTime() {
  const std::optional<FileBox> first = boxAt(0, m_size);
  return first &&
         std::find(kFirstTypes.begin(), kFirstTypes.end(), first->type) != kFirstTypes.end();
}

bool BoxFile::read(uint64_t offset, std::span<uint8_t> to) {
  if (offset > m_size || to.size() > m_size - offset) return false;
  if (to.size() > kWindow) return readAt(offset, to) == to.size();
  const auto holds = [this, offset, &to] {
    return offset >= m_windowBegin && offset - m_windowBegin <= m_window.size() &&
           to.size() <= m_window.size() - (offset - m_windowBegin);
  };
  if (!holds()) {
    m_window.resize(kWindow);
    m_windowBegin = offset;
    m_window.resize(readAt(offset, m_window));
    if (!holds()) return false;
  }
  const auto from = m_window.begin() + static_cast<ptrdiff_t>(offset - m_windowBegin);
  std::copy_n(from, to.size(), to.begin());
  return true;
}

std::optional<FileBox> BoxFile::boxAt(uint64_t offset, uint64_t limit) {
  if (limit > m_size || offset > limit || limit - offset < BoxHeader::kShortSize) {
    return std::nullopt;
  }
  std::array<uint8_t, BoxHeader::kLongSize> bytes{};
  const std::span<uint8_t> start(
      bytes.data(), static_cast<size_t>(std::min<uint64_t>(bytes.size(), limit - offset)));
  if (!read(offset, start)) return std::nullopt;
  const std::optional<BoxHeader> header = BoxHeader::parse(start);
  if (!header) return std::nullopt;
  FileBox box{header->type, offset, offset + header->headerSize, limit};
  if (header->size != 0) {
    const uint64_t most = std::numeric_limits<uint64_t>::max() - offset;
    box.end = offset + std::min(header->size, most);
  } else if (limit != m_size) {
    return std::nullopt;
  }
  return box;
}

std::optional<FileBox> BoxFile::find(uint32_t type, uint64_t offset, uint64_t limit) {
  while (const std::optional<FileBox> box = boxAt(offset, limit)) {
    if (box->end > limit) break;
    if (box->type == type) return box;
    offset = box->end;
  }
  return std::nullopt;
}

std::optional<std::vector<uint8_t>> BoxFile::load(uint64_t begin, uint64_t end) {
  if (begin > end || end > m_size || end - begin > m_loadable) return std::nullopt;
  std::vector<uint8_t> bytes(static_cast<size_t>(end - begin));
  if (!read(begin, bytes)) return std::nullopt;
  m_loadable -= bytes.size();
  return bytes;
}

size_t BoxFile::readAt(uint64_t offset, std::span<uint8_t> to) const {
  size_t done = 0;
  while (done < to.size()) {
    const ssize_t got = ::pread(m_file.get(), to.data() + done, to.size() - done,
                                static_cast<off_t>(offset + done));
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) throw fileError(m_path, FileAction::Read);
    if (got == 0) break;
    done += static_cast<size_t>(got);
  }
  return done;
}

}  // namespace vantrel
