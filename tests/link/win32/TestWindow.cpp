#include "link/TestWindow.h"

#include <windows.h>

#include <utility>

namespace qv {

namespace {

constexpr DWORD kLongestWaitMilliseconds = 20;

class Frame final : public TestWindow {
 public:
  explicit Frame(std::function<void(std::uint32_t)> onMessage) : onMessage_(std::move(onMessage)) {
    WNDCLASSW description{};
    description.lpfnWndProc = &Frame::Procedure;
    description.hInstance = GetModuleHandleW(nullptr);
    description.lpszClassName = L"QuorvaneTestFrame";
    RegisterClassW(&description);
    window_ = CreateWindowExW(0, description.lpszClassName, L"Test", WS_OVERLAPPEDWINDOW, 0, 0, 200,
                              100, nullptr, nullptr, description.hInstance, this);
    thread_ = GetCurrentThreadId();
  }
  ~Frame() override { DestroyWindow(window_); }

  void Show(bool visible) override { ShowWindow(window_, visible ? SW_SHOWNA : SW_HIDE); }
  bool visible() const override { return IsWindowVisible(window_) != 0; }
  void Wake() override { PostThreadMessageW(thread_, WM_NULL, 0, 0); }
  void HandleEvents() override {
    MsgWaitForMultipleObjectsEx(0, nullptr, kLongestWaitMilliseconds, QS_ALLINPUT,
                                MWMO_INPUTAVAILABLE);
    MSG message;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) != 0) DispatchMessageW(&message);
  }

 private:
  static LRESULT CALLBACK Procedure(HWND window, UINT number, WPARAM wParam, LPARAM lParam) {
    if (number == WM_NCCREATE) {
      const auto* creation = reinterpret_cast<const CREATESTRUCTW*>(lParam);
      SetWindowLongPtrW(window, GWLP_USERDATA,
                        reinterpret_cast<LONG_PTR>(creation->lpCreateParams));
    }
    auto* frame = reinterpret_cast<Frame*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    if (frame != nullptr && frame->onMessage_) frame->onMessage_(number);
    return DefWindowProcW(window, number, wParam, lParam);
  }

  std::function<void(std::uint32_t)> onMessage_;
  HWND window_ = nullptr;
  DWORD thread_ = 0;
};

}  // namespace

std::unique_ptr<TestWindow> TestWindow::Create(
    const std::function<void(std::uint32_t)>& onMessage) {
  return std::make_unique<Frame>(onMessage);
}

}  // namespace qv
