#include <cstdint>
#include <mutex>
#include <utility>

#include "platform/MessagePort.h"
#include "platform/win32/FrameFinder.h"
#include "platform/win32/Handle.h"
#include "platform/win32/SendToWindow.h"

namespace qv::platform {

namespace {

constexpr wchar_t kClassName[] = L"QuorvaneLinkPort";
// The numbers of the link are numbers that a program may give meaning to; the others are the
// system's own.
constexpr UINT kFirstNumber = WM_APP;
constexpr UINT kLastNumber = 0xBFFF;

// As many messages as a queue holds: what comes while these are handled is for the next time.
constexpr int kLongestQueue = 10000;

// Window numbers are used again, so that a number may be a window of anybody.
bool IsWindowOf(HWND window, DWORD processId) {
  DWORD owner = 0;
  return GetWindowThreadProcessId(window, &owner) != 0 && owner == processId;
}

// The process that records are handed to. Opened with all rights, or where the system grants these
// to nobody (a process of another integrity level) with those that are used.
class Peer {
 public:
  explicit Peer(DWORD processId = 0) : id_(processId) {
    if (processId == 0) return;
    process_ = Handle(OpenProcess(PROCESS_ALL_ACCESS, FALSE, processId));
    if (!process_) process_ = Handle(OpenProcess(kUsedAccess, FALSE, processId));
  }

  DWORD id() const { return id_; }
  HANDLE process() const { return process_.get(); }
  bool running() const {
    return process_ && WaitForSingleObject(process_.get(), 0) == WAIT_TIMEOUT;
  }

  // A handle that is valid there; null if that process does not let it in.
  HANDLE HandOver(const SharedMemory& record) const {
    HANDLE there = nullptr;
    if (!process_ ||
        DuplicateHandle(GetCurrentProcess(), reinterpret_cast<HANDLE>(record.native()),
                        process_.get(), &there, 0, FALSE, DUPLICATE_SAME_ACCESS) == 0) {
      return nullptr;
    }
    return there;
  }

  // Closes what was handed over and did not get there.
  void TakeBack(HANDLE there) const {
    if (there == nullptr) return;
    DuplicateHandle(process_.get(), there, nullptr, nullptr, 0, FALSE, DUPLICATE_CLOSE_SOURCE);
  }

 private:
  static constexpr DWORD kUsedAccess = PROCESS_DUP_HANDLE | SYNCHRONIZE;

  DWORD id_ = 0;
  Handle process_;
};

// What both ends have in common: sending to a window of the other process.
class WindowPort : public MessagePort {
 public:
  bool connected() const override {
    const std::shared_ptr<const Peer> peer = ThePeer();
    return !closed() && Target() != nullptr && (peer->process() == nullptr || peer->running());
  }

  void Post(std::uint32_t number, SharedMemory record) override {
    const HWND target = Target();
    if (closed() || target == nullptr) return;
    const std::shared_ptr<const Peer> peer = ThePeer();
    const HANDLE there = record ? peer->HandOver(record) : nullptr;
    if (record && there == nullptr) return;
    record = {};
    if (PostMessageW(target, number, reinterpret_cast<WPARAM>(there), 0) == 0) {
      peer->TakeBack(there);
    }
  }

  MessageReply Send(std::uint32_t number, SharedMemory record) override {
    const HWND target = Target();
    if (closed() || target == nullptr) return {};
    const std::shared_ptr<const Peer> peer = ThePeer();
    const HANDLE there = record ? peer->HandOver(record) : nullptr;
    if (record && there == nullptr) return {};
    record = {};
    SendEnds ends{.close = close_.get(), .process = peer->process(), .patience = {}};
    if (GetCurrentThreadId() == owner_) ends.patience = ownersPatience_;
    const SendOutcome outcome = SendToWindow(target, number, reinterpret_cast<WPARAM>(there), ends);
    if (outcome.kind == SendOutcome::Kind::kNotSent) peer->TakeBack(there);
    if (outcome.kind != SendOutcome::Kind::kAnswered) return {};
    return ReplyOf(outcome.result);
  }

  void Close() override { SetEvent(close_.get()); }

 protected:
  WindowPort(std::shared_ptr<const Peer> peer, std::chrono::milliseconds ownersPatience)
      : ownersPatience_(ownersPatience), peer_(std::move(peer)) {}

  // The window that messages go to; null if there is none.
  virtual HWND Target() const = 0;
  // What a window of the other side answered.
  virtual MessageReply ReplyOf(LRESULT result) const = 0;

  bool closed() const { return WaitForSingleObject(close_.get(), 0) == WAIT_OBJECT_0; }
  HANDLE closeEvent() const { return close_.get(); }

  std::shared_ptr<const Peer> ThePeer() const {
    const std::lock_guard<std::mutex> lock(peerMutex_);
    return peer_;
  }
  void ReplacePeer(std::shared_ptr<const Peer> peer) {
    const std::lock_guard<std::mutex> lock(peerMutex_);
    peer_ = std::move(peer);
  }

