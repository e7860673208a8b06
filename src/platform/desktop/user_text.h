#pragma once

#include <QString>
#include <exception>

namespace vantrel {

/// The one line that the user reads of an exception, in the user's language where its words are in
/// the catalogue, under "Failure". What comes from elsewhere stays as it is.
[[nodiscard]] QString userText(const std::exception_ptr& error);

}  // namespace vantrel
