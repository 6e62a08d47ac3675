#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <memory>
#include <thread>

#include "host/link/HostLink.h"
#include "link/NotingHost.h"
#include "link/RecordBytes.h"
#include "link/ViewerRecord.h"
#include "platform/Clock.h"

// Two processes and the link between them: this one is the host, the other a viewer that has
// nothing but the link. Records are laid out by hand from their offsets.
namespace qv {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;
using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;
using testing::SizeIs;
using testing::StartsWith;

class Conformance : public testing::Test {
 protected:
  void Start(const std::vector<std::string>& more = {}) {
    host::HostLink::Options options;
    options.initialArea = 4096;
    options.maximumArea = 64 << 10;
    link_ = host::HostLink::Create(host_, options);
    ASSERT_NE(link_, nullptr);
    std::vector<std::string> arguments{"--record=" + record_.path()};
    arguments.insert(arguments.end(), more.begin(), more.end());
    ASSERT_TRUE(link_->StartViewer(QUORVANE_TEST_VIEWER, arguments));
    // Answered as soon as the viewer listens.
    ASSERT_TRUE(link_->SetProgress(0));
    EXPECT_THAT(record_.NewLines(), ElementsAre("opened", "SetProgress 0"));
  }

  void TearDown() override {
    if (!link_) return;
    if (link_->ViewerRunning()) link_->KillViewer();
    link_->WaitForViewer(seconds(10));
  }

  // The lines that one record leaves in the viewer.
  std::vector<std::string> Effect(const RecordBytes& record) {
    EXPECT_TRUE(link_->SendRecord(record.bytes(), 0, seconds(30)));
    return record_.NewLines();
  }

  std::vector<std::byte> Result(const RecordBytes& record, std::size_t size) {
    return link_->SendRecord(record.bytes(), size, seconds(30)).value_or(std::vector<std::byte>());
  }

  bool Order(const std::string& order) { return link_->SetStatusMessage("!" + order); }

