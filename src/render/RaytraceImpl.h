#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "core/LightFactors.h"
#include "core/RenderCamera.h"
#include "core/SceneRecords.h"
#include "render/RenderModes.h"
#include "render/geometry/MeshLightmap.h"
#include "render/geometry/ViewBounds.h"
#include "render/image/PassTimes.h"
#include "render/material/LightmapPage.h"

namespace qv {

// Where a single ray met the model.
struct RayHit {
  Vec3 position{0, 0, 0};
  float distance = 0;
  std::uint32_t geometry = 0;   // the position of the mesh in the scene's list
  std::uint32_t primitive = 0;  // the triangle of that mesh
  // Barycentric coordinates: 1 - u - v, u and v weigh the triangle's three corners.
  float u = 0;
  float v = 0;
  Vec3 direction{0, 0, 0};  // of the ray, as it was given
};

// The picture as shown: blue, green, red bytes, bottom row first, rows `pitch` bytes apart.
struct ScreenView {
  int width = 0;
  int height = 0;
  std::size_t pitch = 0;
  const std::uint8_t* pixels = nullptr;
  PassTimes times;  // of just this picture
};

// Where the current job stands; the times of the picture that is shown come with it.
struct RenderStatistics {
  double basePassSeconds = 0;       // last pass over the base picture
  double antialiasPassSeconds = 0;  // last antialiasing pass; 0 while there is none for the job
  std::int32_t triangleCount = 0;
  std::int32_t materialCount = 0;
};

// Brightness, contrast and gamma act on the finished picture without new rays.
struct ImageSettings {
  float brightness = 0;
  float contrast = 0;
  float gamma = 1;
};

// The renderer: the scene, the picture, and the engine that traces jobs on threads of its own.
//
// A caller that wants anything seen calls StartRender, which stores the camera and returns; the
// newest camera wins. Finished pictures are reported by passDone on the render thread. Unless a
// call says otherwise it belongs to the thread that made the object (in the viewer the GUI thread).
// Scene operations are for the link's listener thread, while no job runs.
class RaytraceImpl {
 public:
  // All called from the engine's threads, never while `offline` is set. May be called from several
  // threads at once.
  struct Callbacks {
    std::function<void()> passDone;
    std::function<void(float)> progress;  // 0 to 1
    std::function<void(const std::wstring&)> statusText;
  };

  struct Options {
    int threadCount = 0;  // 0: the number of processors, at most 32
    int packetWidth = 0;  // 0: 8 where the ray library has kernels for it (AVX), else 1
    std::filesystem::path cubeMapFolder = {};  // empty: a plain sky instead of cube maps
    // The ray library's name of the best instructions that it may use, such as "avx2"; empty: any.
    // Others find hits that lie closer together than their rounding in another order.
    std::string rayInstructions = {};
  };

  RaytraceImpl();
  explicit RaytraceImpl(const Options& options);
  ~RaytraceImpl();  // as Shutdown
  RaytraceImpl(const RaytraceImpl&) = delete;
  RaytraceImpl& operator=(const RaytraceImpl&) = delete;

  // Called once, before the first job.
  void SetCallbacks(Callbacks callbacks);
  // What StopRender calls again and again while it waits on the GUI thread, to keep the windows
  // alive.
  void SetYield(std::function<void()> yield);

  // Scene reception: the operations of the host's link.
  std::int32_t AddMaterial(const MaterialParameters& parameters);
  void AddPointLight(const Vec3& color, const Vec3& position);
  void AddSpotLight(const Vec3& color, const Vec3& position, const Vec3& direction,
                    float innerAngle, float outerAngle);
  void AddDirectionalLight(const Vec3& color, const Vec3& direction);
  void AddLEMLight(const Vec3& emission, std::span<const float> vertices);
  void BeginStaticMesh();
  void BeginBillboard();
  void AddMeshData(std::span<const MeshVertex> vertices, std::span<const MeshTriangle> triangles);
  void EndBillboard(const Vec3& pivot, const Vec2& frontAxis);
  void EndMesh();
  // Makes the Embree scene of what has arrived. `windowHandle` is for the sky's device.
  void BuildScene(void* windowHandle);

  // Place and moment of the sky; the Julian date is that of the user's clock, as core/Calendar.h
  // makes it with the zone of the longitude, `sunRotation` in radians, the rest in degrees and
  // hours. Any thread.
  void SetLocationAndTime(float sunRotation, float latitude, float longitude, double julianDate,
                          float timeZone);
  void SetJulianDate(double julianDate);
  double JulianDate() const;
  float Latitude() const;
  float Longitude() const;
  void SetBackground(std::int32_t backgroundType, std::int32_t cubeMapIndex);
  std::int32_t BackgroundType() const;
  std::int32_t CubeMapIndex() const;
  const std::vector<std::wstring>& CubeMapNames() const;  // does not change

