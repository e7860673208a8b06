#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <thread>

namespace vantrel {

/// The size in bytes of the largest entry of a folder; 0 if there is none, or no folder.
[[nodiscard]] int64_t largestEntry(const std::filesystem::path& folder);

/// Within its life it tells the size of a folder's largest entry at once and every 200 ms, on a
/// thread of its own. The destructor stops and joins.
class FileSizePoll final {
 public:
  /// `report` must not throw; nothing happens if it is empty.
  FileSizePoll(std::filesystem::path folder, std::function<void(int64_t)> report);

 private:
  std::jthread m_thread;
};

}  // namespace vantrel
