#include "e2e/support/Processes.h"

#include <windows.h>
// After windows.h.
#include <winternl.h>

#include <string>

namespace qv::e2e {
namespace {

double Seconds(const FILETIME& time) {
  constexpr double kUnitsPerSecond = 1e7;
  const std::uint64_t units = std::uint64_t{time.dwHighDateTime} << 32 | time.dwLowDateTime;
  return static_cast<double>(units) / kUnitsPerSecond;
}

using QueryProcess = NTSTATUS(NTAPI*)(HANDLE, PROCESSINFOCLASS, PVOID, ULONG, PULONG);

// Copies an object of another process.
template <class Object>
bool ReadObject(HANDLE process, const void* from, Object& object) {
  SIZE_T read = 0;
  return ReadProcessMemory(process, from, &object, sizeof(object), &read) != 0 &&
         read == sizeof(object);
}

// The system keeps a process's folder as a text among its parameters, which this process can read;
// the header leaves the name of that field out: CurrentDirectory, behind the standard handles.
std::wstring FolderInParameters(HANDLE process) {
  const auto query = reinterpret_cast<QueryProcess>(reinterpret_cast<void*>(
      GetProcAddress(GetModuleHandleW(L"ntdll"), "NtQueryInformationProcess")));
  PROCESS_BASIC_INFORMATION basic{};
  PEB block{};
  struct {
    BYTE before[0x38];
    UNICODE_STRING folder;
  } parameters{};
  if (query == nullptr ||
      query(process, ProcessBasicInformation, &basic, sizeof(basic), nullptr) != 0 ||
      !ReadObject(process, basic.PebBaseAddress, block) ||
      !ReadObject(process, block.ProcessParameters, parameters)) {
    return {};
  }
  std::wstring text(parameters.folder.Length / sizeof(wchar_t), L'\0');
  SIZE_T read = 0;
  if (!ReadProcessMemory(process, parameters.folder.Buffer, text.data(), parameters.folder.Length,
                         &read)) {
    return {};
  }
  return text;
}

}  // namespace

void KillProcess(std::uint32_t process) {
  const HANDLE handle = OpenProcess(PROCESS_TERMINATE, FALSE, process);
  if (handle == nullptr) return;
  TerminateProcess(handle, kExitCodeOfKilled);
  CloseHandle(handle);
}

double ProcessorSeconds(std::uint32_t process) {
  const HANDLE handle = OpenProcess(PROCESS_QUERY_LIMITED_INFORMATION, FALSE, process);
  if (handle == nullptr) return 0;
  FILETIME created{}, ended{}, kernel{}, user{};
  GetProcessTimes(handle, &created, &ended, &kernel, &user);
  CloseHandle(handle);
  return Seconds(kernel) + Seconds(user);
}

std::filesystem::path WorkingFolder(std::uint32_t process) {
  const HANDLE handle = OpenProcess(PROCESS_QUERY_INFORMATION | PROCESS_VM_READ, FALSE, process);
  if (handle == nullptr) return {};
  std::filesystem::path folder = FolderInParameters(handle);
  CloseHandle(handle);
  return folder;
}

}  // namespace qv::e2e
