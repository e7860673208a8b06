#pragma once

#include <unistd.h>

#include <exception>
#include <stdexcept>

namespace vantrel::testing {

/// Within its life this process has no more rights than an ordinary user, also where it runs as
/// root. Nothing changes where it does not.
class OrdinaryUser final {
 public:
  static constexpr uid_t kNobody = 65534;

  OrdinaryUser() : m_user(::geteuid()), m_group(::getegid()) {
    if (m_user != 0) return;
    if (::setegid(kNobody) != 0 || ::seteuid(kNobody) != 0) {
      throw std::runtime_error("cannot become an ordinary user");
    }
  }
  ~OrdinaryUser() {
    if (m_user != 0) return;
    // Without these rights the tests that follow would test something else.
    if (::seteuid(m_user) != 0 || ::setegid(m_group) != 0) std::terminate();
  }
  OrdinaryUser(const OrdinaryUser&) = delete;
  OrdinaryUser& operator=(const OrdinaryUser&) = delete;

 private:
  uid_t m_user;
  gid_t m_group;
};

}  // namespace vantrel::testing
