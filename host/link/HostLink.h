#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "core/RenderCamera.h"
#include "core/SceneRecords.h"
#include "link/IQuorvane.h"
#include "link/IpcInterfaceApp.h"

namespace qv::host {

// What a host does when the viewer speaks. Every call comes on the link's message thread.
class HostSide {
 public:
  virtual ~HostSide() = default;
  virtual void ResendScene() = 0;
  virtual void ViewerClosed() = 0;
  virtual void CameraChanged(const Vec3& eye, const Vec3& direction, const Vec3& up,
                             float fieldOfView) = 0;
  virtual void DateTimeChanged(int year, int month, int day, int hour, int minute, int second) = 0;
  virtual RenderCamera Camera() = 0;
  virtual LocationAndTime Location() = 0;
  virtual std::vector<HostPage> Pages() = 0;
  virtual void SetProperty(const std::string& name, std::vector<std::byte> value) = 0;
  virtual std::optional<std::vector<std::byte>> Property(const std::string& name) = 0;
};

// The host's end of the link: the two events, the command area, the window that receives, and the
// viewer's process.
//
// Commands are synchronous and for one thread at a time; each returns false (or nothing) if the
// viewer has gone. Messages of the viewer are answered meanwhile on a thread of the link's own. The
// command area grows when a record needs more room; mesh data that would need more than
// `maximumArea` goes in several commands, split between triangles. After each change of the area
// the viewer is asked for IsCameraLinked, which shows whether it follows. All named objects are
// gone when the HostLink is destroyed; the viewer is not ended by that. There is one HostLink in a
// process at a time, since the names carry its process id.
class HostLink {
 public:
  struct Options {
    std::size_t initialArea = std::size_t{1} << 20;
    std::size_t maximumArea = std::size_t{16} << 20;
  };

  // Null if the objects cannot be made (with a line in the log).
  static std::unique_ptr<HostLink> Create(HostSide& side, const Options& options);
  static std::unique_ptr<HostLink> Create(HostSide& side) { return Create(side, Options()); }
  virtual ~HostLink() = default;

  // Starts the viewer with this link's numbers on its command line, and what else is given after
  // them. Another one may be started once the first has ended.
  virtual bool StartViewer(const std::string& path, const std::vector<std::string>& more = {}) = 0;
  virtual bool ViewerRunning() = 0;
  virtual std::uint32_t ViewerProcessId() const = 0;
  // The viewer's exit code once it has ended.
  virtual std::optional<int> WaitForViewer(std::optional<std::chrono::milliseconds> timeout) = 0;
  virtual void KillViewer() = 0;
  // Ends every wait within a tenth of a second: from then on commands fail and no message is
  // answered. Any thread; may be called by a signal handler.
  virtual void Interrupt() = 0;
  // The two numbers of the command line.
  virtual std::uint32_t window() const = 0;
  virtual std::uint32_t processId() const = 0;

  virtual bool SceneComplete() = 0;
  virtual bool SetCamera(const RenderCamera& camera, bool showProgress) = 0;
  // The index of the material; -1 if the viewer refused it. A texture's path that is too long for
  // the link is left out, with a line in the log.
  virtual std::optional<std::int32_t> AddMaterial(const MaterialParameters& material) = 0;
  virtual bool AddPointLight(const Vec3& color, const Vec3& position) = 0;
  virtual bool AddSpotLight(const Vec3& color, const Vec3& position, const Vec3& direction,
                            float innerAngle, float outerAngle) = 0;
  virtual bool AddDirectionalLight(const Vec3& color, const Vec3& direction) = 0;
  virtual bool AddLEMLight(const Vec3& emission, std::span<const float> vertices) = 0;
  virtual bool BeginStaticMesh() = 0;
  virtual bool BeginBillboard() = 0;
  virtual bool AddMeshData(std::span<const MeshVertex> vertices,
                           std::span<const MeshTriangle> triangles) = 0;
  virtual bool EndBillboard(const Vec3& position, const Vec2& direction) = 0;
  virtual bool EndMesh() = 0;
  virtual bool SetModelDirectory(const std::string& text) = 0;
  virtual bool SetLocationAndTime(const LocationAndTime& when) = 0;
  virtual bool SetStatusMessage(const std::string& text) = 0;
  virtual bool SetProgress(float value) = 0;
  virtual std::optional<bool> IsCameraLinked() = 0;

  // One record as it is, for tests: copied to the start of the command area (grown if needed), the
  // bell rung, the answer awaited. Gives the first `resultBytes` of the area afterwards, or nothing
  // if the viewer has gone or `timeout` is over.
  virtual std::optional<std::vector<std::byte>> SendRecord(
      std::span<const std::byte> record, std::size_t resultBytes,
      std::optional<std::chrono::milliseconds> timeout = std::nullopt) = 0;
  // Releases the command area in the viewer, makes it anew with that size, and has the viewer open
  // it again.
  virtual bool ResizeArea(std::size_t size) = 0;
};

}  // namespace qv::host
