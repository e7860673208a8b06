#include "platform/desktop/user_text.h"

#include <QCoreApplication>
#include <array>
#include <system_error>

#include "base/failure.h"

namespace vantrel {
namespace {

/// For the catalogue; what writes them knows nothing of it.
[[maybe_unused]] constexpr std::array kOthersWords{
    QT_TRANSLATE_NOOP("Failure", "There is not enough memory."),
    QT_TRANSLATE_NOOP("Failure", "An unknown error occurred."),
    // The system's reasons that a user can do something about; where it speaks the user's language,
    // it does so by itself.
    QT_TRANSLATE_NOOP("Failure", "No such file or directory"),
    QT_TRANSLATE_NOOP("Failure", "Permission denied"),
    QT_TRANSLATE_NOOP("Failure", "No space left on device"),
    QT_TRANSLATE_NOOP("Failure", "Disk quota exceeded"),
    QT_TRANSLATE_NOOP("Failure", "File too large"),
    QT_TRANSLATE_NOOP("Failure", "File name too long"),
    QT_TRANSLATE_NOOP("Failure", "Is a directory"), QT_TRANSLATE_NOOP("Failure", "Not a directory"),
    QT_TRANSLATE_NOOP("Failure", "Read-only file system"),
    QT_TRANSLATE_NOOP("Failure", "Input/output error"),
    QT_TRANSLATE_NOOP("Failure", "Too many open files")};

/// Why it failed, as the system says at the end of the message; empty where it says nothing.
std::string systemReason(const std::exception_ptr& error) {
  try {
    if (error) std::rethrow_exception(error);
  } catch (const std::system_error& failure) {
    return failure.code().message();
  } catch (...) {
  }
  return {};
}

}  // namespace

QString userText(const std::exception_ptr& error) {
  std::string line = userMessage(error);
  const std::string reason = systemReason(error);
  if (!reason.empty() && line.ends_with(": " + reason)) {
    line.replace(line.size() - reason.size(), reason.size(), failureText(reason.c_str()));
    return QString::fromStdString(line);
  }
  return QString::fromStdString(failureText(line.c_str()));
}

std::string failureText(const char* words) {
  return QCoreApplication::translate("Failure", words).toStdString();
}

std::string failureText(const char* words, const std::string& detail) {
  return QCoreApplication::translate("Failure", words)
      .arg(QString::fromStdString(detail))
      .toStdString();
}

}  // namespace vantrel
