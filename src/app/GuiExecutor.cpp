#include "app/GuiExecutor.h"

#include <utility>

namespace qv {

GuiExecutor::GuiExecutor(std::function<void()> wake)
    : wake_(std::move(wake)), guiThread_(std::this_thread::get_id()) {}

GuiExecutor::~GuiExecutor() {
  Close();
}

void GuiExecutor::Post(std::function<void()> task) {
  Add({std::move(task), nullptr});
}

bool GuiExecutor::Call(const std::function<void()>& task) {
  if (std::this_thread::get_id() == guiThread_) {
    task();
    return true;
  }
  const auto outcome = std::make_shared<Outcome>(Outcome::kWaiting);
  if (!Add({task, outcome})) return false;
  std::unique_lock lock(mutex_);
  settled_.wait(lock, [&] { return *outcome != Outcome::kWaiting; });
  return *outcome == Outcome::kDone;
}

bool GuiExecutor::Add(Item item) {
  bool first = false;
  {
    const std::lock_guard lock(mutex_);
    if (closed_) return false;
    first = waiting_.empty();
    waiting_.push_back(std::move(item));
  }
  if (first) wake_();
  return true;
}

void GuiExecutor::RunPending() {
  std::unique_lock lock(mutex_);
  for (std::size_t count = waiting_.size(); count > 0 && !waiting_.empty(); --count) {
    const Item item = std::move(waiting_.front());
    waiting_.pop_front();
    lock.unlock();
    item.task();
    Settle(item, Outcome::kDone);
    lock.lock();
  }
  // Tasks that came while the others ran found the queue not empty, or wake anew by themselves.
  const bool more = !waiting_.empty();
  lock.unlock();
  if (more) wake_();
}

void GuiExecutor::Close() {
  std::deque<Item> dropped;
  {
    const std::lock_guard lock(mutex_);
    closed_ = true;
    dropped.swap(waiting_);
  }
  for (const Item& item : dropped) Settle(item, Outcome::kDropped);
}

void GuiExecutor::Settle(const Item& item, Outcome outcome) {
  if (!item.outcome) return;
  {
    const std::lock_guard lock(mutex_);
    *item.outcome = outcome;
  }
  settled_.notify_all();
}

}  // namespace qv
