#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <limits>

#include "host/link/HostLink.h"
#include "link/NotingHost.h"
#include "link/RecordBytes.h"
#include "link/ViewerRecord.h"
#include "link/posix/RawHost.h"
#include "platform/Clock.h"

// The viewer's end of the link on Linux against a host that is written from the description of the
// wire alone.
namespace qv {
namespace {

using platform::MemoryFile;
using platform::PacketBytes;
using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

constexpr std::uint32_t kPost = 0, kSend = 1, kReply = 2;
constexpr float kNan = std::numeric_limits<float>::quiet_NaN();

// A received memory file: its own size, and the first page.
struct Attached {
  explicit Attached(int file) {
    struct stat status {};
    fstat(file, &status);
    size = static_cast<std::size_t>(status.st_size);
    void* address = mmap(nullptr, 8192, PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
    const auto* first = static_cast<const std::byte*>(address);
    bytes.assign(first, first + 4096);
    munmap(address, 8192);
    close(file);
  }

  std::size_t size;
  std::vector<std::byte> bytes;
};

// Of those that have ended.
double ProcessorSecondsOfChildren() {
  rusage usage{};
  getrusage(RUSAGE_CHILDREN, &usage);
  const auto seconds = [](const timeval& time) {
    return static_cast<double>(time.tv_sec) + 1e-6 * static_cast<double>(time.tv_usec);
  };
  return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

class Wire : public testing::Test {
 protected:
  Wire() : host_(8192, record_.path(), Until()) {
    EXPECT_TRUE(host_.Carry(RecordBytes(0).Size(4).bytes()));
    record_.NewLines();
  }

  // Has the viewer post something, and checks the packet, the size that it asked for, and the
  // bytes.
  void ExpectPost(const std::string& order, std::uint32_t number, std::size_t asked,
                  const RecordBytes& content) {
    SCOPED_TRACE(order);
    ASSERT_TRUE(host_.CarryOrder(order));
    const auto packet = host_.socket().Receive();
    ASSERT_TRUE(packet);
    EXPECT_EQ(packet->bytes, PacketBytes(kPost, number, 1, 0));
    ASSERT_EQ(packet->descriptors.size(), 1u);
    const Attached record(packet->descriptors[0]);
    EXPECT_EQ(record.size, asked);
    RecordBytes page = content;
    EXPECT_TRUE(SameBytes(record.bytes, page.Size(4096).bytes()));
  }

  // Answers the viewer's next question, which an order asks for; gives the lines that come of it.
  std::vector<std::string> AnsweredWith(const std::string& order, const std::vector<int>& files,
                                        std::uint64_t wParam = 1) {
    host_.RingOrder(order);
    const auto question = host_.socket().Receive();
    EXPECT_TRUE(question);
    if (!question) return {};
    for (const int file : question->descriptors) close(file);
    std::vector<unsigned char> reply = question->bytes;
    reply[0] = kReply;
    reply[8] = static_cast<unsigned char>(wParam);
    EXPECT_TRUE(host_.socket().Send(reply, files));
    for (const int file : files) close(file);
    EXPECT_TRUE(host_.AwaitAnswer());
    return record_.NewLines();
  }

  std::vector<std::string> Answered(const std::string& order, const RecordBytes& reply) {
    const auto* first = reinterpret_cast<const char*>(reply.bytes().data());
    const std::string content(first, reply.bytes().size());
    return AnsweredWith(order, {MemoryFile(content, content.size(), true)});
  }

  std::vector<std::string> Effect(const RecordBytes& record) {
    EXPECT_TRUE(host_.Carry(record.bytes()));
    return record_.NewLines();
  }

  // The viewer ends when this file is there.
  std::string Until() const { return record_.path() + "-until"; }

  ViewerRecord record_;
  RawHost host_;
};

TEST_F(Wire, RecordsHaveTheSizesOfTheTables) {
  ExpectPost("SendCamera", 32970, 40, RecordBytes().Floats(0, {1, 2, 3, 0, 1, 0, 0, 0, 1, 0.5f}));
  ExpectPost("SendDateTime", 32972, 24, RecordBytes().Ints(0, {2024, 2, 29, 23, 58, 59}));
  ExpectPost("SetBrightness", 32975, 20,
             RecordBytes().Ints(0, {12, 24, 8}).Text(12, "brightness2").Floats(24, {0.25f, 1.5f}));
  ExpectPost("SetGamma", 32975, 16,
             RecordBytes().Ints(0, {12, 18, 4}).Text(12, "gamma").Float(18, 2.25f));
  ExpectPost("SetLightFactors", 32975, 32,
             RecordBytes()
                 .Ints(0, {12, 26, 20})
                 .Text(12, "light_factors")
                 .Floats(26, {1, 2, 3, 4})
                 .Byte(42, 1));
  ExpectPost("SetBackground", 32975, 20,
             RecordBytes().Ints(0, {12, 23, 8}).Text(12, "background").Ints(23, {2, -1}));
  ExpectPost("SetEyeHeight", 32975, 16,
             RecordBytes().Ints(0, {12, 23, 4}).Text(12, "eye_height").Float(23, 70));
  // The value's length and 12, without the name.
  ExpectPost("SetProperty presets 3", 32975, 15,
             RecordBytes().Ints(0, {12, 20, 3}).Text(12, "presets").Byte(21, 1).Byte(22, 2));
  // The name still fits into the page, and then it does not: then there is room for all.
  RecordBytes full;
  full.Ints(0, {12, 20, 4076}).Text(12, "presets");
  for (std::size_t i = 0; i < 4076; ++i) full.Byte(20 + i, i & 0xff);
  ExpectPost("SetProperty presets 4076", 32975, 4088, full);
  ASSERT_TRUE(host_.CarryOrder("SetProperty presets 4077"));
  const auto packet = host_.socket().Receive();
  ASSERT_TRUE(packet);
  ASSERT_EQ(packet->descriptors.size(), 1u);
  EXPECT_EQ(Attached(packet->descriptors[0]).size, 4097u);
}

TEST_F(Wire, PlainMessagesAndQuestions) {
  ASSERT_TRUE(host_.CarryOrder("RequestResend"));
  auto packet = host_.socket().Receive();
  ASSERT_TRUE(packet);
  EXPECT_EQ(packet->bytes, PacketBytes(kPost, 32969, 0, 0));

  for (const auto& [order, number] : {std::pair("GetPages", 32973u), std::pair("GetCamera", 32974u),
                                      std::pair("GetLocation", 32980u)}) {
    host_.RingOrder(order);
    packet = host_.socket().Receive();
    ASSERT_TRUE(packet);
    EXPECT_EQ(packet->bytes[0], kSend);
    EXPECT_TRUE(packet->descriptors.empty());
    std::vector<unsigned char> reply = packet->bytes;
    std::fill(reply.begin() + 24, reply.end(), 0);  // a serial of the viewer's choice
    EXPECT_EQ(reply, PacketBytes(kSend, number, 0, 0));
    reply = packet->bytes;
    reply[0] = kReply;
    host_.socket().Send(reply);
    ASSERT_TRUE(host_.AwaitAnswer());
  }

  host_.RingOrder("GetProperty presets");
  packet = host_.socket().Receive();
  ASSERT_TRUE(packet);
  ASSERT_EQ(packet->descriptors.size(), 1u);
  EXPECT_EQ(packet->bytes[4] | packet->bytes[5] << 8, 32976);
  const Attached request(packet->descriptors[0]);
  EXPECT_EQ(request.size, 12u);
  EXPECT_TRUE(
      SameBytes(request.bytes, RecordBytes().Int(0, 4).Text(4, "presets").Size(4096).bytes()));
}

TEST_F(Wire, RepliesAreReadByTheirBytes) {
  EXPECT_THAT(
      Answered("GetCamera", RecordBytes().Floats(0, {1, 2, 3, 4, 5, 6, 7, 8, 9, 0.5f, 10, 11, 12})),
      ElementsAre("GetCamera 1 2 3, 4 5 6, 7 8 9, 0.5, 10 11 12"));
  EXPECT_THAT(
      Answered(
          "GetLocation",
          RecordBytes().Floats(0, {0.5f, 48.25f, 9.5f}).Ints(12, {2024, 2, 29, 23, 58, 59, -7})),
      ElementsAre("SetLocationAndTime 0.5 48.25 9.5, 2024 2 29 23 58 59 -7", "GetLocation"));
  RecordBytes pages;
  pages.Ints(0, {100, 2});
  for (const std::size_t page : {100u, 100u + 8272u}) {
    pages.Byte(page, 'A').Byte(page + 1, 0).Byte(page + 2, page == 100 ? 'a' : 'b');
    pages.Floats(page + 8192, {1, 2, 3, 4, 5, 6, kNan, kNan, kNan, 0.5f});  // up is not read
    pages.Byte(page + 8232, page == 100 ? 0 : 255).Ints(page + 8236, {1, 2, 3, 4, 5, 6});
    pages.Floats(page + 8260, {7, 8, 9});
  }
  EXPECT_THAT(Answered("GetPages", pages),
              ElementsAre("GetPages [Aa|1 2 3|4 5 6|0.5 7 8 9|no sun 1 2 3 4 5 6]"
                          " [Ab|1 2 3|4 5 6|0.5 7 8 9|sun 1 2 3 4 5 6]"));
  EXPECT_THAT(Answered("GetProperty presets", RecordBytes().Ints(0, {9, 2}).Byte(9, 1).Byte(10, 2)),
              ElementsAre("GetProperty presets 0102"));
  // By name, whatever the length says.
  EXPECT_THAT(Answered("GetProperty gamma", RecordBytes().Ints(0, {8, 1 << 30}).Int(8, 0x01020304)),
              ElementsAre("GetProperty gamma 04030201"));
  EXPECT_THAT(AnsweredWith("GetProperty gamma", {}, 0), ElementsAre("GetProperty gamma none"));
}

TEST_F(Wire, BadRepliesAreNoReplies) {
  const auto none = [](const std::string& order) {
    return ElementsAre(StartsWith("log Link: the host's answer"), order + " none");
  };
  EXPECT_THAT(AnsweredWith("GetCamera", {}, 0), none("GetCamera"));
  EXPECT_THAT(AnsweredWith("GetCamera", {}, 1), none("GetCamera"));
  EXPECT_THAT(Answered("GetCamera", RecordBytes().Float(48, kNan)), none("GetCamera"));
  EXPECT_THAT(Answered("GetLocation", RecordBytes().Float(4, kNan).Size(40)), none("GetLocation"));
  int ends[2];
  ASSERT_EQ(pipe(ends), 0);
  EXPECT_THAT(AnsweredWith("GetCamera", {ends[0]}), none("GetCamera"));
  EXPECT_THAT(AnsweredWith("GetCamera", {open("/dev/null", O_RDWR)}), none("GetCamera"));
  EXPECT_THAT(AnsweredWith("GetCamera", {MemoryFile("", 0, true)}), none("GetCamera"));
  close(ends[1]);

  EXPECT_THAT(Answered("GetProperty presets", RecordBytes().Ints(0, {4096, 1})),
              none("GetProperty presets"));
  EXPECT_THAT(Answered("GetPages", RecordBytes().Ints(0, {4096, 1})),
              ElementsAre(StartsWith("log Link: the host's answer"), "GetPages"));
  // A name without end, and a number that is none, cost their own page only.
  RecordBytes pages;
  pages.Ints(0, {8, 3}).Size(8 + 3 * 8272);
  for (std::size_t i = 0; i < 8192; ++i) pages.Byte(8 + i, 'x');
  pages.Float(8 + 8272 + 8192, kNan).Byte(8 + 2 * 8272, 'z');
  EXPECT_THAT(Answered("GetPages", pages),
              ElementsAre("GetPages [z|0 0 0|0 0 0|0 0 0 0|no sun 0 0 0 0 0 0]"));
}

TEST_F(Wire, TheAreaIsExchangedByPostOrBySend) {
  for (const std::uint32_t kind : {kSend, kPost}) {
    host_.socket().Send(PacketBytes(kind, 32978, 0, 41));
    if (kind == kSend) {
      const auto reply = host_.socket().Receive();
      ASSERT_TRUE(reply);
      EXPECT_EQ(reply->bytes, PacketBytes(kReply, 32978, 0, 41));
    }
    host_.ReplaceArea(40000);
    host_.socket().Send(PacketBytes(kSend, 32979, 0, 42));
    const auto reply = host_.socket().Receive();
    ASSERT_TRUE(reply);
    EXPECT_EQ(reply->bytes, PacketBytes(kReply, 32979, 0, 42));
    EXPECT_THAT(Effect(RecordBytes(15).Int(4, 39000).Text(39000, "far")),
                ElementsAre("SetStatusMessage far"));
  }
  // Released and not opened again: answered, and nothing is read.
  host_.socket().Send(PacketBytes(kSend, 32978, 0, 43));
  ASSERT_TRUE(host_.socket().Receive());
  EXPECT_THAT(Effect(RecordBytes(16).Float(4, 1)), ElementsAre(StartsWith("log ")));
}

TEST_F(Wire, TheAreaIsKeptWhileACommandRuns) {
  host_.RingOrder("Work 300");
  host_.socket().Send(PacketBytes(kSend, 32978, 0, 43));
  ASSERT_TRUE(host_.socket().Receive());
  ASSERT_TRUE(host_.AwaitAnswer());
  EXPECT_THAT(record_.NewLines(), Contains(StartsWith("log Link: command area kept")));
  EXPECT_THAT(Effect(RecordBytes(16).Float(4, 1)), ElementsAre("SetProgress 1"));
}

TEST_F(Wire, TheAreaMayLoseItsMemory) {
  host_.Ring(RecordBytes(8).Ints(4, {100, 100, 0, 0}).bytes());
  ASSERT_TRUE(host_.AwaitAnswer());
  record_.NewLines();
  ASSERT_THAT(Effect(RecordBytes(12)), ElementsAre("BeginStaticMesh"));
  host_.ShortenArea(4096);
  EXPECT_THAT(Effect(RecordBytes(8).Ints(4, {100, 200, 0, 0})),
              ElementsAre(StartsWith("log Link: AddMeshData was refused")));
  EXPECT_THAT(Effect(RecordBytes(15).Int(4, 4096)),
              ElementsAre(StartsWith("log Link: SetStatusMessage was refused")));
  EXPECT_THAT(Effect(RecordBytes(16).Float(4, 1)), ElementsAre("SetProgress 1"));
}

TEST_F(Wire, GarbageOnTheSocketIsPassedOver) {
  host_.socket().Send({1, 2, 3});
  host_.socket().Send(std::vector<unsigned char>(5000, 0xff));
  host_.socket().Send(PacketBytes(kSend, 12345, 0, 6));  // an unknown message has the answer 0
  const auto reply = host_.socket().Receive();
  ASSERT_TRUE(reply);
  EXPECT_EQ(reply->bytes, PacketBytes(kReply, 12345, 0, 6));
  EXPECT_THAT(Effect(RecordBytes(16).Float(4, 1)), ElementsAre("SetProgress 1"));
}

TEST_F(Wire, TheHostsDeathEndsTheWaitForAnAnswer) {
  host_.RingOrder("gui GetCamera");
  EXPECT_TRUE(host_.socket().Receive());
  host_.socket().Close();
  EXPECT_TRUE(host_.AwaitAnswer());
  EXPECT_TRUE(host_.CarryOrder("GetProperty gamma"));
  EXPECT_THAT(record_.NewLines(), ElementsAre(StartsWith("log Link: the host's answer"),
                                              "GetCamera none", "GetProperty gamma none"));
  EXPECT_TRUE(host_.viewer().Running());
}

TEST_F(Wire, AHostThatNeverAnswersDoesNotKeepTheViewerFromEnding) {
  host_.RingOrder("GetCamera");
  ASSERT_TRUE(host_.socket().Receive());
  std::ofstream(Until()) << "now";
  EXPECT_EQ(host_.viewer().Wait(std::chrono::seconds(20)), 0);
  std::filesystem::remove(Until());
  EXPECT_THAT(record_.NewLines(), ElementsAre(StartsWith("log Link: the host's answer"),
                                              "GetCamera none", "stopped", "end"));
  const auto packet = host_.socket().Receive();
  ASSERT_TRUE(packet);
  EXPECT_EQ(packet->bytes, PacketBytes(kPost, 32971, 0, 0));
}

TEST(WireWithoutHost, TheViewerStaysUpAndDoesNotSpin) {
  const double before = ProcessorSecondsOfChildren();
  ViewerRecord record;
  const std::string until = record.path() + "-until";
  platform::ChildProcess viewer = platform::ChildProcess::Start(
      QUORVANE_TEST_VIEWER, {"--windowhandle=4294967295", "--processid=4294967295",
                             "--record=" + record.path(), "--until=" + until});
  EXPECT_TRUE(record.Await("not opened"));
  EXPECT_EQ(viewer.Wait(std::chrono::milliseconds(700)), std::nullopt);
  std::ofstream(until) << "now";
  EXPECT_EQ(viewer.Wait(std::chrono::seconds(20)), 0);
  std::filesystem::remove(until);
  EXPECT_LT(ProcessorSecondsOfChildren() - before, 0.35);
}

TEST(HostObjects, AreMadeAnewWhereAKilledHostLeftThem) {
  const std::string id = std::to_string(getpid());
  for (const std::string name : {"/QV_Lock1_", "/QV_Lock2_", "/QV_Shared1_"}) {
    const int file = shm_open((name + id).c_str(), O_CREAT | O_EXCL | O_RDWR, 0400);
    ASSERT_GE(file, 0);
    close(file);
  }
  NotingHost host;
  {
    const auto link = host::HostLink::Create(host);
    ASSERT_NE(link, nullptr);
    struct stat status {};
    ASSERT_EQ(stat(("/dev/shm/QV_Shared1_" + id).c_str(), &status), 0);
    EXPECT_EQ(status.st_size, 1 << 20);
    EXPECT_EQ(status.st_mode & 0777, 0600u);
    ASSERT_EQ(stat(("/dev/shm/QV_Lock2_" + id).c_str(), &status), 0);
    EXPECT_EQ(status.st_size, 4);
    EXPECT_EQ(status.st_mode & 0777, 0600u);
  }
  for (const std::string name : {"QV_Lock1_", "QV_Lock2_", "QV_Shared1_"}) {
    EXPECT_FALSE(std::filesystem::exists(std::filesystem::path("/dev/shm") / (name + id))) << name;
  }
}

}  // namespace
}  // namespace qv
