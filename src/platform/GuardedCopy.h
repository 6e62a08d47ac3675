#pragma once

#include <cstddef>

namespace qv::platform {

// Copies to and from memory that another process shares and may take away at any moment (on Linux
// by making the file shorter, which would end this process with SIGBUS at a plain access). False
// when a part of it is not there; what was copied until then is undefined. Any thread.
bool CopyFromShared(void* to, const void* shared, std::size_t size);
bool CopyToShared(void* shared, const void* from, std::size_t size);

}  // namespace qv::platform
