#include "platform/movie/movie_input.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <mutex>
#include <string_view>
#include <utility>
#include <vector>

#include "base/cancelled.h"
#include "platform/desktop/regular_file.h"
#include "platform/movie/movie_error.h"
#include "platform/movie/sample_claims.h"

namespace vantrel {
namespace {

constexpr int kBufferSize = 64 * 1024;

void silenceLibrary() {
  static std::once_flag once;
  std::call_once(once, [] { av_log_set_level(AV_LOG_FATAL); });
}

/// Demuxers whose file is a list of other files or of addresses, a script, or text drawn as a
/// picture.
bool isRefused(const AVInputFormat& format) {
  static constexpr std::string_view kRefused[] = {
      "adf", "avisynth", "bin",  "concat", "dash",        "hls",    "idf",
      "imf", "sdp",      "rtsp", "tty",    "vapoursynth", "vobsub", "webm_dash_manifest",
      "xbin"};
  return std::find(std::begin(kRefused), std::end(kRefused), format.name) != std::end(kRefused);
}

}  // namespace

/// The open file as libavformat reads it.
class MovieInput::File final {
 public:
  File(std::filesystem::path path, std::stop_token stop)
      : m_path(std::move(path)), m_stop(std::move(stop)), m_descriptor(openRegularFile(m_path)) {
    struct stat status {};
    if (::fstat(m_descriptor.get(), &status) != 0) throw fileError(m_path, FileAction::Open);
    m_size = status.st_size;
    auto* buffer = static_cast<uint8_t*>(av_malloc(kBufferSize));
    if (!buffer) throw std::bad_alloc();
    m_io = avio_alloc_context(buffer, kBufferSize, 0, this, &File::read, nullptr, &File::seek);
    if (m_io) return;
    av_free(buffer);
    throw std::bad_alloc();
  }
  ~File() {
    av_freep(static_cast<void*>(&m_io->buffer));
    avio_context_free(&m_io);
  }
  File(const File&) = delete;
  File& operator=(const File&) = delete;

  [[nodiscard]] const std::filesystem::path& path() const { return m_path; }
  [[nodiscard]] int64_t size() const { return m_size; }
  [[nodiscard]] AVIOContext* io() const { return m_io; }
  [[nodiscard]] AVIOInterruptCB interruption() { return {&File::isStopped, this}; }

  /// What libavformat's error stands for, if it is one of the file or of the stop token.
  void throwIfInterrupted() const {
    throwIfCancelled(m_stop);
    if (m_error != 0) {
      throw fileError(m_path, FileAction::Read, {m_error, std::generic_category()});
    }
    if (m_hasShrunk) throw MovieError(m_path, FileAction::Read, kEndsTooEarly);
  }
  [[noreturn]] void fail(FileAction action, int code) const {
    throwIfInterrupted();
    throw MovieError(m_path, action, code);
  }

 private:
  static int isStopped(void* self) {
    return static_cast<File*>(self)->m_stop.stop_requested() ? 1 : 0;
  }

  static int read(void* self, uint8_t* to, int size) {
    File& file = *static_cast<File*>(self);
    if (isStopped(self) != 0) return AVERROR_EXIT;
    ssize_t count = 0;
    do {
      count = ::read(file.m_descriptor.get(), to, static_cast<size_t>(size));
    } while (count < 0 && errno == EINTR);
    if (count > 0) return static_cast<int>(count);
    if (count == 0) {
      file.m_hasShrunk |= ::lseek(file.m_descriptor.get(), 0, SEEK_CUR) < file.m_size;
      return AVERROR_EOF;
    }
    file.m_error = errno;
    return AVERROR(file.m_error);
  }

  static int64_t seek(void* self, int64_t offset, int whence) {
    const File& file = *static_cast<File*>(self);
    if (whence == AVSEEK_SIZE) return file.m_size;
    const off_t position = ::lseek(file.m_descriptor.get(), offset, whence & ~AVSEEK_FORCE);
    return position < 0 ? AVERROR(errno) : position;
  }

