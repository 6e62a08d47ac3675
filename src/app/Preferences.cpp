#include "app/Preferences.h"

#include <algorithm>

namespace qv {
namespace {

constexpr char kAntialiasKey[] = "/Defaults/Rendering/Antialias";
constexpr char kStatisticsKey[] = "/Defaults/Rendering/ShowStatistics";

}  // namespace

wxArrayString Preferences::AntialiasChoices() {
  wxArrayString choices;
  for (const char* choice : {"4x", "16x", "64x"}) choices.Add(choice);
  return choices;
}

Preferences Preferences::Load(const wxConfigBase& settings) {
  Preferences stored;
  const int index = AntialiasChoices().Index(settings.Read(kAntialiasKey, wxString()));
  stored.antialiasIndex = std::max(index, 0);
  stored.showStatistics = settings.ReadBool(kStatisticsKey, true);
  return stored;
}

void Preferences::Store(wxConfigBase& settings) const {
  settings.Write(kAntialiasKey, AntialiasChoices()[static_cast<std::size_t>(antialiasIndex)]);
  settings.Write(kStatisticsKey, showStatistics);
}

}  // namespace qv
