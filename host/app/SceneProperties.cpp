#include "host/app/SceneProperties.h"

#include <cstdint>
#include <cstring>
#include <initializer_list>

#include "platform/PathText.h"

namespace qv::host {
namespace {

namespace fs = std::filesystem;

// The type of background that is a cube map.
constexpr std::int32_t kCubeMapBackground = 8;

template <class Number>
std::vector<std::byte> BytesOf(std::initializer_list<Number> numbers) {
  std::vector<std::byte> bytes(numbers.size() * sizeof(Number));
  std::memcpy(bytes.data(), numbers.begin(), bytes.size());
  return bytes;
}

std::optional<std::int32_t> CubeMapNumber(const fs::path& cubeMaps, const std::string& name) {
  std::error_code error;
  std::int32_t number = 0;
  for (fs::directory_iterator entry(cubeMaps, error), end; !error && entry != end;
       entry.increment(error)) {
    std::error_code ignored;
    if (!entry->is_directory(ignored)) continue;
    if (entry->path().filename() == platform::PathFromUtf8(name)) {
      return number;
    }
    ++number;
  }
  return std::nullopt;
}

}  // namespace

PropertyValues PropertiesOf(const SceneLook& look, const fs::path& cubeMaps) {
  PropertyValues values;
  if (look.background) {
    if (const auto number = CubeMapNumber(cubeMaps, *look.background)) {
      values["background"] = BytesOf({kCubeMapBackground, *number});
    }
  }
  if (look.brightness || look.contrast) {
    values["brightness2"] = BytesOf({look.brightness.value_or(0), look.contrast.value_or(0)});
  }
  if (look.gamma) values["gamma"] = BytesOf({*look.gamma});
  if (look.eyeHeight) values["eye_height"] = BytesOf({*look.eyeHeight});
  if (look.lightFactors) {
    const SceneLook::LightFactors& factors = *look.lightFactors;
    std::vector<std::byte> bytes =
        BytesOf({factors.sun, factors.ambient, factors.point, factors.lem});
    bytes.push_back(std::byte{factors.skyColor});
    bytes.resize(bytes.size() + 3);
    values["light_factors"] = std::move(bytes);
  }
  return values;
}

}  // namespace qv::host
