#include "link/IpcInterfaceApp.h"

#include <chrono>
#include <utility>

#include "core/Log.h"
#include "link/CommandDecoder.h"
#include "link/HostMessages.h"
#include "platform/Clock.h"
#include "platform/Threads.h"

namespace qv {

namespace {

// How long a command may go on after Stop before the host's answers are no longer waited for.
constexpr double kPatienceSeconds = 5;
constexpr unsigned kPumpIntervalMilliseconds = 2;

}  // namespace

IpcInterfaceApp::IpcInterfaceApp(std::uint32_t hostWindow, std::uint32_t processId,
                                 IQuorvane* frame, std::function<void()> wakeOwner,
                                 std::function<bool()> visible)
    : frame_(frame),
      hostWindow_(hostWindow),
      processId_(processId),
      wakeOwner_(std::move(wakeOwner)),
      visible_(std::move(visible)),
      decoder_(std::make_unique<CommandDecoder>(*frame)) {}

IpcInterfaceApp::~IpcInterfaceApp() {
  Stop({});
}

bool IpcInterfaceApp::Open() {
  const std::string id = std::to_string(processId_);
  lockEvent1_ = platform::NamedEvent::Open("QV_Lock1_" + id);
  lockEvent2_ = platform::NamedEvent::Open("QV_Lock2_" + id);
  sharedMapping_ = platform::SharedMemory::Open("QV_Shared1_" + id);
  if (!lockEvent1_ || !lockEvent2_ || !sharedMapping_) {
    Log(LogLevel::kWarning, "Link: no host with the process id " + id);
    Close();
    return false;
  }
  const auto handler = [this](std::uint32_t number, platform::SharedMemory) {
    HandleFrameMessage(number);
    return platform::MessageReply();
  };
  port_ = platform::MessagePort::Connect(hostWindow_, processId_, handler, wakeOwner_);
  if (!port_->connected()) {
    Log(LogLevel::kWarning, "Link: no host window " + std::to_string(hostWindow_));
  }
  return true;
}

void IpcInterfaceApp::Start() {
  listening_ = true;
  thread_ = std::thread([this] { Listen(); });
}

void IpcInterfaceApp::Stop(const std::function<void()>& pump) {
  stopRequested_ = true;
  lockEvent1_.Set();
  const double patienceEnds = platform::NowSeconds() + kPatienceSeconds;
  while (listening_) {
    if (pump) pump();
    if (port_ && platform::NowSeconds() > patienceEnds) port_->Close();
    platform::SleepMilliseconds(kPumpIntervalMilliseconds);
  }
  if (thread_.joinable()) thread_.join();
  Close();
}

void IpcInterfaceApp::Close() {
  if (port_) port_->Close();
  lockEvent1_ = {};
  lockEvent2_ = {};
  sharedMapping_ = {};
}

void IpcInterfaceApp::Dispatch() {
  if (port_) port_->Dispatch();
}

void IpcInterfaceApp::HandleFrameMessage(std::uint32_t number) {
  if (number != WM_VIEWER_RELEASE_SHARED && number != WM_VIEWER_REOPEN_SHARED) return;
  const std::unique_lock<std::mutex> lock(areaMutex_, std::try_to_lock);
  const bool idle = lock && !lockEvent1_.Wait(std::chrono::milliseconds::zero());
  if (!idle || !visible_()) {
    Log(LogLevel::kWarning, idle ? "Link: command area kept, since the window is not visible"
                                 : "Link: command area kept, since a command is under way");
    return;
  }
  sharedMapping_ = {};
  if (number == WM_VIEWER_RELEASE_SHARED) return;
  sharedMapping_ = platform::SharedMemory::Open("QV_Shared1_" + std::to_string(processId_));
  if (!sharedMapping_) Log(LogLevel::kError, "Link: the command area cannot be opened again");
}

void IpcInterfaceApp::Listen() {
  platform::LowerCurrentThreadPriority();
  // Without an open link the wait fails at once.
  while (!stopRequested_ && lockEvent1_.Wait()) {
    if (!AnswerRing()) break;
  }
  listening_ = false;
}

// False when it was no host that rang. The area is given free before the host is answered: from
// then on the host may exchange it.
bool IpcInterfaceApp::AnswerRing() {
  {
    const std::lock_guard<std::mutex> lock(areaMutex_);
    lockEvent1_.Reset();
    if (stopRequested_) return false;
    if (sharedMapping_) {
      decoder_->Decode(sharedMapping_.bytes());
    } else {
      Log(LogLevel::kWarning, "Link: a command came while the command area was released");
    }
  }
  lockEvent2_.Set();
  return true;
}

}  // namespace qv
