#include "app/HostText.h"

#include <wx/strconv.h>

namespace qv {

wxString TextFromHost(const std::string& text) {
  if (text.empty()) return {};
  wxString converted(text.data(), *wxConvCurrent, text.size());
  if (converted.empty()) converted = wxString::FromUTF8(text.data(), text.size());
  if (converted.empty()) converted = wxString::From8BitData(text.data(), text.size());
  return converted;
}

}  // namespace qv