 private:
  const DWORD owner_ = GetCurrentThreadId();
  const std::chrono::milliseconds ownersPatience_;
  const Handle close_{CreateEventW(nullptr, TRUE, FALSE, nullptr)};
  mutable std::mutex peerMutex_;
  std::shared_ptr<const Peer> peer_;  // never null
};

// The viewer's end. Messages of the host go to the frame's own window procedure.
class ViewerPort final : public WindowPort {
 public:
  ViewerPort(HWND host, DWORD processId, std::chrono::milliseconds ownersPatience)
      : WindowPort(std::make_shared<const Peer>(processId), ownersPatience), host_(host) {}

  std::uint32_t window() const override {
    return static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(host_));
  }
  void SetPeerProcess(std::uint32_t) override {}
  void Dispatch() override {}
  bool WaitAndDispatch(std::chrono::milliseconds timeout) override {
    return WaitForSingleObject(closeEvent(), static_cast<DWORD>(timeout.count())) == WAIT_TIMEOUT;
  }

 protected:
  HWND Target() const override { return IsWindowOf(host_, ThePeer()->id()) ? host_ : nullptr; }
  // A host answers with a mapping or with nothing.
  MessageReply ReplyOf(LRESULT result) const override { return {0, SharedMemory::Adopt(result)}; }

 private:
  const HWND host_;
};

// The host's end: a window that only gets messages, and the viewer's frame, which has to be found.
class HostPort final : public WindowPort {
 public:
  explicit HostPort(Handler handler)
      : WindowPort(std::make_shared<const Peer>(), kOwnersPatience), handler_(std::move(handler)) {
    WNDCLASSW description{};
    description.lpfnWndProc = &HostPort::Procedure;
    description.hInstance = GetModuleHandleW(nullptr);
    description.lpszClassName = kClassName;
    RegisterClassW(&description);  // fails when it is registered already
    window_ = CreateWindowExW(0, kClassName, L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr,
                              description.hInstance, this);
  }
  // On the owner's thread, or once that has ended, which takes its windows with it.
  ~HostPort() override {
    Close();
    if (window_ != nullptr && IsWindow(window_) != 0) DestroyWindow(window_);
  }

  bool usable() const { return window_ != nullptr; }

  std::uint32_t window() const override {
    return static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(window_));
  }

  void SetPeerProcess(std::uint32_t processId) override {
    ReplacePeer(std::make_shared<const Peer>(processId));
    const std::lock_guard<std::mutex> lock(frameMutex_);
    frame_ = nullptr;
  }

  void Dispatch() override {
    MSG message;
    for (int left = kLongestQueue;
         left > 0 && PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) != 0; --left) {
      DispatchMessageW(&message);
    }
  }

  bool WaitAndDispatch(std::chrono::milliseconds timeout) override {
    const HANDLE close = closeEvent();
    MsgWaitForMultipleObjectsEx(1, &close, static_cast<DWORD>(timeout.count()), QS_ALLINPUT,
                                MWMO_INPUTAVAILABLE);
    // Once closed too: what is in the queue may carry records, which are given back.
    Dispatch();
    return !closed();
  }

 protected:
  // Once found it stays the frame until it is destroyed, also while it is hidden.
  HWND Target() const override {
    const std::lock_guard<std::mutex> lock(frameMutex_);
    if (frame_ == nullptr) frame_ = FindFrame(ThePeer()->id());
    return IsWindowOf(frame_, ThePeer()->id()) ? frame_ : nullptr;
  }
  // A frame answers with a number that means nothing.
  MessageReply ReplyOf(LRESULT) const override { return {}; }

 private:
  static LRESULT CALLBACK Procedure(HWND window, UINT number, WPARAM wParam, LPARAM lParam) {
    if (number == WM_NCCREATE) {
      const auto* creation = reinterpret_cast<const CREATESTRUCTW*>(lParam);
      SetWindowLongPtrW(window, GWLP_USERDATA,
                        reinterpret_cast<LONG_PTR>(creation->lpCreateParams));
    }
    auto* port = reinterpret_cast<HostPort*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    if (port != nullptr && number >= kFirstNumber && number <= kLastNumber) {
      return port->Answer(number, wParam);
    }
    return DefWindowProcW(window, number, wParam, lParam);
  }

  LRESULT Answer(UINT number, WPARAM wParam) {
    SharedMemory record = SharedMemory::Adopt(static_cast<std::intptr_t>(wParam));
    if (closed() || !handler_) return 0;
    const MessageReply reply = handler_(number, std::move(record));
    return reply.record ? reinterpret_cast<LRESULT>(ThePeer()->HandOver(reply.record)) : 0;
  }

  const Handler handler_;
  HWND window_ = nullptr;
  mutable std::mutex frameMutex_;
  mutable HWND frame_ = nullptr;
};

}  // namespace

// The interface is that of systems that keep what they are given.
// NOLINTBEGIN(performance-unnecessary-value-param)

std::unique_ptr<MessagePort> MessagePort::Listen(Handler handler, Notify) {
  auto port = std::make_unique<HostPort>(std::move(handler));
  if (!port->usable()) return nullptr;
  return port;
}

std::unique_ptr<MessagePort> MessagePort::Connect(std::uint32_t hostWindow, std::uint32_t processId,
                                                  Handler, Notify,
                                                  std::chrono::milliseconds ownersPatience) {
  const auto window = reinterpret_cast<HWND>(static_cast<std::uintptr_t>(hostWindow));
  return std::make_unique<ViewerPort>(window, processId, ownersPatience);
}

// NOLINTEND(performance-unnecessary-value-param)

}  // namespace qv::platform
