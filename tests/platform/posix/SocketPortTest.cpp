#include <dirent.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <atomic>
#include <cstring>
#include <thread>

#include "platform/Clock.h"
#include "platform/MessagePort.h"
#include "platform/PortThread.h"
#include "platform/posix/RawPeer.h"

// The wire of the window messages on Linux, against a peer that is spoken by hand.
namespace qv::platform {
namespace {

using testing::ElementsAre;

constexpr std::uint32_t kPost = 0, kSend = 1, kReply = 2;
// Above what Listen takes; tests run side by side.
const std::uint32_t kWindow = 3000000000 + CurrentProcessId();

std::vector<unsigned char> Bytes(std::initializer_list<int> values) {
  return {values.begin(), values.end()};
}

int OpenDescriptors() {
  int count = 0;
  DIR* folder = opendir("/proc/self/fd");
  while (readdir(folder) != nullptr) ++count;
  closedir(folder);
  return count;
}

SharedMemory RecordOf(const std::string& text) {
  SharedMemory record = SharedMemory::CreateUnnamed(40);
  std::memcpy(record.bytes().data(), text.c_str(), text.size() + 1);
  return record;
}

std::string TextOf(const SharedMemory& record) {
  return record ? reinterpret_cast<const char*>(record.bytes().data()) : "";
}

// A listening port whose handler takes note, with a raw viewer.
class HostPort : public testing::Test {
 protected:
  HostPort()
      : host_([this](std::uint32_t number, SharedMemory record) {
          const std::lock_guard<std::mutex> lock(mutex_);
          seen_.push_back(std::to_string(number) + " " + TextOf(record));
          return number == 9 ? MessageReply{0, RecordOf("answer")} : MessageReply{number * 2, {}};
        }) {
    Connect();
  }

  void Connect() {
    EXPECT_TRUE(viewer_.Connect(host_.port().window()));
    while (!host_.port().connected()) SleepMilliseconds(1);
  }

  std::vector<std::string> Seen() {
    // An answered send shows that all before it has been handled.
    viewer_.Send(PacketBytes(kSend, 1000, 0, 77777));
    viewer_.Receive();
    const std::lock_guard<std::mutex> lock(mutex_);
    std::vector<std::string> seen = seen_;
    std::erase(seen, "1000 ");
    return seen;
  }

