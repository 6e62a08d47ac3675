#include "platform/GuardedCopy.h"

#include <sys/uio.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

namespace qv::platform {

namespace {

// A copy made by the kernel ends with an error code where a copy made by this thread would end with
// a signal.
using KernelCopy = ssize_t (*)(pid_t, const iovec*, unsigned long, const iovec*, unsigned long,
                               unsigned long);

enum class Copied { kAll, kNotAll, kNotPermitted };

Copied CopyThroughKernel(KernelCopy copy, void* own, void* shared, std::size_t size) {
  auto* ownBytes = static_cast<char*>(own);
  auto* sharedBytes = static_cast<char*>(shared);
  while (size > 0) {
    const iovec local{ownBytes, size};
    const iovec remote{sharedBytes, size};
    const ssize_t done = copy(getpid(), &local, 1, &remote, 1, 0);
    if (done < 0) {
      return errno == EPERM || errno == ENOSYS ? Copied::kNotPermitted : Copied::kNotAll;
    }
    if (done == 0) return Copied::kNotAll;
    ownBytes += done;
    sharedBytes += done;
    size -= static_cast<std::size_t>(done);
  }
  return Copied::kAll;
}

}  // namespace

bool CopyFromShared(void* to, const void* shared, std::size_t size) {
  const Copied copied = CopyThroughKernel(process_vm_readv, to, const_cast<void*>(shared), size);
  // A sandbox may forbid the call; the peer is then trusted to leave its memory in place.
  if (copied == Copied::kNotPermitted) std::memcpy(to, shared, size);
  return copied != Copied::kNotAll;
}

bool CopyToShared(void* shared, const void* from, std::size_t size) {
  const Copied copied = CopyThroughKernel(process_vm_writev, const_cast<void*>(from), shared, size);
  if (copied == Copied::kNotPermitted) std::memcpy(shared, from, size);
  return copied != Copied::kNotAll;
}

}  // namespace qv::platform
