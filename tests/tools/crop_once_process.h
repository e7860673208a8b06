#pragma once

#include <QProcess>
#include <QStringList>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace vantrel::testing {

/// How a run of crop-once ended.
struct CropOnceResult {
  /// -1 if it did not exit by itself.
  int exitCode = -1;
  std::string output, errors;
};

/// One run of the built program.
class CropOnceProcess final {
 public:
  using Arguments = std::vector<std::string>;

  /// Where the program lies, by default where it was built.
  std::filesystem::path program = VANTREL_BIN_DIR "/crop-once";
  /// Run in the new process before the program starts: only what is safe after a fork.
  std::function<void()> prepare;
  /// A file that takes the standard output instead.
  std::filesystem::path outputFile;
  std::vector<std::pair<std::string, std::string>> environment;

  void start(const Arguments& arguments);
  void signal(int number);
  [[nodiscard]] CropOnceResult finish();

 private:
  QProcess m_process;
};

/// Runs the built program to its end.
[[nodiscard]] CropOnceResult cropOnce(const CropOnceProcess::Arguments& arguments);

/// Makes the process an ordinary user's if it is root's. For CropOnceProcess::prepare.
void becomeOrdinaryUser();

}  // namespace vantrel::testing