  std::mutex mutex_;
  std::vector<std::string> seen_;
  PortThread host_;
  RawPeer viewer_;
};

TEST_F(HostPort, AnswersByTheBytesOfTheWire) {
  // kind 1, number 9, wParam 1, lParam 0, serial 0x0102030405060708
  const int record = MemoryFile("question", 20, true);
  ASSERT_TRUE(viewer_.Send(Bytes({1, 0, 0, 0, 9, 0, 0, 0, 1, 0, 0, 0, 0, 0, 0, 0,
                                  0, 0, 0, 0, 0, 0, 0, 0, 8, 7, 6, 5, 4, 3, 2, 1}),
                           {record}));
  close(record);
  const auto answer = viewer_.Receive();
  ASSERT_TRUE(answer);
  EXPECT_EQ(answer->bytes, Bytes({2, 0, 0, 0, 9, 0, 0, 0, 1, 0, 0, 0, 0, 0, 0, 0,
                                  0, 0, 0, 0, 0, 0, 0, 0, 8, 7, 6, 5, 4, 3, 2, 1}));
  ASSERT_EQ(answer->descriptors.size(), 1u);
  EXPECT_EQ(TextOf(SharedMemory::Adopt(answer->descriptors[0])), "answer");

  // Without a record wParam is the result.
  ASSERT_TRUE(viewer_.Send(PacketBytes(kSend, 300, 0, 5)));
  const auto plain = viewer_.Receive();
  ASSERT_TRUE(plain);
  EXPECT_EQ(plain->bytes, PacketBytes(kReply, 300, 600, 5));
  EXPECT_TRUE(plain->descriptors.empty());
  EXPECT_THAT(Seen(), ElementsAre("9 question", "300 "));
}

TEST_F(HostPort, SendsByTheBytesOfTheWire) {
  host_.port().Post(32978);
  host_.port().Post(7, RecordOf("posted"));
  auto packet = viewer_.Receive();
  ASSERT_TRUE(packet);
  EXPECT_EQ(packet->bytes, Bytes({0, 0, 0, 0, 0xD2, 0x80, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0,
                                  0, 0, 0, 0, 0,    0,    0, 0, 0, 0, 0, 0, 0, 0, 0, 0}));
  packet = viewer_.Receive();
  ASSERT_TRUE(packet);
  EXPECT_EQ(packet->bytes, PacketBytes(kPost, 7, 1, 0));
  ASSERT_EQ(packet->descriptors.size(), 1u);
  struct stat status {};
  fstat(packet->descriptors[0], &status);
  EXPECT_EQ(status.st_size, 40);
  EXPECT_EQ(TextOf(SharedMemory::Adopt(packet->descriptors[0])), "posted");

  std::thread answering([this] {
    const auto send = viewer_.Receive();
    ASSERT_TRUE(send);
    std::vector<unsigned char> reply = send->bytes;
    EXPECT_EQ(reply[0], 1);
    // An answer to another message and one with another serial are not taken for it.
    reply[0] = 2;
    reply[8] = 13;
    std::vector<unsigned char> wrong = reply;
    wrong[4] ^= 1;
    viewer_.Send(wrong);
    wrong = reply;
    wrong[31] ^= 1;
    viewer_.Send(wrong);
    viewer_.Send(reply);
  });
  EXPECT_EQ(host_.port().Send(32979).value, 13u);
  answering.join();
}

TEST_F(HostPort, GoesOnAfterMalformedPackets) {
  const int before = OpenDescriptors();
  const int record = MemoryFile("record", 20, true);
  int ends[2];
  ASSERT_EQ(pipe(ends), 0);
  viewer_.Send({1});
  viewer_.Send(std::vector<unsigned char>(31, 0));
  viewer_.Send(std::vector<unsigned char>(33, 0));
  viewer_.Send(std::vector<unsigned char>(100000, 0xff), {record});
  viewer_.Send(PacketBytes(3, 9, 0, 1));
  viewer_.Send(PacketBytes(0xffffffff, 9, 1, 1), {record});
  viewer_.Send(PacketBytes(kReply, 9, 1, 12345), {record});
  EXPECT_THAT(Seen(), ElementsAre());
  // What is attached wrongly counts as no record; the message itself is well.
  viewer_.Send(PacketBytes(kPost, 1, 1, 0));
  viewer_.Send(PacketBytes(kPost, 2, 1, 0), {ends[0]});
  viewer_.Send(PacketBytes(kPost, 3, 1, 0), {record, record});
  viewer_.Send(PacketBytes(kPost, 4, 1, 0), std::vector<int>(8, record));
  viewer_.Send(PacketBytes(kPost, 5, 1, 0), {record});
  EXPECT_THAT(Seen(), ElementsAre("1 ", "2 ", "3 ", "4 ", "5 record"));
  close(record);
  close(ends[0]);
  close(ends[1]);
  EXPECT_EQ(OpenDescriptors(), before);
}

TEST_F(HostPort, AMalformedPacketEndsTheWaitForAnAnswer) {
  std::thread garbling([this] {
    viewer_.Receive();
    viewer_.Send(std::vector<unsigned char>(16, 2));
  });
  const MessageReply reply = host_.port().Send(9);
  EXPECT_EQ(reply.value, 0u);
  EXPECT_FALSE(reply.record);
  garbling.join();
  EXPECT_TRUE(host_.port().connected());
}

TEST_F(HostPort, KeepsItsPeerAndTakesANewOneOnceItHasGone) {
  RawPeer second;
  ASSERT_TRUE(second.Connect(host_.port().window()));
  EXPECT_FALSE(second.Receive());  // turned away
  EXPECT_THAT(Seen(), ElementsAre());

  viewer_.Send(PacketBytes(kPost, 1, 0, 0));
  viewer_.Close();
  while (host_.port().connected()) SleepMilliseconds(1);
  Connect();
  viewer_.Send(PacketBytes(kPost, 2, 0, 0));
  // The last words of the first are not lost.
  EXPECT_THAT(Seen(), ElementsAre("1 ", "2 "));
}

TEST_F(HostPort, DoesNotWaitForAPeerThatDoesNotRead) {
  const double start = NowSeconds();
  for (int i = 0; i < 5000; ++i) host_.port().Post(1, RecordOf("much"));
  EXPECT_LT(NowSeconds() - start, 20);
  std::thread closer([this] {
    SleepMilliseconds(30);
    viewer_.Close();
  });
  EXPECT_FALSE(host_.port().Send(2).record);
  closer.join();
}

// While it lives this thread, and it alone, belongs to another user.
class OtherUser {
 public:
  OtherUser() { SetUser(65534); }
  ~OtherUser() { SetUser(0); }
  OtherUser(const OtherUser&) = delete;
  OtherUser& operator=(const OtherUser&) = delete;

