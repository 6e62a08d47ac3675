#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <cstring>
#include <vector>

#include "platform/Clock.h"
#include "platform/MessagePort.h"
#include "platform/PortThread.h"

// What both systems do alike: from the viewer's end to the host's window and back.
namespace qv::platform {
namespace {

using testing::ElementsAre;

constexpr std::uint32_t kFirst = 32969;

SharedMemory RecordOf(int value) {
  SharedMemory record = SharedMemory::CreateUnnamed(100);
  std::memcpy(record.bytes().data(), &value, sizeof(value));
  return record;
}

int ValueOf(const SharedMemory& record) {
  int value = -1;
  if (record) std::memcpy(&value, record.bytes().data(), sizeof(value));
  return value;
}

std::unique_ptr<MessagePort> ConnectTo(PortThread& host) {
  return MessagePort::Connect(host.port().window(), CurrentProcessId(), {}, {});
}

TEST(MessagePort, PostsArriveInOrderWithTheirRecords) {
  std::vector<std::pair<std::uint32_t, int>> seen;
  PortThread host([&seen](std::uint32_t number, SharedMemory record) {
    seen.emplace_back(number, ValueOf(record));
    return MessageReply();
  });
  const auto viewer = ConnectTo(host);
  ASSERT_TRUE(viewer->connected());
  viewer->Post(kFirst);
  viewer->Post(kFirst + 1, RecordOf(11));
  viewer->Post(kFirst, RecordOf(12));
  viewer->Send(kFirst + 4);
  viewer->Send(kFirst + 4);
  // On Windows a send overtakes posts, so what was posted is looked at after the owner has been
  // idle.
  SleepMilliseconds(50);
  viewer->Send(kFirst + 5);
  std::erase_if(seen, [](const auto& message) { return message.first >= kFirst + 4; });
  EXPECT_THAT(seen,
              ElementsAre(std::pair(kFirst, -1), std::pair(kFirst + 1, 11), std::pair(kFirst, 12)));
}

TEST(MessagePort, AnswersEachOfManyThreadsItsOwn) {
  PortThread host([](std::uint32_t, SharedMemory record) {
    return MessageReply{0, RecordOf(ValueOf(record) * 3)};
  });
  const auto viewer = ConnectTo(host);
  std::atomic<int> right{0};
  std::vector<std::thread> threads;
  threads.reserve(4);
  for (int t = 0; t < 4; ++t) {
    threads.emplace_back([&viewer, &right, t] {
      for (int i = 0; i < 50; ++i) {
        const int value = t * 1000 + i;
        if (ValueOf(viewer->Send(kFirst, RecordOf(value)).record) == value * 3) ++right;
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(right, 200);
}

TEST(MessagePort, AnswersNothingAtOnceWithoutAHost) {
  std::uint32_t window = 0;
  {
    PortThread host([](std::uint32_t, SharedMemory) { return MessageReply(); });
    window = host.port().window();
    EXPECT_NE(window, 0u);
  }
  const auto viewer = MessagePort::Connect(window, CurrentProcessId(), {}, {});
  ASSERT_NE(viewer, nullptr);
  EXPECT_FALSE(viewer->connected());
  viewer->Post(kFirst, RecordOf(1));
  const MessageReply reply = viewer->Send(kFirst, RecordOf(1));
  EXPECT_EQ(reply.value, 0u);
  EXPECT_FALSE(reply.record);
  viewer->Dispatch();
  viewer->Close();
}

TEST(MessagePort, CloseEndsTheWaitForAnAnswer) {
  std::atomic<bool> handling{false};
  std::atomic<bool> release{false};
  PortThread host([&](std::uint32_t, SharedMemory) {
    handling = true;
    while (!release) SleepMilliseconds(1);
    return MessageReply{0, RecordOf(9)};
  });
  const auto viewer = ConnectTo(host);
  std::thread closer([&] {
    while (!handling) SleepMilliseconds(1);
    viewer->Close();
  });
  EXPECT_FALSE(viewer->Send(kFirst).record);
  EXPECT_FALSE(viewer->connected());
  EXPECT_FALSE(viewer->Send(kFirst).record);
  closer.join();
  release = true;
}

TEST(MessagePort, OnlyTheOwnersPatienceEnds) {
  std::atomic<bool> release{false};
  PortThread host([&release](std::uint32_t number, SharedMemory) {
    while (number == kFirst && !release) SleepMilliseconds(1);
    return MessageReply{0, RecordOf(static_cast<int>(number))};
  });
  const auto viewer = MessagePort::Connect(host.port().window(), CurrentProcessId(), {}, {},
                                           std::chrono::milliseconds(50));
  EXPECT_FALSE(viewer->Send(kFirst, RecordOf(1)).record);
  std::thread other([&viewer] {
    EXPECT_EQ(ValueOf(viewer->Send(kFirst, RecordOf(2)).record), static_cast<int>(kFirst));
  });
  SleepMilliseconds(200);
  release = true;
  other.join();
  // The late answer is nobody's.
  EXPECT_EQ(ValueOf(viewer->Send(kFirst + 1, RecordOf(3)).record), static_cast<int>(kFirst) + 1);
}

TEST(MessagePort, TheHostsEndEndsTheWaitForAnAnswer) {
  auto host =
      std::make_unique<PortThread>([](std::uint32_t, SharedMemory) { return MessageReply(); });
  const auto viewer = ConnectTo(*host);
  EXPECT_TRUE(viewer->connected());
  std::thread ender([&host] {
    SleepMilliseconds(20);
    host.reset();
  });
  // Sends go on until one finds the window gone; none may hang.
  while (viewer->connected()) EXPECT_FALSE(viewer->Send(kFirst).record);
  ender.join();
}

}  // namespace
}  // namespace qv::platform
