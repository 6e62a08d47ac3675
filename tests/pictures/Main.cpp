// screen_pixels FOLDER MODEL [INSTRUCTIONS]: renders three scenes, a model file's among them, and
// writes each picture as it would be shown to FOLDER/NAME.ppm, top row first. What two systems
// write is compared byte by byte. They may differ where surfaces lie in each other
// unless both use the same instructions for rays, such as avx2.

#include <filesystem>
#include <fstream>
#include <iostream>
#include <string>

#include "pictures/PictureScenes.h"

namespace {

using namespace qv;

constexpr int kWidth = 400;
constexpr int kHeight = 300;
constexpr double kPatienceSeconds = 600;

bool Write(const RaytraceImpl& renderer, const std::filesystem::path& file) {
  std::ofstream out(file, std::ios::binary);
  renderer.ReadScreen([&](const ScreenView& screen) {
    out << "P6\n" << screen.width << ' ' << screen.height << "\n255\n";
    for (int y = screen.height - 1; y >= 0; --y) {
      const std::uint8_t* row = screen.pixels + static_cast<std::size_t>(y) * screen.pitch;
      for (int x = 0; x < screen.width; ++x) {
        for (int channel = 2; channel >= 0; --channel) {
          out.put(static_cast<char>(row[3 * x + channel]));
        }
      }
    }
  });
  out.close();
  return out.good();
}

bool Render(const test::PictureScene& scene, const std::filesystem::path& folder,
            const std::string& instructions) {
  RaytraceImpl renderer({.rayInstructions = instructions});
  if (!scene.send(renderer)) return false;
  renderer.BuildScene(nullptr);
  if (!renderer.ResizeTargets(kWidth, kHeight, 0)) return false;
  const RenderCamera& c = scene.camera;
  renderer.StartRender(c.position, c.forward, c.up, c.fieldOfView, c.target, ModeFinal, false);
  return renderer.WaitUntilDone(kPatienceSeconds) &&
         Write(renderer, folder / (scene.name + ".ppm"));
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3 && argc != 4) return 2;
  const std::string instructions = argc == 4 ? argv[3] : "";
  for (const test::PictureScene& scene : test::PictureScenes(argv[2])) {
    if (!Render(scene, argv[1], instructions)) {
      std::cerr << "screen_pixels: no picture of " << scene.name << '\n';
      return 1;
    }
  }
  return 0;
}
