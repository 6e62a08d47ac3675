#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>
#include <limits>
#include <stdexcept>
#include <tuple>

#include "core/Log.h"
#include "link/CommandDecoder.h"
#include "link/RecordBytes.h"
#include "link/RecordingFrame.h"

namespace qv {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr float kInfinity = std::numeric_limits<float>::infinity();
constexpr float kNan = std::numeric_limits<float>::quiet_NaN();
constexpr std::int32_t kMost = std::numeric_limits<std::int32_t>::max();
constexpr std::int32_t kLeast = std::numeric_limits<std::int32_t>::min();

bool PlainRead(void* to, const void* from, std::size_t size) {
  std::memcpy(to, from, size);
  return true;
}

// Decodes out of memory that ends with the area, so that the address sanitizer sees every byte too
// far.
class Decoder : public testing::Test {
 protected:
  Decoder()
      : frame_([this](const std::string& line) { calls_.push_back(line); }),
        decoder_(frame_, SharedAccess{PlainRead, PlainRead}) {
    SetLogSink([this](LogLevel, const std::string& text) { log_.push_back(text); });
  }
  ~Decoder() override { SetLogSink({}); }

  void Decode(const RecordBytes& record, std::size_t areaSize = 0) {
    const auto bytes = record.bytes();
    area_.assign(bytes.begin(), bytes.end());
    if (areaSize != 0) area_.resize(areaSize);
    area_.shrink_to_fit();
    calls_.clear();
    log_.clear();
    decoder_.Decode(area_);
  }

  // Nothing was called, the area is as it was, and the log tells one thing that has `reason` in it.
  void ExpectRefused(const RecordBytes& record, const std::string& reason,
                     std::size_t areaSize = 0) {
    SCOPED_TRACE(reason);
    Decode(record, areaSize);
    EXPECT_THAT(calls_, IsEmpty());
    EXPECT_THAT(log_, ElementsAre(HasSubstr(reason)));
    EXPECT_TRUE(SameBytes(std::span(area_).first(record.bytes().size()), record.bytes()));
  }

  void ExpectTaken(const RecordBytes& record, std::size_t areaSize = 0) {
    Decode(record, areaSize);
    EXPECT_EQ(calls_.size(), 1u);
    EXPECT_THAT(log_, IsEmpty());
  }

