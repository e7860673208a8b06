#pragma once

#include <functional>
#include <memory>

namespace vantrel {

/// An opened sound device with two channels of floats. It stands still until it is started. One
/// thread at a time.
class SoundOutput {
 public:
  /// Fills `frames` samples of both channels, left and right in turn. Called on a thread of the
  /// device while it is started.
  using Fill = std::function<void(float* samples, int frames)>;

  /// Null where there is no device. May block.
  [[nodiscard]] static std::unique_ptr<SoundOutput> open(Fill fill);

  virtual ~SoundOutput() = default;
  SoundOutput(const SoundOutput&) = delete;
  SoundOutput& operator=(const SoundOutput&) = delete;

  /// In Hz.
  [[nodiscard]] virtual int sampleRate() const = 0;
  /// Samples of a channel that are asked for at once; as many are not heard yet when they are.
  [[nodiscard]] virtual int bufferLength() const = 0;
  virtual void start() = 0;
  /// No call of the function is running, or follows, once it has returned.
  virtual void stop() = 0;

 protected:
  SoundOutput() = default;
};

}  // namespace vantrel
