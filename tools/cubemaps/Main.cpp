// Paints the cube maps that the viewer comes with.
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <string>
#include <vector>

#include "FaceFiles.h"
#include "Painter.h"
#include "Place.h"
#include "sky/CubeFaces.h"

namespace qv::cubemaps {
namespace {

constexpr std::uintmax_t kBudget = 1'000'000;  // bytes of one cube map

struct Entry {
  const char* name;
  Scenery (*scenery)();
};
constexpr Entry kPlaces[] = {{"asphalt_morning", AsphaltMorning},
                             {"meadow_noon", MeadowNoon},
                             {"hills_evening", HillsEvening}};

void Paint(const Entry& entry, const std::filesystem::path& folder, int size) {
  // The sky is smooth enough for a little less than a step for each pixel.
  const Place place(entry.scenery(), size * 3 / 4);
  const Painter painter(place);
  std::array<std::vector<std::uint8_t>, 6> faces;
  for (int face = 0; face < 6; ++face) {
    faces[static_cast<std::size_t>(face)] = painter.Face(face, size);
    std::printf("%s: face %d of 6\n", entry.name, face + 1);
    std::fflush(stdout);
  }
  WriteFaces(faces, size, folder / entry.name, kBudget);
}

int Run(const std::vector<std::string>& arguments) {
  if (arguments.size() < 2) {
    std::fprintf(stderr, "usage: cubemaps FOLDER SIZE [NAME...]\n");
    return 2;
  }
  const int size = std::atoi(arguments[1].c_str());
  if (size < 16 || size > sky::CubeFaces::kFaceSize) {
    std::fprintf(stderr, "cubemaps: a size from 16 to %d\n", sky::CubeFaces::kFaceSize);
    return 2;
  }
  const auto wanted = [&](const char* name) {
    return arguments.size() == 2 ||
           std::find(arguments.begin() + 2, arguments.end(), name) != arguments.end();
  };
  for (const Entry& entry : kPlaces) {
    if (wanted(entry.name)) Paint(entry, arguments[0], size);
  }
  return 0;
}

}  // namespace
}  // namespace qv::cubemaps

int main(int argc, char** argv) {
  try {
    return qv::cubemaps::Run({argv + 1, argv + argc});
  } catch (const std::exception& error) {
    std::fprintf(stderr, "cubemaps: %s\n", error.what());
    return 1;
  }
}
