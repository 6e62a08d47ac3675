#include "render/RaytraceImpl.h"

#include <embree3/rtcore.h>
#include <omp.h>

#include <algorithm>
#include <atomic>
#include <cstring>
#include <mutex>
#include <shared_mutex>

#include "core/Log.h"
#include "platform/Clock.h"
#include "render/frame/FrameEngine.h"
#include "render/geometry/RenderScene.h"
#include "render/trace/FloatingPointMode.h"
#include "render/trace/TraceKernels.h"
#include "sky/Background.h"

namespace qv {
namespace {

constexpr int kMostThreads = 32;

int ThreadCountOf(const RaytraceImpl::Options& options) {
  const int wanted = options.threadCount > 0 ? options.threadCount : omp_get_num_procs();
  return std::clamp(wanted, 1, kMostThreads);
}

// The ray library's device, released last.
class Device {
 public:
  explicit Device(const RaytraceImpl::Options& options)
      : device_(rtcNewDevice(Configuration(options).c_str())) {
    if (device_ == nullptr) Log(LogLevel::kError, "the ray library gives no device");
  }
  ~Device() {
    if (device_ != nullptr) rtcReleaseDevice(device_);
  }
  Device(const Device&) = delete;
  Device& operator=(const Device&) = delete;

  RTCDevice get() const { return device_; }

  // It has kernels for eight rays where the processor offers AVX with all that came before, and the
  // system keeps its registers.
  int PacketWidth() const {
    const bool eight =
        device_ != nullptr &&
        rtcGetDeviceProperty(device_, RTC_DEVICE_PROPERTY_NATIVE_RAY8_SUPPORTED) != 0;
    return eight ? 8 : 1;
  }

 private:
  static std::string Configuration(const RaytraceImpl::Options& options) {
    return options.rayInstructions.empty() ? std::string() : "isa=" + options.rayInstructions;
  }

  RTCDevice device_;
};

// One ray as the only active lane of a packet.
std::optional<RayHit> CastInto(const TraceTarget& target, const Vec3& origin,
                               const Vec3& direction) {
  const FloatingPointMode mode;
  RayPacket packet;
  std::fill_n(packet.geometry, kLanes, -1);
  packet.geometry[0] = 0;
  for (int axis = 0; axis < 3; ++axis) {
    packet.position[axis][0] = origin[axis];
    packet.direction[axis][0] = direction[axis];
  }
  TraceClosest(target, packet);
  if (packet.geometry[0] < 0) return std::nullopt;
  return RayHit{origin + packet.t[0] * direction,
                packet.t[0],
                static_cast<std::uint32_t>(packet.geometry[0]),
                static_cast<std::uint32_t>(packet.primitive[0]),
                packet.hitU[0],
                packet.hitV[0],
                direction};
}

}  // namespace

struct RaytraceImpl::Parts {
  explicit Parts(const Options& options)
      : device(options),
        packetWidth(options.packetWidth > 0 ? options.packetWidth : device.PacketWidth()),
        scene(device.get()),
        background(options.cubeMapFolder),
        engine(device.get(), scene, background, ThreadCountOf(options), packetWidth) {}

  TraceTarget Target() const { return {device.get(), &scene, packetWidth, 0, nullptr}; }

  void Switch(bool ShadeSwitches::*which, bool on) {
    const std::lock_guard lock(settingsMutex);
    switches.*which = on;
    engine.SetSwitches(switches);
  }
  bool IsOn(bool ShadeSwitches::*which) const {
    const std::lock_guard lock(settingsMutex);
    return switches.*which;
  }

  Device device;
  const int packetWidth;
  RenderScene scene;
  sky::Background background;
  FrameEngine engine;

  std::function<void(const std::wstring&)> statusText;

