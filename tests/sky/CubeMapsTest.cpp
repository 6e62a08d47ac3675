#include <FreeImage.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <map>

#include "core/Log.h"
#include "sky/Background.h"
#include "sky/CubeMaps.h"
#include "support/ImageFile.h"

namespace qv::sky {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kFaceBytes = std::size_t{1024} * 1024 * 4;

class CubeMaps : public ::testing::Test {
 protected:
  void SetUp() override {
    SetLogSink([this](LogLevel, const std::string& line) { log_ += line + '\n'; });
    folder_ = test::ScratchPath("CubeMaps");
    fs::create_directories(folder_);
  }
  void TearDown() override { SetLogSink({}); }

  // A JPEG file of one colour, or noise where that is needed for its length.
  fs::path WriteFace(const std::string& cubeMap, const std::string& file, int width, int height,
                     RGBQUAD colour, bool noise = false) {
    fs::create_directories(folder_ / cubeMap);
    fs::path path = folder_ / cubeMap / file;
    FIBITMAP* bitmap = FreeImage_Allocate(width, height, 24);
    for (int y = 0; y < height; ++y) {
      BYTE* row = FreeImage_GetScanLine(bitmap, y);
      for (int x = 0; x < width; ++x) {
        row[3 * x + FI_RGBA_RED] = noise ? static_cast<BYTE>(std::rand()) : colour.rgbRed;
        row[3 * x + FI_RGBA_GREEN] = colour.rgbGreen;
        row[3 * x + FI_RGBA_BLUE] = colour.rgbBlue;
      }
    }
    EXPECT_TRUE(FreeImage_Save(FIF_JPEG, bitmap, path.string().c_str(), 95));
    FreeImage_Unload(bitmap);
    return path;
  }

