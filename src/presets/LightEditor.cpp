#include "presets/LightEditor.h"

#include <wx/intl.h>

#include <algorithm>
#include <cmath>
#include <optional>

namespace qv {

const std::array<LightRange, 7> kLightRanges{{
    {LightControl::kSun, wxTRANSLATE("Sun:"), 10, 1, 50, 10, false},
    {LightControl::kAmbient, wxTRANSLATE("Ambient:"), 20, 1, 60, 20, false},
    {LightControl::kPoint, wxTRANSLATE("Omni/Spot:"), 10, 1, 50, 10, false},
    {LightControl::kLem, wxTRANSLATE("LEM:"), 10, 1, 100, 10, false},
    {LightControl::kBrightness, wxTRANSLATE("Brightness:"), 0, -100, 100, 100, true},
    {LightControl::kContrast, wxTRANSLATE("Contrast:"), 0, -100, 100, 100, true},
    {LightControl::kGamma, wxTRANSLATE("Gamma:"), 10, 1, 30, 10, false},
}};

namespace {

float LightFactors::*FactorOf(LightControl control) {
  switch (control) {
    case LightControl::kSun:
      return &LightFactors::sun;
    case LightControl::kAmbient:
      return &LightFactors::ambient;
    case LightControl::kPoint:
      return &LightFactors::point;
    case LightControl::kLem:
      return &LightFactors::lem;
    default:
      return nullptr;
  }
}

float ImageValues::*ImageValueOf(LightControl control) {
  switch (control) {
    case LightControl::kBrightness:
      return &ImageValues::brightness;
    case LightControl::kContrast:
      return &ImageValues::contrast;
    default:
      return &ImageValues::gamma;
  }
}

float ValueAt(const LightRange& range, int position) {
  return static_cast<float>(position) / static_cast<float>(range.scale);
}

int PositionOf(const LightRange& range, float value) {
  // What a position stands for may come back from its float as just below it.
  constexpr float kRounding = 1e-3f;
  const float scaled = value * static_cast<float>(range.scale);
  const float position = scaled + std::copysign(kRounding, scaled);
  return static_cast<int>(
      std::clamp(position, static_cast<float>(range.minimum), static_cast<float>(range.maximum)));
}

wxString TextOf(const LightRange& range, float value) {
  return range.showsPosition ? wxString::Format("%d", PositionOf(range, value))
                             : wxString::Format("%.1f", value);
}

// The value that a text stands for, brought into the range; nothing if it is no number.
std::optional<float> ParseText(const LightRange& range, const wxString& text) {
  if (range.showsPosition) {
    long position = 0;
    if (!text.ToLong(&position)) return std::nullopt;
    return ValueAt(range,
                   static_cast<int>(std::clamp<long>(position, range.minimum, range.maximum)));
  }
  double value = 0;
  if (!text.ToDouble(&value) || std::isnan(value)) return std::nullopt;
  return static_cast<float>(
      std::clamp<double>(value, ValueAt(range, range.minimum), ValueAt(range, range.maximum)));
}

}  // namespace

const LightRange& RangeOf(LightControl control) {
  return kLightRanges[static_cast<std::size_t>(control)];
}

LightEditor::LightEditor(LightFrame& frame, LightControls& controls,
                         std::vector<LightImageSettings>& sets)
    : frame_(frame), controls_(controls), sets_(sets) {}

float LightEditor::Value(LightControl control) const {
  if (const auto factor = FactorOf(control)) return frame_.GetLightFactors().*factor;
  return frame_.GetImageValues().*ImageValueOf(control);
}

void LightEditor::SliderDragged(LightControl control) {
  const float value = ValueAt(RangeOf(control), controls_.Slider(control));
  ShowText(control, value);
  // A light factor would need a new frame, which cannot follow the mouse.
  if (!FactorOf(control)) PutImageValueInForce(control, value);
}

void LightEditor::SliderSet(LightControl control) {
  const float value = ValueAt(RangeOf(control), controls_.Slider(control));
  if (value == Value(control)) return;
  ShowText(control, value);
  PutInForce(control, value);
}

void LightEditor::TextEntered(LightControl control) {
  const float stored = Value(control);
  const auto entered = ParseText(RangeOf(control), controls_.Text(control));
  const LightRange& range = RangeOf(control);
  const auto isStored = [&](float value) {
    return range.showsPosition ? PositionOf(range, value) == PositionOf(range, stored)
                               : value == stored;
  };
  if (!entered || isStored(*entered)) {
    ShowText(control, stored);  // the same value may have been written in another way
    return;
  }
  Show(control, *entered);
  PutInForce(control, *entered);
}

void LightEditor::TextLeft(LightControl control) {
  // The one decimal of the text is not all of a value in steps of a twentieth.
  if (controls_.Text(control) == TextOf(RangeOf(control), Value(control))) return;
  TextEntered(control);
}

void LightEditor::PutInForce(LightControl control, float value) {
  if (FactorOf(control)) {
    PutFactorInForce(control, value);
  } else {
    PutImageValueInForce(control, value);
  }
}

void LightEditor::PutFactorInForce(LightControl control, float value) {
  LightFactors factors = frame_.GetLightFactors();
  factors.*FactorOf(control) = value;
  frame_.SetLightFactors(factors);
  frame_.SendLightFactors(factors);
  frame_.RenderAnew();
}

void LightEditor::PutImageValueInForce(LightControl control, float value) {
  ImageValues values = frame_.GetImageValues();
  if (values.*ImageValueOf(control) == value) return;
  values.*ImageValueOf(control) = value;
  frame_.SetImageValues(values);
  frame_.AdjustPicture();
  if (control == LightControl::kGamma) {
    frame_.SendGamma(values.gamma);
  } else {
    frame_.SendBrightness(values.brightness, values.contrast);
  }
}

void LightEditor::UseSkyColorSet() {
  LightFactors factors = frame_.GetLightFactors();
  factors.useSkyColorForAmbient = controls_.UseSkyColor();
  frame_.SetLightFactors(factors);
  frame_.SendLightFactors(factors);
  frame_.RenderAnew();
}

bool LightEditor::IsEnabled(LightControl control) const {
  return control != LightControl::kLem || !frame_.IsLemBaked();
}

void LightEditor::ChooseSet(const wxString& name) {
  const auto set = Find(name);
  if (set != sets_.end()) ApplySettings(LightImageSettings(*set));
}

void LightEditor::SaveSet() {
  const auto at = [this](LightControl c) { return ValueAt(RangeOf(c), controls_.Slider(c)); };
  LightImageSettings set;
  set.name = controls_.Name();
  // A set without a name could be neither stored nor chosen.
  if (set.name.empty()) return;
  set.sun = at(LightControl::kSun);
  set.ambient = at(LightControl::kAmbient);
  set.useSkyColorForAmbient = controls_.UseSkyColor();
  set.point = at(LightControl::kPoint);
  set.lem = at(LightControl::kLem);
  set.brightness = at(LightControl::kBrightness);
  set.contrast = at(LightControl::kContrast);
  set.gamma = at(LightControl::kGamma);

  const auto present = Find(set.name);
  if (present == sets_.end()) {
    sets_.push_back(set);
    ShowNames();
    controls_.SetName(set.name);
  } else if (controls_.Confirm(
                 _("The specified name already exists. Do you want to overwrite it?"))) {
    set.name = present->name;
    *present = set;
  }
}

void LightEditor::DeleteSet() {
  const auto set = Find(controls_.Name());
  if (set == sets_.end()) return;
  if (!controls_.Confirm(wxString::Format(_("Are you sure you want to delete %s ?"), set->name))) {
    return;
  }
  sets_.erase(set);
  ShowNames();
}

void LightEditor::ResetAll() {
  ApplySettings({});
}

void LightEditor::ApplySettings(const LightImageSettings& settings) {
  controls_.SetName(settings.name);
  frame_.SetImageValues({settings.brightness, settings.contrast, settings.gamma});
  frame_.AdjustPicture();
  frame_.SendBrightness(settings.brightness, settings.contrast);
  frame_.SendGamma(settings.gamma);

  const LightFactors factors{settings.sun, settings.ambient, settings.point, settings.lem,
                             settings.useSkyColorForAmbient};
  frame_.SetLightFactors(factors);
  frame_.SendLightFactors(factors);
  frame_.RenderAnew();
  for (const LightRange& range : kLightRanges) Show(range.control, Value(range.control));
  controls_.SetUseSkyColor(settings.useSkyColorForAmbient);
}

void LightEditor::Refresh() {
  for (const LightRange& range : kLightRanges) Show(range.control, Value(range.control));
  controls_.SetUseSkyColor(frame_.GetLightFactors().useSkyColorForAmbient);
  ShowNames();
}

void LightEditor::ShowText(LightControl control, float value) {
  controls_.SetText(control, TextOf(RangeOf(control), value));
}

void LightEditor::Show(LightControl control, float value) {
  controls_.SetSlider(control, PositionOf(RangeOf(control), value));
  ShowText(control, value);
}

void LightEditor::ShowNames() {
  std::vector<wxString> names;
  names.reserve(sets_.size());
  for (const LightImageSettings& set : sets_) names.push_back(set.name);
  controls_.SetNames(names);
}

std::vector<LightImageSettings>::iterator LightEditor::Find(const wxString& name) {
  return std::find_if(sets_.begin(), sets_.end(), [&name](const LightImageSettings& set) {
    return set.name.IsSameAs(name, false);
  });
}

}  // namespace qv
