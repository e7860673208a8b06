// A process with a session folder, for the tests of what processes do to each other.
//
//   export_storage_session FOLDER          a session below FOLDER
//   export_storage_session shared          the process's own
//   export_storage_session FOLDER ROUNDS   that many sessions, one after the other, each left dead
//
// Prints the session folder, then waits for a line: "quit" ends it as a user does, the end of the
// input ends it without a trace of an event loop. With ROUNDS it exits 3 if a living session loses
// its folder.

#include <QCoreApplication>
#include <QTimer>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <memory>
#include <string>
#include <string_view>

#include "export/export_temporary_storage.h"

namespace {

constexpr int kLostItsFolder = 3;

int runRounds(const std::filesystem::path& folder, int rounds) {
  for (int round = 0; round < rounds; ++round) {
    vantrel::ExportTemporaryStorage storage(folder);
    const auto file = storage.newExportPath(QStringLiteral("png"));
    std::ofstream(file) << "picture";
    if (!std::filesystem::exists(storage.directory() / "session.lock") ||
        !std::filesystem::exists(file)) {
      return kLostItsFolder;
    }
  }
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 2) return 64;
  QCoreApplication application(argc, argv);
  if (argc > 2) return runRounds(argv[1], std::atoi(argv[2]));

  std::unique_ptr<vantrel::ExportTemporaryStorage> own;
  const vantrel::ExportTemporaryStorage* storage = nullptr;
  if (std::string_view(argv[1]) == "shared") {
    storage = &vantrel::ExportTemporaryStorage::shared();
  } else {
    own = std::make_unique<vantrel::ExportTemporaryStorage>(argv[1]);
    storage = own.get();
  }
  std::cout << storage->directory().string() << std::endl;
  std::string line;
  if (!std::getline(std::cin, line) || line != "quit") return 0;
  QTimer::singleShot(0, &application, &QCoreApplication::quit);
  return QCoreApplication::exec();
}
