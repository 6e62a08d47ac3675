#include <gtest/gtest.h>

#include <thread>

#include "platform/Clock.h"
#include "platform/PumpedWait.h"

namespace qv::platform {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;

TEST(PumpedWait, EndsOnceForEachEnd) {
  PumpedWait wait;
  EXPECT_FALSE(wait.Wait(milliseconds(20)));
  const double start = NowSeconds();
  std::thread ender([&wait] {
    SleepMilliseconds(30);
    wait.End();
  });
  EXPECT_TRUE(wait.Wait(seconds(60)));
  EXPECT_LT(NowSeconds() - start, 30);
  ender.join();
  EXPECT_FALSE(wait.Wait(milliseconds(20)));
  // An end that comes before the wait counts for it.
  wait.End();
  EXPECT_TRUE(wait.Wait(seconds(60)));
}

}  // namespace
}  // namespace qv::platform
