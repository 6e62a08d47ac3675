#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

#include "link/MessageRecords.h"
#include "link/RecordBytes.h"

namespace qv {
namespace {

constexpr float kNan = std::numeric_limits<float>::quiet_NaN();
constexpr std::int32_t kMost = std::numeric_limits<std::int32_t>::max();

TEST(PropertyReply, IsCutToTheMemoryThatIsThere) {
  RecordBytes reply;
  reply.Ints(0, {8, 20}).Float(8, 1).Size(28);
  EXPECT_EQ(ParsePropertyReply("presets", reply.bytes())->size(), 20u);
  EXPECT_EQ(ParsePropertyReply("anything", reply.bytes())->size(), 20u);
  // The readers of these go by the name.
  EXPECT_EQ(ParsePropertyReply("light_factors", reply.bytes())->size(), 17u);
  EXPECT_EQ(ParsePropertyReply("background", reply.bytes())->size(), 8u);
  EXPECT_EQ(ParsePropertyReply("brightness2", reply.bytes())->size(), 8u);
  EXPECT_EQ(ParsePropertyReply("gamma", reply.bytes())->size(), 4u);
  EXPECT_EQ(ParsePropertyReply("eye_height", reply.bytes())->size(), 4u);
  EXPECT_EQ(ParsePropertyReply("lightMap_settings", reply.bytes())->size(), 4u);
  reply.Int(4, -1);
  EXPECT_TRUE(ParsePropertyReply("gamma", reply.bytes()));
  EXPECT_FALSE(ParsePropertyReply("presets", reply.bytes()));

  for (const auto& [offset, length, fits] :
       {std::tuple(28, 0, true), std::tuple(28, 1, false), std::tuple(29, 0, false),
        std::tuple(0, 28, true), std::tuple(0, 29, false), std::tuple(-1, 1, false),
        std::tuple(8, kMost, false), std::tuple(kMost, kMost, false)}) {
    EXPECT_EQ(ParsePropertyReply("presets", reply.Ints(0, {offset, length}).bytes()).has_value(),
              fits)
        << offset << " " << length;
  }
  EXPECT_FALSE(ParsePropertyReply("gamma", reply.Int(0, 25).bytes()));
  EXPECT_FALSE(ParsePropertyReply("presets", RecordBytes().Size(7).bytes()));
  EXPECT_FALSE(ParsePropertyReply("presets", {}));
}

TEST(CameraAndLocationReplies, AreWholeAndFinite) {
  RecordBytes camera;
  camera.Floats(0, {1, 2, 3, 4, 5, 6, 7, 8, 9, 0.5f, 10, 11, 12});
  ASSERT_TRUE(ParseCameraReply(camera.bytes()));
  EXPECT_EQ(ParseCameraReply(camera.bytes())->target.z(), 12);
  EXPECT_EQ(ParseCameraReply(camera.bytes())->fieldOfView, 0.5f);
  EXPECT_FALSE(ParseCameraReply(camera.bytes().first(51)));
  for (std::size_t offset = 0; offset < 52; offset += 4) {
    EXPECT_FALSE(ParseCameraReply(RecordBytes(camera).Float(offset, kNan).bytes()));
  }
  RecordBytes location;
  location.Floats(0, {0.5f, 48, 9}).Ints(12, {2024, 2, 29, 23, 58, 59, -7});
  ASSERT_TRUE(ParseLocationReply(location.bytes()));
  EXPECT_EQ(ParseLocationReply(location.bytes())->timeZone, -7);
  EXPECT_FALSE(ParseLocationReply(location.bytes().first(39)));
  for (const std::size_t offset : {0, 4, 8}) {
    EXPECT_FALSE(ParseLocationReply(RecordBytes(location).Float(offset, kNan).bytes()));
  }
}

TEST(PagesReply, HoldsAsManyPagesAsFit) {
  RecordBytes reply;
  reply.Ints(0, {10, 2}).Size(10 + 2 * 8272);
  reply.Byte(10, 'a').Byte(10 + 8190, 0).Byte(10 + 8272, 0xe4);
  const auto pages = ParsePagesReply(reply.bytes());
  ASSERT_TRUE(pages);
  ASSERT_EQ(pages->size(), 2u);
  EXPECT_EQ((*pages)[0].name, u"a");
  EXPECT_EQ((*pages)[1].name, u"\u00e4");
  EXPECT_FALSE(ParsePagesReply(reply.bytes().first(reply.bytes().size() - 1)));
  EXPECT_FALSE(ParsePagesReply(RecordBytes(reply).Int(4, 3).bytes()));
  EXPECT_FALSE(ParsePagesReply(RecordBytes(reply).Int(0, 11).bytes()));
  EXPECT_FALSE(ParsePagesReply(RecordBytes(reply).Int(0, -1).bytes()));
  EXPECT_FALSE(ParsePagesReply(RecordBytes(reply).Int(4, -1).bytes()));
  // 8272 * 519215 is more than 2^32 by 1584.
  EXPECT_FALSE(ParsePagesReply(RecordBytes(reply).Int(4, 519215).bytes()));
  EXPECT_TRUE(ParsePagesReply(RecordBytes().Size(8).bytes())->empty());
}

}  // namespace
}  // namespace qv
