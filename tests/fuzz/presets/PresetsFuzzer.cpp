#include <cmath>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "core/Log.h"
#include "fuzz/Require.h"
#include "presets/AnimationPresets.h"
#include "presets/PresetBlock.h"

// Reads each input as a block of presets, writes what came of it, and shows all of it on a stage
// that takes finite cameras and dates only.
namespace qv {
namespace {

// Far below what a record of its kind takes, so that memory stays within the block's size.
constexpr std::size_t kSmallestPreset = 4;
constexpr std::size_t kSmallestView = 160;
constexpr std::size_t kKey = 134;

class StrictStage final : public CameraStage {
 public:
  double Now() override { return time_; }
  RenderCamera Camera() override { return camera_; }
  void SetSunDate(double julianDate) override {
    Require(std::isfinite(julianDate), "dates are finite");
  }
  void Show(const RenderCamera& camera, StageFrame) override {
    Require(camera.position.allFinite() && camera.forward.allFinite() && camera.up.allFinite() &&
                std::isfinite(camera.fieldOfView),
            "cameras are finite");
    camera_ = camera;
  }
  bool FrameDone() override { return true; }
  void Yield() override { time_ += kStep; }
  void Wait() override { time_ += kStep; }
  bool StopAsked() override { return time_ > kPatience; }

 private:
  static constexpr double kStep = 0.25;
  static constexpr double kPatience = 3;

  double time_ = 0;
  RenderCamera camera_;
};

std::size_t LeastSize(const Preset& preset) {
  std::size_t size = kSmallestPreset;
  if (const auto* path = dynamic_cast<const CameraAnimationPreset*>(&preset)) {
    size += path->keys.size() * kKey;
  }
  if (const auto* flight = dynamic_cast<const CameraKeyAnimationPreset*>(&preset)) {
    size += flight->views.size() * kSmallestView;
  }
  return size;
}

void Show(const Preset& preset) {
  StrictStage stage;
  preset.Apply(stage);
}

void ReadBlock(const std::vector<std::byte>& block) {
  const std::vector<PresetPointer> presets = ReadPresetBlock(block);
  std::size_t least = 0;
  std::vector<ViewPreset> views;
  for (const PresetPointer& preset : presets) {
    least += LeastSize(*preset);
    if (const auto* view = dynamic_cast<const ViewPreset*>(preset.get())) views.push_back(*view);
    Show(*preset);
  }
  Require(least <= block.size(), "a block holds what is read from it");
  Show(CameraKeyAnimationPreset(views, 10, "Path", {}, 1, 1));
  Show(TourAnimationPreset(views, "Path", {}, 1, 1, 2, 2));

  const std::vector<std::byte> written = WritePresetBlock(presets);
  const std::vector<PresetPointer> again = ReadPresetBlock(written);
  Require(again.size() == presets.size(), "what is written is read again");
  Require(WritePresetBlock(again).size() == written.size(), "texts and counts stay as they are");
}

}  // namespace
}  // namespace qv

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  qv::SetLogSink([](qv::LogLevel, const std::string&) {});
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  // A copy without room behind it.
  const auto* first = reinterpret_cast<const std::byte*>(data);
  qv::ReadBlock(std::vector<std::byte>(first, first + size));
  return 0;
}
