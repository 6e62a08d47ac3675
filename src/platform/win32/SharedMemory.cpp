#include "platform/SharedMemory.h"

#include <utility>

#include "platform/win32/Handle.h"
#include "platform/win32/WideText.h"

namespace qv::platform {

namespace {

Handle CreateMapping(std::size_t size, const wchar_t* name) {
  return Handle(CreateFileMappingW(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE,
                                   static_cast<DWORD>(size >> 32), static_cast<DWORD>(size), name));
}

}  // namespace

// A mapping that is held here cannot be closed by its number: whoever answers with that number, by
// mistake or on purpose, does not take it away.
struct SharedMemory::Impl {
  explicit Impl(Handle owned) : mapping(std::move(owned)) { Guard(HANDLE_FLAG_PROTECT_FROM_CLOSE); }
  ~Impl() {
    if (view != nullptr) UnmapViewOfFile(view);
    Guard(0);
  }
  Impl(const Impl&) = delete;
  Impl& operator=(const Impl&) = delete;

  static bool Guarded(HANDLE handle) {
    DWORD flags = 0;
    return GetHandleInformation(handle, &flags) != 0 &&
           (flags & HANDLE_FLAG_PROTECT_FROM_CLOSE) != 0;
  }
  void Guard(DWORD flag) const {
    SetHandleInformation(mapping.get(), HANDLE_FLAG_PROTECT_FROM_CLOSE, flag);
  }

  // What lies behind the first page that is not committed does not count.
  bool Map() { return Take(MapViewOfFile(mapping.get(), FILE_MAP_ALL_ACCESS, 0, 0, 0)); }
  bool Take(void* mapped) {
    view = static_cast<std::byte*>(mapped);
    MEMORY_BASIC_INFORMATION pages;
    if (view == nullptr || VirtualQuery(view, &pages, sizeof(pages)) == 0) return false;
    size = pages.State == MEM_COMMIT ? pages.RegionSize : 0;
    return size > 0;
  }

  Handle mapping;
  std::byte* view = nullptr;
  std::size_t size = 0;  // in whole pages
};

SharedMemory::SharedMemory() = default;
SharedMemory::~SharedMemory() = default;
SharedMemory::SharedMemory(SharedMemory&&) noexcept = default;
SharedMemory& SharedMemory::operator=(SharedMemory&&) noexcept = default;

SharedMemory SharedMemory::Create(const std::string& name, std::size_t size) {
  SharedMemory memory;
  const std::wstring wide = ToWide(name);
  Handle mapping = CreateMapping(size, wide.c_str());
  const bool taken = GetLastError() == ERROR_ALREADY_EXISTS;
  if (!mapping || taken) return memory;
  auto impl = std::make_unique<Impl>(std::move(mapping));
  if (impl->Map()) memory.impl_ = std::move(impl);
  return memory;
}

SharedMemory SharedMemory::Open(const std::string& name) {
  SharedMemory memory;
  Handle mapping(OpenFileMappingW(FILE_MAP_ALL_ACCESS, FALSE, ToWide(name).c_str()));
  if (!mapping) return memory;
  auto impl = std::make_unique<Impl>(std::move(mapping));
  if (impl->Map()) memory.impl_ = std::move(impl);
  return memory;
}

SharedMemory SharedMemory::CreateUnnamed(std::size_t size) {
  SharedMemory memory;
  Handle mapping = CreateMapping(size, nullptr);
  if (!mapping) return memory;
  auto impl = std::make_unique<Impl>(std::move(mapping));
  if (impl->Map()) memory.impl_ = std::move(impl);
  return memory;
}

SharedMemory SharedMemory::Adopt(std::intptr_t native) {
  SharedMemory memory;
  const auto handle = reinterpret_cast<HANDLE>(native);
  if (native == 0 || handle == INVALID_HANDLE_VALUE || Impl::Guarded(handle)) return memory;
  void* const view = MapViewOfFile(handle, FILE_MAP_ALL_ACCESS, 0, 0, 0);
  if (view == nullptr && GetLastError() == ERROR_INVALID_HANDLE) return memory;
  auto impl = std::make_unique<Impl>(Handle(handle));
  if (impl->Take(view)) memory.impl_ = std::move(impl);
  return memory;
}

void SharedMemory::Remove(const std::string&) {}

std::span<std::byte> SharedMemory::bytes() const {
  return impl_ ? std::span<std::byte>(impl_->view, impl_->size) : std::span<std::byte>();
}

void SharedMemory::Flush() {
  if (impl_) FlushViewOfFile(impl_->view, 0);
}

std::intptr_t SharedMemory::native() const {
  return impl_ ? reinterpret_cast<std::intptr_t>(impl_->mapping.get()) : -1;
}

}  // namespace qv::platform
