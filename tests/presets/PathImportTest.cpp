#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>
#include <vector>

#include "presets/PathImport.h"
#include "presets/TestFile.h"

namespace qv {
namespace {

std::vector<std::byte> BytesOf(std::string_view text) {
  const auto* first = reinterpret_cast<const std::byte*>(text.data());
  return {first, first + text.size()};
}

ImportedPath Read(std::string_view text) {
  return ReadPath(DecodePathText(BytesOf(text)), 0.6f);
}

std::string FaultOf(std::string_view text) {
  const ImportedPath path = Read(text);
  return path.fault ? PathFaultText(*path.fault).ToStdString() : "";
}

TEST(PathImport, MakesAKeyOfEachLine) {
  const ImportedPath path = Read(
      "# a comment, which counts as a line\n"
      "\n"
      "1,2,3,1,7,3\r\n"
      "  -1.5e1\t2\t3,,\t-16 , 2,3,extra,values  \r"
      "0,0,0,0,0,0");
  EXPECT_TRUE(path.fault);  // the blank behind -16
  ASSERT_EQ(path.keys.size(), 1u);

  const ImportedPath all = Read("1,2,3,1,7,3\r\n  -1.5e1\t2\t3,,\t-16, 2,2,extra  \r0,0,0,0,0,0");
  EXPECT_FALSE(all.fault);
  ASSERT_EQ(all.keys.size(), 3u);
  EXPECT_EQ(all.keys[2].time, 1.0);
  EXPECT_EQ(all.keys[1].pose.position, Vec3(-15, 2, 3));
  EXPECT_EQ(all.keys[1].pose.fieldOfView, 0.6f);
  EXPECT_EQ(all.keys[1].sun.sunTag, 0);
  const auto direction = [&all](std::size_t i) {
    return DirectionFromQuaternion(all.keys[i].pose.orientation);
  };
  EXPECT_LT((direction(0) - Vec3(0, 1, 0)).norm(), 1e-6f);
  EXPECT_LT((direction(1) - Vec3(-1, 0, -1).normalized()).norm(), 1e-6f);
  EXPECT_LT((UpFromQuaternion(all.keys[1].pose.orientation) - Vec3(-1, 0, 1).normalized()).norm(),
            1e-6f);
  EXPECT_TRUE(direction(2).allFinite());  // a target at the position has no direction
}

TEST(PathImport, TellsTheFirstLineThatMakesNoSense) {
  const std::string five = "#\n\n0,0,0,1,0,0\n#\n\n\n1,2,3,4,5\n0,0,0,1,0,0\n";
  EXPECT_EQ(FaultOf(five), "Invalid format at line 7.");
  EXPECT_EQ(Read(five).keys.size(), 1u);
  EXPECT_EQ(FaultOf("0,0,0,1,0,0\r\n1,x,3,4,5,6"), "Cannot read a position at line 2.");
  EXPECT_EQ(FaultOf("1,2,3,4,5x,6"), "Cannot read a target at line 1.");
  EXPECT_EQ(FaultOf("1,2,3,4,5,nan"), "Cannot read a target at line 1.");
  EXPECT_EQ(FaultOf("1e39,2,3,4,5,6"), "Cannot read a position at line 1.");
  EXPECT_EQ(FaultOf(",,\t,"), "Invalid format at line 1.");
  EXPECT_EQ(FaultOf("# only\n#comments"), "");
  EXPECT_EQ(FaultOf(""), "");
}

// Every character of ASCII text as two bytes, behind the mark.
std::string Utf16(std::string_view text, bool bigEndian) {
  std::string coded = bigEndian ? "\xFE\xFF" : "\xFF\xFE";
  for (const char c : text) coded += bigEndian ? std::string{'\0', c} : std::string{c, '\0'};
  return coded;
}

TEST(PathImport, TakesTheEncodingsOfTextEditors) {
  const std::string lines = "# K\n1,2,3,4,5,6\r\n2,3,4,5,6,7\n";
  const std::string utf8 =
      "# K\xC3\xBC"
      "che\n" +
      lines;
  const std::string latin =
      "# K\xFC"
      "che\n" +
      lines;
  for (const std::string& text : {lines, utf8, "\xEF\xBB\xBF" + utf8, latin, Utf16(lines, false),
                                  Utf16(lines, true), Utf16(lines, false) + "\n"}) {
    const ImportedPath path = Read(text);
    EXPECT_FALSE(path.fault);
    ASSERT_EQ(path.keys.size(), 2u) << text;
    EXPECT_EQ(path.keys[1].pose.position, Vec3(2, 3, 4));
  }
}

TEST(PathImport, ReadsLongFilesInUnderASecond) {
  const auto file = TestFile();
  {
    std::ofstream out(file, std::ios::binary);
    for (int i = 0; i < 100000; ++i) {
      out << i << ".123456," << -i << ".5,70.25," << i + 1 << ".654321,0.0001,-12.5\r\n";
    }
  }
  // The shortest of some times of the processor, so that what else goes on does not count: on
  // Windows they are those of the wall.
  ImportedPath path;
  double seconds = 1e9;
  for (int run = 0; run < 3; ++run) {
    const std::clock_t start = std::clock();
    path = ReadPathFile(file.string(), 0.6f);
    seconds = std::min(seconds, static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC);
  }
  std::filesystem::remove(file);
  ASSERT_EQ(path.keys.size(), 100000u);
  EXPECT_EQ(path.keys.back().time, 49999.5);
  // Neither a sanitizer's times nor Wine's are those of the program.
#if !defined(QUORVANE_SANITIZED) && !defined(_WIN32)
  EXPECT_LT(seconds, 1);
#endif
  RecordProperty("seconds", std::to_string(seconds));
  EXPECT_TRUE(ReadPathFile(file.string(), 0.6f).keys.empty());
}

}  // namespace
}  // namespace qv
