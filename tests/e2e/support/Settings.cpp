#include "e2e/support/Settings.h"

#include <wx/config.h>
#include <wx/init.h>

namespace qv::e2e {
namespace {

template <class Use>
void UseStore(Use&& use) {
  const wxInitializer library;
  wxConfig store("QuorvaneApp", "Ostrand Inc");
  use(store);
  store.Flush();
}

}  // namespace

void WriteSetting(const std::string& key, long value) {
  UseStore([&](wxConfig& store) { store.Write(key, value); });
}

std::optional<long> ReadSetting(const std::string& key) {
  std::optional<long> value;
  UseStore([&](const wxConfig& store) {
    long read = 0;
    if (store.Read(key, &read)) value = read;
  });
  return value;
}

std::string ReadTextSetting(const std::string& key) {
  std::string value;
  UseStore([&](const wxConfig& store) { value = store.Read(key, wxString()).utf8_string(); });
  return value;
}

}  // namespace qv::e2e
