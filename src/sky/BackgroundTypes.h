#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>

namespace qv::sky {

// The key of the one type that shows a cube map; all others are kinds of weather.
constexpr std::int32_t kTextureBackground = 8;
// The weather of models that name none, and the one that a change from a cube map begins with.
constexpr std::int32_t kDefaultBackground = 2;
constexpr std::int32_t kFirstWeather = 1;

struct BackgroundType {
  float a = 0, b = 0, c = 0;  // kept with the type, read by nothing yet
  float hazeDepth = 0;
  std::wstring label;
};

// By key.
using BackgroundTypes = std::map<std::int32_t, BackgroundType>;

// Empties `backgroundTypes` and fills in the six that there are. `translate` gives the label to a
// name: "ClearSky", "Fine1", "Fine2", "Cloudy1", "Cloudy2" or "Texture".
void FillBackgroundTypes(BackgroundTypes& backgroundTypes,
                         const std::function<std::wstring(const char* name)>& translate);

// The key of a type by its name in the list above; nothing but those gives -1.
std::int32_t BackgroundTypeNamed(const std::string& name);

}  // namespace qv::sky
