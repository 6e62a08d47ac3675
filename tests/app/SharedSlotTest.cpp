#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <new>
#include <thread>
#include <vector>

#include "app/SharedSlot.h"

namespace qv {
namespace {

TEST(SharedSlot, TakeWaitsForWhoeverUsesTheObject) {
  SharedSlot<int> slot;
  slot.Put(std::make_unique<int>(7));
  std::atomic<bool> inside{false}, leave{false}, left{false};
  std::thread user([&] {
    EXPECT_TRUE(slot.Use([&](int& value) {
      inside = true;
      while (!leave) std::this_thread::yield();
      EXPECT_EQ(value, 7);
      left = true;
    }));
  });
  while (!inside) std::this_thread::yield();

  int pumped = 0;
  const auto taken = slot.Take([&] {
    EXPECT_FALSE(left);
    EXPECT_EQ(slot.get(), nullptr);
    if (++pumped == 3) leave = true;
  });
  EXPECT_TRUE(left);
  ASSERT_TRUE(taken);
  EXPECT_EQ(*taken, 7);
  EXPECT_FALSE(slot.Use([](int&) { FAIL(); }));
  user.join();
}

TEST(SharedSlot, ReplacingUnderUseKeepsEachObjectAlive) {
  constexpr int kRounds = 50;
  SharedSlot<std::vector<int>> slot;
  std::atomic<bool> stop{false};
  std::atomic<int> uses{0};
  std::vector<std::thread> users;
  users.reserve(3);
  for (int i = 0; i < 3; ++i) {
    users.emplace_back([&] {
      while (!stop) {
        slot.Use([&](std::vector<int>& values) {
          for (int value : values) ASSERT_EQ(value, values.front());
          ++uses;
        });
      }
    });
  }
  for (int round = 0; round < kRounds; ++round) {
    slot.Put(std::make_unique<std::vector<int>>(100, round));
    for (const int before = uses; uses == before;) std::this_thread::yield();
    auto taken = slot.Take([] {});
    std::fill(taken->begin(), taken->end(), -1);  // would be seen by a user that is still inside
  }
  stop = true;
  for (std::thread& user : users) user.join();
}

TEST(SharedSlot, IsFreeAgainAfterAUseThatThrew) {
  SharedSlot<int> slot;
  slot.Put(std::make_unique<int>(7));
  EXPECT_THROW(slot.Use([](int&) { throw std::bad_alloc(); }), std::bad_alloc);
  int pumped = 0;
  ASSERT_TRUE(slot.Take([&] { ASSERT_LT(++pumped, 100); }));
}

}  // namespace
}  // namespace qv
