#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

#include "host/link/HostRecords.h"
#include "link/RecordBytes.h"

namespace qv::host {
namespace {

constexpr std::int32_t kMost = std::numeric_limits<std::int32_t>::max();

// Zeros behind the content up to the end of the memory.
bool Holds(const platform::SharedMemory& record, const RecordBytes& content) {
  return record &&
         SameBytes(record.bytes(), RecordBytes(content).Size(record.bytes().size()).bytes());
}

TEST(HostRecords, RepliesAreLaidOutAsTheViewerReadsThem) {
  RenderCamera camera;
  camera.position = {1, 2, 3};
  camera.forward = {4, 5, 6};
  camera.up = {7, 8, 9};
  camera.fieldOfView = 0.5f;
  camera.target = {10, 11, 12};
  EXPECT_TRUE(Holds(MakeCameraReply(camera),
                    RecordBytes().Floats(0, {1, 2, 3, 4, 5, 6, 7, 8, 9, 0.5f, 10, 11, 12})));
  EXPECT_TRUE(Holds(
      MakeLocationReply({0.5f, 48.25f, -9.5f, 2024, 2, 29, 23, 58, 59, -7}),
      RecordBytes().Floats(0, {0.5f, 48.25f, -9.5f}).Ints(12, {2024, 2, 29, 23, 58, 59, -7})));
  EXPECT_TRUE(Holds(MakePropertyReply(RecordBytes().Float(0, 2.5f).bytes()),
                    RecordBytes().Ints(0, {8, 4}).Float(8, 2.5f)));

  std::vector<HostPage> pages(2);
  pages[0].name = std::u16string(4097, u'x');
  pages[0].eye = {1, 2, 3};
  pages[1].name = std::u16string(1, u'\u00e4');
  pages[1].direction = {4, 5, 6};
  pages[1].fieldOfView = 0.5f;
  pages[1].hasSunTime = true;
  pages[1].year = 2024;
  pages[1].second = 59;
  pages[1].latitude = 48;
  pages[1].sunParam = 0.25f;
  RecordBytes bytes;
  bytes.Ints(0, {8, 2});
  for (std::size_t i = 0; i < 4095; ++i) bytes.Byte(8 + 2 * i, 'x');
  bytes.Floats(8 + 8192, {1, 2, 3}).Float(8 + 8224, 1);
  bytes.Byte(8280, 0xe4).Floats(8280 + 8204, {4, 5, 6}).Float(8280 + 8224, 1);
  bytes.Float(8280 + 8228, 0.5f).Byte(8280 + 8232, 1).Int(8280 + 8236, 2024);
  bytes.Int(8280 + 8256, 59).Float(8280 + 8260, 48).Float(8280 + 8268, 0.25f);
  EXPECT_TRUE(Holds(MakePagesReply(pages), bytes));
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
