#pragma once

#include <atomic>
#include <cstdint>
#include <filesystem>
#include <mutex>
#include <string>
#include <vector>

#include "core/Vec.h"
#include "sky/BackgroundTypes.h"
#include "sky/CubeFaces.h"

namespace qv::sky {

// The directional light that the sky gives the shading: the way in which the light travels (model
// axes, unit length) and its colour, each channel 0 to 1.
struct SunRecord {
  Vec3 direction{0, 0, -1};
  Vec3 color{0, 0, 0};
};

// Place and moment of the sky.
struct SkyMoment {
  float sunRotation = 0;  // radians between model north (+y) and the sky's north
  float latitude = 0;     // degrees
  float longitude = 0;    // degrees
  // Made from the user's clock with the zone that the longitude lies in (core/Calendar.h).
  double julianDate = 2453980.0;
  float timeZone = 0;  // of the user's clock, hours east of Greenwich
};

// What the model sees around itself: the cube of six faces and the sun. Setters and getters from
// any thread; Update, faces and sun belong to the render thread.
class Background {
 public:
  // `cubeMapFolder` has a folder for each cube map. Without any a plain gradient is shown.
  explicit Background(std::filesystem::path cubeMapFolder = {});

  void SetMoment(const SkyMoment& moment);  // marks the sky as dirty
  void SetJulianDate(double julianDate);    // marks the sky as dirty
  SkyMoment Moment() const;
  // Marks sky and clouds as dirty. An index outside of the list stands for the cube map that is
  // shown where none was chosen.
  void SetType(std::int32_t backgroundType, std::int32_t cubeMapIndex);
  std::int32_t Type() const;
  std::int32_t CubeMapIndex() const;
  const std::vector<std::wstring>& CubeMapNames() const { return cubeMapNames_; }

  // Makes faces and sun anew if something was marked; true if it did.
  bool Update();

  const CubeFaces& faces() const { return faces_; }
  const SunRecord& sun() const { return sun_; }

 private:
  void ScanCubeMaps();
  std::int32_t SettledIndex(std::int32_t cubeMapIndex) const;
  void UpdateFaces(std::int32_t cubeMapIndex);

  const std::filesystem::path cubeMapFolder_;
  std::vector<std::wstring> cubeMapNames_;  // not changed after construction
  mutable std::mutex mutex_;
  SkyMoment moment_;
  std::int32_t type_ = kDefaultBackground;
  std::int32_t cubeMapIndex_ = -1;
  std::atomic<bool> skyDirty_{false};
  std::atomic<bool> cloudsDirty_{true};
  CubeFaces faces_;
  SunRecord sun_;
};

}  // namespace qv::sky
