#pragma once

#include <condition_variable>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>

namespace qv {

// Work of other threads for the GUI thread, done in the order of arrival.
//
// A task must not run an event loop while a Call waits for it: the caller would wait for whatever
// that loop does, closing included.
class GuiExecutor {
 public:
  // The constructing thread is the GUI thread. `wake` is called on any thread when there is work
  // where there was none, and has to see to it that the GUI thread calls RunPending soon.
  explicit GuiExecutor(std::function<void()> wake);
  ~GuiExecutor();  // as Close
  GuiExecutor(const GuiExecutor&) = delete;
  GuiExecutor& operator=(const GuiExecutor&) = delete;

  // Any thread. Dropped once closed.
  void Post(std::function<void()> task);
  // Any thread: returns true when the task has been done, false if it never will be because of
  // Close. On the GUI thread the task runs at once.
  bool Call(const std::function<void()>& task);

  // GUI thread: does what is waiting when the call begins.
  void RunPending();
  // GUI thread: drops what is waiting, and lets go those who wait for it.
  void Close();

 private:
  enum class Outcome { kWaiting, kDone, kDropped };
  struct Item {
    std::function<void()> task;
    std::shared_ptr<Outcome> outcome;  // of a Call; null for a Post
  };

  bool Add(Item item);
  void Settle(const Item& item, Outcome outcome);

  const std::function<void()> wake_;
  const std::thread::id guiThread_;
  std::mutex mutex_;
  std::condition_variable settled_;
  std::deque<Item> waiting_;
  bool closed_ = false;
};

}  // namespace qv
