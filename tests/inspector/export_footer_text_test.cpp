#include "inspector/export_footer_text.h"

#include <gtest/gtest.h>

namespace vantrel {
namespace {

using Message = CropExportState::Message;

TEST(ExportFooterText, CutsThePercentageOff) {
  EXPECT_EQ(ExportFooterText::phase(0, false), QStringLiteral("Exporting 0%"));
  EXPECT_EQ(ExportFooterText::phase(0.5, false), QStringLiteral("Exporting 50%"));
  EXPECT_EQ(ExportFooterText::phase(0.985, false), QStringLiteral("Exporting 98%"));
  EXPECT_EQ(ExportFooterText::phase(0.99, false), QStringLiteral("Finalizing…"));
  EXPECT_EQ(ExportFooterText::phase(1, false), QStringLiteral("Finalizing…"));
}

TEST(ExportFooterText, HasNoPercentageWithoutOne) {
  EXPECT_EQ(ExportFooterText::phase(0, true), QStringLiteral("Exporting…"));
  EXPECT_EQ(ExportFooterText::phase(0.995, true), QStringLiteral("Exporting…"));
}

TEST(ExportFooterText, SaysTheOutcomeBeforeTheOutputBeforeReady) {
  const QString png = QStringLiteral("PNG");
  EXPECT_EQ(ExportFooterText::status({}, false, 0, 0, png), QStringLiteral("Ready"));
  EXPECT_EQ(ExportFooterText::status({}, true, 4000, 3, png), QStringLiteral("4000 × 3 px · PNG"));
  EXPECT_EQ(ExportFooterText::status(Message::cancelled, true, 4, 3, png),
            QStringLiteral("Export cancelled"));
  EXPECT_EQ(ExportFooterText::status(Message::failed, false, 4, 3, png),
            QStringLiteral("Export failed"));
}

TEST(ExportFooterText, HelpsInFourLines) {
#ifdef Q_OS_MACOS
  const QString zoom = QStringLiteral("Zoom: CMD-Scroll.");
#else
  const QString zoom = QStringLiteral("Zoom: Ctrl-Scroll.");
#endif
  EXPECT_EQ(ExportFooterText::help(), QStringLiteral("Pan: middle or right mouse buttons.\n") +
                                          zoom +
                                          QStringLiteral("\nFit: double-click.\n"
                                                         "Keep crop ratio: Shift-drag a corner."));
}

}  // namespace
}  // namespace vantrel
