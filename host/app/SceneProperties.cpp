#include "host/app/SceneProperties.h"

#include <array>
#include <cstring>
#include <stdexcept>

#include "host/app/BackgroundWish.h"
#include "link/Records.h"

namespace qv::host {
namespace {

template <class Record>
std::vector<std::byte> BytesOf(const Record& record) {
  std::vector<std::byte> bytes(sizeof(record));
  std::memcpy(bytes.data(), &record, bytes.size());
  return bytes;
}

}  // namespace

SceneProperties PropertiesOf(const SceneLook& look, const std::filesystem::path& viewerFolder) {
  SceneProperties properties;
  PropertyValues& values = properties.values;
  if (look.background) {
    try {
      values["background"] = BackgroundProperty(*look.background, viewerFolder);
    } catch (const std::runtime_error& error) {
      properties.warnings.emplace_back(error.what());
    }
  }
  if (look.brightness || look.contrast) {
    values["brightness2"] =
        BytesOf(std::array{look.brightness.value_or(0), look.contrast.value_or(0)});
  }
  if (look.gamma) values["gamma"] = BytesOf(*look.gamma);
  if (look.eyeHeight) values["eye_height"] = BytesOf(*look.eyeHeight);
  if (look.lightFactors) {
    const LightFactors& f = *look.lightFactors;
    values["light_factors"] = BytesOf(
        wire::LightFactorsValue{f.sun, f.ambient, f.point, f.lem, f.useSkyColorForAmbient, {}});
  }
  return properties;
}

}  // namespace qv::host