  std::filesystem::path m_path;
  std::stop_token m_stop;
  FileDescriptor m_descriptor;
  int64_t m_size = 0;
  /// The errno of the first failed read; 0 if none failed.
  int m_error = 0;
  /// The file ended where it had more when it was opened.
  bool m_hasShrunk = false;
  AVIOContext* m_io = nullptr;
};

namespace {

int refuseToOpen(AVFormatContext*, AVIOContext**, const char*, int, AVDictionary**) {
  return AVERROR(EPERM);
}

}  // namespace

MovieInput::MovieInput(std::unique_ptr<File> file) : m_file(std::move(file)) {}
MovieInput::MovieInput(MovieInput&&) noexcept = default;
MovieInput& MovieInput::operator=(MovieInput&& other) noexcept {
  m_context = std::move(other.m_context);
  m_file = std::move(other.m_file);
  m_boxes = std::move(other.m_boxes);
  m_fragmentTimes = std::move(other.m_fragmentTimes);
  return *this;
}
MovieInput::~MovieInput() = default;

MovieInput MovieInput::open(const std::filesystem::path& path, const std::stop_token& stop,
                            const MovieInputOptions& options) {
  silenceLibrary();
  throwIfCancelled(stop);
  MovieInput input(std::make_unique<File>(path, stop));
  File& file = *input.m_file;
  const AVInputFormat* format = nullptr;
  int code = av_probe_input_buffer2(file.io(), &format, path.c_str(), nullptr, 0, 0);
  if (code < 0) file.fail(FileAction::Open, code);
  if (isRefused(*format)) file.fail(FileAction::Open, AVERROR_INVALIDDATA);
  input.readBoxes(*format);

  AVFormatContext* context = avformat_alloc_context();
  if (!context) throw std::bad_alloc();
  context->pb = file.io();
  context->interrupt_callback = file.interruption();
  context->io_open = refuseToOpen;
  AVDictionary* settings = nullptr;
  // For demuxers that open other files past `io_open`.
  av_dict_set(&settings, "protocol_whitelist", "none", 0);
  if (options.ignoresEditLists) av_dict_set(&settings, "ignore_editlist", "1", 0);
  // Frees the context when it fails.
  code = avformat_open_input(&context, path.c_str(), format, &settings);
  av_dict_free(&settings);
  if (code < 0) file.fail(FileAction::Open, code);
  input.m_context.reset(context);
  input.findStreams();
  input.readLowestOffsets();
  return input;
}

void MovieInput::readBoxes(const AVInputFormat& format) {
  if (std::string_view(format.name).substr(0, 4) != "mov,") return;
  m_boxes = QuickTimeMovie::read(m_file->path());
  if (m_boxes && m_boxes->timescale > INT32_MAX) m_boxes.reset();
  // libavformat makes an entry for each sample that a table claims, so that a few bytes could take
  // up gigabytes.
  if (claimedSamples(m_file->path(), m_boxes) > static_cast<uint64_t>(m_file->size()) ||
      !fragmentsHaveNumberedTracks(m_file->path())) {
    m_file->fail(FileAction::Open, AVERROR_INVALIDDATA);
  }
  if (m_boxes && m_boxes->isFragmented) m_fragmentTimes = FragmentTimes::read(m_file->path());
}

void MovieInput::findStreams() {
  std::vector<AVDictionary*> settings;
  for (unsigned i = 0; i < m_context->nb_streams; ++i) {
    settings.push_back(nullptr);
    av_dict_set_int(&settings.back(), "max_pixels", kMaxPixels, 0);
  }
  const int code = avformat_find_stream_info(m_context.get(), settings.data());
  for (AVDictionary* dictionary : settings)
    av_dict_free(&dictionary);
  m_file->throwIfInterrupted();
  if (code < 0 && m_context->nb_streams == 0) m_file->fail(FileAction::Open, code);
}

/// Makes libavformat read what the delays of tracks rest on.
void MovieInput::readLowestOffsets() {
  bool hasMoved = false;
  for (unsigned i = 0; i < m_context->nb_streams; ++i) {
    const AVStream& stream = *m_context->streams[i];
    const auto delay = m_fragmentTimes.delays.find(static_cast<uint32_t>(stream.id));
    if (delay == m_fragmentTimes.delays.end() || !delay->second.timeOfLowest) continue;
    (void)av_seek_frame(m_context.get(), stream.index, *delay->second.timeOfLowest,
                        AVSEEK_FLAG_BACKWARD | AVSEEK_FLAG_ANY);
    hasMoved = true;
  }
  if (hasMoved) (void)rewind();
}

AVFormatContext& MovieInput::context() const {
  return *m_context;
}

int64_t MovieInput::fileSize() const {
  return m_file->size();
}

bool MovieInput::readPacket(AVPacket& packet) {
  av_packet_unref(&packet);
  int code = AVERROR(EAGAIN);
  while (code == AVERROR(EAGAIN)) {
    m_file->throwIfInterrupted();
    code = av_read_frame(m_context.get(), &packet);
  }
  if (code >= 0) {
    correctTime(packet);
    return true;
  }
  if (code != AVERROR_EOF) m_file->fail(FileAction::Read, code);
  m_file->throwIfInterrupted();
  return false;
}

void MovieInput::correctTime(AVPacket& packet) const {
  if (m_fragmentTimes.delays.empty() || packet.pts == AV_NOPTS_VALUE) return;
  const AVStream& stream = *m_context->streams[packet.stream_index];
  packet.pts =
      av_sat_sub64(packet.pts, m_fragmentTimes.delay(static_cast<uint32_t>(stream.id), packet.pos));
}

bool MovieInput::rewind() {
  const int64_t start = m_context->start_time == AV_NOPTS_VALUE ? 0 : m_context->start_time;
  return avformat_seek_file(m_context.get(), -1, INT64_MIN, start, start, 0) >= 0;
}

}  // namespace vantrel
