#include "host/app/BackgroundWish.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <stdexcept>

#include "platform/PathText.h"
#include "sky/BackgroundTypes.h"
#include "sky/CubeMaps.h"

namespace qv::host {
namespace {

namespace fs = std::filesystem;

}  // namespace

std::vector<std::byte> BackgroundProperty(const std::string& name, const fs::path& viewerFolder) {
  std::vector<std::string> cubeMaps;
  for (const std::wstring& cubeMap : sky::ListCubeMaps(sky::CubeMapFolder(viewerFolder))) {
    cubeMaps.push_back(platform::Utf8FromPath(cubeMap));
  }
  const auto found = std::find(cubeMaps.begin(), cubeMaps.end(), name);
  std::array<std::int32_t, 2> words{sky::kTextureBackground, -1};
  if (found != cubeMaps.end()) {
    words[1] = static_cast<std::int32_t>(found - cubeMaps.begin());
  } else {
    words[0] = sky::BackgroundTypeNamed(name);
    if (words[0] < 0 || words[0] == sky::kTextureBackground) {
      std::string names;
      for (const std::string& cubeMap : cubeMaps) names += cubeMap + ", ";
      throw std::runtime_error("there is no background \"" + name + "\"; there are " + names +
                               "ClearSky, Fine1, Fine2, Cloudy1 and Cloudy2");
    }
  }
  std::vector<std::byte> value(sizeof(words));
  std::memcpy(value.data(), words.data(), sizeof(words));
  return value;
}

}  // namespace qv::host