  fs::path folder_;
  std::string log_;
};

const RGBQUAD kOrange{20, 120, 240, 0};

TEST_F(CubeMaps, ReadsFacesOfTheRightSizeTopRowFirst) {
  // The upper half white: a JPEG's blocks are 8 pixels high.
  const fs::path path = WriteFace("one", "LF.jpg", 1024, 1024, kOrange);
  FIBITMAP* bitmap = FreeImage_Load(FIF_JPEG, path.string().c_str(), JPEG_ACCURATE);
  for (int y = 512; y < 1024; ++y) std::fill_n(FreeImage_GetScanLine(bitmap, y), 3 * 1024, 255);
  FreeImage_Save(FIF_JPEG, bitmap, path.string().c_str(), 95);
  FreeImage_Unload(bitmap);

  const CubeFaces faces = LoadCubeMap(folder_, L"one");
  ASSERT_EQ(faces.pixels[1].size(), kFaceBytes);
  EXPECT_GT(faces.Sample({-1, 0.1f, 0.5f}).minCoeff(), 0.98f);
  const Vec3 below = faces.Sample({-1, 0.1f, -0.5f});
  EXPECT_NEAR(below.x(), 240 / 255.0, 0.02);
  EXPECT_NEAR(below.y(), 120 / 255.0, 0.02);
  EXPECT_NEAR(below.z(), 20 / 255.0, 0.02);
  EXPECT_EQ(faces.Sample({0, 1, 0}), Vec3(0, 0, 0)) << "a missing face is black";
  EXPECT_NE(log_.find("FR.jpg cannot be read"), std::string::npos) << log_;
  EXPECT_EQ(log_.find("LF.jpg"), std::string::npos) << log_;
}

TEST_F(CubeMaps, LeavesBrokenFacesBlackAndTellsWhy) {
  const fs::path whole = WriteFace("bad", "FR.jpg", 1024, 1024, kOrange, true);
  const std::string bytes = test::ReadBytes(whole);
  test::WriteBytes(whole, bytes.substr(0, bytes.size() / 2));
  WriteFace("bad", "LF.jpg", 1024, 512, kOrange);
  // A head that lies: the size stands 5 bytes after the marker of the frame, here 65500 each.
  const fs::path lying = WriteFace("bad", "BK.jpg", 1024, 1024, kOrange);
  std::string lie = test::ReadBytes(lying);
  const std::size_t frame = lie.find("\xff\xc0");
  ASSERT_NE(frame, std::string::npos);
  lie.replace(frame + 5, 4, "\xff\xdc\xff\xdc");
  test::WriteBytes(lying, lie);
  test::WriteBytes(folder_ / "bad" / "RT.jpg", "no image at all");
  test::WriteBytes(folder_ / "bad" / "UP.jpg", "");
  fs::create_directory(folder_ / "bad" / "DN.jpg");

  const CubeFaces faces = LoadCubeMap(folder_, L"bad");
  for (const auto& face : faces.pixels) EXPECT_TRUE(face.empty());
  EXPECT_EQ(faces.Sample({0, 1, 0}), Vec3(0, 0, 0));
  EXPECT_NE(log_.find("FR.jpg is damaged"), std::string::npos) << log_;
  EXPECT_NE(log_.find("LF.jpg is 1024 by 512 pixels"), std::string::npos) << log_;
  EXPECT_NE(log_.find("BK.jpg is 65500 by 65500 pixels"), std::string::npos) << log_;
  for (const char* file : {"RT.jpg", "UP.jpg", "DN.jpg"}) {
    EXPECT_NE(log_.find(file + std::string(" cannot be read")), std::string::npos) << log_;
  }
}

TEST_F(CubeMaps, KeepsNamesInsideItsFolder) {
  WriteFace("outside", "FR.jpg", 1024, 1024, kOrange);
  fs::create_directories(folder_ / "inner");
  for (const wchar_t* name : {L"../outside", L"..", L".", L"", L"a/b", L"a\\b", L"C:", L"a\nb"}) {
    EXPECT_FALSE(IsCubeMapName(name));
    EXPECT_TRUE(LoadCubeMap(folder_ / "inner", name).pixels[0].empty());
  }
  EXPECT_TRUE(IsCubeMapName(L"asphalt_morning") && IsCubeMapName(L"..dots") &&
              IsCubeMapName(L"\u00dcber uns"));
}

TEST_F(CubeMaps, ListsFoldersAndSettlesOnTheDefault) {
  EXPECT_TRUE(ListCubeMaps(folder_ / "none").empty());
  test::WriteBytes(folder_ / "readme.txt", "not a folder");
  for (const char* name : {"zebra", "asphalt_morning", "alps"})
    fs::create_directory(folder_ / name);
  EXPECT_EQ(ListCubeMaps(folder_).size(), 3u);
  const Background background(folder_);
  EXPECT_EQ(background.CubeMapNames()[static_cast<std::size_t>(background.CubeMapIndex())],
            L"asphalt_morning");
  fs::remove(folder_ / "asphalt_morning");
  EXPECT_EQ(Background(folder_).CubeMapIndex(), 0);
}

TEST_F(CubeMaps, ShowsTheChosenOneUntilAnotherIsChosen) {
  WriteFace("a", "UP.jpg", 1024, 1024, kOrange);
  WriteFace("b", "UP.jpg", 1024, 1024, {240, 120, 20, 0});
  Background background(folder_);
  const Vec3 up(0, 0, 1);
  EXPECT_TRUE(background.Update());
  EXPECT_GT(background.faces().Sample(up).x(), 0.8f) << "weather that is not simulated shows it";
  background.SetType(8, 1);
  EXPECT_TRUE(background.Update());
  EXPECT_GT(background.faces().Sample(up).z(), 0.8f);
  // A change of the date keeps the picture, and reads no file.
  fs::remove_all(folder_ / "b");
  background.SetJulianDate(2454000);
  EXPECT_TRUE(background.Update());
  EXPECT_GT(background.faces().Sample(up).z(), 0.8f);
  // Chosen again, it is read again.
  background.SetType(8, 1);
  EXPECT_TRUE(background.Update());
  EXPECT_EQ(background.faces().Sample(up), Vec3(0, 0, 0));
  // Numbers of no cube map.
  for (const std::int32_t index : {-7, 2, 2147483647}) {
    background.SetType(8, index);
    EXPECT_EQ(background.CubeMapIndex(), 0);
  }
}

class ShippedCubeMap : public ::testing::TestWithParam<const wchar_t*> {
 protected:
  static const CubeFaces& Faces() {
    static std::map<std::wstring, CubeFaces> loaded;
    auto& faces = loaded[GetParam()];
    if (faces.pixels[0].empty()) faces = LoadCubeMap(QUORVANE_CUBE_MAPS, GetParam());
    return faces;
  }
};

// The median brightness of a strip along a piece of an edge, on either side of it: eight pixels
// wide and an eighth of a face long, its middle at `inside` of the way from the face's middle.
float StripMedian(const CubeFaces& faces, int axis, float a, float b, float from, bool first,
                  float inside) {
  std::vector<float> values;
  for (int i = 0; i < 128; ++i) {
    for (int j = -4; j < 4; ++j) {
      const float reach = inside + static_cast<float>(j) / 512;
      Vec3 direction;
      direction[axis] = from + static_cast<float>(i) / 512;
      direction[(axis + 1) % 3] = first ? a : a * reach;
      direction[(axis + 2) % 3] = first ? b * reach : b;
      values.push_back(faces.Sample(direction).mean());
    }
  }
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::nth_element(values.begin(), middle, values.end());
  return *middle;
}

float Ninth(std::vector<float> values) {
  std::sort(values.begin(), values.end());
  return values[values.size() * 9 / 10];
}

// Strips on both sides of an edge differ no more than strips as far apart inside of a face. A face
// that is turned, mirrored or in another's place breaks most of its edges.
TEST_P(ShippedCubeMap, HasNoSeams) {
  const CubeFaces& faces = Faces();
  for (const auto& face : faces.pixels) ASSERT_EQ(face.size(), kFaceBytes);
  std::vector<float> across, inside;
  for (int axis = 0; axis < 3; ++axis) {
    for (const float a : {-1.0f, 1.0f}) {
      for (const float b : {-1.0f, 1.0f}) {
        for (float from = -0.96f; from < 0.7f; from += 0.125f) {
          const float one = StripMedian(faces, axis, a, b, from, true, 0.99f);
          const float other = StripMedian(faces, axis, a, b, from, false, 0.99f);
          across.push_back(std::abs(one - other));
          inside.push_back(std::abs(one - StripMedian(faces, axis, a, b, from, true, 0.97f)));
        }
      }
    }
  }
  EXPECT_LT(Ninth(across), 1.5f * Ninth(inside) + 0.01f);
  EXPECT_LT(Ninth(across), 0.06f);
}

TEST_P(ShippedCubeMap, StandsUprightWithTheSkyAbove) {
  const CubeFaces& faces = Faces();
  // Bluer than the ground all around.
  const Vec3 around[] = {{0, 1, 0}, {-1, 0, 0}, {0, -1, 0}, {1, 0, 0}};
  for (const Vec3& side : around) {
    Vec3 above(0, 0, 0), below(0, 0, 0);
    for (int i = 0; i < 100; ++i) {
      const Vec3 along = Vec3(side.y(), -side.x(), 0) * (static_cast<float>(i) / 50 - 1) * 0.9f;
      above += faces.Sample(side + along + Vec3(0, 0, 0.6f)) / 100;
      below += faces.Sample(side + along - Vec3(0, 0, 0.6f)) / 100;
    }
    EXPECT_GT(above.z() - above.x(), below.z() - below.x() + 0.03f);
  }
}

INSTANTIATE_TEST_SUITE_P(All, ShippedCubeMap,
                         ::testing::Values(L"asphalt_morning", L"meadow_noon", L"hills_evening"),
                         [](const auto& info) {
                           const std::wstring name = info.param;
                           return std::string(name.begin(), name.end());
                         });

}  // namespace
}  // namespace qv::sky
