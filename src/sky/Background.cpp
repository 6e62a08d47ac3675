#include "sky/Background.h"

#include <cmath>
#include <utility>

#include "core/Calendar.h"
#include "core/Log.h"
#include "platform/PathText.h"
#include "sky/CubeMaps.h"
#include "sky/GradientCube.h"
#include "sky/LocalTime.h"
#include "sky/Location.h"
#include "sky/SunColor.h"
#include "sky/SunPosition.h"

namespace qv::sky {
namespace {

Location LocationOf(const SkyMoment& moment) {
  Location location;
  location.SetLatitude(moment.latitude);
  location.SetLongitude(moment.longitude);
  return location;
}

// The Julian date was made with the zone that the longitude lies in, so the same zone gives back
// what the user's clock showed; the user's own time zone then says which moment that was.
LocalTime LocalTimeOf(const SkyMoment& moment) {
  const CalendarDate date = CalendarFromJulianDate(moment.julianDate, moment.longitude);
  const double hour = std::floor(date.hours);
  const double minutes = (date.hours - hour) * 60;
  const double minute = std::floor(minutes);

  LocalTime time;
  time.SetYear(date.year);
  time.SetMonth(date.month);
  time.SetDay(date.day);
  time.SetHour(static_cast<int>(hour));
  time.SetMinute(static_cast<int>(minute));
  time.SetSeconds(std::floor((minutes - minute) * 60));
  time.SetDaylightSaving(false);
  time.SetTimeZone(moment.timeZone);
  return time;
}

SunRecord SunOf(const SkyMoment& moment) {
  const Eigen::Vector3d position = SunPosition(LocalTimeOf(moment), LocationOf(moment));
  const float rotation = std::isfinite(moment.sunRotation) ? moment.sunRotation : 0;
  return {LightDirection(position, rotation), SunColor(position.y())};
}

}  // namespace

Background::Background(std::filesystem::path cubeMapFolder)
    : cubeMapFolder_(std::move(cubeMapFolder)) {
  ScanCubeMaps();
}

void Background::ScanCubeMaps() {
  if (cubeMapFolder_.empty()) return;
  cubeMapNames_ = ListCubeMaps(cubeMapFolder_);
  cubeMapIndex_ = SettledIndex(cubeMapIndex_);
  if (cubeMapNames_.empty()) {
    Log(LogLevel::kWarning, "there are no cube maps in " + platform::Utf8FromPath(cubeMapFolder_));
  }
}

std::int32_t Background::SettledIndex(std::int32_t cubeMapIndex) const {
  const auto count = static_cast<std::int32_t>(cubeMapNames_.size());
  if (cubeMapIndex >= 0 && cubeMapIndex < count) return cubeMapIndex;
  return DefaultCubeMap(cubeMapNames_);
}

void Background::SetMoment(const SkyMoment& moment) {
  {
    const std::lock_guard lock(mutex_);
    moment_ = moment;
  }
  skyDirty_ = true;
}

void Background::SetJulianDate(double julianDate) {
  {
    const std::lock_guard lock(mutex_);
    moment_.julianDate = julianDate;
  }
  skyDirty_ = true;
}

SkyMoment Background::Moment() const {
  const std::lock_guard lock(mutex_);
  return moment_;
}

void Background::SetType(std::int32_t backgroundType, std::int32_t cubeMapIndex) {
  {
    const std::lock_guard lock(mutex_);
    type_ = backgroundType;
    cubeMapIndex_ = SettledIndex(cubeMapIndex);
  }
  skyDirty_ = true;
  cloudsDirty_ = true;
}

std::int32_t Background::Type() const {
  const std::lock_guard lock(mutex_);
  return type_;
}

std::int32_t Background::CubeMapIndex() const {
  const std::lock_guard lock(mutex_);
  return cubeMapIndex_;
}

// Kinds of weather show the chosen cube map too: there is no simulation of them yet.
void Background::UpdateFaces(std::int32_t cubeMapIndex) {
  if (cubeMapNames_.empty()) {
    if (faces_.pixels[0].empty()) FillGradientCube(faces_);
    return;
  }
  faces_ = LoadCubeMap(cubeMapFolder_, cubeMapNames_[static_cast<std::size_t>(cubeMapIndex)]);
}

bool Background::Update() {
  // The flags go down before the values are read: what is set from now on counts for the next
  // update.
  const bool skyDirty = skyDirty_.exchange(false);
  const bool cloudsDirty = cloudsDirty_.exchange(false);
  if (!skyDirty && !cloudsDirty) return false;

  if (cloudsDirty) UpdateFaces(CubeMapIndex());
  sun_ = SunOf(Moment());
  return true;
}

}  // namespace qv::sky