 private:
  static void SetUser(long id) { EXPECT_EQ(syscall(SYS_setresuid, -1L, id, -1L), 0); }
};

TEST_F(HostPort, TurnsOtherUsersAway) {
  if (geteuid() != 0) GTEST_SKIP() << "only root can be two users";
  viewer_.Close();
  while (host_.port().connected()) SleepMilliseconds(1);
  RawPeer stranger;
  {
    const OtherUser other;
    ASSERT_TRUE(stranger.Connect(host_.port().window()));
  }
  stranger.Send(PacketBytes(kSend, 9, 0, 1));
  EXPECT_FALSE(stranger.Receive());
  Connect();
  EXPECT_THAT(Seen(), ElementsAre());
}

TEST(ViewerPort, DoesNotSpeakToAHostOfAnotherUser) {
  if (geteuid() != 0) GTEST_SKIP() << "only root can be two users";
  RawPeer stranger;
  {
    const OtherUser other;
    ASSERT_TRUE(stranger.Listen(kWindow));
  }
  const auto viewer = MessagePort::Connect(kWindow, 0, {}, {});
  EXPECT_FALSE(viewer->connected());
  EXPECT_FALSE(viewer->Send(9).record);
}

TEST(ViewerPort, TheOwnerAnswersSendsWhileItWaits) {
  RawPeer host;
  ASSERT_TRUE(host.Listen(kWindow));
  std::vector<std::uint32_t> seen;
  std::atomic<int> notified{0};
  const auto viewer = MessagePort::Connect(
      kWindow, 0,
      [&seen](std::uint32_t number, SharedMemory) {
        seen.push_back(number);
        return MessageReply{number + 1, {}};
      },
      [&notified] { ++notified; });
  ASSERT_TRUE(viewer->connected());
  ASSERT_TRUE(host.Accept());
  std::thread hostThread([&host] {
    const auto question = host.Receive();
    ASSERT_TRUE(question);
    host.Send(PacketBytes(kPost, 50, 0, 0));
    host.Send(PacketBytes(kSend, 60, 0, 900));
    const auto answer = host.Receive();  // comes before the viewer has its own
    ASSERT_TRUE(answer);
    EXPECT_EQ(answer->bytes, PacketBytes(kReply, 60, 61, 900));
    std::vector<unsigned char> reply = question->bytes;
    reply[0] = 2;
    reply[8] = 5;
    host.Send(reply);
  });
  EXPECT_EQ(viewer->Send(32974).value, 5u);
  hostThread.join();
  // The post has waited for the owner.
  EXPECT_THAT(seen, ElementsAre(60u));
  EXPECT_GE(notified, 2);
  viewer->Dispatch();
  EXPECT_THAT(seen, ElementsAre(60u, 50u));
}

TEST(ViewerPort, OtherThreadsLeaveIncomingSendsToTheOwner) {
  RawPeer host;
  ASSERT_TRUE(host.Listen(kWindow));
  std::thread::id handledOn;
  std::atomic<bool> waiting{false};
  const auto viewer = MessagePort::Connect(
      kWindow, 0,
      [&handledOn](std::uint32_t, SharedMemory) {
        handledOn = std::this_thread::get_id();
        return MessageReply();
      },
      [&waiting] { waiting = true; });
  ASSERT_TRUE(host.Accept());
  std::thread sender([&viewer] { EXPECT_EQ(viewer->Send(1).value, 8u); });
  const auto question = host.Receive();
  ASSERT_TRUE(question);
  host.Send(PacketBytes(kSend, 60, 0, 900));
  while (!waiting) SleepMilliseconds(1);
  SleepMilliseconds(20);
  viewer->Dispatch();
  EXPECT_EQ(handledOn, std::this_thread::get_id());
  ASSERT_TRUE(host.Receive());
  std::vector<unsigned char> reply = question->bytes;
  reply[0] = 2;
  reply[8] = 8;
  host.Send(reply);
  sender.join();
}

TEST(ViewerPort, LastWordsAreHeardAfterItHasClosed) {
  RawPeer host;
  ASSERT_TRUE(host.Listen(kWindow));
  const auto viewer = MessagePort::Connect(kWindow, 0, {}, {});
  viewer->Post(32971);
  viewer->Close();
  viewer->Post(32969);
  ASSERT_TRUE(host.Accept());
  const auto packet = host.Receive();
  ASSERT_TRUE(packet);
  EXPECT_EQ(packet->bytes, PacketBytes(kPost, 32971, 0, 0));
  EXPECT_FALSE(host.Receive());
}

TEST(ViewerPort, RefusesMoreThanItCanKeepAndAnswersAllTheSame) {
  RawPeer host;
  ASSERT_TRUE(host.Listen(kWindow));
  int handled = 0;
  const auto viewer =
      MessagePort::Connect(kWindow, 0,
                           [&handled](std::uint32_t, SharedMemory) {
                             return MessageReply{static_cast<std::uint64_t>(++handled), {}};
                           },
                           {});
  ASSERT_TRUE(host.Accept());
  // The owner does not look while far too many arrive.
  for (int i = 0; i < 2000; ++i) ASSERT_TRUE(host.Send(PacketBytes(kPost, 1, 0, 0)));
  ASSERT_TRUE(host.Send(PacketBytes(kSend, 2, 0, 55)));
  const auto refused = host.Receive();
  ASSERT_TRUE(refused);
  EXPECT_EQ(refused->bytes, PacketBytes(kReply, 2, 0, 55));
  viewer->Dispatch();
  EXPECT_GT(handled, 100);
  EXPECT_LT(handled, 2000);
  ASSERT_TRUE(host.Send(PacketBytes(kSend, 2, 0, 56)));
  while (!viewer->WaitAndDispatch(std::chrono::seconds(10))) {
  }
  EXPECT_TRUE(host.Receive());
}

}  // namespace
}  // namespace qv::platform