  mutable std::mutex settingsMutex;
  ImageSettings image;
  LightFactors factors;
  ShadeSwitches switches;
};

RaytraceImpl::RaytraceImpl() : RaytraceImpl(Options()) {}

RaytraceImpl::RaytraceImpl(const Options& options) : parts_(std::make_unique<Parts>(options)) {}

RaytraceImpl::~RaytraceImpl() {
  Shutdown();
}

void RaytraceImpl::SetCallbacks(Callbacks callbacks) {
  parts_->statusText = std::move(callbacks.statusText);
  parts_->engine.SetCallbacks({std::move(callbacks.passDone), std::move(callbacks.progress)});
}

void RaytraceImpl::SetYield(std::function<void()> yield) {
  parts_->engine.SetYield(std::move(yield));
}

std::int32_t RaytraceImpl::AddMaterial(const MaterialParameters& parameters) {
  return parts_->scene.AddMaterial(parameters);
}

void RaytraceImpl::AddPointLight(const Vec3& color, const Vec3& position) {
  parts_->scene.AddLight(RenderLight::Point(color, position));
}

void RaytraceImpl::AddSpotLight(const Vec3& color, const Vec3& position, const Vec3& direction,
                                float innerAngle, float outerAngle) {
  parts_->scene.AddLight(RenderLight::Spot(color, position, direction, innerAngle, outerAngle));
}

void RaytraceImpl::AddDirectionalLight(const Vec3& color, const Vec3& direction) {
  parts_->scene.AddLight(RenderLight::Directional(color, direction));
}

void RaytraceImpl::AddLEMLight(const Vec3& emission, std::span<const float> vertices) {
  parts_->scene.AddLEMLight(emission, vertices);
}

void RaytraceImpl::BeginStaticMesh() {
  parts_->scene.BeginStaticMesh();
}

void RaytraceImpl::BeginBillboard() {
  parts_->scene.BeginBillboard();
}

void RaytraceImpl::AddMeshData(std::span<const MeshVertex> vertices,
                               std::span<const MeshTriangle> triangles) {
  parts_->scene.AddMeshData(vertices, triangles);
}

void RaytraceImpl::EndBillboard(const Vec3& pivot, const Vec2& frontAxis) {
  parts_->scene.EndBillboard(pivot, frontAxis);
}

void RaytraceImpl::EndMesh() {
  parts_->scene.EndMesh();
}

void RaytraceImpl::BuildScene(void*) {
  parts_->scene.Build(this);
}

void RaytraceImpl::SetLocationAndTime(float sunRotation, float latitude, float longitude,
                                      double julianDate, float timeZone) {
  parts_->background.SetMoment({sunRotation, latitude, longitude, julianDate, timeZone});
}

void RaytraceImpl::SetJulianDate(double julianDate) {
  parts_->background.SetJulianDate(julianDate);
}

double RaytraceImpl::JulianDate() const {
  return parts_->background.Moment().julianDate;
}

float RaytraceImpl::Latitude() const {
  return parts_->background.Moment().latitude;
}

float RaytraceImpl::Longitude() const {
  return parts_->background.Moment().longitude;
}

void RaytraceImpl::SetBackground(std::int32_t backgroundType, std::int32_t cubeMapIndex) {
  parts_->background.SetType(backgroundType, cubeMapIndex);
}

std::int32_t RaytraceImpl::BackgroundType() const {
  return parts_->background.Type();
}

std::int32_t RaytraceImpl::CubeMapIndex() const {
  return parts_->background.CubeMapIndex();
}

const std::vector<std::wstring>& RaytraceImpl::CubeMapNames() const {
  return parts_->background.CubeMapNames();
}

bool RaytraceImpl::ResizeTargets(int width, int height, int antialiasIndex) {
  int factor = 2;
  if (antialiasIndex == -1) factor = parts_->engine.AntialiasFactor();
  if (antialiasIndex == 1) factor = 4;
  if (antialiasIndex == 2) factor = 8;
  if (parts_->engine.ResizeTargets(width, height, factor)) return true;
  Log(LogLevel::kError, "no memory for a picture of " + std::to_string(width) + " by " +
                            std::to_string(height) + " pixels");
  return false;
}

void RaytraceImpl::StartRender(const Vec3& position, const Vec3& forward, const Vec3& up,
                               float fieldOfView, const Vec3& target, RenderMode mode,
                               bool showProgress) {
  parts_->engine.StartRender({position, forward, up, fieldOfView, target}, mode, showProgress);
}

void RaytraceImpl::StartRenderSameCamera(RenderMode mode) {
  parts_->engine.StartRenderSameCamera(mode);
}

void RaytraceImpl::StopRender() {
  parts_->engine.StopRender();
}

void RaytraceImpl::AbandonRender() {
  parts_->engine.AbandonRender();
}

float RaytraceImpl::JobProgress() const {
  return parts_->engine.JobProgress();
}

bool RaytraceImpl::WaitUntilDone(std::optional<double> seconds) {
  return parts_->engine.WaitUntilDone(seconds);
}

RenderState RaytraceImpl::State() const {
  return parts_->engine.State();
}

RenderCamera RaytraceImpl::PendingCamera() const {
  return parts_->engine.PendingCamera();
}

RenderCamera RaytraceImpl::ActiveCamera() const {
  return parts_->engine.ActiveCamera();
}

void RaytraceImpl::SetOffline(bool offline) {
  parts_->engine.offline = offline;
}

bool RaytraceImpl::Offline() const {
  return parts_->engine.offline;
}

void RaytraceImpl::ComposeImage(bool useAntialiasData) {
  parts_->engine.ComposeImage(useAntialiasData);
}

void RaytraceImpl::SetImageSettings(const ImageSettings& settings) {
  const std::lock_guard lock(parts_->settingsMutex);
  parts_->image = settings;
  parts_->engine.SetAdjustment({settings.brightness, settings.contrast, settings.gamma});
}

ImageSettings RaytraceImpl::GetImageSettings() const {
  const std::lock_guard lock(parts_->settingsMutex);
  return parts_->image;
}

void RaytraceImpl::SetLightSettings(const LightFactors& factors) {
  const std::lock_guard lock(parts_->settingsMutex);
  parts_->factors = factors;
  parts_->engine.SetLightFactors(factors);
}

LightFactors RaytraceImpl::GetLightSettings() const {
  const std::lock_guard lock(parts_->settingsMutex);
  return parts_->factors;
}

void RaytraceImpl::SetUseAmbientOcclusion(bool use) {
  parts_->Switch(&ShadeSwitches::useAmbientOcclusion, use);
}

bool RaytraceImpl::UseAmbientOcclusion() const {
  return parts_->IsOn(&ShadeSwitches::useAmbientOcclusion);
}

void RaytraceImpl::SetUseLEM(bool use) {
  parts_->Switch(&ShadeSwitches::useLEM, use);
}

bool RaytraceImpl::UseLEM() const {
  return parts_->IsOn(&ShadeSwitches::useLEM);
}

void RaytraceImpl::SetUseLightmap(bool use) {
  parts_->Switch(&ShadeSwitches::useLightmap, use);
}

bool RaytraceImpl::UseLightmap() const {
  return parts_->IsOn(&ShadeSwitches::useLightmap);
}

void RaytraceImpl::SetLightmapHasLEM(bool has) {
  parts_->Switch(&ShadeSwitches::lightmapHasLEM, has);
}

bool RaytraceImpl::LightmapHasLEM() const {
  return parts_->IsOn(&ShadeSwitches::lightmapHasLEM);
}

void RaytraceImpl::SetLightmapPages(std::vector<LightmapPage> pages) {
  parts_->scene.SetLightmapPages(std::move(pages));
}

bool RaytraceImpl::HasLightmapPages() const {
  return !parts_->scene.LightmapPages().empty();
}

bool RaytraceImpl::SetMeshLightmap(std::size_t mesh, const MeshLightmap& lightmap) {
  return parts_->scene.SetMeshLightmap(mesh, lightmap);
}

void RaytraceImpl::ClearLightmaps() {
  parts_->scene.ClearLightmaps();
}

void RaytraceImpl::ReadScreen(const std::function<void(const ScreenView&)>& read) const {
  parts_->engine.ReadScreen([&read](const ScreenImage& screen) {
    read({screen.width, screen.height, screen.pitch, screen.pixels.data(), screen.times});
  });
}

RenderStatistics RaytraceImpl::Statistics() const {
  const PassTimes times = parts_->engine.Times();
  return {times.base, times.antialias, parts_->scene.TriangleCount(),
          parts_->scene.MaterialCount()};
}

ViewBounds RaytraceImpl::Bounds() const {
  return parts_->scene.Bounds();
}

std::optional<RayHit> RaytraceImpl::CastRay(const Vec3& origin, const Vec3& direction) const {
  const RenderScene& scene = parts_->scene;
  while (true) {
    {
      const std::shared_lock lock(scene.UpdateMutex());
      if (scene.EmbreeScene() == nullptr) return std::nullopt;
      if (!scene.IsBusy()) return CastInto(parts_->Target(), origin, direction);
    }
    platform::SleepMilliseconds(1);
  }
}

bool RaytraceImpl::PickPixel(int x, int y, RayHit& hit) const {
  const RenderCamera camera = ActiveCamera();
  const PixelRays rays = ComputePixelRays(camera, parts_->engine.Width(), parts_->engine.Height());
  const Vec3 direction = rays.Direction(static_cast<float>(x), static_cast<float>(y)).normalized();
  if (const auto found = CastRay(camera.position, direction)) {
    hit = *found;
    return true;
  }
  hit = {};
  hit.position = camera.position + direction;
  hit.distance = 1;
  hit.direction = direction;
  return false;
}

void RaytraceImpl::PanVectors(float distance, Vec3& right, Vec3& up) const {
  const PixelRays rays =
      ComputePixelRays(ActiveCamera(), parts_->engine.Width(), parts_->engine.Height());
  right = Eigen::Map<const Vec3>(rays.columnStep) * distance;
  up = Eigen::Map<const Vec3>(rays.rowStep) * distance;
}

void RaytraceImpl::Shutdown() {
  parts_->engine.StopRender();
  parts_->engine.ResizeTargets(0, 0, parts_->engine.AntialiasFactor());
  parts_->scene.Clear();
}

}  // namespace qv
