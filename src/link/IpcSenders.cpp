#include <array>
#include <cstring>
#include <utility>

#include "core/Log.h"
#include "link/CommandDecoder.h"
#include "link/HostMessages.h"
#include "link/IpcInterfaceApp.h"
#include "link/MessageRecords.h"
#include "link/Records.h"

namespace qv {

namespace {

// What is asked of the system for the properties that the viewer sends itself.
constexpr std::size_t kAskedForBrightness = 20;
constexpr std::size_t kAskedForGamma = 16;
constexpr std::size_t kAskedForLightFactors = 32;
constexpr std::size_t kAskedForBackground = 20;
constexpr std::size_t kAskedForEyeHeight = 16;

template <typename T>
platform::SharedMemory MakeProperty(const char* name, const T& value, std::size_t asked) {
  return MakePropertyRecord(name, std::as_bytes(std::span(&value, 1)), asked);
}

void LogBadReply(const std::string& what) {
  Log(LogLevel::kWarning, "Link: the host's answer for " + what + " does not fit");
}

template <typename T>
std::optional<T> Checked(const char* what, const platform::SharedMemory& reply,
                         std::optional<T> (*parse)(std::span<const std::byte>)) {
  std::optional<T> parsed;
  if (reply) parsed = parse(reply.bytes());
  if (!parsed) LogBadReply(what);
  return parsed;
}

}  // namespace

void IpcInterfaceApp::PostRecord(std::uint32_t number, platform::SharedMemory record) {
  if (!port_) return;
  if (!record) {
    Log(LogLevel::kError, "Link: no memory for message " + std::to_string(number));
    return;
  }
  port_->Post(number, std::move(record));
}

platform::SharedMemory IpcInterfaceApp::Request(std::uint32_t number,
                                                platform::SharedMemory record) {
  return port_ ? port_->Send(number, std::move(record)).record : platform::SharedMemory();
}

void IpcInterfaceApp::RequestResend() {
  decoder_->ForgetMesh();
  if (port_) port_->Post(WM_HOST_RESEND_SCENE);
}

void IpcInterfaceApp::TellClosed() {
  if (port_) port_->Post(WM_HOST_VIEWER_CLOSED);
}

void IpcInterfaceApp::SendCamera(const Vec3& eye, const Vec3& direction, const Vec3& up,
                                 float fieldOfView) {
  PostRecord(WM_HOST_CAMERA_CHANGED, MakeCameraRecord(eye, direction, up, fieldOfView));
}

void IpcInterfaceApp::SendDateTime(int year, int month, int day, int hour, int minute, int second) {
  PostRecord(WM_HOST_DATE_TIME_CHANGED, MakeDateRecord(year, month, day, hour, minute, second));
}

void IpcInterfaceApp::SetProperty(const std::string& name, std::span<const std::byte> value) {
  const std::size_t asked = sizeof(wire::PropertyRecord) + value.size();
  PostRecord(WM_HOST_SET_PROPERTY, MakePropertyRecord(name, value, asked));
}

void IpcInterfaceApp::SetBrightness(float brightness, float contrast) {
  const std::array<float, 2> value{brightness, contrast};
  PostRecord(WM_HOST_SET_PROPERTY, MakeProperty("brightness2", value, kAskedForBrightness));
}

void IpcInterfaceApp::SetGamma(float value) {
  PostRecord(WM_HOST_SET_PROPERTY, MakeProperty("gamma", value, kAskedForGamma));
}

void IpcInterfaceApp::SetLightFactors(const LightFactors& factors) {
  wire::LightFactorsValue value{};
  value.sun = factors.sun;
  value.ambient = factors.ambient;
  value.point = factors.point;
  value.lem = factors.lem;
  value.useSkyColorForAmbient = factors.useSkyColorForAmbient ? 1 : 0;
  PostRecord(WM_HOST_SET_PROPERTY, MakeProperty("light_factors", value, kAskedForLightFactors));
}

void IpcInterfaceApp::SetBackground(std::int32_t backgroundType, std::int32_t cubeMapIndex) {
  const std::array<std::int32_t, 2> value{backgroundType, cubeMapIndex};
  PostRecord(WM_HOST_SET_PROPERTY, MakeProperty("background", value, kAskedForBackground));
}

void IpcInterfaceApp::SetEyeHeight(float value) {
  PostRecord(WM_HOST_SET_PROPERTY, MakeProperty("eye_height", value, kAskedForEyeHeight));
}

std::optional<std::vector<std::byte>> IpcInterfaceApp::GetProperty(const std::string& name) {
  platform::SharedMemory request = MakePropertyRequest(name);
  if (!request) return std::nullopt;
  const platform::SharedMemory reply = Request(WM_HOST_GET_PROPERTY, std::move(request));
  if (!reply) return std::nullopt;
  auto value = ParsePropertyReply(name, reply.bytes());
  if (!value) LogBadReply("the property \"" + name + "\"");
  return value;
}

std::optional<RenderCamera> IpcInterfaceApp::GetCamera() {
  return Checked("the camera", Request(WM_HOST_GET_CAMERA), ParseCameraReply);
}

std::optional<LocationAndTime> IpcInterfaceApp::GetLocation() {
  return Checked("the location", Request(WM_HOST_GET_LOCATION), ParseLocationReply);
}

std::vector<HostPage> IpcInterfaceApp::GetPages() {
  return Checked("the pages", Request(WM_HOST_GET_PAGES), ParsePagesReply)
      .value_or(std::vector<HostPage>());
}

}  // namespace qv
