#include "platform/player/sound_output.h"

#define SDL_MAIN_HANDLED
#include <SDL.h>

#include <mutex>
#include <utility>

namespace vantrel {
namespace {

constexpr int kSampleRate = 48000;
/// A fiftieth of a second: small enough that pausing is heard at once.
constexpr int kBufferLength = 1024;
constexpr int kChannels = 2;

/// SDL's audio, which counts who uses it. One at a time may come and go.
class SoundSystem final {
 public:
  SoundSystem() {
    const std::lock_guard lock(mutex());
    // It brings SDL's events with it, which would take over how the program ends.
    SDL_SetHint(SDL_HINT_NO_SIGNAL_HANDLERS, "1");
    SDL_SetMainReady();
    m_isReady = SDL_InitSubSystem(SDL_INIT_AUDIO) == 0;
  }
  ~SoundSystem() {
    const std::lock_guard lock(mutex());
    if (m_isReady) SDL_QuitSubSystem(SDL_INIT_AUDIO);
    // What SDL keeps for each thread that uses it.
    SDL_TLSCleanup();
  }
  SoundSystem(const SoundSystem&) = delete;
  SoundSystem& operator=(const SoundSystem&) = delete;

  [[nodiscard]] bool isReady() const { return m_isReady; }

 private:
  static std::mutex& mutex() {
    static std::mutex mutex;
    return mutex;
  }

  bool m_isReady = false;
};

class SdlSoundOutput final : public SoundOutput {
 public:
  explicit SdlSoundOutput(Fill fill) : m_fill(std::move(fill)) {
    if (!m_system.isReady()) return;
    SDL_AudioSpec wanted{};
    wanted.freq = kSampleRate;
    wanted.format = AUDIO_F32SYS;
    wanted.channels = kChannels;
    wanted.samples = kBufferLength;
    wanted.callback = &SdlSoundOutput::called;
    wanted.userdata = this;
    m_device = SDL_OpenAudioDevice(nullptr, 0, &wanted, &m_spec, SDL_AUDIO_ALLOW_FREQUENCY_CHANGE);
  }
  ~SdlSoundOutput() override {
    if (isOpen()) SDL_CloseAudioDevice(m_device);
  }

  [[nodiscard]] bool isOpen() const { return m_device != 0; }
  [[nodiscard]] int sampleRate() const override { return m_spec.freq; }
  [[nodiscard]] int bufferLength() const override { return m_spec.samples; }
  void start() override { SDL_PauseAudioDevice(m_device, 0); }
  // SDL holds the device's lock while it calls, and takes it to pause.
  void stop() override { SDL_PauseAudioDevice(m_device, 1); }

 private:
  static void called(void* self, Uint8* bytes, int size) {
    auto* const samples = reinterpret_cast<float*>(bytes);
    const auto frames = size / static_cast<int>(sizeof(float) * kChannels);
    static_cast<SdlSoundOutput*>(self)->m_fill(samples, frames);
  }

  Fill m_fill;
  SoundSystem m_system;
  SDL_AudioSpec m_spec{};
  SDL_AudioDeviceID m_device = 0;
};

}  // namespace

std::unique_ptr<SoundOutput> SoundOutput::open(Fill fill) {
  auto output = std::make_unique<SdlSoundOutput>(std::move(fill));
  if (!output->isOpen()) return nullptr;
  return output;
}

}  // namespace vantrel
