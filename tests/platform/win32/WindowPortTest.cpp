#include <gtest/gtest.h>

#include <atomic>

#include "platform/Clock.h"
#include "platform/MessagePort.h"
#include "platform/PortThread.h"
#include "platform/win32/OpenHandles.h"

namespace qv::platform {
namespace {

using std::chrono::milliseconds;

constexpr std::uint32_t kFirst = 32969;
// More than what locks and threads have the system open in passing.
constexpr int kMany = 30;

int OwnHandles() {
  return OpenHandles(GetCurrentProcess());
}

TEST(WindowPort, AnswersThatComeTooLateLeaveNoHandles) {
  std::atomic<bool> release{false};
  PortThread host([&release](std::uint32_t number, SharedMemory) {
    while (number == kFirst && !release) SleepMilliseconds(1);
    return MessageReply{0, SharedMemory::CreateUnnamed(100)};
  });
  const auto viewer =
      MessagePort::Connect(host.port().window(), CurrentProcessId(), {}, {}, milliseconds(10));
  const int before = OwnHandles();
  for (int i = 0; i < kMany; ++i) {
    EXPECT_FALSE(viewer->Send(kFirst, SharedMemory::CreateUnnamed(100)).record);
  }
  release = true;
  // They come in while this one is waited for.
  for (int i = 0; i < 1000 && !viewer->Send(kFirst + 1).record; ++i) {
  }
  EXPECT_LT(OwnHandles(), before + kMany / 2);
}

TEST(WindowPort, AClosedHostClosesWhatStillComes) {
  const auto host = MessagePort::Listen({}, {});
  host->SetPeerProcess(CurrentProcessId());
  const auto viewer = MessagePort::Connect(host->window(), CurrentProcessId(), {}, {});
  const int before = OwnHandles();
  for (int i = 0; i < kMany; ++i) viewer->Post(kFirst, SharedMemory::CreateUnnamed(100));
  EXPECT_GE(OwnHandles(), before + kMany);
  host->Close();
  EXPECT_FALSE(host->WaitAndDispatch(milliseconds(0)));
  EXPECT_LT(OwnHandles(), before + kMany / 2);
}

TEST(WindowPort, AWindowOfAnotherProcessIsNoHost) {
  const auto window =
      static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(GetDesktopWindow()));
  ASSERT_NE(IsWindow(GetDesktopWindow()), 0);
  const auto viewer = MessagePort::Connect(window, CurrentProcessId(), {}, {});
  EXPECT_FALSE(viewer->connected());
  EXPECT_FALSE(viewer->Send(kFirst, SharedMemory::CreateUnnamed(100)).record);
}

TEST(SharedMemoryHandles, TheNumberOfAMappingThatIsHeldIsNotTaken) {
  const SharedMemory held = SharedMemory::CreateUnnamed(100);
  EXPECT_FALSE(SharedMemory::Adopt(held.native()));
  DWORD flags = 0;
  EXPECT_NE(GetHandleInformation(reinterpret_cast<HANDLE>(held.native()), &flags), 0);
}

}  // namespace
}  // namespace qv::platform
