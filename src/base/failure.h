#pragma once

#include <exception>
#include <string>

namespace vantrel {

/// A failure with a message that is meant for the user as it stands.
class Failure final : public std::exception {
 public:
  static constexpr const char* kDomain = "Vantrel";
  static constexpr int kCode = 1;

  explicit Failure(std::string message) : m_message(std::move(message)) {}

  [[nodiscard]] const char* what() const noexcept override { return m_message.c_str(); }

 private:
  std::string m_message;
};

/// The one line, in UTF-8 and without a line break, that the user reads for any exception. Any
/// thread.
[[nodiscard]] std::string userMessage(const std::exception_ptr& error);

}  // namespace vantrel
