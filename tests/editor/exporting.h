#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <optional>

#include "editor/export_session.h"
#include "editor/waiting_exports.h"

namespace vantrel::testing {

/// A fixture of an editor `state` with an export session, and what that hands to the review.
template <class Editor>
class Exporting : public Editor {
 protected:
  void expectIdle() const {
    const CropExportState& exporting = this->state.exportState();
    EXPECT_FALSE(this->state.busy());
    EXPECT_FALSE(exporting.progress());
    EXPECT_FALSE(exporting.indeterminate());
    EXPECT_FALSE(exporting.operation());
  }

  /// An export that ends in the middle, by a request or with its session, leaves no file.
  void expectNothingLeft() const {
    EXPECT_FALSE(finished);
    EXPECT_EQ(waitingExports(), m_waitingBefore);
  }

  std::optional<FinishedExport> finished;
  std::unique_ptr<ExportSession> session = std::make_unique<ExportSession>(
      this->state, [this](FinishedExport done) { finished.emplace(std::move(done)); });

 private:
  const size_t m_waitingBefore = waitingExports();
};

}  // namespace vantrel::testing
