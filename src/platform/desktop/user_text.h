#pragma once

#include <QString>
#include <exception>
#include <string>

namespace vantrel {

/// The one line that the user reads of an exception, in the user's language where its words are in
/// the catalogue, under "Failure". What comes from elsewhere stays as it is.
[[nodiscard]] QString userText(const std::exception_ptr& error);

/// The same for the words of a failure that says more than they do. Any thread.
[[nodiscard]] std::string failureText(const char* words);
/// With `detail` in the place of %1.
[[nodiscard]] std::string failureText(const char* words, const std::string& detail);

}  // namespace vantrel
