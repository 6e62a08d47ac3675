#include <filesystem>
#include <fstream>
#include <string>

#include "presets/PresetBlock.h"

// Writes the seeds of the presets' fuzzer into a folder: a small block of each kind of preset.
namespace qv {
namespace {

std::vector<ViewPreset> Views() {
  std::vector<ViewPreset> views;
  for (const float x : {0.0f, 100.0f, 110.0f}) {
    const CameraPose pose{{x, -2.5f, 70}, QuaternionFromYawPitch(x, 0.1f), 0.785f};
    views.emplace_back("View", pose, 1, 70.0f, true, SunRecord{2456293.75, 35.5, 139.25, 0.5f, 1});
  }
  return views;
}

std::shared_ptr<CameraAnimationPreset> Path() {
  auto path = std::make_shared<CameraAnimationPreset>("Path", SunRecord{2456293.75, 35, 139, 0, 0});
  path->hasSunTime = true;
  for (const ViewPreset& view : Views()) {
    path->keys.push_back({static_cast<double>(path->keys.size()) * 0.5, view.pose, view.sun});
  }
  return path;
}

std::shared_ptr<TourAnimationPreset> Tour() {
  return std::make_shared<TourAnimationPreset>(Views(), "Tour", SunRecord(), 1, 1, 2, 2);
}

std::shared_ptr<CameraKeyAnimationPreset> Flight() {
  return std::make_shared<CameraKeyAnimationPreset>(Views(), 50.0f, "Flight", SunRecord(), 1, 1);
}

int WriteSeeds(const std::filesystem::path& folder) {
  const auto write = [&folder](const char* name, const std::vector<PresetPointer>& presets) {
    const auto block = WritePresetBlock(presets);
    std::ofstream(folder / name, std::ios::binary)
        .write(reinterpret_cast<const char*>(block.data()),
               static_cast<std::streamsize>(block.size()));
  };
  std::vector<PresetPointer> views;
  for (const ViewPreset& view : Views()) views.push_back(std::make_shared<ViewPreset>(view));
  write("empty", {});
  write("views", views);
  write("path", {Path()});
  write("tour", {Tour()});
  write("flight", {Flight()});
  write("all", {views[0], Path(), Tour(), views[1]});
  return 0;
}

}  // namespace
}  // namespace qv

int main(int count, char** words) {
  return count == 2 ? qv::WriteSeeds(words[1]) : 2;
}
