#include "presets/LightImageSettings.h"

#include <wx/config.h>

#include <cmath>
#include <iterator>

namespace qv {
namespace {

constexpr const char* kGroup = "/Presets/LightImageSettings";

struct Value {
  const char* key;
  float LightImageSettings::*field;
};

constexpr Value kValues[] = {
    {"Sun", &LightImageSettings::sun},
    {"Ambient", &LightImageSettings::ambient},
    {"Point", &LightImageSettings::point},
    {"Lem", &LightImageSettings::lem},
    {"Brightness", &LightImageSettings::brightness},
    {"Contrast", &LightImageSettings::contrast},
    {"Gamma", &LightImageSettings::gamma},
};
constexpr const char* kUseSkyColorKey = "UseSkyColorForAmbient";

// What a name cannot hold where it is part of a path in the store, and what stands for it there.
constexpr struct {
  const char* plain;
  const char* kept;
} kEscapes[] = {{"%", "%25"}, {"/", "%2F"}, {"\\", "%5C"}};

wxString GroupName(wxString name) {
  for (const auto& [plain, kept] : kEscapes) name.Replace(plain, kept);
  if (name == "." || name == "..") name.Replace(".", "%2E");
  return name;
}

wxString NameOfGroup(wxString group) {
  if (group == "%2E" || group == "%2E%2E") group.Replace("%2E", ".");
  // The escape sign itself comes last.
  for (auto escape = std::rbegin(kEscapes); escape != std::rend(kEscapes); ++escape) {
    group.Replace(escape->kept, escape->plain);
  }
  return group;
}

}  // namespace

std::vector<LightImageSettings> LoadLightImageSettings(wxConfigBase& settings) {
  settings.SetPath(kGroup);
  // All names first: reading a set changes the place in the store.
  std::vector<LightImageSettings> sets;
  wxString group;
  long at = 0;
  for (bool found = settings.GetFirstGroup(group, at); found;
       found = settings.GetNextGroup(group, at)) {
    sets.emplace_back().name = NameOfGroup(group);
  }
  for (LightImageSettings& set : sets) {
    settings.SetPath(GroupName(set.name));
    for (const auto& [key, field] : kValues) {
      const double stored = settings.ReadDouble(key, set.*field);
      if (std::isfinite(static_cast<float>(stored))) set.*field = static_cast<float>(stored);
    }
    set.useSkyColorForAmbient = settings.ReadBool(kUseSkyColorKey, false);
    settings.SetPath("..");
  }
  settings.SetPath("/");
  return sets;
}

void SaveLightImageSettings(wxConfigBase& settings, const std::vector<LightImageSettings>& sets) {
  settings.DeleteGroup(kGroup);
  settings.SetPath(kGroup);
  for (const LightImageSettings& set : sets) {
    settings.SetPath(GroupName(set.name));
    for (const auto& [key, field] : kValues) settings.Write(key, static_cast<double>(set.*field));
    settings.Write(kUseSkyColorKey, set.useSkyColorForAmbient);
    settings.SetPath("..");
  }
  settings.SetPath("/");
}

}  // namespace qv
