#include "support/movie_maker.h"

#include <QProcess>
#include <QStringList>
#include <stdexcept>

namespace vantrel::testing {
namespace {

std::string run(const char* program, QStringList options,
                const std::vector<std::string>& arguments) {
  for (const std::string& argument : arguments)
    options << QString::fromStdString(argument);
  QProcess process;
  process.start(QString::fromLatin1(program), options);
  if (!process.waitForFinished(-1) || process.exitStatus() != QProcess::NormalExit ||
      process.exitCode() != 0) {
    throw std::runtime_error(std::string(program) + ": " +
                             process.readAllStandardError().toStdString());
  }
  return process.readAllStandardOutput().toStdString();
}

}  // namespace

void runFfmpeg(const std::vector<std::string>& arguments) {
  (void)run("ffmpeg",
            {QStringLiteral("-v"), QStringLiteral("error"), QStringLiteral("-nostdin"),
             QStringLiteral("-y")},
            arguments);
}

std::string colorFilter(const std::string& primaries, const std::string& transfer,
                        const std::string& matrix) {
  return "setparams=color_primaries=" + primaries + ":color_trc=" + transfer +
         ":colorspace=" + matrix;
}

std::string runFfprobe(const std::vector<std::string>& arguments) {
  return run("ffprobe", {QStringLiteral("-v"), QStringLiteral("error")}, arguments);
}

}  // namespace vantrel::testing
