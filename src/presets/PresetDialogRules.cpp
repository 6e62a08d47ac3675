#include "presets/PresetDialogRules.h"

#include <wx/config.h>
#include <wx/intl.h>

#include <cmath>
#include <limits>

namespace qv {
namespace {

constexpr const char* kSpeedKey = "/Defaults/MovieCreation_CameraSpeed";
constexpr const char* kRecordSunKey = "/Defaults/PresetCreation_RecordTime";
constexpr double kDefaultSpeed = 50.0;

}  // namespace

wxString ProposedCameraSpeed(const wxConfigBase& settings) {
  return wxString::Format("%.1f", settings.ReadDouble(kSpeedKey, kDefaultSpeed));
}

std::optional<PresetsPrompts::Path> CheckPathEntry(wxConfigBase& settings, const wxString& name,
                                                   const wxString& speed, EntryFault& fault) {
  double entered = 0;
  if (!speed.ToDouble(&entered) || !(std::abs(entered) <= std::numeric_limits<float>::max())) {
    fault = {_("Invalid camera speed."), false};
    return std::nullopt;
  }
  const float narrowed = static_cast<float>(entered);
  if (narrowed <= 0) {
    fault = {_("Camera Speed must be larger than 0."), false};
    return std::nullopt;
  }
  if (name.empty()) {
    fault = {_("Invalid preset name."), true};
    return std::nullopt;
  }
  settings.Write(kSpeedKey, entered);
  return PresetsPrompts::Path{name, narrowed};
}

bool ProposedRecordSun(const wxConfigBase& settings) {
  return settings.ReadBool(kRecordSunKey, true);
}

void KeepRecordSun(wxConfigBase& settings, bool record) {
  settings.Write(kRecordSunKey, record);
}

}  // namespace qv
