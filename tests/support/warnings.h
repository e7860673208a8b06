#pragma once

#include <QString>

namespace vantrel::testing {

/// Makes every warning and critical message of Qt a failure of the test that is running, unless an
/// ExpectedWarning stands for it.
void failOnWarnings();

/// Within its life, messages that contain `text` are expected; at its end one must have come.
class ExpectedWarning {
 public:
  explicit ExpectedWarning(QString text);
  ~ExpectedWarning();
  ExpectedWarning(const ExpectedWarning&) = delete;
  ExpectedWarning& operator=(const ExpectedWarning&) = delete;
};

}  // namespace vantrel::testing
