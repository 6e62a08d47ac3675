#pragma once

#include <vector>

#include "presets/Preset.h"

namespace qv {

// A path of the camera: recorded, or imported.
class CameraAnimationPreset : public Preset {
 public:
  CameraAnimationPreset() : Preset(PresetType::kCameraAnimation) {}
  // Without keys. The sun's tag becomes -1.
  CameraAnimationPreset(const wxString& animationName, const SunRecord& animationSun);

  void Write(wxDataOutputStream& stream) const override;
  void Read(PresetReader& reader) override;
  bool Apply(CameraStage& stage) const override;
  // Shows the keys in their time. Returns the number of frames shown between the first key and the
  // last; `aborted` is set if it was ended on the way, and then too the last key is shown.
  virtual int Play(CameraStage& stage, bool& aborted) const;

  std::vector<CameraKey> keys;  // in rising order of time

 protected:
  explicit CameraAnimationPreset(PresetType type) : Preset(type) {}
};

// A flight through views along one smooth curve.
class CameraKeyAnimationPreset : public CameraAnimationPreset {
 public:
  CameraKeyAnimationPreset() : CameraAnimationPreset(PresetType::kCameraKeyAnimation) {}
  // `speed` in model units a second, above 0; the pauses in seconds.
  CameraKeyAnimationPreset(std::vector<ViewPreset> from, float speed, const wxString& animationName,
                           const SunRecord& animationSun, double startPause, double endPause);

  void Write(wxDataOutputStream& stream) const override;
  void Read(PresetReader& reader) override;

  std::vector<ViewPreset> views;  // what it was built from

 protected:
  using CameraAnimationPreset::CameraAnimationPreset;
};

// Straight from view to view, with a stay at each.
class TourAnimationPreset : public CameraKeyAnimationPreset {
 public:
  TourAnimationPreset() : CameraKeyAnimationPreset(PresetType::kTour) {}
  // Times in seconds: the stay at the first, the last and any other view, and the way between two.
  TourAnimationPreset(std::vector<ViewPreset> from, const wxString& animationName,
                      const SunRecord& animationSun, double firstDwell, double lastDwell,
                      double travel, double dwell);
};

}  // namespace qv
