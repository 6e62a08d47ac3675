#include "link/win32/RawHost.h"

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstring>
#include <utility>

#include "link/RecordBytes.h"

namespace qv {

namespace {

constexpr DWORD kPatienceMilliseconds = 20000;
constexpr std::size_t kPage = 4096;

std::wstring NameOf(const wchar_t* object) {
  return object + std::to_wstring(GetCurrentProcessId());
}

// Paths of tests are plain.
std::wstring Wide(const std::string& text) {
  return {text.begin(), text.end()};
}

struct Search {
  DWORD processId;
  HWND found;
};

BOOL CALLBACK LookForFrame(HWND window, LPARAM context) {
  auto* search = reinterpret_cast<Search*>(context);
  DWORD owner = 0;
  GetWindowThreadProcessId(window, &owner);
  wchar_t name[64] = L"";
  GetClassNameW(window, name, 64);
  if (owner != search->processId || std::wcscmp(name, L"QuorvaneTestFrame") != 0) return TRUE;
  search->found = window;
  return FALSE;
}

}  // namespace

RawHost::RawHost(DWORD areaSize, const std::string& recordPath, const std::string& untilPath,
                 const std::string& more, HWND window) {
  lock1_ = CreateEventW(nullptr, TRUE, FALSE, NameOf(L"QV_Lock1_").c_str());
  lock2_ = CreateEventW(nullptr, TRUE, FALSE, NameOf(L"QV_Lock2_").c_str());
  MakeArea(areaSize);
  thread_ = std::thread([this] { Serve(); });
  std::unique_lock<std::mutex> lock(mutex_);
  changed_.wait(lock, [this] { return window_ != nullptr; });
  const auto number = reinterpret_cast<std::uintptr_t>(window != nullptr ? window : window_);
  Start(L" --windowhandle=" + std::to_wstring(number) + L" --processid=" +
        std::to_wstring(GetCurrentProcessId()) + L" \"--record=" + Wide(recordPath) +
        L"\" \"--until=" + Wide(untilPath) + L"\" " + Wide(more));
}

RawHost::~RawHost() {
  TerminateProcess(viewer_, 1);
  WaitForSingleObject(viewer_, INFINITE);
  CloseHandle(viewer_);
  PostMessageW(window_, WM_CLOSE, 0, 0);
  thread_.join();
  CloseArea();
  CloseHandle(lock1_);
  CloseHandle(lock2_);
}

void RawHost::Start(const std::wstring& arguments) {
  const std::wstring program = Wide(QUORVANE_TEST_VIEWER);
  std::wstring line = L"\"" + program + L"\"" + arguments;
  STARTUPINFOW startup{};
  startup.cb = sizeof(startup);
  PROCESS_INFORMATION started{};
  CreateProcessW(program.c_str(), line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr,
                 &startup, &started);
  CloseHandle(started.hThread);
  viewer_ = started.hProcess;
  viewerId_ = started.dwProcessId;
}

// A window that is never shown, of a thread that does nothing else.
void RawHost::Serve() {
  WNDCLASSW description{};
  description.lpfnWndProc = &RawHost::Procedure;
  description.hInstance = GetModuleHandleW(nullptr);
  description.lpszClassName = L"RawHost";
  RegisterClassW(&description);
  const HWND window = CreateWindowExW(0, L"RawHost", L"", WS_POPUP, 0, 0, 1, 1, nullptr, nullptr,
                                      description.hInstance, nullptr);
  SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
  {
    const std::lock_guard<std::mutex> lock(mutex_);
    window_ = window;
    changed_.notify_all();
  }
  MSG message;
  while (GetMessageW(&message, nullptr, 0, 0) > 0) DispatchMessageW(&message);
}

LRESULT CALLBACK RawHost::Procedure(HWND window, UINT number, WPARAM wParam, LPARAM lParam) {
  auto* host = reinterpret_cast<RawHost*>(GetWindowLongPtrW(window, GWLP_USERDATA));
  if (number == WM_DESTROY) PostQuitMessage(0);
  if (host == nullptr || number < 32769 || number > 49151) {
    return DefWindowProcW(window, number, wParam, lParam);
  }
  return host->Receive({number, wParam, lParam, InSendMessage() != FALSE});
}

LRESULT RawHost::Receive(const Message& message) {
  Answer answer;
  {
    const std::lock_guard<std::mutex> lock(mutex_);
    messages_.push_back(message);
    if (message.sent) answer = answer_;
    changed_.notify_all();
  }
  return answer ? answer(message) : 0;
}

void RawHost::Ring(std::span<const std::byte> record) {
  std::memcpy(view_, record.data(), record.size());
  SetEvent(lock1_);
}

bool RawHost::AwaitAnswer() {
  const bool came = WaitForSingleObject(lock2_, kPatienceMilliseconds) == WAIT_OBJECT_0;
  ResetEvent(lock2_);
  return came;
}

bool RawHost::Carry(std::span<const std::byte> record) {
  Ring(record);
  return AwaitAnswer();
}

void RawHost::RingOrder(const std::string& order) {
  Ring(RecordBytes(15).Int(4, 8).Text(8, "!" + order).bytes());
}

bool RawHost::CarryOrder(const std::string& order) {
  RingOrder(order);
  return AwaitAnswer();
}

void RawHost::SetAnswer(Answer answer) {
  const std::lock_guard<std::mutex> lock(mutex_);
  answer_ = std::move(answer);
}

std::optional<RawHost::Message> RawHost::Next() {
  std::unique_lock<std::mutex> lock(mutex_);
  changed_.wait_for(lock, std::chrono::milliseconds(kPatienceMilliseconds),
                    [this] { return !messages_.empty(); });
  if (messages_.empty()) return std::nullopt;
  const Message message = messages_.front();
  messages_.pop_front();
  return message;
}

LRESULT RawHost::HandOver(HANDLE object, DWORD access) {
  HANDLE there = nullptr;
  DuplicateHandle(GetCurrentProcess(), object, viewer_, &there, access, FALSE,
                  DUPLICATE_CLOSE_SOURCE | (access == 0 ? DUPLICATE_SAME_ACCESS : 0));
  return reinterpret_cast<LRESULT>(there);
}

LRESULT RawHost::HandOverRecord(std::span<const std::byte> content) {
  const HANDLE mapping = CreateFileMappingW(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0,
                                            static_cast<DWORD>(content.size()), nullptr);
  void* const view = MapViewOfFile(mapping, FILE_MAP_ALL_ACCESS, 0, 0, 0);
  std::memcpy(view, content.data(), content.size());
  UnmapViewOfFile(view);
  return HandOver(mapping);
}

HWND RawHost::Frame() {
  Search search{viewerId_, nullptr};
  for (DWORD waited = 0; search.found == nullptr && waited < kPatienceMilliseconds; waited += 20) {
    EnumWindows(LookForFrame, reinterpret_cast<LPARAM>(&search));
    if (search.found == nullptr) Sleep(20);
  }
  return search.found;
}

void RawHost::CloseArea() {
  UnmapViewOfFile(view_);
  CloseHandle(area_);
}

void RawHost::MakeArea(DWORD size) {
  area_ = CreateFileMappingW(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0, size,
                             NameOf(L"QV_Shared1_").c_str());
  view_ = MapViewOfFile(area_, FILE_MAP_ALL_ACCESS, 0, 0, 0);
}

// It is the one through which a word that is written here is seen.
LRESULT RawHost::AreaInViewer() {
  auto* const own = static_cast<volatile std::uint32_t*>(view_) + 100;
  for (std::uintptr_t number = 4; number < 0x2000; number += 4) {
    HANDLE copy = nullptr;
    if (DuplicateHandle(viewer_, reinterpret_cast<HANDLE>(number), GetCurrentProcess(), &copy, 0,
                        FALSE, DUPLICATE_SAME_ACCESS) == 0) {
      continue;
    }
    void* const view = MapViewOfFile(copy, FILE_MAP_READ, 0, 0, 0);
    CloseHandle(copy);
    if (view == nullptr) continue;
    MEMORY_BASIC_INFORMATION pages;
    VirtualQuery(view, &pages, sizeof(pages));
    *own = 0x51564152u + static_cast<std::uint32_t>(number);
    const bool same = pages.State == MEM_COMMIT && pages.RegionSize >= kPage &&
                      static_cast<volatile std::uint32_t*>(view)[100] == *own;
    UnmapViewOfFile(view);
    if (same) return static_cast<LRESULT>(number);
  }
  return 0;
}

std::vector<std::byte> TakePage(WPARAM mapping) {
  const auto handle = reinterpret_cast<HANDLE>(mapping);
  std::vector<std::byte> page;
  if (const void* view = MapViewOfFile(handle, FILE_MAP_ALL_ACCESS, 0, 0, 0)) {
    const auto* first = static_cast<const std::byte*>(view);
    page.assign(first, first + kPage);
    UnmapViewOfFile(view);
  }
  CloseHandle(handle);
  return page;
}

}  // namespace qv
