#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <utility>

namespace qv {

// Holds an object that the GUI thread owns and may replace while other threads use it.
template <class T>
class SharedSlot {
 public:
  // Put, Take and get belong to the owning thread.
  void Put(std::unique_ptr<T> object) {
    const std::lock_guard lock(mutex_);
    object_ = std::move(object);
  }

  T* get() const { return object_.get(); }

  // Any thread: calls `work` with the object, which stays alive meanwhile; false if there is none.
  // `work` must not wait for the owning thread.
  template <class Work>
  bool Use(Work&& work) {
    T* object = nullptr;
    {
      const std::lock_guard lock(mutex_);
      object = object_.get();
      if (!object) return false;
      ++users_;
    }
    const Leave leave{*this};
    work(*object);
    return true;
  }

  // Takes the object out: no use begins any more, and those that run are waited for, with `pump`
  // called again and again meanwhile.
  std::unique_ptr<T> Take(const std::function<void()>& pump) {
    std::unique_lock lock(mutex_);
    std::unique_ptr<T> taken = std::move(object_);
    while (!left_.wait_for(lock, kPumpInterval, [this] { return users_ == 0; })) {
      lock.unlock();
      pump();
      lock.lock();
    }
    return taken;
  }

 private:
  static constexpr std::chrono::milliseconds kPumpInterval{10};

  // The end of one use, also where `work` throws.
  struct Leave {
    SharedSlot& slot;
    ~Leave() {
      {
        const std::lock_guard lock(slot.mutex_);
        --slot.users_;
      }
      slot.left_.notify_all();
    }
  };

  std::mutex mutex_;
  std::condition_variable left_;
  std::unique_ptr<T> object_;
  int users_ = 0;
};

}  // namespace qv
