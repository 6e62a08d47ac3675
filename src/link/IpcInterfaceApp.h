#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <span>
#include <string>
#include <thread>
#include <vector>

#include "core/LightFactors.h"
#include "core/RenderCamera.h"
#include "core/SceneRecords.h"
#include "link/IQuorvane.h"
#include "platform/MessagePort.h"
#include "platform/NamedEvent.h"
#include "platform/SharedMemory.h"

namespace qv {

class CommandDecoder;

// A saved view of the host.
struct HostPage {
  std::u16string name;
  Vec3 eye, direction;
  float fieldOfView = 0;
  bool hasSunTime = false;
  std::int32_t year = 0, month = 0, day = 0, hour = 0, minute = 0, second = 0;
  float latitude = 0, longitude = 0, sunParam = 0;
};

// The viewer's end of the link to the host: a listener thread that carries out one command record
// at a time, and the messages to the host's window.
//
// Senders may be called from any thread. Open, Start, Stop, Dispatch, ReleaseShared and
// ReopenShared belong to the GUI thread. Every record that comes from the host is checked against
// the memory that is there; what does not fit is told in the log.
class IpcInterfaceApp {
 public:
  // `wakeOwner` is called on any thread when messages of the host wait for Dispatch. `visible`
  // tells whether the frame's window is visible: the two messages about the command area are acted
  // on only then.
  IpcInterfaceApp(std::uint32_t hostWindow, std::uint32_t processId, IQuorvane* frame,
                  std::function<void()> wakeOwner, std::function<bool()> visible);
  virtual ~IpcInterfaceApp();

  // Opens the two events and the command area. On any failure closes all and returns false.
  bool Open();
  // Starts the listener thread. Without an open link the thread ends at once.
  void Start();
  // Posts nothing; ends the listener thread after the command in flight and closes the link. `pump`
  // is called again and again while waiting, so that work which the listener hands to the GUI
  // thread is done.
  void Stop(const std::function<void()>& pump);
  void Close();

  // Handles messages of the host that have arrived (Linux; on Windows the frame's window procedure
  // calls HandleFrameMessage itself).
  void Dispatch();
  // WM_VIEWER_RELEASE_SHARED and WM_VIEWER_REOPEN_SHARED; other numbers do nothing.
  void HandleFrameMessage(std::uint32_t number);

  void RequestResend();  // WM_HOST_RESEND_SCENE
  void TellClosed();     // WM_HOST_VIEWER_CLOSED
  void SendCamera(const Vec3& eye, const Vec3& direction, const Vec3& up, float fieldOfView);
  void SendDateTime(int year, int month, int day, int hour, int minute, int second);
  void SetProperty(const std::string& name, std::span<const std::byte> value);
  void SetBrightness(float brightness, float contrast);
  void SetGamma(float value);
  // The property "light_factors".
  void SetLightFactors(const LightFactors& factors);
  void SetBackground(std::int32_t backgroundType, std::int32_t cubeMapIndex);
  void SetEyeHeight(float value);

  // The value of a property, copied; nothing if the host has none of that name, or its reply does
  // not fit.
  std::optional<std::vector<std::byte>> GetProperty(const std::string& name);
  std::optional<RenderCamera> GetCamera();
  std::optional<LocationAndTime> GetLocation();
  std::vector<HostPage> GetPages();

 private:
  void Listen();
  bool AnswerRing();
  void PostRecord(std::uint32_t number, platform::SharedMemory record);
  platform::SharedMemory Request(std::uint32_t number, platform::SharedMemory record = {});

  IQuorvane* frame_;
  const std::uint32_t hostWindow_;
  const std::uint32_t processId_;
  const std::function<void()> wakeOwner_;
  const std::function<bool()> visible_;
  std::unique_ptr<platform::MessagePort> port_;
  std::unique_ptr<CommandDecoder> decoder_;

  platform::NamedEvent lockEvent1_;  // the doorbell
  platform::NamedEvent lockEvent2_;  // the answer
  // Held while a command runs, and while the area is exchanged between commands. The GUI thread
  // never waits for it: a command may be waiting for the GUI thread.
  std::mutex areaMutex_;
  platform::SharedMemory sharedMapping_;

  std::thread thread_;
  std::atomic<bool> stopRequested_{false};
  std::atomic<bool> listening_{false};
};

}  // namespace qv
