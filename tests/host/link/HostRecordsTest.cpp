#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

#include "host/link/HostRecords.h"
#include "link/RecordBytes.h"

namespace qv::host {
namespace {

constexpr std::int32_t kMost = std::numeric_limits<std::int32_t>::max();

// The viewer does not read it; it is there for those that do.
TEST(HostRecords, PagesHaveTheirUprightInTheirRecord) {
  const auto reply = MakePagesReply(std::vector<HostPage>(1));
  ASSERT_TRUE(reply);
  EXPECT_TRUE(SameBytes(reply.bytes().subspan(8 + 8192 + 24, 12),
                        RecordBytes().Floats(0, {0, 0, 1}).bytes()));
}

TEST(HostRecords, PropertiesAreCutToTheMemoryThatIsThere) {
  RecordBytes record;
  record.Ints(0, {12, 18, 4}).Text(12, "gamma").Float(18, 2.5f);
  const auto property = ParsePropertyRecord(record.bytes());
  ASSERT_TRUE(property);
  EXPECT_EQ(property->name, "gamma");
  EXPECT_TRUE(SameBytes(property->value, RecordBytes().Float(0, 2.5f).bytes()));
  EXPECT_FALSE(ParsePropertyRecord(record.bytes().first(21)));
  EXPECT_FALSE(ParsePropertyRecord(record.bytes().first(11)));
  for (const auto& [name, value, length, fits] :
       {std::tuple(12, 18, 4, true), std::tuple(12, 18, 5, false), std::tuple(12, 18, -1, false),
        std::tuple(12, 22, 0, true), std::tuple(12, 23, 0, false), std::tuple(12, -1, 1, false),
        std::tuple(12, 18, kMost, false), std::tuple(-1, 18, 4, false),
        std::tuple(22, 18, 4, false), std::tuple(kMost, 18, 4, false)}) {
    EXPECT_EQ(
        ParsePropertyRecord(RecordBytes(record).Ints(0, {name, value, length}).bytes()).has_value(),
        fits)
        << name << " " << value << " " << length;
  }
  // The name must end within the record.
  RecordBytes open = record;
  for (std::size_t i = 12; i < 22; ++i) open.Byte(i, 'x');
  EXPECT_FALSE(ParsePropertyRecord(open.bytes()));

  EXPECT_EQ(ParsePropertyRequest(RecordBytes().Int(0, 4).Text(4, "gamma").bytes()), "gamma");
  EXPECT_EQ(ParsePropertyRequest(RecordBytes().Int(0, 4).Size(9).bytes()), "");
  EXPECT_FALSE(ParsePropertyRequest(RecordBytes().Int(0, 4).bytes()));
  EXPECT_FALSE(ParsePropertyRequest(RecordBytes().Int(0, -4).Size(9).bytes()));
  EXPECT_FALSE(ParsePropertyRequest({}));
}

TEST(HostRecords, CamerasAreFiniteAndDatesWhole) {
  RecordBytes camera;
  camera.Floats(0, {1, 2, 3, 4, 5, 6, 7, 8, 9, 10});
  EXPECT_TRUE(ParseCameraRecord(camera.bytes()));
  EXPECT_FALSE(ParseCameraRecord(camera.bytes().first(39)));
  for (std::size_t offset = 0; offset < 40; offset += 4) {
    EXPECT_FALSE(ParseCameraRecord(
        RecordBytes(camera).Float(offset, std::numeric_limits<float>::infinity()).bytes()));
  }
  const RecordBytes date = RecordBytes().Ints(0, {1, 2, 3, 4, 5, 6});
  EXPECT_EQ(ParseDateRecord(date.bytes())->second, 6);
  EXPECT_FALSE(ParseDateRecord(date.bytes().first(23)));
}

}  // namespace
}  // namespace qv::host
