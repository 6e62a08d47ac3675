#pragma once

#include <wx/datstrm.h>
#include <wx/string.h>

#include <cstdint>

#include "presets/CameraKey.h"
#include "presets/CameraStage.h"
#include "presets/PresetReader.h"

namespace qv {

// What stands first in the record of a preset.
enum class PresetType : std::int32_t {
  kView = 0,
  kCameraAnimation = 1,
  kCameraKeyAnimation = 2,
  kTour = 3,
};

// A named, saved way of looking at the model. Presets belong to the GUI thread.
class Preset {
 public:
  // Takes a new id.
  explicit Preset(PresetType type);
  virtual ~Preset() = default;

  // The record of the preset, the type code included.
  virtual void Write(wxDataOutputStream& stream) const;
  // Fills the preset from a record whose type code was read already. What is missing at the end of
  // the block is 0 or empty.
  virtual void Read(PresetReader& reader);
  // Shows the preset and returns when that is done; false if it was ended on the way.
  virtual bool Apply(CameraStage& stage) const;

  bool IsView() const { return type == PresetType::kView; }
  // Whether it was built from views, which it keeps.
  bool IsBuiltFromViews() const {
    return type == PresetType::kCameraKeyAnimation || type == PresetType::kTour;
  }

  wxString id;                // a GUID, which nothing is looked up by
  bool isOwn = true;          // made in the viewer; others are neither updated nor deleted by tools
  bool jumpDirectly = false;  // a view is shown without the move to it; not stored
  PresetType type;
  wxString name;
  bool hasSunTime = false;  // the sun's date is set when the preset is shown
  SunRecord sun;
  wxString comment;

 protected:
  Preset(const Preset&) = default;
  Preset& operator=(const Preset&) = default;
};

// One pose of the camera.
class ViewPreset : public Preset {
 public:
  ViewPreset() : Preset(PresetType::kView) {}
  ViewPreset(const wxString& viewName, const CameraPose& viewPose, std::int32_t flags, float height,
             bool recordsSun, const SunRecord& viewSun);

  void Write(wxDataOutputStream& stream) const override;
  void Read(PresetReader& reader) override;
  // Moves the camera from where it is to the view.
  bool Apply(CameraStage& stage) const override;

  bool noCamera = false;  // sets the sun only; cannot be part of an animation
  CameraPose pose;
  std::int32_t viewFlags = 0;  // kept for the host
  float eyeHeight = 0;         // the frame's when the view was made; kept only
};

}  // namespace qv
