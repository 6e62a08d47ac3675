#pragma once

#include <windows.h>

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <optional>
#include <span>
#include <string>
#include <thread>
#include <vector>

namespace qv {

// A host made of calls of the system and bytes, for the test viewer. Names carry this process's id.
class RawHost {
 public:
  struct Message {
    UINT number = 0;
    WPARAM wParam = 0;
    LPARAM lParam = 0;
    bool sent = false;
  };
  // What a sent message is answered with; called on the window's thread.
  using Answer = std::function<LRESULT(const Message&)>;

  // Also starts the viewer. `window`, if it is not null, is given to it instead of this host's own.
  RawHost(DWORD areaSize, const std::string& recordPath, const std::string& untilPath,
          const std::string& more = {}, HWND window = nullptr);
  ~RawHost();  // with the viewer
  RawHost(const RawHost&) = delete;
  RawHost& operator=(const RawHost&) = delete;

  // Writes the record and rings, without waiting.
  void Ring(std::span<const std::byte> record);
  // Waits for the answer, for twenty seconds at most.
  bool AwaitAnswer();
  bool Carry(std::span<const std::byte> record);
  // A status message, as an order for the test viewer.
  void RingOrder(const std::string& order);
  bool CarryOrder(const std::string& order);

  void SetAnswer(Answer answer);
  // The next message of the viewer; waits for twenty seconds at most.
  std::optional<Message> Next();

  // A handle of `object` that is valid in the viewer, which is to close it; `object` is closed
  // here.
  LRESULT HandOver(HANDLE object, DWORD access = 0);
  // The same for a mapping of that content.
  LRESULT HandOverRecord(std::span<const std::byte> content);

  // Of the test viewer; waits for it, for twenty seconds at most.
  HWND Frame();
  void CloseArea();
  void MakeArea(DWORD size);
  // The number that the viewer holds the command area by.
  LRESULT AreaInViewer();

  HANDLE viewer() const { return viewer_; }

 private:
  static LRESULT CALLBACK Procedure(HWND window, UINT number, WPARAM wParam, LPARAM lParam);
  LRESULT Receive(const Message& message);
  void Serve();
  void Start(const std::wstring& arguments);

  HANDLE lock1_ = nullptr, lock2_ = nullptr, area_ = nullptr;
  void* view_ = nullptr;
  HANDLE viewer_ = nullptr;
  DWORD viewerId_ = 0;

  std::mutex mutex_;
  std::condition_variable changed_;
  HWND window_ = nullptr;
  Answer answer_;
  std::deque<Message> messages_;
  std::thread thread_;
};

// The first page of a mapping, which is closed.
std::vector<std::byte> TakePage(WPARAM mapping);

}  // namespace qv
