#pragma once

#include <atomic>
#include <initializer_list>
#include <memory>
#include <mutex>

#include "host/link/CommandChannel.h"
#include "host/link/HostLink.h"
#include "host/link/MessageServer.h"
#include "platform/ChildProcess.h"

namespace qv::host {

// The right to the names that carry this process's id.
class NameClaim {
 public:
  NameClaim();
  ~NameClaim();
  NameClaim(const NameClaim&) = delete;
  NameClaim& operator=(const NameClaim&) = delete;

  explicit operator bool() const { return granted_; }

 private:
  bool granted_;
};

class HostLinkImpl final : public HostLink {
 public:
  explicit HostLinkImpl(const Options& options);
  ~HostLinkImpl() override;

  bool Open(HostSide& side);

  bool StartViewer(const std::string& path, const std::vector<std::string>& more) override;
  bool ViewerRunning() override;
  std::uint32_t ViewerProcessId() const override;
  std::optional<int> WaitForViewer(std::optional<std::chrono::milliseconds> timeout) override;
  void KillViewer() override;
  void Interrupt() override { interrupted_ = true; }
  std::uint32_t window() const override;
  std::uint32_t processId() const override { return processId_; }

  bool SceneComplete() override;
  bool SetCamera(const RenderCamera& camera, bool showProgress) override;
  std::optional<std::int32_t> AddMaterial(const MaterialParameters& material) override;
  bool AddPointLight(const Vec3& color, const Vec3& position) override;
  bool AddSpotLight(const Vec3& color, const Vec3& position, const Vec3& direction,
                    float innerAngle, float outerAngle) override;
  bool AddDirectionalLight(const Vec3& color, const Vec3& direction) override;
  bool AddLEMLight(const Vec3& emission, std::span<const float> vertices) override;
  bool BeginStaticMesh() override;
  bool BeginBillboard() override;
  bool AddMeshData(std::span<const MeshVertex> vertices,
                   std::span<const MeshTriangle> triangles) override;
  bool EndBillboard(const Vec3& position, const Vec2& direction) override;
  bool EndMesh() override;
  bool SetModelDirectory(const std::string& text) override;
  bool SetLocationAndTime(const LocationAndTime& when) override;
  bool SetStatusMessage(const std::string& text) override;
  bool SetProgress(float value) override;
  std::optional<bool> IsCameraLinked() override;

  std::optional<std::vector<std::byte>> SendRecord(
      std::span<const std::byte> record, std::size_t resultBytes,
      std::optional<std::chrono::milliseconds> timeout) override;
  bool ResizeArea(std::size_t size) override;

 private:
  using Bytes = std::span<const std::byte>;
  using Timeout = std::optional<std::chrono::milliseconds>;

  // One command: its parts go to the start of the area, back to back. With the command's lock held.
  bool CarryOut(std::initializer_list<Bytes> parts, std::size_t resultBytes = 0,
                Timeout timeout = std::nullopt);
  template <typename T>
  bool CarryOutRecord(const T& record);
  bool CarryOutCode(std::int32_t code);
  bool CarryOutText(std::int32_t code, const std::string& text);
  bool CarryOutMesh(std::span<const MeshVertex> vertices, std::span<const MeshTriangle> triangles);

  bool AwaitOldViewersEnd();
  bool Settle(Timeout timeout);
  bool Grow(std::size_t size);
  bool Resize(std::size_t size);
  bool ExchangeArea(std::size_t size);
  bool ViewerFollows();
  bool AwaitFrame();
  bool Gone();

  const NameClaim claim_;  // given back last
  const Options options_;
  const std::uint32_t processId_;
  std::atomic<bool> interrupted_{false};
  CommandChannel channel_;
  std::unique_ptr<MessageServer> server_;

  std::mutex commandMutex_;
  std::atomic<bool> everConnected_{false};

  mutable std::mutex viewerMutex_;
  platform::ChildProcess viewer_;
};

}  // namespace qv::host
