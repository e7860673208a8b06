#include "editor/export_notice.h"

#include <gtest/gtest.h>

namespace vantrel {
namespace {

TEST(ExportNotice, NamesTheFinishedFile) {
  const ExportNotice notice = ExportNotice::ofFinished(QStringLiteral("clip-framed"));
  EXPECT_EQ(notice.title, QStringLiteral("Export finished"));
  EXPECT_EQ(notice.text, QStringLiteral("clip-framed"));
  EXPECT_FALSE(notice.isFailure);
}

TEST(ExportNotice, SaysInOneLineWhyAnExportFailed) {
  const ExportNotice notice = ExportNotice::ofFailed(QStringLiteral("The disk\n is full."));
  EXPECT_EQ(notice.title, QStringLiteral("Export failed"));
  EXPECT_EQ(notice.text, QStringLiteral("The disk is full."));
  EXPECT_TRUE(notice.isFailure);
}

}  // namespace
}  // namespace vantrel
