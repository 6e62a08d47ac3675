#pragma once

#include <array>
#include <vector>

#include "presets/LightFrame.h"
#include "presets/LightImageSettings.h"

namespace qv {

// A slider and its field. The value is the slider's position divided by the scale.
struct LightRange {
  LightControl control;
  const char* label;  // to be translated
  int start, minimum, maximum;
  int scale;
  bool showsPosition;  // the field shows the slider's integer, not the value with one decimal
};

// In the order of LightControl.
extern const std::array<LightRange, 7> kLightRanges;
const LightRange& RangeOf(LightControl control);

// What the panel of the lights does with its controls: ranges, what is put in force and when, what
// is sent to the host, and the named sets, which belong to the user and not to the model.
class LightEditor {
 public:
  // `sets` is what the frame loads and saves; it must outlive the editor.
  LightEditor(LightFrame& frame, LightControls& controls, std::vector<LightImageSettings>& sets);

  // A slider moves under the mouse: the picture follows for the image values alone.
  void SliderDragged(LightControl control);
  // It was let go, or moved by the keyboard.
  void SliderSet(LightControl control);
  // Enter in a field.
  void TextEntered(LightControl control);
  // The keyboard went elsewhere: a text that is still the one that was shown changes nothing.
  void TextLeft(LightControl control);
  void UseSkyColorSet();
  bool IsEnabled(LightControl control) const;

  void ChooseSet(const wxString& name);
  void SaveSet();
  void DeleteSet();
  void ResetAll();
  // Shows a set and puts it in force.
  void ApplySettings(const LightImageSettings& settings);
  // Shows what is in force.
  void Refresh();

 private:
  float Value(LightControl control) const;
  void PutInForce(LightControl control, float value);
  void PutFactorInForce(LightControl control, float value);
  void PutImageValueInForce(LightControl control, float value);
  void ShowText(LightControl control, float value);
  void Show(LightControl control, float value);
  void ShowNames();
  std::vector<LightImageSettings>::iterator Find(const wxString& name);

  LightFrame& frame_;
  LightControls& controls_;
  std::vector<LightImageSettings>& sets_;
};

}  // namespace qv
