#include <gtest/gtest.h>

#include <cctype>
#include <cmath>
#include <string>

#include "core/Log.h"
#include "presets/BlockBytes.h"
#include "presets/PresetBlock.h"

namespace qv {
namespace {

ViewPreset HallView() {
  ViewPreset view(wxString::FromUTF8("K\xC3\xBC"
                                     "che"),
                  {{1, -2.5f, 0.1f}, {0.5f, 0.5f, -0.5f, 0.5f}, 0.785f}, 7, 70.5f, true,
                  {2456293.75, 35.5, -139.25, 0.25f, 3});
  view.id = "ID";
  view.comment = "c";
  return view;
}

// The record of that view. 0.1f and 0.785f are what a float makes of these numbers.
BlockBytes& AppendHallView(BlockBytes& bytes) {
  return bytes.Int(0)
      .Text("ID")
      .Int(1)
      .Text(
          "K\xC3\xBC"
          "che")
      .Int(1)
      .Reals({2456293.75, 35.5, -139.25, 0.25})
      .Int(3)
      .Text("c")
      .Int(0)
      .Raw({0x3F, 0xFF, 0x80, 0, 0, 0, 0, 0, 0, 0})        // 1
      .Raw({0xC0, 0x00, 0xA0, 0, 0, 0, 0, 0, 0, 0})        // -2.5
      .Raw({0x3F, 0xFB, 0xCC, 0xCC, 0xCD, 0, 0, 0, 0, 0})  // 0.1f
      .Reals({0.5, -0.5, 0.5, 0.5})                        // x, y, z, w
      .Real(static_cast<double>(0.785f))
      .Int(7)
      .Real(70.5);
}

CameraKey KeyAt(double time, double julianDate) {
  return {time, {{1, 2, 3}, {0, 0, 0, 1}, 0.5f}, {julianDate, 4, 5, 6, -1}};
}

BlockBytes& AppendKey(BlockBytes& bytes, double time, double days) {
  return bytes.Real(time).Reals({1, 2, 3, 0, 0, 1, 0, 0.5}).Reals({days, 4, 5, 6}).Int(0xFFFFFFFF);
}

BlockBytes& AppendAnimationHead(BlockBytes& bytes, std::uint32_t type) {
  return bytes.Int(type)
      .Text("A")
      .Int(1)
      .Text("Way")
      .Int(0)
      .Reals({0, 0, 0, 0})
      .Int(0xFFFFFFFF)
      .Text("");
}

template <class Animation>
std::shared_ptr<Animation> Named() {
  auto animation = std::make_shared<Animation>();
  animation->id = "A";
  animation->name = "Way";
  animation->sun.sunTag = -1;
  return animation;
}

std::vector<PresetPointer> AllKinds() {
  auto path = Named<CameraAnimationPreset>();
  path->keys = {KeyAt(0, 2451546.0), KeyAt(1.5, 0)};
  auto flight = Named<CameraKeyAnimationPreset>();
  flight->keys = {KeyAt(0.25, 2451547.5)};
  flight->views = {HallView()};
  return {std::make_shared<ViewPreset>(HallView()), path, flight, Named<TourAnimationPreset>()};
}

std::vector<std::byte> AllKindsBytes() {
  BlockBytes bytes;
  AppendHallView(bytes.Int(4));
  AppendAnimationHead(bytes, 1).Int(2);
  AppendKey(bytes, 0, 0);
  AppendKey(bytes, 1.5, -2451546.0);
  AppendAnimationHead(bytes, 2).Int(1);
  AppendKey(bytes, 0.25, 1.5).Int(1);
  AppendHallView(bytes);
  AppendAnimationHead(bytes, 3).Int(0).Int(0);
  return bytes.bytes();
}

class PresetBlock : public testing::Test {
 protected:
  PresetBlock() {
    SetLogSink([this](LogLevel, const std::string&) { ++warnings_; });
  }
  ~PresetBlock() override { SetLogSink({}); }

