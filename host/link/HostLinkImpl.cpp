#include "host/link/HostLinkImpl.h"

#include <algorithm>
#include <cstring>

#include "core/Log.h"
#include "link/HostMessages.h"
#include "link/Records.h"
#include "platform/Clock.h"
#include "platform/Ids.h"

namespace qv::host {

namespace {

constexpr unsigned kPollMilliseconds = 10;
// How long a viewer may take until it follows a change of the area: its window has to be visible,
// and on Windows the old area has to be free.
constexpr double kExchangePatienceSeconds = 10;
constexpr double kDisconnectPatienceSeconds = 1;

std::atomic<bool> namesClaimed{false};

}  // namespace

std::unique_ptr<HostLink> HostLink::Create(HostSide& side, const Options& options) {
  auto link = std::make_unique<HostLinkImpl>(options);
  if (!link->Open(side)) return nullptr;
  return link;
}

NameClaim::NameClaim() : granted_(!namesClaimed.exchange(true)) {}

NameClaim::~NameClaim() {
  if (granted_) namesClaimed = false;
}

HostLinkImpl::HostLinkImpl(const Options& options)
    : options_(options), processId_(platform::CurrentProcessId()), channel_(processId_) {}

HostLinkImpl::~HostLinkImpl() {
  interrupted_ = true;
}

bool HostLinkImpl::Open(HostSide& side) {
  if (!claim_) {
    Log(LogLevel::kError, "Host: there is a link in this process already");
    return false;
  }
  if (!channel_.Create(options_.initialArea)) return false;
  server_ = MessageServer::Start(side, interrupted_);
  if (!server_) Log(LogLevel::kError, "Host: cannot make a window for the viewer's messages");
  return server_ != nullptr;
}

bool HostLinkImpl::StartViewer(const std::string& path, const std::vector<std::string>& more) {
  const std::lock_guard<std::mutex> commandLock(commandMutex_);
  if (!AwaitOldViewersEnd()) return false;
  channel_.Clear();
  server_->ExpectViewer();
  everConnected_ = false;
  std::vector<std::string> arguments{"--windowhandle=" + std::to_string(window()),
                                     "--processid=" + std::to_string(processId())};
  arguments.insert(arguments.end(), more.begin(), more.end());
  const std::lock_guard<std::mutex> lock(viewerMutex_);
  viewer_ = platform::ChildProcess::Start(path, arguments);
  if (!viewer_) {
    Log(LogLevel::kError, "Host: cannot start " + path);
    return false;
  }
  server_->port().SetPeerProcess(viewer_.id());
  return true;
}

// False when there is a viewer already.
bool HostLinkImpl::AwaitOldViewersEnd() {
  if (ViewerRunning()) {
    Log(LogLevel::kError, "Host: there is a viewer already");
    return false;
  }
  // The end of a process is known before the end of its connection is.
  const double patienceEnds = platform::NowSeconds() + kDisconnectPatienceSeconds;
  while (server_->port().connected() && platform::NowSeconds() < patienceEnds) {
    platform::SleepMilliseconds(1);
  }
  return true;
}

bool HostLinkImpl::ViewerRunning() {
  const std::lock_guard<std::mutex> lock(viewerMutex_);
  return viewer_.Running();
}

std::uint32_t HostLinkImpl::ViewerProcessId() const {
  const std::lock_guard<std::mutex> lock(viewerMutex_);
  return viewer_.id();
}

// Asks in between, so that commands on another thread are not kept from asking too.
std::optional<int> HostLinkImpl::WaitForViewer(Timeout timeout) {
  const auto start = std::chrono::steady_clock::now();
  for (;;) {
    {
      const std::lock_guard<std::mutex> lock(viewerMutex_);
      if (!viewer_) return std::nullopt;
      if (const auto code = viewer_.Wait(std::chrono::milliseconds::zero())) return code;
    }
    if (interrupted_) return std::nullopt;
    if (timeout && std::chrono::steady_clock::now() - start >= *timeout) return std::nullopt;
    platform::SleepMilliseconds(kPollMilliseconds);
  }
}

void HostLinkImpl::KillViewer() {
  const std::lock_guard<std::mutex> lock(viewerMutex_);
  viewer_.Kill();
}

std::uint32_t HostLinkImpl::window() const {
  return server_->port().window();
}

std::optional<std::vector<std::byte>> HostLinkImpl::SendRecord(Bytes record,
                                                               std::size_t resultBytes,
                                                               Timeout timeout) {
  const std::lock_guard<std::mutex> lock(commandMutex_);
  if (!CarryOut({record}, resultBytes, timeout)) return std::nullopt;
  const auto result = channel_.area().first(resultBytes);
  return std::vector<std::byte>(result.begin(), result.end());
}

bool HostLinkImpl::ResizeArea(std::size_t size) {
  const std::lock_guard<std::mutex> lock(commandMutex_);
  return Resize(size);
}

bool HostLinkImpl::CarryOut(std::initializer_list<Bytes> parts, std::size_t resultBytes,
                            Timeout timeout) {
  std::size_t size = 0;
  for (const Bytes part : parts) size += part.size();
  if (server_->viewerClosed() || Gone() || !Settle(timeout) || !Grow(std::max(size, resultBytes)))
    return false;
  std::byte* to = channel_.area().data();
  for (const Bytes part : parts) to = std::copy(part.begin(), part.end(), to);
  channel_.Ring();
  return channel_.AwaitAnswer([this] { return Gone(); }, timeout) == CommandChannel::Answer::kCame;
}

// A command that was given up on may still be answered; the area belongs to the viewer until then.
bool HostLinkImpl::Settle(Timeout timeout) {
  return !channel_.outstanding() ||
         channel_.AwaitAnswer([this] { return Gone(); }, timeout) == CommandChannel::Answer::kCame;
}

bool HostLinkImpl::Grow(std::size_t size) {
  const std::size_t present = channel_.area().size();
  if (size <= present) return true;
  return Resize(std::max(size, std::min(2 * present, options_.maximumArea)));
}

bool HostLinkImpl::Resize(std::size_t size) {
  if (!AwaitFrame() || !Settle(std::nullopt)) return false;
  const std::size_t before = channel_.area().size();
  const double patienceEnds = platform::NowSeconds() + kExchangePatienceSeconds;
  while (!Gone() && platform::NowSeconds() < patienceEnds) {
    if (ExchangeArea(size)) return true;
    platform::SleepMilliseconds(kPollMilliseconds);
  }
  Log(LogLevel::kError, "Host: no command area of " + std::to_string(size) + " bytes");
  if (!Gone()) ExchangeArea(before);
  return false;
}

bool HostLinkImpl::ExchangeArea(std::size_t size) {
  // Should the viewer stay with the old area, it finds no command in it.
  if (!channel_.area().empty())
    std::fill_n(channel_.area().begin(), sizeof(std::int32_t), std::byte{0});
  platform::MessagePort& port = server_->port();
  port.Send(WM_VIEWER_RELEASE_SHARED);
  if (!channel_.Replace(size)) return false;
  port.Send(WM_VIEWER_REOPEN_SHARED);
  return ViewerFollows();
}

// Asks a question whose answer is written into the area.
bool HostLinkImpl::ViewerFollows() {
  const std::int32_t question = wire::kIsCameraLinked;
  const std::span<std::byte> area = channel_.area();
  std::memcpy(area.data(), &question, sizeof(question));
  channel_.Ring();
  return Settle(std::nullopt) && std::to_integer<int>(area[0]) <= 1;
}

// Messages about the area reach the viewer once its frame is there.
bool HostLinkImpl::AwaitFrame() {
  while (!server_->port().connected()) {
    if (Gone()) return false;
    platform::SleepMilliseconds(kPollMilliseconds);
  }
  return !Gone();
}

// True when no command will be answered any more.
bool HostLinkImpl::Gone() {
  if (interrupted_) return true;
  const bool connected = server_->port().connected();
  if (connected) everConnected_ = true;
  if (everConnected_ && !connected) return true;
  const std::lock_guard<std::mutex> lock(viewerMutex_);
  return viewer_ ? !viewer_.Running() : !connected;
}

}  // namespace qv::host
