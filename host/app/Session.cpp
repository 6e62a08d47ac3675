#include "host/app/Session.h"

#include <exception>
#include <filesystem>
#include <utility>

#include "platform/PathText.h"

namespace qv::host {
namespace {

// Text of a model file, which should be UTF-8; characters beyond ASCII become question marks in a
// text that is not.
std::u16string Utf16Of(const std::string& text) {
  try {
    return std::filesystem::path(std::u8string(text.begin(), text.end())).u16string();
  } catch (const std::exception&) {
    std::u16string ascii;
    for (const char c : text) ascii += static_cast<unsigned char>(c) < 0x80 ? c : '?';
    return ascii;
  }
}

}  // namespace

void Session::SetPlaceAndTime(const LocationAndTime& when) {
  const std::lock_guard lock(mutex_);
  when_ = when;
}

void Session::SetDefaults(std::map<std::string, std::vector<std::byte>> defaults) {
  const std::lock_guard lock(mutex_);
  defaults_ = std::move(defaults);
}

void Session::SetPages(std::vector<SceneCamera> cameras) {
  const std::lock_guard lock(mutex_);
  pages_ = std::move(cameras);
}

void Session::SetCamera(const RenderCamera& view) {
  const std::lock_guard lock(mutex_);
  camera_ = view;
}

void Session::SetForSession(const std::string& name, std::vector<std::byte> value) {
  const std::lock_guard lock(mutex_);
  forSession_[name] = std::move(value);
}

// The target moves along, as far ahead as it was.
void Session::CameraChanged(const Vec3& eye, const Vec3& direction, const Vec3& up,
                            float fieldOfView) {
  RenderCamera view;
  {
    const std::lock_guard lock(mutex_);
    const float distance = (camera_.target - camera_.position).norm();
    camera_.position = eye;
    camera_.forward = direction;
    camera_.up = up;
    camera_.fieldOfView = fieldOfView;
    camera_.target = eye + direction * distance;
    view = camera_;
  }
  console_.Tell("camera: " + TextOf(view));
}

void Session::DateTimeChanged(int year, int month, int day, int hour, int minute, int second) {
  std::string text;
  {
    const std::lock_guard lock(mutex_);
    when_.year = year;
    when_.month = month;
    when_.day = day;
    when_.hour = hour;
    when_.minute = minute;
    when_.second = second;
    text = TimeTextOf(when_);
  }
  console_.Tell("date: " + text);
}

RenderCamera Session::Camera() {
  const std::lock_guard lock(mutex_);
  return camera_;
}

LocationAndTime Session::Location() {
  const std::lock_guard lock(mutex_);
  return when_;
}

std::vector<HostPage> Session::Pages() {
  const std::lock_guard lock(mutex_);
  std::vector<HostPage> pages;
  for (const SceneCamera& camera : pages_) {
    HostPage page;
    page.name = Utf16Of(camera.name);
    page.eye = camera.view.position;
    page.direction = camera.view.forward;
    page.fieldOfView = camera.view.fieldOfView;
    page.year = when_.year;
    page.month = when_.month;
    page.day = when_.day;
    page.hour = when_.hour;
    page.minute = when_.minute;
    page.second = when_.second;
    page.latitude = when_.latitude;
    page.longitude = when_.longitude;
    pages.push_back(std::move(page));
  }
  return pages;
}

void Session::SetProperty(const std::string& name, std::vector<std::byte> value) {
  {
    const std::lock_guard lock(mutex_);
    forSession_.erase(name);
  }
  const std::size_t size = value.size();
  if (properties_.Set(name, std::move(value))) {
    console_.Tell("property: " + name + ", " + std::to_string(size) + " bytes");
  } else {
    console_.Complain("the property " + name + " can't be written to " +
                      platform::Utf8FromPath(properties_.file()) +
                      " and is kept until the end only");
  }
}

std::optional<std::vector<std::byte>> Session::Property(const std::string& name) {
  {
    const std::lock_guard lock(mutex_);
    const auto value = forSession_.find(name);
    if (value != forSession_.end()) return value->second;
  }
  if (auto value = properties_.Get(name)) return value;
  const std::lock_guard lock(mutex_);
  const auto value = defaults_.find(name);
  if (value == defaults_.end()) return std::nullopt;
  return value->second;
}

}  // namespace qv::host
