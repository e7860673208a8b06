#include "platform/desktop/user_text.h"

#include <QCoreApplication>
#include <array>

#include "base/failure.h"

namespace vantrel {
namespace {

/// For the catalogue; what writes them knows nothing of it.
[[maybe_unused]] constexpr std::array kOthersWords{
    QT_TRANSLATE_NOOP("Failure", "There is not enough memory."),
    QT_TRANSLATE_NOOP("Failure", "An unknown error occurred.")};

}  // namespace

QString userText(const std::exception_ptr& error) {
  return QCoreApplication::translate("Failure", userMessage(error).c_str());
}

}  // namespace vantrel
