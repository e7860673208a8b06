#include "platform/player/sound_ring.h"

#include <gmock/gmock.h>

#include <numeric>
#include <vector>

namespace vantrel {
namespace {

using ::testing::Each;
using ::testing::ElementsAre;

constexpr int kRate = 100;

/// Left and right of `length` samples, counting up from `first`.
std::vector<float> counted(int first, int length) {
  std::vector<float> samples(static_cast<size_t>(length) * 2);
  for (int i = 0; i < length; ++i) {
    samples[static_cast<size_t>(i) * 2] = static_cast<float>(first + i);
    samples[static_cast<size_t>(i) * 2 + 1] = -static_cast<float>(first + i);
  }
  return samples;
}

class SoundRingTest : public ::testing::Test {
 protected:
  void put(int first, int length) { ring.put(counted(first, length).data(), length); }
  std::vector<float> take(int length, double now = 0) {
    std::vector<float> samples(static_cast<size_t>(length) * 2, 99.0F);
    ring.take(samples.data(), length, now);
    return samples;
  }

  SoundRing ring{10};
};

TEST_F(SoundRingTest, GivesWhatWasPutInItsOrderAcrossItsEnd) {
  for (int round = 0; round < 7; ++round) {
    put(round * 7, 7);
    EXPECT_EQ(take(7), counted(round * 7, 7)) << round;
  }
}

TEST_F(SoundRingTest, TellsItsRoomAndItsEnd) {
  ring.restart(1000);
  EXPECT_EQ(ring.room(), 10);
  EXPECT_EQ(ring.end(), 1000);
  put(0, 4);
  EXPECT_EQ(ring.room(), 6);
  EXPECT_EQ(ring.end(), 1004);
  (void)take(3);
  EXPECT_EQ(ring.room(), 9);
  EXPECT_EQ(ring.end(), 1004);
}

TEST_F(SoundRingTest, PutsSilence) {
  ring.put(nullptr, 2);
  put(5, 1);
  EXPECT_THAT(take(3), ElementsAre(0, 0, 0, 0, 5, -5));
}

TEST_F(SoundRingTest, GivesSilenceWhereThereIsNoSound) {
  put(5, 1);
  EXPECT_THAT(take(2), ElementsAre(5, -5, 0, 0));
  EXPECT_THAT(take(2), Each(0.0F));
}

TEST_F(SoundRingTest, NothingIsHeardBeforeSoundWasTaken) {
  EXPECT_FALSE(ring.heard(1, kRate));
  (void)take(5, 1);
  EXPECT_FALSE(ring.heard(1, kRate));
  EXPECT_FALSE(ring.lastTaken());
}

TEST_F(SoundRingTest, WhatIsTakenIsHeardOneBufferLater) {
  ring.restart(200);
  put(0, 10);
  (void)take(5, 1);
  EXPECT_NEAR(*ring.heard(1, kRate), 195, 1e-9);
  EXPECT_NEAR(*ring.heard(1.02, kRate), 197, 1e-9);
  EXPECT_NEAR(*ring.heard(1.05, kRate), 200, 1e-9);
  (void)take(5, 1.05);
  EXPECT_NEAR(*ring.heard(1.05, kRate), 200, 1e-9);
  EXPECT_NEAR(*ring.heard(1.07, kRate), 202, 1e-9);
  EXPECT_DOUBLE_EQ(*ring.lastTaken(), 1.05);
}

TEST_F(SoundRingTest, TheAccountWaitsForADeviceThatIsLate) {
  put(0, 10);
  (void)take(5, 1);
  EXPECT_NEAR(*ring.heard(9, kRate), 0, 1e-9);
}

TEST_F(SoundRingTest, ADecoderThatIsLateHoldsTheAccount) {
  put(0, 5);
  (void)take(5, 1);
  (void)take(5, 1.05);
  (void)take(5, 1.10);
  EXPECT_NEAR(*ring.heard(1.15, kRate), 5, 1e-9);
  put(5, 5);
  (void)take(5, 1.15);
  EXPECT_NEAR(*ring.heard(1.20, kRate), 5, 1e-9);
}

TEST_F(SoundRingTest, TheAccountGoesOnBehindTheEndOfTheSound) {
  put(0, 5);
  ring.finish();
  (void)take(5, 1);
  (void)take(5, 1.05);
  (void)take(5, 1.10);
  EXPECT_NEAR(*ring.heard(1.15, kRate), 10, 1e-9);
}

TEST_F(SoundRingTest, ARestartForgetsEverything) {
  put(0, 5);
  ring.finish();
  (void)take(2, 1);
  ring.restart(50);
  EXPECT_FALSE(ring.heard(2, kRate));
  EXPECT_EQ(ring.room(), 10);
  put(7, 1);
  EXPECT_THAT(take(1), ElementsAre(7, -7));
}

}  // namespace
}  // namespace vantrel
