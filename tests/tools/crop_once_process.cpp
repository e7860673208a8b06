#include "tools/crop_once_process.h"

#include <grp.h>
#include <signal.h>
#include <unistd.h>

#include "support/ordinary_user.h"

namespace vantrel::testing {
namespace {

constexpr int kPatience = 120'000;

}  // namespace

void CropOnceProcess::start(const Arguments& arguments) {
  QStringList list;
  for (const std::string& argument : arguments)
    list << QString::fromStdString(argument);
  QProcessEnvironment variables = QProcessEnvironment::systemEnvironment();
  for (const auto& [name, value] : environment) {
    variables.insert(QString::fromStdString(name), QString::fromStdString(value));
  }
  m_process.setProcessEnvironment(variables);
  if (prepare) m_process.setChildProcessModifier(prepare);
  if (!outputFile.empty()) {
    m_process.setStandardOutputFile(QString::fromStdString(outputFile.string()));
  }
  m_process.start(QString::fromStdString(program.string()), list);
  m_process.waitForStarted(kPatience);
}

void CropOnceProcess::signal(int number) {
  ::kill(static_cast<pid_t>(m_process.processId()), number);
}

CropOnceResult CropOnceProcess::finish() {
  CropOnceResult result;
  if (m_process.state() != QProcess::NotRunning && !m_process.waitForFinished(kPatience)) {
    m_process.kill();
    m_process.waitForFinished(kPatience);
    return result;
  }
  if (m_process.exitStatus() == QProcess::NormalExit) result.exitCode = m_process.exitCode();
  result.output = m_process.readAllStandardOutput().toStdString();
  result.errors = m_process.readAllStandardError().toStdString();
  return result;
}

CropOnceResult cropOnce(const CropOnceProcess::Arguments& arguments) {
  CropOnceProcess process;
  process.start(arguments);
  return process.finish();
}

void becomeOrdinaryUser() {
  if (::geteuid() != 0) return;
  const uid_t nobody = OrdinaryUser::kNobody;
  if (::setgroups(0, nullptr) != 0 || ::setgid(nobody) != 0 || ::setuid(nobody) != 0) ::_exit(99);
}

}  // namespace vantrel::testing
