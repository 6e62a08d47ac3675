#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <limits>

#include "link/RecordBytes.h"
#include "link/ViewerRecord.h"
#include "link/win32/RawHost.h"
#include "platform/ChildProcess.h"
#include "platform/win32/OpenHandles.h"

// The viewer's end of the link on Windows against a host that is written from the description of
// the wire alone.
namespace qv {
namespace {

using platform::OpenHandles;
using testing::Contains;
using testing::ElementsAre;
using testing::StartsWith;

// More than what locks and threads have the system open in passing.
constexpr int kRounds = 25;

class Wire : public testing::Test {
 protected:
  Wire() : host_(8192, record_.path(), record_.path() + "-until") {
    EXPECT_TRUE(host_.Carry(RecordBytes(0).Size(4).bytes()));
    record_.NewLines();
  }

  // Has the viewer post something, and checks the message and the bytes.
  void ExpectPost(const std::string& order, UINT number, const RecordBytes& content) {
    SCOPED_TRACE(order);
    ASSERT_TRUE(host_.CarryOrder(order));
    const auto message = host_.Next();
    ASSERT_TRUE(message);
    EXPECT_EQ(message->number, number);
    EXPECT_EQ(message->lParam, 0);
    EXPECT_FALSE(message->sent);
    RecordBytes page = content;
    EXPECT_TRUE(SameBytes(TakePage(message->wParam), page.Size(4096).bytes()));
  }

  // Answers the viewer's next question, which an order asks for; gives the lines that come of it.
  std::vector<std::string> AnsweredWith(const std::string& order,
                                        const std::function<LRESULT()>& answer) {
    host_.SetAnswer([answer](const RawHost::Message& message) {
      if (message.wParam != 0) CloseHandle(reinterpret_cast<HANDLE>(message.wParam));
      return answer();
    });
    EXPECT_TRUE(host_.CarryOrder(order));
    EXPECT_TRUE(host_.Next());
    return record_.NewLines();
  }
  std::vector<std::string> Answered(const std::string& order, const RecordBytes& reply) {
    return AnsweredWith(order, [this, &reply] { return host_.HandOverRecord(reply.bytes()); });
  }

  std::vector<std::string> Effect(const RecordBytes& record) {
    EXPECT_TRUE(host_.Carry(record.bytes()));
    return record_.NewLines();
  }

