#pragma once

#include <algorithm>
#include <atomic>
#include <chrono>
#include <functional>
#include <mutex>
#include <stop_token>
#include <string>
#include <utility>
#include <vector>

#include "base/cancelled.h"
#include "platform/movie/sample_flow.h"

namespace vantrel::testing {

/// What the fakes did, in order. Any thread.
class FlowLog final {
 public:
  void add(std::string line) {
    const std::scoped_lock lock(m_mutex);
    m_lines.push_back(std::move(line));
  }
  [[nodiscard]] std::vector<std::string> lines() const {
    const std::scoped_lock lock(m_mutex);
    return m_lines;
  }
  [[nodiscard]] auto count(const std::string& line) const {
    const std::vector<std::string> all = lines();
    return std::count(all.begin(), all.end(), line);
  }

 private:
  mutable std::mutex m_mutex;
  std::vector<std::string> m_lines;
};

/// Gives samples at these times; `onCopy` is called before each and before the end.
class FakeOutput final : public SampleOutput {
 public:
  explicit FakeOutput(std::vector<MediaTime> times = {}) : m_times(std::move(times)) {}

  std::function<void()> onCopy = [] {};

  [[nodiscard]] std::optional<MovieSample> copyNextSample() override {
    onCopy();
    if (m_next == m_times.size()) return std::nullopt;
    return MovieSample(m_times[m_next++]);
  }

 private:
  std::vector<MediaTime> m_times;
  size_t m_next = 0;
};

/// Logs what it takes.
class FakeInput final : public SampleInput {
 public:
  explicit FakeInput(FlowLog& log, std::string name = "input")
      : m_log(log), m_name(std::move(name)) {}

  std::function<bool()> isReady = [] { return true; };
  std::function<bool()> takes = [] { return true; };

  [[nodiscard]] bool isReadyForMoreMediaData() const override { return isReady(); }
  [[nodiscard]] bool append(MovieSample sample) override {
    m_log.add(m_name + " append " + std::to_string(sample.presentationTime().ticks));
    return takes();
  }
  void markAsFinished() override { m_log.add(m_name + " finished"); }

 private:
  FlowLog& m_log;
  std::string m_name;
};

/// A status that changes only as told, but for starting and cancelling.
class FakeReadingSession final : public ReadingSession {
 public:
  explicit FakeReadingSession(FlowLog& log) : m_log(log) {}

  std::atomic<Status> current = Status::reading;
  std::exception_ptr cause;
  bool starts = true;

  [[nodiscard]] bool startReading() override {
    m_log.add("start reading");
    return starts;
  }
  void cancelReading() override {
    m_log.add("cancel reading");
    current = Status::cancelled;
  }
  [[nodiscard]] Status status() const override { return current; }
  [[nodiscard]] std::exception_ptr error() const override { return cause; }

 private:
  FlowLog& m_log;
};

class FakeWritingSession final : public WritingSession {
 public:
  explicit FakeWritingSession(FlowLog& log) : m_log(log) {}

  std::atomic<Status> current = Status::writing;
  /// What finishing makes of a session that is still writing.
  Status finished = Status::completed;
  std::exception_ptr cause;
  bool starts = true;

  [[nodiscard]] bool startWriting() override {
    m_log.add("start writing");
    return starts;
  }
  void startSession(MediaTime time) override {
    m_log.add("start session " + std::to_string(time.ticks));
  }
  void endSession(MediaTime time) override {
    m_log.add("end session " + std::to_string(time.ticks));
  }
  void finishWriting() override {
    m_log.add("finish writing");
    if (current == Status::writing) current = finished;
  }
  void cancelWriting() override {
    m_log.add("cancel writing");
    current = Status::cancelled;
  }
  [[nodiscard]] Status status() const override { return current; }
  [[nodiscard]] std::exception_ptr error() const override { return cause; }

 private:
  FlowLog& m_log;
};

/// A clock that nobody waits for: sleeping only moves it on. One thread.
class FakeClock final {
 public:
  std::chrono::milliseconds now{0};
  std::function<void()> onSleep = [] {};

  /// As VideoExporter::Sleep wants it.
  [[nodiscard]] auto sleep() {
    return [this](std::chrono::milliseconds duration, const std::stop_token& stop) {
      now += duration;
      onSleep();
      throwIfCancelled(stop);
    };
  }
};

}  // namespace vantrel::testing