  int warnings_ = 0;
};

TEST_F(PresetBlock, IsWrittenByteForByte) {
  EXPECT_EQ(WritePresetBlock({}), BlockBytes().Int(0).bytes());
  EXPECT_EQ(WritePresetBlock(AllKinds()), AllKindsBytes());
}

TEST_F(PresetBlock, IsReadBackWhole) {
  EXPECT_TRUE(ReadPresetBlock(BlockBytes().Int(0).bytes()).empty());
  const auto presets = ReadPresetBlock(AllKindsBytes());
  ASSERT_EQ(presets.size(), 4u);
  EXPECT_EQ(dynamic_cast<const CameraKeyAnimationPreset&>(*presets[2]).views.size(), 1u);
  EXPECT_EQ(dynamic_cast<const TourAnimationPreset&>(*presets[3]).type, PresetType::kTour);
  EXPECT_EQ(warnings_, 0);

  // The writer, which is checked above, gives each field of what was read.
  EXPECT_EQ(WritePresetBlock(presets), AllKindsBytes());
}

TEST_F(PresetBlock, TakesAnyNumberAboveZeroForTrue) {
  const auto isOwn = [](std::uint32_t stored) {
    BlockBytes bytes;
    bytes.Int(1).Int(1).Text("").Int(stored).Text("").Int(0).Reals({0, 0, 0, 0}).Int(0).Text("");
    return ReadPresetBlock(bytes.Int(0).bytes()).at(0)->isOwn;
  };
  EXPECT_TRUE(isOwn(2));
  EXPECT_FALSE(isOwn(0));
  EXPECT_FALSE(isOwn(0xFFFFFFFF));
}

TEST_F(PresetBlock, GivesWhatThereIsWhereverItIsCut) {
  const auto whole = AllKindsBytes();
  std::size_t before = 0;
  for (std::size_t size = 0; size < whole.size(); ++size) {
    const std::vector<std::byte> cut(whole.begin(), whole.begin() + static_cast<long>(size));
    const auto presets = ReadPresetBlock(cut);
    EXPECT_GE(presets.size(), before);
    EXPECT_LE(presets.size(), 4u);
    before = presets.size();
  }
  EXPECT_EQ(before, 4u);
  EXPECT_EQ(warnings_, static_cast<int>(whole.size()) - 4 + 4);
}

TEST_F(PresetBlock, KeepsTheWholeKeysOfACutAnimation) {
  BlockBytes bytes;
  AppendAnimationHead(bytes.Int(9), 1).Int(0xFFFFFFFF);
  AppendKey(bytes, 0, 0);
  AppendKey(bytes, 1, 0);
  const auto presets = ReadPresetBlock(bytes.Int(17).bytes());
  ASSERT_EQ(presets.size(), 1u);
  const auto& path = dynamic_cast<const CameraAnimationPreset&>(*presets[0]);
  EXPECT_EQ(path.keys.size(), 2u);
  EXPECT_LE(path.keys.capacity(), 2u);
  EXPECT_EQ(path.name, "Way");
}

TEST_F(PresetBlock, TakesNoMemoryForANameThatIsNotThere) {
  BlockBytes bytes;
  bytes.Int(0xFFFFFFFF).Int(0).Text("ID").Int(1).Int(0xFFFFFFF0).Raw({'H', 'a', 'l', 'l'});
  const auto presets = ReadPresetBlock(bytes.bytes());
  ASSERT_EQ(presets.size(), 1u);
  EXPECT_EQ(presets[0]->id, "ID");
  EXPECT_TRUE(presets[0]->name.empty());
  EXPECT_EQ(presets[0]->sun.julianDate, 0);
}

TEST_F(PresetBlock, PassesOverCodesOfNoKind) {
  BlockBytes bytes;
  AppendHallView(bytes.Int(3).Int(4).Int(0xFFFFFFFF));
  const auto presets = ReadPresetBlock(bytes.bytes());
  ASSERT_EQ(presets.size(), 1u);
  EXPECT_EQ(presets[0]->id, "ID");
  EXPECT_EQ(warnings_, 1);
}

TEST_F(PresetBlock, KeepsNumbersThatAreNotFinite) {
  BlockBytes bytes;
  bytes.Int(1).Int(0).Text("").Int(1).Text("Sun").Int(1);
  bytes.Raw({0x7F, 0xFF, 0xC0, 0, 0, 0, 0, 0, 0, 0});  // no number
  bytes.Raw({0xFF, 0xFF, 0, 0, 0, 0, 0, 0, 0, 0});     // minus infinity
  bytes.Raw({0x7F, 0xFE, 0x80, 0, 0, 0, 0, 0, 0, 0});  // beyond a double
  bytes.Real(1e300);                                   // beyond a float
  const auto presets = ReadPresetBlock(bytes.Int(0).bytes());
  ASSERT_EQ(presets.size(), 1u);
  EXPECT_FALSE(std::isfinite(presets[0]->sun.julianDate));
  EXPECT_EQ(presets[0]->sun.latitude, -HUGE_VAL);
  EXPECT_EQ(presets[0]->sun.longitude, HUGE_VAL);
  EXPECT_EQ(presets[0]->sun.sunParam, HUGE_VALF);
}

TEST(Preset, HasAnIdOfItsOwnUntilAViewIsAssigned) {
  ViewPreset view, other;
  std::string shape = view.id.ToStdString();
  for (char& letter : shape) {
    if (std::isdigit(letter) || (letter >= 'A' && letter <= 'F')) letter = 'X';
  }
  EXPECT_EQ(shape, "XXXXXXXX-XXXX-XXXX-XXXXXXXXXXXXXXXX") << view.id;
  EXPECT_NE(view.id, other.id);
  other.isOwn = false;
  view = other;
  EXPECT_EQ(view.id, other.id);
  EXPECT_FALSE(view.isOwn);
}

}  // namespace
}  // namespace qv