  ViewerRecord record_;
  RawHost host_;
};

auto None(const std::string& order) {
  return ElementsAre(StartsWith("log Link: the host's answer"), order + " none");
}

TEST_F(Wire, MessagesCarryTheRecordsOfTheTables) {
  ExpectPost("SendCamera", 32970, RecordBytes().Floats(0, {1, 2, 3, 0, 1, 0, 0, 0, 1, 0.5f}));
  ExpectPost("SendDateTime", 32972, RecordBytes().Ints(0, {2024, 2, 29, 23, 58, 59}));
  ExpectPost("SetBrightness", 32975,
             RecordBytes().Ints(0, {12, 24, 8}).Text(12, "brightness2").Floats(24, {0.25f, 1.5f}));
  ExpectPost("SetLightFactors", 32975,
             RecordBytes()
                 .Ints(0, {12, 26, 20})
                 .Text(12, "light_factors")
                 .Floats(26, {1, 2, 3, 4})
                 .Byte(42, 1));
  ExpectPost("SetProperty presets 3", 32975,
             RecordBytes().Ints(0, {12, 20, 3}).Text(12, "presets").Byte(21, 1).Byte(22, 2));

  ASSERT_TRUE(host_.CarryOrder("RequestResend"));
  auto message = host_.Next();
  ASSERT_TRUE(message);
  EXPECT_EQ(message->number, 32969u);
  EXPECT_EQ(message->wParam, 0u);

  for (const auto& [order, number] : {std::pair("GetPages", 32973u), std::pair("GetCamera", 32974u),
                                      std::pair("GetLocation", 32980u)}) {
    ASSERT_TRUE(host_.CarryOrder(order));
    message = host_.Next();
    ASSERT_TRUE(message);
    EXPECT_EQ(message->number, number);
    EXPECT_EQ(message->wParam, 0u);
    EXPECT_TRUE(message->sent);
  }
  ASSERT_TRUE(host_.CarryOrder("GetProperty presets"));
  message = host_.Next();
  ASSERT_TRUE(message);
  EXPECT_EQ(message->number, 32976u);
  EXPECT_TRUE(message->sent);
  EXPECT_TRUE(SameBytes(TakePage(message->wParam),
                        RecordBytes().Int(0, 4).Text(4, "presets").Size(4096).bytes()));
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
  pages.Ints(0, {100, 2}).Size(100 + 2 * 8272);
  pages.Byte(100, 'a').Float(100 + 8228, 0.5f).Byte(100 + 8272, 'b');
  EXPECT_THAT(Answered("GetPages", pages),
              ElementsAre("GetPages [a|0 0 0|0 0 0|0.5 0 0 0|no sun 0 0 0 0 0 0]"
                          " [b|0 0 0|0 0 0|0 0 0 0|no sun 0 0 0 0 0 0]"));
  EXPECT_THAT(Answered("GetProperty presets", RecordBytes().Ints(0, {9, 2}).Byte(9, 1).Byte(10, 2)),
              ElementsAre("GetProperty presets 0102"));
  EXPECT_THAT(AnsweredWith("GetProperty gamma", [] { return LRESULT{0}; }),
              ElementsAre("GetProperty gamma none"));
}

TEST_F(Wire, NumbersThatAreNoMappingsAreNoReplies) {
  const LRESULT area = host_.AreaInViewer();
  ASSERT_NE(area, 0);
  for (const LRESULT number : {LRESULT{0}, LRESULT{-1}, LRESULT{3}, LRESULT{0x7ffffffc},
                               std::numeric_limits<LRESULT>::max(), area}) {
    SCOPED_TRACE(number);
    EXPECT_THAT(AnsweredWith("GetCamera", [number] { return number; }), None("GetCamera"));
  }
  EXPECT_EQ(host_.AreaInViewer(), area);
  // Any other object may be one of the viewer's own, which keeps it.
  LRESULT event = 0;
  const auto giveEvent = [&] {
    return event = host_.HandOver(CreateEventW(nullptr, TRUE, FALSE, nullptr));
  };
  EXPECT_THAT(AnsweredWith("GetCamera", giveEvent), None("GetCamera"));
  HANDLE copy = nullptr;
  EXPECT_NE(DuplicateHandle(host_.viewer(), reinterpret_cast<HANDLE>(event), GetCurrentProcess(),
                            &copy, 0, FALSE, DUPLICATE_SAME_ACCESS),
            0);
  CloseHandle(copy);
  EXPECT_THAT(Effect(RecordBytes(16).Float(4, 1)), ElementsAre("SetProgress 1"));
}

// Mappings that hold less than they say, that may not be written to, and that are no memory yet.
TEST_F(Wire, BadMappingsAreNoRepliesAndAreClosed) {
  const auto mapping = [](DWORD kind) {
    return CreateFileMappingW(INVALID_HANDLE_VALUE, nullptr, kind, 0, 4096, nullptr);
  };
  const int before = OpenHandles(host_.viewer());
  for (int i = 0; i < kRounds; ++i) {
    EXPECT_THAT(Answered("GetPages", RecordBytes().Ints(0, {8, 1}).Size(4096)),
                ElementsAre(StartsWith("log Link: the host's answer"), "GetPages"));
    EXPECT_THAT(Answered("GetProperty presets", RecordBytes().Ints(0, {8, 4089})),
                None("GetProperty presets"));
    EXPECT_THAT(
        AnsweredWith("GetCamera",
                     [&] { return host_.HandOver(mapping(PAGE_READWRITE), FILE_MAP_READ); }),
        None("GetCamera"));
    EXPECT_THAT(AnsweredWith("GetCamera",
                             [&] { return host_.HandOver(mapping(PAGE_READWRITE | SEC_RESERVE)); }),
                None("GetCamera"));
  }
  EXPECT_LT(OpenHandles(host_.viewer()), before + kRounds);
}

TEST_F(Wire, HundredsOfMessagesLeaveNoHandles) {
  const RecordBytes camera = RecordBytes().Floats(0, {1, 2, 3, 4, 5, 6, 7, 8, 9, 1, 1, 1, 1});
  const int here = OpenHandles(GetCurrentProcess());
  const int there = OpenHandles(host_.viewer());
  for (int i = 0; i < 4 * kRounds; ++i) {
    ASSERT_TRUE(host_.CarryOrder("SendCamera"));
    const auto message = host_.Next();
    ASSERT_TRUE(message);
    TakePage(message->wParam);
    Answered("GetCamera", camera);
    Answered("GetProperty presets", RecordBytes().Ints(0, {8, 1}));
    Answered("gui GetLocation", RecordBytes().Size(40));
  }
  EXPECT_LT(OpenHandles(GetCurrentProcess()), here + kRounds);
  EXPECT_LT(OpenHandles(host_.viewer()), there + kRounds);
}

TEST_F(Wire, TheAreaIsExchangedByPostOrBySend) {
  const HWND frame = host_.Frame();
  for (const bool send : {true, false}) {
    if (send) {
      EXPECT_EQ(SendMessageW(frame, 32978, 0, 0), 0);
    } else {
      PostMessageW(frame, 32978, 0, 0);
      // A posted message has been handled when one that comes after it has been.
      while (host_.AreaInViewer() != 0) Sleep(5);
    }
    EXPECT_EQ(host_.AreaInViewer(), 0);
    host_.CloseArea();
    host_.MakeArea(40000);
    ASSERT_EQ(GetLastError(), 0u);  // a new one, and not the old one opened once more
    EXPECT_EQ(SendMessageW(frame, 32979, 0, 0), 0);
    EXPECT_THAT(Effect(RecordBytes(15).Int(4, 39000).Text(39000, "far")),
                ElementsAre("SetStatusMessage far"));
  }
}

TEST(WireHidden, TheAreaOfAHiddenFrameIsKept) {
  ViewerRecord record;
  RawHost host(8192, record.path(), record.path() + "-until", "--hidden=4000000000");
  ASSERT_TRUE(host.Carry(RecordBytes(0).Size(4).bytes()));
  record.NewLines();
  const HWND frame = host.Frame();
  ASSERT_NE(frame, nullptr);
  for (const UINT number : {32978u, 32979u}) {
    SendMessageW(frame, number, 0, 0);
    EXPECT_THAT(record.NewLines(), ElementsAre(StartsWith("log Link: command area kept")));
  }
  EXPECT_TRUE(host.Carry(RecordBytes(16).Float(4, 1).bytes()));
  EXPECT_THAT(record.NewLines(), ElementsAre("SetProgress 1"));
}

TEST(WireElsewhere, AWindowOfAnotherProcessGetsNothing) {
  ViewerRecord record;
  RawHost host(8192, record.path(), record.path() + "-until", "", GetDesktopWindow());
  ASSERT_TRUE(host.Carry(RecordBytes(0).Size(4).bytes()));
  EXPECT_THAT(record.NewLines(), Contains(StartsWith("log Link: no host window")));
  EXPECT_TRUE(host.CarryOrder("SendCamera"));
  EXPECT_TRUE(host.CarryOrder("GetCamera"));
  EXPECT_THAT(record.NewLines(), None("GetCamera"));
}

TEST(WireKilled, TheHostsDeathEndsTheWaitForAnAnswer) {
  ViewerRecord record;
  const std::string until = record.path() + "-until";
  platform::ChildProcess host =
      platform::ChildProcess::Start(QUORVANE_DYING_HOST, {record.path(), until});
  EXPECT_EQ(host.Wait(std::chrono::seconds(60)), 9);
  EXPECT_TRUE(record.Await("GetCamera none"));
  // The viewer stays up, and ends when it is told to.
  std::ofstream(until) << "now";
  EXPECT_TRUE(record.Await("end"));
  std::filesystem::remove(until);
}

}  // namespace
}  // namespace qv
