#include "platform/ChildProcess.h"

#include <windows.h>

#include <algorithm>
#include <utility>

#include "platform/win32/Handle.h"
#include "platform/win32/WideText.h"

namespace qv::platform {

namespace {

constexpr UINT kExitCodeOfKilled = 137;

// One word of a command line, so that the C runtime of the program reads it back as it was: quotes
// are escaped, and backslashes count only in front of a quote.
std::wstring Quoted(const std::wstring& word) {
  std::wstring quoted = L"\"";
  std::size_t backslashes = 0;
  for (const wchar_t c : word) {
    if (c == L'\\') {
      ++backslashes;
    } else {
      if (c == L'"') quoted.append(backslashes + 1, L'\\');
      backslashes = 0;
    }
    quoted += c;
  }
  quoted.append(backslashes, L'\\');
  return quoted + L'"';
}

}  // namespace

struct ChildProcess::Impl {
  Handle process;
  DWORD id = 0;
};

ChildProcess::ChildProcess() = default;
ChildProcess::~ChildProcess() = default;
ChildProcess::ChildProcess(ChildProcess&&) noexcept = default;
ChildProcess& ChildProcess::operator=(ChildProcess&&) noexcept = default;

ChildProcess ChildProcess::Start(const std::string& path,
                                 const std::vector<std::string>& arguments) {
  const std::wstring program = ToWide(path);
  std::wstring line = Quoted(program);
  for (const std::string& argument : arguments) line += L' ' + Quoted(ToWide(argument));

  ChildProcess child;
  STARTUPINFOW startup{};
  startup.cb = sizeof(startup);
  PROCESS_INFORMATION started{};
  if (CreateProcessW(program.c_str(), line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr,
                     &startup, &started) == 0) {
    return child;
  }
  CloseHandle(started.hThread);
  child.impl_ = std::make_unique<Impl>();
  child.impl_->process = Handle(started.hProcess);
  child.impl_->id = started.dwProcessId;
  return child;
}

std::uint32_t ChildProcess::id() const {
  return impl_ ? impl_->id : 0;
}

bool ChildProcess::Running() {
  return impl_ && WaitForSingleObject(impl_->process.get(), 0) == WAIT_TIMEOUT;
}

std::optional<int> ChildProcess::Wait(std::optional<std::chrono::milliseconds> timeout) {
  if (!impl_) return std::nullopt;
  DWORD milliseconds = INFINITE;
  if (timeout) {
    milliseconds = static_cast<DWORD>(std::clamp<long long>(timeout->count(), 0, INFINITE - 1));
  }
  if (WaitForSingleObject(impl_->process.get(), milliseconds) != WAIT_OBJECT_0) return std::nullopt;
  DWORD code = 0;
  GetExitCodeProcess(impl_->process.get(), &code);
  return static_cast<int>(code);
}

void ChildProcess::Kill() {
  if (impl_) TerminateProcess(impl_->process.get(), kExitCodeOfKilled);
}

}  // namespace qv::platform
