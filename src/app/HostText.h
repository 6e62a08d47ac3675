#pragma once

#include <wx/string.h>

#include <string>

namespace qv {

// Text of the host, which is in the current multibyte encoding. Bytes that make no sense in it are
// read as UTF-8, and failing that one by one, so that something is shown in any case. Any thread.
wxString TextFromHost(const std::string& text);

}  // namespace qv
