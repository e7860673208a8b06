#pragma once

#include <exception>
#include <memory>
#include <optional>

#include "platform/movie/media_time.h"

namespace vantrel {

/// One cropped picture or one untouched packet on its way from a MovieReader to a MovieWriter.
class MovieSample final {
 public:
  /// The picture or packet itself, known to platform/movie alone.
  struct Content;

  /// A sample without content, for whoever only looks at times.
  explicit MovieSample(MediaTime presentationTime, MediaTime duration = {});
  MovieSample(MediaTime presentationTime, MediaTime duration, std::unique_ptr<Content> content);
  MovieSample(MovieSample&&) noexcept;
  MovieSample& operator=(MovieSample&&) noexcept;
  ~MovieSample();

  /// Counted from the movie's start; not valid if the file does not tell it.
  [[nodiscard]] MediaTime presentationTime() const { return m_presentationTime; }
  /// Not valid if not known.
  [[nodiscard]] MediaTime duration() const { return m_duration; }
  /// Null if there is none.
  [[nodiscard]] Content* content() const { return m_content.get(); }

 private:
  MediaTime m_presentationTime, m_duration;
  std::unique_ptr<Content> m_content;
};

/// Where the samples of one track come from. One thread at a time.
class SampleOutput {
 public:
  virtual ~SampleOutput() = default;
  /// The next sample, waiting for it; none at the end of the track, and none when reading has
  /// failed or was cancelled, which the reader's status tells.
  [[nodiscard]] virtual std::optional<MovieSample> copyNextSample() = 0;
};

/// Where the samples of one track go. One thread at a time.
class SampleInput {
 public:
  virtual ~SampleInput() = default;
  /// Whether a sample would be taken without waiting. May itself wait for that, a tenth of a second
  /// at most and no longer than until writing fails or is cancelled.
  [[nodiscard]] virtual bool isReadyForMoreMediaData() const = 0;
  /// False if the writer cannot take it; its error tells why.
  [[nodiscard]] virtual bool append(MovieSample sample) = 0;
  /// No more samples will come.
  virtual void markAsFinished() = 0;
};

/// The reading of a movie, as whoever runs it sees it. Starting is for one thread, the rest for
/// any.
class ReadingSession {
 public:
  enum class Status { unknown, reading, completed, failed, cancelled };

  virtual ~ReadingSession() = default;
  /// False if reading cannot start; `error` then tells why.
  [[nodiscard]] virtual bool startReading() = 0;
  /// Ends reading soon, whatever it waits for; waiting outputs give nothing more.
  virtual void cancelReading() = 0;

  [[nodiscard]] virtual Status status() const = 0;
  /// Why it failed; null if it did not, or nothing is known.
  [[nodiscard]] virtual std::exception_ptr error() const = 0;
};

/// The writing of a movie, as whoever runs it sees it. Starting and finishing are for one thread,
/// the rest for any.
class WritingSession {
 public:
  enum class Status { unknown, writing, completed, failed, cancelled };

  virtual ~WritingSession() = default;
  /// Opens the encoder and writes the file's beginning. False if that fails; `error` tells why.
  [[nodiscard]] virtual bool startWriting() = 0;
  /// The time on the samples' time line at which the movie starts.
  virtual void startSession(MediaTime time) = 0;
  /// Where the movie ends; shown samples are not cut off by it, nor lengthened.
  virtual void endSession(MediaTime time) = 0;
  /// Writes what is still to be written and ends the file. Blocking; the outcome is the status,
  /// completed, failed, or cancelled if `cancelWriting` came first.
  virtual void finishWriting() = 0;
  /// Ends writing soon; queued frames are not encoded. The file is then worthless.
  virtual void cancelWriting() = 0;

  [[nodiscard]] virtual Status status() const = 0;
  /// Why it failed; null if it did not, or nothing is known.
  [[nodiscard]] virtual std::exception_ptr error() const = 0;
};

}  // namespace vantrel
