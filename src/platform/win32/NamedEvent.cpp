#include "platform/NamedEvent.h"

#include <algorithm>

#include "platform/win32/Handle.h"
#include "platform/win32/WideText.h"

namespace qv::platform {

struct NamedEvent::Impl {
  explicit Impl(Handle owned) : event(std::move(owned)) {}

  Handle event;
};

NamedEvent::NamedEvent() = default;
NamedEvent::~NamedEvent() = default;
NamedEvent::NamedEvent(NamedEvent&&) noexcept = default;
NamedEvent& NamedEvent::operator=(NamedEvent&&) noexcept = default;

NamedEvent NamedEvent::Create(const std::string& name) {
  NamedEvent event;
  const std::wstring wide = ToWide(name);
  Handle handle(CreateEventW(nullptr, TRUE, FALSE, wide.c_str()));
  const bool taken = GetLastError() == ERROR_ALREADY_EXISTS;
  if (handle && !taken) event.impl_ = std::make_unique<Impl>(std::move(handle));
  return event;
}

NamedEvent NamedEvent::Open(const std::string& name) {
  NamedEvent event;
  Handle handle(OpenEventW(EVENT_ALL_ACCESS, TRUE, ToWide(name).c_str()));
  if (handle) event.impl_ = std::make_unique<Impl>(std::move(handle));
  return event;
}

// Here objects end with the last process that holds them.
void NamedEvent::Remove(const std::string&) {}

void NamedEvent::Set() {
  if (impl_) SetEvent(impl_->event.get());
}

void NamedEvent::Reset() {
  if (impl_) ResetEvent(impl_->event.get());
}

bool NamedEvent::Wait(std::optional<std::chrono::milliseconds> timeout) {
  if (!impl_) return false;
  DWORD milliseconds = INFINITE;
  if (timeout) {
    milliseconds = static_cast<DWORD>(std::clamp<long long>(timeout->count(), 0, INFINITE - 1));
  }
  return WaitForSingleObject(impl_->event.get(), milliseconds) == WAIT_OBJECT_0;
}

}  // namespace qv::platform