  NotingHost host_;
  ViewerRecord record_;
  std::unique_ptr<host::HostLink> link_;
};

// What the records and calls of the next two tests come to.
const std::vector<std::string> kScene = {
    "SetModelDirectory /models/\xc3\xa4",
    "AddPointLight 1 2 3, 4 5 6",
    "AddSpotLight 1 2 3, 4 5 6, 7 8 9, 0.25 0.5",
    "AddDirectionalLight 1 2 3, 4 5 6",
    "AddLEMLight 1 2 3, 11 12 13 21 22 23 31 32 33",
    "BeginStaticMesh",
    std::string("AddMeshData 3 vertices 2 triangles, 1 2 3 0 0 1 0.25 0.5 0.75 1, "
                "4 5 6 0 1 0 2 3 4 5, 7 8 9 1 0 0 6 7 8 9, 0 1 2 5, 2 1 0 4294967295"),
    "EndMesh",
    "BeginBillboard",
    "EndBillboard 1 2 3, 0.5 -0.5",
    "SetLocationAndTime 0.5 48.25 -9.5, 2024 2 29 23 58 59 -7",
    "SetStatusMessage Sending",
    "SetProgress 0.375",
    "SceneComplete",
    "SetCamera 1 2 3, 4 5 6, 7 8 9, 0.5, 10 11 12, shown"};

TEST_F(Conformance, EveryCommandReachesItsOperationWithItsFields) {
  Start();
  const RecordBytes records[] = {
      RecordBytes(9).Int(4, 8).Text(8, "/models/\xc3\xa4"),
      RecordBytes(4).Floats(4, {1, 2, 3, 4, 5, 6}),
      RecordBytes(5).Floats(4, {1, 2, 3, 4, 5, 6, 7, 8, 9, 0.25f, 0.5f}),
      RecordBytes(6).Floats(4, {1, 2, 3, 4, 5, 6}),
      RecordBytes(7)
          .Floats(4, {1, 2, 3})
          .Ints(16, {1, 101})  // on no boundary
          .Floats(101, {11, 12, 13, 21, 22, 23, 31, 32, 33}),
      RecordBytes(12),
      RecordBytes(8)
          .Ints(4, {3, 200, 2, 1000})
          .Floats(200, {1, 2, 3, 0, 0, 1, 0.25f, 0.5f, 0.75f, 1})
          .Floats(240, {4, 5, 6, 0, 1, 0, 2, 3, 4, 5})
          .Floats(280, {7, 8, 9, 1, 0, 0, 6, 7, 8, 9})
          .Ints(1000, {0, 1, 2, 5, 2, 1, 0, -1}),
      RecordBytes(13),
      RecordBytes(10),
      RecordBytes(11).Floats(4, {1, 2, 3, 0.5f, -0.5f}),
      RecordBytes(14).Floats(4, {0.5f, 48.25f, -9.5f}).Ints(16, {2024, 2, 29, 23, 58, 59, -7}),
      RecordBytes(15).Int(4, 4000).Text(4000, "Sending"),
      RecordBytes(16).Float(4, 0.375f),
      RecordBytes(1),
      RecordBytes(2).Floats(4, {1, 2, 3, 4, 5, 6, 7, 8, 9, 0.5f, 10, 11, 12}).Byte(56, 1)};
  for (const RecordBytes& record : records) {
    EXPECT_TRUE(link_->SendRecord(record.bytes(), 0, seconds(30)));
  }
  EXPECT_EQ(record_.NewLines(), kScene);

  // What is unknown is answered, and no more.
  const RecordBytes unknown = RecordBytes(18).Size(64);
  EXPECT_TRUE(SameBytes(Result(unknown, 64), unknown.bytes()));
  EXPECT_THAT(record_.NewLines(), Each(StartsWith("log ")));
}

TEST_F(Conformance, ResultsStandInTheArea) {
  Start();
  RecordBytes material(3);
  material.Floats(4, {1, 2, 3})
      .Floats(16, {4, 5, 6})
      .Floats(28, {7, 8, 9})
      .Floats(40, {0.5f, 20, 0.25f})
      .Int(52, 3)
      .Float(56, 1.5f)
      .Int(60, -2)
      .Float(64, 0.75f)
      .Byte(68, 1)
      .Int(72, 600)
      .Float(76, 0.125f)
      .Text(600, "wood.jpg");
  EXPECT_TRUE(SameBytes(Result(material, 4), RecordBytes(0).bytes()));
  material.Byte(68, 0);
  EXPECT_TRUE(SameBytes(Result(material, 8), RecordBytes(1).Float(4, 1).bytes()));
  EXPECT_THAT(
      record_.NewLines(),
      ElementsAre("AddMaterial 1 2 3, 4 5 6, 7 8 9, 0.5 20 0.25 3 1.5 -2 0.75 0.125, "
                  "texture wood.jpg",
                  "AddMaterial 1 2 3, 4 5 6, 7 8 9, 0.5 20 0.25 3 1.5 -2 0.75 0.125, plain"));

  // One byte only; the other three of the code stay. The viewer's answers take turns.
  const RecordBytes question = RecordBytes(17).Size(8);
  const auto first = Result(question, 8);
  const auto second = Result(question, 8);
  EXPECT_TRUE(SameBytes(first, RecordBytes(1).Size(8).bytes()));
  EXPECT_TRUE(SameBytes(second, RecordBytes(0).Size(8).bytes()));
  EXPECT_TRUE(SameBytes(Result(RecordBytes(17).Byte(1, 0), 4), RecordBytes(1).bytes()));
}

TEST_F(Conformance, TheHostsCommandsAreTheSameRecords) {
  Start();
  RenderCamera camera;
  camera.position = {1, 2, 3};
  camera.forward = {4, 5, 6};
  camera.up = {7, 8, 9};
  camera.fieldOfView = 0.5f;
  camera.target = {10, 11, 12};
  MaterialParameters material;
  material.ambientColor = {1, 2, 3};
  material.diffuseColor = {4, 5, 6};
  material.specularColor = {7, 8, 9};
  material.diffuseFactor = 0.5f;
  material.specularExponent = 20;
  material.reflectance = 0.25f;
  material.glossy = 3;
  material.refractiveIndex = 1.5f;
  material.shadingFlag = -2;
  material.opacity = 0.75f;
  material.bumpFactor = 0.125f;
  const float corners[] = {11, 12, 13, 21, 22, 23, 31, 32, 33};
  const std::vector<MeshVertex> vertices{{{1, 2, 3}, {0, 0, 1}, {0.25f, 0.5f}, {0.75f, 1}},
                                         {{4, 5, 6}, {0, 1, 0}, {2, 3}, {4, 5}},
                                         {{7, 8, 9}, {1, 0, 0}, {6, 7}, {8, 9}}};
  const std::vector<MeshTriangle> triangles{{{0, 1, 2}, 5}, {{2, 1, 0}, 0xffffffff}};

  EXPECT_EQ(link_->AddMaterial(material), 0);
  material.hasTexture = true;
  material.texturePath = std::string(259, 'w');
  EXPECT_EQ(link_->AddMaterial(material), 1);
  material.texturePath += 'w';  // left out
  EXPECT_EQ(link_->AddMaterial(material), 2);
  const std::string fields = "AddMaterial 1 2 3, 4 5 6, 7 8 9, 0.5 20 0.25 3 1.5 -2 0.75 0.125, ";
  EXPECT_THAT(
      record_.NewLines(),
      ElementsAre(fields + "plain", fields + "texture " + std::string(259, 'w'), fields + "plain"));

  EXPECT_TRUE(link_->SetModelDirectory("/models/\xc3\xa4"));
  EXPECT_TRUE(link_->AddPointLight({1, 2, 3}, {4, 5, 6}));
  EXPECT_TRUE(link_->AddSpotLight({1, 2, 3}, {4, 5, 6}, {7, 8, 9}, 0.25f, 0.5f));
  EXPECT_TRUE(link_->AddDirectionalLight({1, 2, 3}, {4, 5, 6}));
  EXPECT_TRUE(link_->AddLEMLight({1, 2, 3}, corners));
  EXPECT_TRUE(link_->BeginStaticMesh());
  EXPECT_TRUE(link_->AddMeshData(vertices, triangles));
  EXPECT_TRUE(link_->EndMesh());
  EXPECT_TRUE(link_->BeginBillboard());
  EXPECT_TRUE(link_->EndBillboard({1, 2, 3}, {0.5f, -0.5f}));
  EXPECT_TRUE(link_->SetLocationAndTime({0.5f, 48.25f, -9.5f, 2024, 2, 29, 23, 58, 59, -7}));
  EXPECT_TRUE(link_->SetStatusMessage("Sending"));
  EXPECT_TRUE(link_->SetProgress(0.375f));
  EXPECT_TRUE(link_->SceneComplete());
  EXPECT_TRUE(link_->SetCamera(camera, true));
  EXPECT_EQ(link_->IsCameraLinked(), true);
  EXPECT_EQ(link_->IsCameraLinked(), false);
  EXPECT_EQ(record_.NewLines(), kScene);
}

TEST_F(Conformance, TheAreaGrowsAndBigMeshesAreSplit) {
  Start();
  ASSERT_TRUE(link_->BeginStaticMesh());
  // 3 * 40 + 16 bytes a triangle: too much for the first area, and then for the largest.
  const auto soup = [](std::int32_t count) {
    std::pair<std::vector<MeshVertex>, std::vector<MeshTriangle>> mesh;
    for (std::int32_t i = 0; i < 3 * count; ++i) {
      mesh.first.push_back({{static_cast<float>(i), 0, 0}, {0, 0, 1}, {0, 0}, {0, 0}});
    }
    for (std::int32_t i = 0; i < count; ++i) {
      mesh.second.push_back({{3 * i, 3 * i + 1, 3 * i + 2}, static_cast<std::uint32_t>(i)});
    }
    return mesh;
  };
  const auto grown = soup(100);
  ASSERT_TRUE(link_->AddMeshData(grown.first, grown.second));
  EXPECT_THAT(record_.NewLines(),
              ElementsAre("BeginStaticMesh",
                          AllOf(StartsWith("AddMeshData 300 vertices 100 triangles, 0 0 0"),
                                HasSubstr(", 299 0 0 0 0 1 0 0 0 0, 0 1 2 0, "),
                                testing::EndsWith(", 297 298 299 99"))));
  const auto split = soup(1000);
  ASSERT_TRUE(link_->AddMeshData(split.first, split.second));
  // (65536 - 20) / 136 = 481 triangles in one record.
  EXPECT_THAT(record_.NewLines(),
              ElementsAre(AllOf(StartsWith("AddMeshData 1443 vertices 481 triangles, 0 0 0"),
                                HasSubstr(", 1442 0 0 ")),
                          AllOf(StartsWith("AddMeshData 1443 vertices 481 triangles, 1443 0 0"),
                                HasSubstr(", 2885 0 0 ")),
                          AllOf(StartsWith("AddMeshData 114 vertices 38 triangles, 2886 0 0"),
                                HasSubstr(", 2999 0 0 "), testing::EndsWith(", 111 112 113 999"))));
  // What cannot be split gets the room that it needs.
  ASSERT_TRUE(link_->SetModelDirectory(std::string(200000, 'd')));
  EXPECT_THAT(record_.NewLines(), ElementsAre("SetModelDirectory " + std::string(200000, 'd')));
  // And it shrinks again.
  ASSERT_TRUE(link_->ResizeArea(4096));
  EXPECT_THAT(Effect(RecordBytes(15).Int(4, 4095).Byte(4095, 0)), ElementsAre("SetStatusMessage "));
  EXPECT_THAT(Effect(RecordBytes(15).Int(4, 4096).Size(4096)),
              ElementsAre(StartsWith("log Link: SetStatusMessage was refused")));
}

TEST_F(Conformance, TheAreaIsExchangedOnceTheWindowIsVisible) {
  Start({"--hidden=300"});
  const double start = platform::NowSeconds();
  EXPECT_TRUE(link_->ResizeArea(20000));
  EXPECT_GT(platform::NowSeconds() - start, 0.1);
  record_.NewLines();
  EXPECT_THAT(Effect(RecordBytes(15).Int(4, 19000).Text(19000, "far")),
              ElementsAre("SetStatusMessage far"));
}

TEST_F(Conformance, MessagesReachTheHostWithTheirRecords) {
  Start();
  for (const char* order : {"SendCamera", "SendDateTime", "RequestResend", "SetBrightness",
                            "SetGamma", "SetLightFactors", "SetBackground", "SetEyeHeight",
                            "SetProperty presets 5000", "SetProperty empty 0", "gui SendCamera"}) {
    ASSERT_TRUE(Order(order));
  }
  EXPECT_THAT(
      host_.AwaitNotes(11),
      ElementsAre("CameraChanged 1 2 3, 0 1 0, 0 0 1, 0.5", "DateTimeChanged 2024 2 29 23 58 59",
                  "ResendScene", "SetProperty brightness2 8", "SetProperty gamma 4",
                  "SetProperty light_factors 20", "SetProperty background 8",
                  "SetProperty eye_height 4", "SetProperty presets 5000", "SetProperty empty 0",
                  "CameraChanged 1 2 3, 0 1 0, 0 0 1, 0.5"));
  const auto presets = host_.Property("presets").value_or(std::vector<std::byte>());
  ASSERT_THAT(presets, SizeIs(5000));
  EXPECT_EQ(presets[4999], std::byte{4999 & 0xff});
}

TEST_F(Conformance, PropertiesAreReadBackWhileACommandRuns) {
  Start();
  host_.KeepProperty("presets", std::vector<std::byte>(3, std::byte{0xab}));
  host_.KeepProperty("empty", {});
  host_.KeepProperty("light_factors", std::vector<std::byte>(20, std::byte{1}));
  host_.KeepProperty("gamma", std::vector<std::byte>(4, std::byte{0x40}));
  for (const char* order :
       {"GetProperty presets", "GetProperty nothing", "GetProperty empty",
        "GetProperty light_factors", "GetProperty gamma", "gui GetProperty gamma"}) {
    ASSERT_TRUE(Order(order));
  }
  EXPECT_THAT(record_.NewLines(),
              ElementsAre(
                  "GetProperty presets ababab", "GetProperty nothing none", "GetProperty empty ",
                  "GetProperty light_factors " +
                      [] {
                        std::string hex;
                        for (int i = 0; i < 17; ++i) hex += "01";
                        return hex;
                      }(),
                  "GetProperty gamma 40404040", "GetProperty gamma 40404040"));
}

TEST_F(Conformance, CameraLocationAndPagesAreAnswered) {
  Start();
  for (const char* order : {"GetCamera", "GetLocation", "GetPages", "gui GetCamera"}) {
    ASSERT_TRUE(Order(order));
  }
  const std::string camera = "GetCamera 1 2 3, 0 -1 0, 0 0 1, 0.75, 4 5 6";
  EXPECT_THAT(
      record_.NewLines(),
      ElementsAre(camera, "SetLocationAndTime 0.5 48.25 9.5, 2023 12 31 22 45 15 1", "GetLocation",
                  "GetPages [Front|1 2 3|0 1 0|0.5 0 0 0|no sun 0 0 0 0 0 0] [" +
                      std::string(4095, 'x') +
                      "|7 8 9|1 0 0|1 50.5 -3.25 0.125|sun 2024 6 21 12 30 5]",
                  camera));
}

TEST_F(Conformance, StopLetsTheCommandInFlightFinish) {
  Start();
  host_.KeepProperty("gamma", std::vector<std::byte>(4, std::byte{0x40}));
  EXPECT_TRUE(Order("CloseMeanwhile"));
  EXPECT_FALSE(link_->SetProgress(1));
  EXPECT_EQ(link_->WaitForViewer(seconds(20)), 0);
  EXPECT_THAT(record_.NewLines(),
              ElementsAre("worked on the GUI thread", "GetProperty gamma 40404040", "worked",
                          "stopped", "end"));
  EXPECT_THAT(host_.AwaitNotes(2), ElementsAre("ViewerClosed", "Property gamma"));
}

TEST_F(Conformance, TheViewersDeathEndsTheWait) {
  Start();
  std::thread killer([this] {
    platform::SleepMilliseconds(100);
    link_->KillViewer();
  });
  const double start = platform::NowSeconds();
  EXPECT_FALSE(Order("Work 20000"));
  EXPECT_LT(platform::NowSeconds() - start, 5);
  killer.join();
  EXPECT_FALSE(link_->SetProgress(0));
  EXPECT_FALSE(link_->ResizeArea(100000));
  EXPECT_FALSE(link_->ViewerRunning());
}

TEST_F(Conformance, AnotherViewerMayFollowTheFirst) {
  Start();
  EXPECT_FALSE(link_->StartViewer(QUORVANE_TEST_VIEWER));  // not beside it
  const RecordBytes order = RecordBytes(15).Int(4, 8).Text(8, "!Work 20000");
  EXPECT_FALSE(link_->SendRecord(order.bytes(), 0, milliseconds(20)));
  link_->KillViewer();
  ASSERT_TRUE(link_->WaitForViewer(seconds(10)));
  ViewerRecord second;
  ASSERT_TRUE(link_->StartViewer(QUORVANE_TEST_VIEWER, {"--record=" + second.path()}));
  // The command that the first has not answered is not carried out again.
  EXPECT_TRUE(link_->SetProgress(0.5f));
  EXPECT_THAT(second.NewLines(), ElementsAre("opened", "SetProgress 0.5"));
  EXPECT_TRUE(link_->ResizeArea(20000));
  EXPECT_TRUE(Order("CloseMeanwhile"));
  EXPECT_EQ(link_->WaitForViewer(seconds(20)), 0);
  EXPECT_FALSE(link_->SetProgress(1));
}

TEST_F(Conformance, AnAnswerThatComesLateIsNotTakenForTheNext) {
  Start();
  const RecordBytes slow = RecordBytes(15).Int(4, 8).Text(8, "!Work 400");
  EXPECT_FALSE(link_->SendRecord(slow.bytes(), 0, milliseconds(50)));
  EXPECT_EQ(link_->IsCameraLinked(), true);
  EXPECT_THAT(record_.NewLines(), ElementsAre("worked"));
}

TEST_F(Conformance, MalformedRecordsAreAnsweredAndTheViewerGoesOn) {
  Start();
  const auto refused = [this](const RecordBytes& record) {
    const auto lines = Effect(record);
    return lines.size() == 1 && lines[0].rfind("log Link: ", 0) == 0;
  };
  EXPECT_TRUE(refused(RecordBytes(8).Ints(4, {0, 0, 0, 0})));  // no mesh
  EXPECT_TRUE(refused(RecordBytes(7).Ints(16, {0x7fffffff, 24})));
  EXPECT_TRUE(
      SameBytes(Result(RecordBytes(3).Byte(68, 1).Int(72, 1 << 30), 4), RecordBytes(-1).bytes()));
  record_.NewLines();
  EXPECT_THAT(Effect(RecordBytes(16).Float(4, 1)), ElementsAre("SetProgress 1"));
}

TEST_F(Conformance, TheHostsEndLeavesTheViewerUp) {
  const std::string until = record_.path() + "-until";
  Start({"--until=" + until});
  const RecordBytes order = RecordBytes(15).Int(4, 8).Text(8, "!WorkAndAsk");
  EXPECT_FALSE(link_->SendRecord(order.bytes(), 0, milliseconds(20)));
  link_.reset();
  // Asked after the host has gone, in the middle of a command.
  EXPECT_TRUE(record_.Await("GetCamera none"));
  platform::SleepMilliseconds(200);
  EXPECT_THAT(record_.NewLines(), Not(Contains("stopped")));
  std::ofstream(until) << "now";
  EXPECT_TRUE(record_.Await("end"));
  std::filesystem::remove(until);
}

TEST_F(Conformance, InterruptEndsTheWait) {
  Start();
  std::thread interrupter([this] {
    platform::SleepMilliseconds(100);
    link_->Interrupt();
  });
  const double start = platform::NowSeconds();
  EXPECT_FALSE(Order("Work 20000"));
  EXPECT_LT(platform::NowSeconds() - start, 5);
  interrupter.join();
  EXPECT_EQ(link_->WaitForViewer(seconds(20)), std::nullopt);
  EXPECT_LT(platform::NowSeconds() - start, 5);
}

TEST(HostLink, GivesUpOnAViewerThatDoesNotStart) {
  NotingHost host;
  const auto link = host::HostLink::Create(host);
  ASSERT_NE(link, nullptr);
  EXPECT_EQ(host::HostLink::Create(host), nullptr);  // the names are taken
  EXPECT_FALSE(link->SetProgress(0));
  EXPECT_FALSE(link->StartViewer("/no/such/viewer"));
  EXPECT_FALSE(link->SetProgress(0));
  // A viewer that ends at once.
  EXPECT_TRUE(link->StartViewer(QUORVANE_TEST_VIEWER, {"not an option"}));
  EXPECT_FALSE(link->SetProgress(0));
  EXPECT_EQ(link->WaitForViewer(seconds(20)), 2);
}

}  // namespace
}  // namespace qv
