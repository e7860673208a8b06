#include "export/crop_export_state.h"

#include <gtest/gtest.h>

#include <QSignalSpy>

namespace vantrel {
namespace {

TEST(CropExportState, StartsIdle) {
  const CropExportState state;
  EXPECT_FALSE(state.indeterminate());
  EXPECT_EQ(state.progress(), std::nullopt);
  EXPECT_EQ(state.operation(), std::nullopt);
  EXPECT_EQ(state.bytes(), 0);
  EXPECT_EQ(state.message(), std::nullopt);
}

TEST(CropExportState, TellsOfEveryChangeOnce) {
  CropExportState state;
  const QSignalSpy changes(&state, &CropExportState::changed);
  const QUuid operation = QUuid::createUuid();
  for (int times = 0; times < 2; ++times) {
    state.setIndeterminate(true);
    state.setProgress(0.0);
    state.setOperation(operation);
    state.setBytes(12);
    state.setMessage(CropExportState::Message::failed);
    EXPECT_EQ(changes.count(), 5);
  }
  EXPECT_TRUE(state.indeterminate());
  EXPECT_EQ(state.progress(), 0.0);
  EXPECT_EQ(state.operation(), operation);
  EXPECT_EQ(state.bytes(), 12);
  EXPECT_EQ(state.message(), CropExportState::Message::failed);
}

TEST(CropExportState, HoldsTheNewValueWhenItTells) {
  CropExportState state;
  std::optional<double> seen;
  QObject::connect(&state, &CropExportState::changed, &state, [&] { seen = state.progress(); });
  state.setProgress(0.5);
  EXPECT_EQ(seen, 0.5);
  state.setProgress({});
  EXPECT_EQ(seen, std::nullopt);
}

TEST(CropExportState, HasAWordForEachOutcome) {
  EXPECT_EQ(CropExportState::text(CropExportState::Message::cancelled), u"Export cancelled");
  EXPECT_EQ(CropExportState::text(CropExportState::Message::failed), u"Export failed");
}

}  // namespace
}  // namespace vantrel
