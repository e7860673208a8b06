#pragma once

#include <exception>
#include <stop_token>

namespace vantrel {

/// Thrown by an operation that found its stop token requested. An outcome, not an error: it is
/// never shown as a failure.
class Cancelled final : public std::exception {
 public:
  [[nodiscard]] const char* what() const noexcept override { return "Cancelled"; }
};

/// Throws Cancelled if `token` has been requested to stop. Any thread.
inline void throwIfCancelled(const std::stop_token& token) {
  if (token.stop_requested()) throw Cancelled();
}

}  // namespace vantrel
