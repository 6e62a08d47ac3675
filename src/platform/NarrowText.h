#pragma once

#include <string>

namespace qv::platform {

// Text that another program gives in the multibyte encoding that it takes for the current one, as
// UTF-8: a program may have one of its own, so what is UTF-8 stays as it is, and anything else is
// read as text in the system's encoding. Something comes of any bytes. Any thread.
std::string Utf8FromNarrow(const std::string& text);

// The same for a file's name, as functions that open files take it here. On Linux names are bytes
// and stay as they are.
std::string FileNameFromNarrow(const std::string& name);

}  // namespace qv::platform
