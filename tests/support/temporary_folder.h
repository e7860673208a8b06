#pragma once

#include <sys/stat.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <vector>

namespace vantrel::testing {

/// A new folder that everybody may enter and list; removed with all it holds.
class TemporaryFolder final {
 public:
  TemporaryFolder() {
    std::string name = (std::filesystem::temp_directory_path() / "vantrel-test-XXXXXX").string();
    if (!::mkdtemp(name.data())) throw std::runtime_error("no temporary folder: " + name);
    m_path = name;
    ::chmod(m_path.c_str(), 0755);
  }
  ~TemporaryFolder() {
    ::chmod(m_path.c_str(), 0755);
    std::error_code ignored;
    std::filesystem::remove_all(m_path, ignored);
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  [[nodiscard]] const std::filesystem::path& path() const { return m_path; }
  [[nodiscard]] std::filesystem::path operator/(const std::filesystem::path& name) const {
    return m_path / name;
  }

 private:
  std::filesystem::path m_path;
};

/// The names in a folder, hidden ones too, in order.
inline std::vector<std::string> namesIn(const std::filesystem::path& folder) {
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    names.push_back(entry.path().filename().string());
  }
  std::sort(names.begin(), names.end());
  return names;
}

inline void writeFile(const std::filesystem::path& path, const std::string& bytes) {
  std::ofstream file(path, std::ios::binary);
  file << bytes;
  file.flush();
  if (!file) throw std::runtime_error("cannot write " + path.string());
}

inline std::string readFile(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  if (!file) throw std::runtime_error("cannot read " + path.string());
  return {std::istreambuf_iterator<char>(file), {}};
}

/// The permission bits of a file.
inline unsigned modeOf(const std::filesystem::path& path) {
  return static_cast<unsigned>(std::filesystem::status(path).permissions()) & 07777U;
}

}  // namespace vantrel::testing
