#include "review/file_save.h"

#include <algorithm>
#include <system_error>
#include <utility>

#include "base/failure.h"
#include "platform/desktop/file_error.h"

namespace vantrel {
namespace {

constexpr int kSteps = 100;

/// Tells a fraction whenever another step of it is done.
class StepProgress final {
 public:
  StepProgress(int64_t size, std::function<void(double)> tell)
      : m_size(size), m_tell(std::move(tell)) {}

  void operator()(int64_t copied) {
    const double fraction =
        m_size > 0 ? std::clamp(static_cast<double>(copied) / static_cast<double>(m_size), 0.0, 1.0)
                   : 1;
    const int step = static_cast<int>(fraction * kSteps);
    if (step <= m_step) return;
    m_step = step;
    m_tell(fraction);
  }

 private:
  const int64_t m_size;
  const std::function<void(double)> m_tell;
  int m_step = 0;
};

int64_t sizeToCopy(const std::filesystem::path& source, const std::filesystem::path& destination) {
  std::error_code error;
  const std::uintmax_t size = std::filesystem::file_size(source, error);
  // The name of a temporary file means nothing to the user.
  if (error) {
    throw Failure(fileFailure(
        destination, FileAction::Save,
        QT_TRANSLATE_NOOP("Failure", "The finished export was deleted from the temporary folder")));
  }
  return static_cast<int64_t>(size);
}

}  // namespace

FileSave::FileSave(CopyFile copy, std::filesystem::path source, std::filesystem::path destination,
                   std::function<void(double)> progress, std::function<void(Outcome)> completion)
    : m_task(
          [copy = std::move(copy), source = std::move(source), destination = std::move(destination),
           receiver = &m_receiver, progress = std::move(progress),
           cancellation = m_cancellation](const std::stop_token& end) mutable {
            const std::stop_callback link(end, [&] { cancellation.request_stop(); });
            StepProgress steps(sizeToCopy(source, destination), [&](double fraction) {
              QMetaObject::invokeMethod(
                  receiver, [progress, fraction] { progress(fraction); }, Qt::QueuedConnection);
            });
            copy(source, destination, cancellation.get_token(), std::ref(steps));
          },
          std::move(completion)) {}

}  // namespace vantrel
