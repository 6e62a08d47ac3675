#include "sky/BackgroundTypes.h"

namespace qv::sky {
namespace {

struct Row {
  std::int32_t key;
  const char* name;
  float a, b, c, hazeDepth;
};

constexpr Row kRows[] = {
    {0, "ClearSky", 10.0f, 0.6f, 0.7f, 0},
    {1, "Fine1", 10.0f, 0.6f, 0.7f, 0},
    {2, "Fine2", 20.0f, 0.6f, 0.7f, 0},
    {3, "Cloudy1", 20.0f, 0.6f, 0.7f, 0},
    {4, "Cloudy2", 40.0f, 0.15f, 0.4f, 0},
    {kTextureBackground, "Texture", 10.0f, 0.25f, 0.7f, 10000.0f},
};

}  // namespace

void FillBackgroundTypes(BackgroundTypes& backgroundTypes,
                         const std::function<std::wstring(const char* name)>& translate) {
  backgroundTypes.clear();
  for (const Row& row : kRows) {
    backgroundTypes[row.key] = {row.a, row.b, row.c, row.hazeDepth, translate(row.name)};
  }
}

std::int32_t BackgroundTypeNamed(const std::string& name) {
  for (const Row& row : kRows) {
    if (name == row.name) return row.key;
  }
  return -1;
}

}  // namespace qv::sky