  std::vector<std::byte> area_;
  std::vector<std::string> calls_;
  std::vector<std::string> log_;
  RecordingFrame frame_;
  CommandDecoder decoder_;
};

TEST_F(Decoder, TakesArraysUpToTheLastByteOfTheArea) {
  ExpectTaken(RecordBytes(7).Ints(16, {1, 100}), 136);
  for (const auto& [count, offset, reason] :
       {std::tuple(1, 101, "136 bytes"), std::tuple(1, kMost, "offset 2147483647"),
        std::tuple(1, kLeast, "offset -2147483648"), std::tuple(-1, 24, "is -1"),
        // 36 * 119304648 is 32 more than 2^32.
        std::tuple(119304648, 24, "4294967328 bytes")}) {
    ExpectRefused(RecordBytes(7).Ints(16, {count, offset}), reason, 136);
  }
  Decode(RecordBytes(12).Size(4));
  ExpectTaken(RecordBytes(8).Ints(4, {1, 64, 1, 104}), 120);
  for (const auto& [vertices, at, triangles, from, reason] :
       {std::tuple(1, 81, 0, 0, "vertices with 40 bytes at offset 81"),
        std::tuple(1, 64, 1, 105, "triangles with 16 bytes at offset 105"),
        std::tuple(1, -40, 1, 104, "offset -40"), std::tuple(1, 64, -5, 104, "is -5"),
        std::tuple(107374183, 64, 1, 104, "4294967320"),
        std::tuple(1, 64, 268435457, 104, "4294967312")}) {
    ExpectRefused(RecordBytes(8).Ints(4, {vertices, at, triangles, from}), reason, 120);
  }
  // Nothing lies nowhere.
  ExpectTaken(RecordBytes(8).Ints(4, {0, kMost, 0, kLeast}), 120);
  ExpectTaken(RecordBytes(7).Ints(16, {0, -1}), 136);
}

TEST_F(Decoder, RefusesRecordsLongerThanTheArea) {
  Decode(RecordBytes(10).Size(4));
  const std::pair<std::int32_t, std::size_t> sizes[] = {
      {2, 57}, {4, 28}, {5, 48}, {6, 28}, {7, 24}, {8, 20}, {9, 8}, {11, 24}, {14, 44}, {16, 8}};
  for (const auto& [code, size] : sizes) ExpectRefused(RecordBytes(code), "the record", size - 1);
  ExpectRefused(RecordBytes().Size(3), "an unknown command", 3);
}

TEST_F(Decoder, TextsNeedATerminatorWithinTheArea) {
  for (const std::int32_t code : {9, 15}) {
    RecordBytes text(code);
    text.Int(4, 8).Text(8, std::string(300, 'x'));
    ExpectTaken(text);
    EXPECT_THAT(calls_, ElementsAre(HasSubstr(" " + std::string(300, 'x'))));
    RecordBytes open(code);
    open.Int(4, 8).Text(8, std::string(300, 'x')).Byte(308, 'x');
    ExpectRefused(open, "no terminator within its 301 bytes");
    for (const std::int32_t offset : {12, -1, kMost, kLeast}) {
      ExpectRefused(RecordBytes(code).Int(4, offset).Size(12), "offset " + std::to_string(offset));
    }
  }
}

TEST_F(Decoder, TextsThatAreNotUtf8AreOfTheSystemsEncoding) {
  Decode(RecordBytes(9).Int(4, 8).Text(8, "/m/B\xC3\xA4r"));
  EXPECT_THAT(calls_, ElementsAre("SetModelDirectory /m/B\xC3\xA4r"));
  Decode(RecordBytes(15).Int(4, 8).Text(8, "B\xE4r"));
  EXPECT_THAT(calls_, ElementsAre("SetStatusMessage B\xC3\xA4r"));
}

TEST_F(Decoder, TextureNamesAreShorterThan260Bytes) {
  RecordBytes material(3);
  material.Byte(68, 1).Int(72, 80).Text(80, std::string(259, 'x')).Size(400);
  ExpectTaken(material);
  material.Text(80, std::string(260, 'x'));
  Decode(material);
  EXPECT_THAT(calls_, IsEmpty());
  EXPECT_THAT(log_, ElementsAre(HasSubstr("no terminator within its 260 bytes")));
  EXPECT_TRUE(SameBytes(std::span(area_).first(4), RecordBytes(-1).bytes()));
  // Without a texture the name is not looked at.
  ExpectTaken(material.Byte(68, 0).Int(72, kLeast));
  // The number of the next material has not been spent.
  EXPECT_TRUE(SameBytes(std::span(area_).first(4), RecordBytes(1).bytes()));
  // Any other value than 0 means yes.
  Decode(material.Byte(68, 0x80).Int(72, 80).Text(80, "name"));
  EXPECT_THAT(calls_, ElementsAre(HasSubstr("texture name")));
}

TEST_F(Decoder, TrianglesStayWithinTheVerticesOfTheirCall) {
  Decode(RecordBytes(12).Size(4));
  const auto mesh = [](std::int32_t vertex) {
    return RecordBytes(8).Ints(4, {2, 20, 1, 100}).Ints(100, {0, vertex, 1, 0});
  };
  ExpectTaken(mesh(1));
  for (const std::int32_t bad : {2, -1, kMost}) {
    ExpectRefused(mesh(bad), "vertex " + std::to_string(bad) + " of 2");
  }
}

TEST_F(Decoder, RefusesEveryFloatThatIsNotFinite) {
  Decode(RecordBytes(10).Size(4));
  struct Floats {
    std::int32_t code;
    std::size_t first, last;
  };
  // By the tables: every float of every command.
  const Floats kFloats[] = {{2, 4, 52}, {4, 4, 24},  {5, 4, 44},  {6, 4, 24},
                            {7, 4, 12}, {11, 4, 20}, {14, 4, 12}, {16, 4, 4}};
  for (const Floats& floats : kFloats) {
    for (std::size_t offset = floats.first; offset <= floats.last; offset += 4) {
      for (const float bad : {kNan, kInfinity, -kInfinity}) {
        ExpectRefused(RecordBytes(floats.code).Size(64).Float(offset, bad), "not finite");
      }
    }
    ExpectTaken(RecordBytes(floats.code).Size(64).Float(floats.last, -3e38f));
    if (floats.code == 11) Decode(RecordBytes(10).Size(4));
  }
  Decode(RecordBytes(3).Size(80).Float(76, kNan));
  EXPECT_THAT(calls_, IsEmpty());
  // These are integers, whatever a float of the same bits would be.
  ExpectTaken(RecordBytes(3).Size(80).Float(52, kNan).Float(60, kInfinity));
  ExpectTaken(RecordBytes(2).Size(64).Float(56, kNan));

  for (std::size_t i = 0; i < 9; ++i) {
    ExpectRefused(RecordBytes(7).Ints(16, {1, 24}).Size(60).Float(24 + 4 * i, kNan), "not finite");
  }
  Decode(RecordBytes(12).Size(4));
  for (std::size_t i = 0; i < 20; ++i) {
    ExpectRefused(RecordBytes(8).Ints(4, {2, 20, 0, 0}).Size(100).Float(20 + 4 * i, kInfinity),
                  "not finite");
  }
}

TEST_F(Decoder, MeshDataNeedsAMesh) {
  const RecordBytes data = RecordBytes(8).Ints(4, {0, 0, 0, 0});
  const RecordBytes endBillboard = RecordBytes(11).Size(24);
  const RecordBytes beginBillboard(10), beginStatic(12), end(13);

  ExpectRefused(data, "no mesh was begun");
  ExpectTaken(beginStatic);
  ExpectRefused(endBillboard, "not a billboard");
  ExpectTaken(data);  // the mesh is still there
  ExpectTaken(end);
  ExpectRefused(data, "no mesh was begun");
  ExpectTaken(beginBillboard);
  ExpectTaken(end);
  ExpectRefused(endBillboard, "not a billboard");
  ExpectTaken(beginStatic);
  decoder_.ForgetMesh();
  ExpectRefused(data, "no mesh was begun");
}

// The host may write while the viewer reads: what was looked at is what is used.
bool ReadAndSpoil(void* to, const void* from, std::size_t size) {
  std::memcpy(to, from, size);
  std::memset(const_cast<void*>(from), 0xff, size);
  return true;
}

TEST_F(Decoder, LooksAtACopyOfTheArea) {
  CommandDecoder decoder(frame_, SharedAccess{ReadAndSpoil, PlainRead});
  const auto decode = [&](const RecordBytes& record) {
    area_.assign(record.bytes().begin(), record.bytes().end());
    decoder.Decode(area_);
  };
  decode(RecordBytes(12));
  decode(
      RecordBytes(8).Ints(4, {1, 20, 1, 60}).Floats(20, {1, 2, 3}).Size(60).Ints(60, {0, 0, 0, 7}));
  EXPECT_THAT(calls_,
              ElementsAre("BeginStaticMesh",
                          "AddMeshData 1 vertices 1 triangles, 1 2 3 0 0 0 0 0 0 0, 0 0 0 7"));
}

class ThrowingFrame final : public RecordingFrame {
 public:
  using RecordingFrame::RecordingFrame;
  void SceneComplete() override { throw std::runtime_error("no memory for the scene"); }
  std::int32_t AddMaterial(const MaterialParameters&) override { throw 5; }
};

TEST_F(Decoder, ExceptionsEndHere) {
  ThrowingFrame frame([](const std::string&) {});
  CommandDecoder decoder(frame, SharedAccess{PlainRead, PlainRead});
  area_.assign(100, std::byte{0});
  area_[0] = std::byte{1};
  decoder.Decode(area_);
  EXPECT_THAT(log_, ElementsAre(HasSubstr("SceneComplete was refused: no memory for the scene")));
  area_[0] = std::byte{3};
  decoder.Decode(area_);
  EXPECT_TRUE(SameBytes(std::span(area_).first(4), RecordBytes(-1).bytes()));
}

TEST_F(Decoder, MemoryThatGoesAwayIsARefusal) {
  const auto failingRead = [](void*, const void*, std::size_t) { return false; };
  const auto failingWrite = [](void*, const void*, std::size_t) { return false; };
  CommandDecoder gone(frame_, SharedAccess{failingRead, PlainRead});
  area_.resize(100);
  gone.Decode(area_);
  EXPECT_THAT(calls_, IsEmpty());
  EXPECT_THAT(log_, ElementsAre(HasSubstr("taken away")));
  log_.clear();
  CommandDecoder half(frame_, SharedAccess{PlainRead, failingWrite});
  area_[0] = std::byte{17};
  half.Decode(area_);
  EXPECT_THAT(log_, ElementsAre(HasSubstr("taken away")));
  EXPECT_EQ(area_[0], std::byte{17});
}

}  // namespace
}  // namespace qv
