#include "export/file_size_poll.h"

#include <algorithm>
#include <chrono>
#include <stop_token>
#include <system_error>
#include <utility>

#include "base/cancelled.h"
#include "export/sample_transfer.h"

namespace vantrel {
namespace {

constexpr std::chrono::milliseconds kInterval{200};

}  // namespace

int64_t largestEntry(const std::filesystem::path& folder) {
  int64_t largest = 0;
  std::error_code error;
  std::filesystem::directory_iterator entry(folder, error);
  for (; !error && entry != std::filesystem::directory_iterator(); entry.increment(error)) {
    std::error_code unknown;
    const std::uintmax_t size = entry->file_size(unknown);
    if (!unknown) largest = std::max(largest, static_cast<int64_t>(size));
  }
  return largest;
}

FileSizePoll::FileSizePoll(std::filesystem::path folder, std::function<void(int64_t)> report) {
  if (!report) return;
  m_thread = std::jthread(
      [folder = std::move(folder), report = std::move(report)](const std::stop_token& stop) {
        try {
          for (;;) {
            report(largestEntry(folder));
            VideoExporter::interruptibleSleep(kInterval, stop);
          }
        } catch (const Cancelled&) {
        }
      });
}

}  // namespace vantrel
