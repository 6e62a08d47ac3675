#include <gtest/gtest.h>
#include <windows.h>

#include "platform/PumpedWait.h"

namespace qv::platform {
namespace {

using std::chrono::milliseconds;

// The test's thread has a message queue.
TEST(PumpedWait, WakesForNewMessagesAndLeavesThemInTheQueue) {
  MSG message;
  while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) != 0) {
  }
  PumpedWait wait;
  PostThreadMessageW(GetCurrentThreadId(), WM_APP + 7, 1, 2);
  ULONGLONG start = GetTickCount64();
  EXPECT_FALSE(wait.Wait(milliseconds(20000)));
  EXPECT_LT(GetTickCount64() - start, 10000u);
  // It is still there, and no longer new: the wait does not spin.
  start = GetTickCount64();
  EXPECT_FALSE(wait.Wait(milliseconds(200)));
  EXPECT_GE(GetTickCount64() - start, 150u);
  ASSERT_NE(PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE), 0);
  EXPECT_EQ(message.message, static_cast<UINT>(WM_APP + 7));
  EXPECT_EQ(message.lParam, 2);
}

}  // namespace
}  // namespace qv::platform
