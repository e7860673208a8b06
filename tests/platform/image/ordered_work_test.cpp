#include "platform/image/ordered_work.h"

#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <new>
#include <stdexcept>

namespace vantrel {
namespace {

TEST(OrderedWork, HandsResultsOutInOrder) {
  constexpr int64_t kCount = 500;
  OrderedWork<int64_t> work(kCount, 4, 6, [] { return [](int64_t number) { return number * 3; }; });
  for (int64_t i = 0; i < kCount; ++i)
    EXPECT_EQ(work.next(), i * 3);
}

TEST(OrderedWork, NeverRunsFartherAheadThanAllowed) {
  constexpr int64_t kCount = 200;
  constexpr int64_t kAhead = 3;
  std::atomic<int64_t> started = 0;
  OrderedWork<int64_t> work(kCount, 4, kAhead, [&] {
    return [&](int64_t number) {
      ++started;
      return number;
    };
  });
  for (int64_t i = 0; i < kCount; ++i) {
    EXPECT_LE(started.load(), i + kAhead);
    EXPECT_EQ(work.next(), i);
  }
  EXPECT_EQ(started.load(), kCount);
}

TEST(OrderedWork, PassesOnWhatAWorkerThrows) {
  OrderedWork<int64_t> work(100, 3, 5, [] {
    return [](int64_t number) {
      if (number == 7) throw std::runtime_error("seven");
      return number;
    };
  });
  EXPECT_THROW(
      {
        for (int i = 0; i < 100; ++i)
          EXPECT_EQ(work.next(), i);
      },
      std::runtime_error);
}

TEST(OrderedWork, PassesOnWhatTheMakingOfAWorkerThrows) {
  OrderedWork<int64_t> work(10, 2, 4,
                            []() -> std::function<int64_t(int64_t)> { throw std::bad_alloc(); });
  EXPECT_THROW(static_cast<void>(work.next()), std::bad_alloc);
}

TEST(OrderedWork, CanBeGivenUpHalfWay) {
  std::atomic<int64_t> made = 0;
  {
    OrderedWork<int64_t> work(1000000, 4, 8, [&] {
      return [&](int64_t number) {
        ++made;
        return number;
      };
    });
    EXPECT_EQ(work.next(), 0);
  }
  EXPECT_LE(made.load(), 9);
}

}  // namespace
}  // namespace vantrel