  static constexpr int kKeepAntialias = -1;
  // Reallocates the pictures; the job must have been stopped. `antialiasIndex` 0, 1, 2 gives 2, 4,
  // 8 samples on each axis, kKeepAntialias keeps the factor, which is 2 at first, anything else
  // gives 2. False if the memory is refused; nothing is rendered then.
  bool ResizeTargets(int width, int height, int antialiasIndex);

  // Queues a job; never waits for rendering, but may wait for a running scene commit or sky update.
  // While a StopRender waits no job is queued: what is given here is kept for the next. Any thread.
  void StartRender(const Vec3& position, const Vec3& forward, const Vec3& up, float fieldOfView,
                   const Vec3& target, RenderMode mode, bool showProgress);
  void StartRenderSameCamera(RenderMode mode);
  // Ends the job and waits until its thread has ended, calling the yield function meanwhile. A
  // second call inside that wait returns at once, and a StartRender only stores what it is given.
  void StopRender();
  // Has the queued or running job left at the next tile, also one whose passes are otherwise
  // finished; nothing more of it is shown. Does not wait. Any thread.
  void AbandonRender();
  // How far the running or last job is, 0 to 1, also while offline. Any thread.
  float JobProgress() const;
  // Waits until no job runs, or the time is over; true if none runs. Any thread but the engine's.
  bool WaitUntilDone(std::optional<double> seconds);

  RenderState State() const;           // any thread
  RenderCamera PendingCamera() const;  // the newest camera given; any thread
  RenderCamera ActiveCamera() const;   // the camera of the running or last job; any thread

  // No callbacks are called and window sizes are not followed while set. Any thread.
  void SetOffline(bool offline);
  bool Offline() const;

  // Writes the picture anew from the traced colours, while idle; `useAntialiasData` takes the
  // supersampled ones where they are valid.
  void ComposeImage(bool useAntialiasData);
  void SetImageSettings(const ImageSettings& settings);
  ImageSettings GetImageSettings() const;
  // Light factors and switches act in shading: taken over by the next StartRender.
  void SetLightSettings(const LightFactors& factors);
  LightFactors GetLightSettings() const;
  void SetUseAmbientOcclusion(bool use);
  bool UseAmbientOcclusion() const;
  void SetUseLEM(bool use);
  bool UseLEM() const;
  // Shows baked light in place of the ambient light; with `LightmapHasLEM` that of the LEM lights
  // is part of it and is not computed.
  void SetUseLightmap(bool use);
  bool UseLightmap() const;
  void SetLightmapHasLEM(bool has);
  bool LightmapHasLEM() const;

  // The baked light itself. While no job runs; it goes with the scene.
  void SetLightmapPages(std::vector<LightmapPage> pages);
  bool HasLightmapPages() const;
  // `mesh` counts the meshes as they came, as RayHit does. False if there is no such mesh in the
  // built scene, or the lightmap has not as many triangles.
  bool SetMeshLightmap(std::size_t mesh, const MeshLightmap& lightmap);
  // Takes away the pages and the lightmaps of all meshes.
  void ClearLightmaps();

  // Calls `read` with the picture while no pass replaces it. Any thread.
  void ReadScreen(const std::function<void(const ScreenView&)>& read) const;
  RenderStatistics Statistics() const;  // any thread
  ViewBounds Bounds() const;

  // The primary ray through pixel (x, y) of the base picture, row 0 at the bottom. On a hit gives
  // it, with the direction of the ray in unit length; on a miss gives the point one unit along the
  // ray in `position` and false. Waits while the scene is being committed.
  bool PickPixel(int x, int y, RayHit& hit) const;
  // The nearest hit of one ray of unlimited range; `direction` need not be of unit length, and
  // `distance` is in multiples of it. Waits while the scene is being committed.
  std::optional<RayHit> CastRay(const Vec3& origin, const Vec3& direction) const;
  // The step of one column and one row of the base picture at that distance along the view.
  void PanVectors(float distance, Vec3& right, Vec3& up) const;

  // Stops the job and clears the scene and the pictures.
  void Shutdown();

 private:
  struct Parts;
  std::unique_ptr<Parts> parts_;
};

}  // namespace qv
