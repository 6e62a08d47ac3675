#include "presets/AnimationPresets.h"

#include <algorithm>
#include <utility>

#include "presets/KeyBuilding.h"
#include "presets/PathPlayback.h"
#include "presets/PoseRecord.h"

namespace qv {
namespace {

constexpr std::int32_t kAnimationSunTag = -1;

SunRecord SunOfAnimation(SunRecord sun) {
  sun.sunTag = kAnimationSunTag;
  return sun;
}

}  // namespace

CameraAnimationPreset::CameraAnimationPreset(const wxString& animationName,
                                             const SunRecord& animationSun)
    : CameraAnimationPreset() {
  name = animationName;
  sun = SunOfAnimation(animationSun);
}

void CameraAnimationPreset::Write(wxDataOutputStream& stream) const {
  Preset::Write(stream);
  stream.Write32(static_cast<wxUint32>(keys.size()));
  for (const CameraKey& key : keys) WriteKey(stream, key);
}

void CameraAnimationPreset::Read(PresetReader& reader) {
  Preset::Read(reader);
  keys.clear();
  std::uint32_t count = reader.ReadCount();
  keys.reserve(std::min<std::size_t>(count, reader.Remaining() / kKeyRecordSize));
  for (; count > 0; --count) {
    const CameraKey key = ReadKey(reader);
    if (reader.IsShort()) return;
    keys.push_back(key);
  }
}

bool CameraAnimationPreset::Apply(CameraStage& stage) const {
  bool aborted = false;
  Play(stage, aborted);
  return !aborted;
}

int CameraAnimationPreset::Play(CameraStage& stage, bool& aborted) const {
  return PlayKeys(stage, keys, hasSunTime, aborted);
}

CameraKeyAnimationPreset::CameraKeyAnimationPreset(std::vector<ViewPreset> from, float speed,
                                                   const wxString& animationName,
                                                   const SunRecord& animationSun, double startPause,
                                                   double endPause)
    : CameraKeyAnimationPreset() {
  name = animationName;
  sun = SunOfAnimation(animationSun);
  views = std::move(from);
  keys = BuildKeyframePath(views, speed, animationSun, startPause, endPause);
}

void CameraKeyAnimationPreset::Write(wxDataOutputStream& stream) const {
  CameraAnimationPreset::Write(stream);
  stream.Write32(static_cast<wxUint32>(views.size()));
  for (const ViewPreset& view : views) view.Write(stream);
}

void CameraKeyAnimationPreset::Read(PresetReader& reader) {
  CameraAnimationPreset::Read(reader);
  views.clear();
  for (std::uint32_t count = reader.ReadCount(); count > 0; --count) {
    reader.ReadInt();  // the type code
    ViewPreset view;
    view.Read(reader);
    if (reader.IsShort()) return;
    views.push_back(std::move(view));
  }
}

TourAnimationPreset::TourAnimationPreset(std::vector<ViewPreset> from,
                                         const wxString& animationName,
                                         const SunRecord& animationSun, double firstDwell,
                                         double lastDwell, double travel, double dwell)
    : TourAnimationPreset() {
  name = animationName;
  sun = SunOfAnimation(animationSun);
  views = std::move(from);
  keys = BuildTour(views, firstDwell, lastDwell, travel, dwell);
}

}  // namespace qv
