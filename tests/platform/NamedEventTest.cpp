#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <thread>

#include "platform/Clock.h"
#include "platform/Ids.h"
#include "platform/NamedEvent.h"

namespace qv::platform {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;

std::string Name(const char* what) {
  return std::string("QV_Test_") + what + "_" + std::to_string(CurrentProcessId());
}

TEST(NamedEvent, StaysSetUntilItIsReset) {
  NamedEvent made = NamedEvent::Create(Name("Stays"));
  NamedEvent opened = NamedEvent::Open(Name("Stays"));
  ASSERT_TRUE(made);
  ASSERT_TRUE(opened);
  EXPECT_FALSE(opened.Wait(milliseconds(0)));
  made.Set();
  EXPECT_TRUE(opened.Wait(milliseconds(0)));
  EXPECT_TRUE(opened.Wait());
  EXPECT_TRUE(made.Wait());
  opened.Reset();
  EXPECT_FALSE(made.Wait(milliseconds(0)));
}

TEST(NamedEvent, WaitsAsLongAsItIsTold) {
  NamedEvent event = NamedEvent::Create(Name("Long"));
  ASSERT_TRUE(event);
  const double start = NowSeconds();
  EXPECT_FALSE(event.Wait(milliseconds(80)));
  const double waited = NowSeconds() - start;
  EXPECT_GE(waited, 0.075);
  EXPECT_LT(waited, 5);
  EXPECT_FALSE(event.Wait(milliseconds(-1)));
}

TEST(NamedEvent, WakesEverybody) {
  NamedEvent event = NamedEvent::Create(Name("Everybody"));
  ASSERT_TRUE(event);
  std::atomic<int> woken{0};
  std::array<std::thread, 4> threads;
  for (std::thread& thread : threads) {
    thread = std::thread([&woken] {
      NamedEvent own = NamedEvent::Open(Name("Everybody"));
      if (own.Wait(seconds(30))) ++woken;
    });
  }
  SleepMilliseconds(30);
  EXPECT_EQ(woken, 0);
  event.Set();
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(woken, 4);
}

TEST(NamedEvent, LosesNoRing) {
  // The rendezvous of the link, as fast as it goes: each side resets before it answers.
  NamedEvent bell = NamedEvent::Create(Name("Bell"));
  NamedEvent answer = NamedEvent::Create(Name("Answer"));
  constexpr int kRounds = 5000;
  std::thread other([] {
    NamedEvent bell = NamedEvent::Open(Name("Bell"));
    NamedEvent answer = NamedEvent::Open(Name("Answer"));
    for (int i = 0; i < kRounds; ++i) {
      bell.Wait();
      bell.Reset();
      answer.Set();
    }
  });
  int answered = 0;
  for (int i = 0; i < kRounds; ++i) {
    bell.Set();
    if (!answer.Wait(seconds(30))) break;
    answer.Reset();
    ++answered;
  }
  EXPECT_EQ(answered, kRounds);
  if (answered == kRounds) {
    other.join();
  } else {
    other.detach();
  }
}

TEST(NamedEvent, BelongsToItsCreator) {
  const std::string name = Name("Creator");
  EXPECT_FALSE(NamedEvent::Open(name));
  {
    NamedEvent made = NamedEvent::Create(name);
    ASSERT_TRUE(made);
    EXPECT_FALSE(NamedEvent::Create(name));
    EXPECT_TRUE(NamedEvent::Open(name));
  }
  EXPECT_FALSE(NamedEvent::Open(name));
  EXPECT_TRUE(NamedEvent::Create(name));
}

TEST(NamedEvent, DoesNothingWhenEmpty) {
  NamedEvent event;
  event.Set();
  event.Reset();
  EXPECT_FALSE(event.Wait());
  EXPECT_FALSE(event);
}

}  // namespace
}  // namespace qv::platform
