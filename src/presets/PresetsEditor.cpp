#include "presets/PresetsEditor.h"

#include <wx/config.h>
#include <wx/intl.h>

#include <algorithm>
#include <cmath>
#include <set>
#include <string>
#include <utility>

#include "core/Calendar.h"
#include "presets/PresetDialogRules.h"

namespace qv {
namespace {

constexpr const char* kPresetsProperty = "presets";
constexpr int kLastNumber = 9999;

constexpr double kStartPause = 1.0;
constexpr double kEndPause = 1.0;
constexpr double kFirstDwell = 1.0;
constexpr double kLastDwell = 1.0;
constexpr double kTravel = 2.0;
constexpr double kDwell = 2.0;

PresetIcon IconOf(const Preset& preset) {
  if (!preset.IsView()) return PresetIcon::kAnimation;
  return preset.isOwn ? PresetIcon::kView : PresetIcon::kImportedView;
}

bool IsContiguous(const std::vector<std::size_t>& rows) {
  return !rows.empty() && rows.back() - rows.front() + 1 == rows.size();
}

const ViewPreset* AsView(const Preset& preset) {
  return preset.IsView() ? static_cast<const ViewPreset*>(&preset) : nullptr;
}

wxString Joined(const std::vector<wxString>& names) {
  wxString text;
  for (const wxString& name : names) text += (text.empty() ? "" : ", ") + name;
  return text;
}

}  // namespace

// The stage of one opened preset. While it is being shown another may be opened from the event
// loop; the older one then ends and leaves the camera alone.
class PresetsEditor::Superseding final : public CameraStage {
 public:
  explicit Superseding(PresetsEditor& editor)
      : editor_(editor), stage_(editor.frame_.Stage()), mine_(++editor.opened_) {}

  bool IsSuperseded() const { return editor_.opened_ != mine_; }

  double Now() override { return stage_.Now(); }
  RenderCamera Camera() override { return stage_.Camera(); }
  void SetSunDate(double julianDate) override {
    if (!IsSuperseded()) stage_.SetSunDate(julianDate);
  }
  void Show(const RenderCamera& camera, StageFrame frame) override {
    if (!IsSuperseded()) stage_.Show(camera, frame);
  }
  bool FrameDone() override { return stage_.FrameDone(); }
  void Yield() override { stage_.Yield(); }
  void Wait() override { stage_.Wait(); }
  bool StopAsked() override { return IsSuperseded() || stage_.StopAsked(); }

 private:
  PresetsEditor& editor_;
  CameraStage& stage_;
  const int mine_;
};

PresetsEditor::PresetsEditor(PresetsFrame& frame, PresetRows& rows, PresetsPrompts& prompts,
                             wxConfigBase& settings)
    : frame_(frame), rows_(rows), prompts_(prompts), settings_(settings) {}

PresetsEditor::Enabled PresetsEditor::EnabledFor(Selection selected) const {
  const std::vector<std::size_t> rows = Present(selected);
  const Preset* only = rows.size() == 1 ? presets_[rows[0]].get() : nullptr;
  const bool movable = IsContiguous(rows);
  Enabled enabled;
  enabled.addView = enabled.importPages = !IsRecording();
  enabled.insertView = only && !IsRecording();
  enabled.updateView = only && only->IsView() && only->isOwn;
  enabled.addAnimation = rows.size() > 1;
  enabled.movie = only && !only->IsView();
  enabled.explode = only && only->IsBuiltFromViews();
  enabled.remove = !rows.empty() && std::all_of(rows.begin(), rows.end(), [this](std::size_t row) {
    return presets_[row]->isOwn;
  });
  enabled.moveUp = movable && rows.front() > 0;
  enabled.moveDown = movable && rows.back() + 1 < presets_.size();
  return enabled;
}

void PresetsEditor::LoadPresets(std::span<const std::byte> block) {
  rows_.Clear();
  presets_.clear();
  // A host that has kept none yet has no block.
  if (!block.empty()) presets_ = ReadPresetBlock(block);
  for (std::size_t row = 0; row < presets_.size(); ++row) {
    rows_.InsertRow(static_cast<int>(row), presets_[row]->name, IconOf(*presets_[row]));
  }
  rows_.FitColumn();
}

void PresetsEditor::SavePresets() {
  rows_.FitColumn();
  frame_.SetProperty(kPresetsProperty, WritePresetBlock(presets_));
}

void PresetsEditor::AddView() {
  const auto answer = AskPresetName(_("View"), false);
  if (!answer) return;
  Append(MakeView(answer->name));
  SavePresets();
}

void PresetsEditor::InsertView(Selection selected) {
  const std::vector<std::size_t> rows = Present(selected);
  if (rows.empty()) return;
  const auto answer = AskPresetName(_("View"), false);
  if (!answer) return;
  Insert(std::min(rows.front() + 1, presets_.size()), MakeView(answer->name));
  SavePresets();
}

void PresetsEditor::UpdateView(Selection selected) {
  if (!EnabledFor(selected).updateView) return;
  auto& view = static_cast<ViewPreset&>(*presets_[Present(selected).front()]);
  view = ViewPreset(view.name, LevelPose(frame_.Stage().Camera()), view.viewFlags, view.eyeHeight,
                    view.hasSunTime, view.sun);
  SavePresets();
}

void PresetsEditor::AddKeyframeAnimation(Selection selected) {
  auto views = ChosenViews(selected, _("Some View Presets might not have camera settings.\n  ->"));
  if (!views) return;
  const auto answer = AskPathName(_("Path"));
  if (!answer) return;
  Append(std::make_shared<CameraKeyAnimationPreset>(std::move(*views), answer->speed, answer->name,
                                                    SunRecord(), kStartPause, kEndPause));
  SavePresets();
}

void PresetsEditor::AddTour(Selection selected) {
  auto views = ChosenViews(selected, _("Some View Presets have no camera settings.\n  ->"));
  if (!views) return;
  const auto answer = AskPresetName(_("Path"), false);
  if (!answer) return;
  Append(std::make_shared<TourAnimationPreset>(std::move(*views), answer->name, SunRecord(),
                                               kFirstDwell, kLastDwell, kTravel, kDwell));
  SavePresets();
}

std::optional<std::vector<ViewPreset>> PresetsEditor::ChosenViews(
    Selection selected, const wxString& withoutCamera) const {
  std::vector<ViewPreset> views;
  std::vector<wxString> left;
  for (const std::size_t row : Present(selected)) {
    const ViewPreset* view = AsView(*presets_[row]);
    if (!view) continue;
    if (view->noCamera) {
      left.push_back(view->name);
    } else {
      views.push_back(*view);
    }
  }
  if (views.size() >= 2) return views;
  wxString message = _("Please select multiple View Presets.");
  if (!left.empty()) message += "\n" + withoutCamera + Joined(left);
  prompts_.ShowMessage(message);
  return std::nullopt;
}

void PresetsEditor::Explode(Selection selected) {
  if (!EnabledFor(selected).explode) return;
  const std::size_t row = Present(selected).front();
  const PresetPointer exploded = presets_[row];
  const auto& animation = static_cast<const CameraKeyAnimationPreset&>(*exploded);
  Erase(row);
  std::size_t next = row;
  for (const ViewPreset& view : animation.views) {
    auto copy = std::make_shared<ViewPreset>(view);
    copy->isOwn = true;
    Insert(next++, std::move(copy));
  }
  if (next > row) rows_.SelectRow(static_cast<int>(row));
  SavePresets();
}

void PresetsEditor::MoveUp(Selection selected) {
  if (!EnabledFor(selected).moveUp) return;
  const std::vector<std::size_t> rows = Present(selected);
  Jump(rows.front() - 1, rows.back());
  SavePresets();
}

void PresetsEditor::MoveDown(Selection selected) {
  if (!EnabledFor(selected).moveDown) return;
  const std::vector<std::size_t> rows = Present(selected);
  Jump(rows.back() + 1, rows.front());
  SavePresets();
}

void PresetsEditor::Delete(Selection selected) {
  const std::vector<std::size_t> rows = Present(selected);
  if (rows.empty()) return;
  for (auto row = rows.rbegin(); row != rows.rend(); ++row) Erase(*row);
  SavePresets();
}

void PresetsEditor::Rename(int row, const wxString& text) {
  if (row < 0 || static_cast<std::size_t>(row) >= presets_.size()) return;
  Preset& preset = *presets_[static_cast<std::size_t>(row)];
  if (!text.empty()) preset.name = text;
  rows_.SetRowText(row, preset.name);
  rows_.FitColumn();
}

void PresetsEditor::Open(Selection selected) {
  const std::vector<std::size_t> rows = Present(selected);
  if (rows.empty()) return;
  const PresetPointer preset = presets_[rows.front()];  // the list may be loaded anew meanwhile
  preset->jumpDirectly = false;
  Superseding stage(*this);
  frame_.Play([&] { preset->Apply(stage); });
  if (stage.IsSuperseded() || !frame_.IsCameraLinked()) return;

  const PresetsFrame::SunSite sun = frame_.Sun();
  const CalendarDate date = CalendarFromJulianDate(sun.julianDate, sun.longitude);
  const double minutes = date.hours * 60;
  frame_.SendDateTime(date.year, date.month, date.day, static_cast<int>(date.hours),
                      static_cast<int>((date.hours - std::trunc(date.hours)) * 60),
                      static_cast<int>((minutes - std::trunc(minutes)) * 60));
}

void PresetsEditor::ToggleRecording() {
  if (!IsRecording()) {
    recorder_.Start(Sample(), frame_.Stage().Now());
    rows_.ShowRecording(true);
    return;
  }
  const auto recording = recorder_.Stop();
  rows_.ShowRecording(false);
  const auto answer = AskPresetName(_("Path"), true);
  if (!answer) return;
  recording->name = answer->name;
  recording->hasSunTime = answer->recordSun;
  Append(recording);
  SavePresets();
}

void PresetsEditor::RecordSample() {
  if (IsRecording()) recorder_.Add(Sample(), frame_.Stage().Now());
}

CameraRecorder::Sample PresetsEditor::Sample() const {
  const PresetsFrame::SunSite sun = frame_.Sun();
  return {LevelPose(frame_.Stage().Camera()), sun.julianDate, sun.latitude, sun.longitude};
}

std::shared_ptr<ViewPreset> PresetsEditor::MakeView(const wxString& name) const {
  return std::make_shared<ViewPreset>(name, LevelPose(frame_.Stage().Camera()), 0,
                                      frame_.EyeHeight(), false, SunRecord());
}

std::optional<wxString> PresetsEditor::ProposeName(const wxString& base, bool parenthesised) const {
  std::set<wxString> taken;
  for (const PresetPointer& preset : presets_) taken.insert(preset->name.Lower());
  for (int n = 1; n <= kLastNumber; ++n) {
    const std::string digits = std::to_string(n);
    const wxString number = parenthesised ? " (" + digits + ")" : digits;
    if (!taken.contains((base + number).Lower())) return base + number;
  }
  return std::nullopt;
}

std::optional<PresetsPrompts::Name> PresetsEditor::AskPresetName(const wxString& base,
                                                                 bool offerSun) {
  std::optional<wxString> proposal = ProposeName(base, false);
  auto offered = offerSun ? std::optional<bool>(ProposedRecordSun(settings_)) : std::nullopt;
  while (proposal) {
    auto answer = prompts_.AskName(*proposal, offered);
    if (!answer) return std::nullopt;
    if (!HasName(answer->name)) {
      if (offerSun) KeepRecordSun(settings_, answer->recordSun);
      return answer;
    }
    prompts_.ShowMessage(_("Specified name already exists."));
    proposal = answer->name;
    if (offerSun) offered = answer->recordSun;
  }
  return std::nullopt;
}

std::optional<PresetsPrompts::Path> PresetsEditor::AskPathName(const wxString& base) {
  std::optional<wxString> proposal = ProposeName(base, false);
  while (proposal) {
    auto answer = prompts_.AskPath(*proposal);
    if (!answer || !HasName(answer->name)) return answer;
    prompts_.ShowMessage(_("Specified name already exists."));
    proposal = answer->name;
  }
  return std::nullopt;
}

bool PresetsEditor::HasName(const wxString& name) const {
  return std::any_of(presets_.begin(), presets_.end(), [&name](const PresetPointer& preset) {
    return preset->name.IsSameAs(name, false);
  });
}

std::vector<std::size_t> PresetsEditor::Present(Selection selected) const {
  std::vector<std::size_t> rows;
  for (const int row : selected) {
    if (row >= 0 && static_cast<std::size_t>(row) < presets_.size()) {
      rows.push_back(static_cast<std::size_t>(row));
    }
  }
  return rows;
}

void PresetsEditor::Insert(std::size_t row, PresetPointer preset) {
  rows_.InsertRow(static_cast<int>(row), preset->name, IconOf(*preset));
  presets_.insert(presets_.begin() + static_cast<std::ptrdiff_t>(row), std::move(preset));
}

void PresetsEditor::Erase(std::size_t row) {
  presets_.erase(presets_.begin() + static_cast<std::ptrdiff_t>(row));
  rows_.RemoveRow(static_cast<int>(row));
}

void PresetsEditor::Jump(std::size_t from, std::size_t to) {
  const PresetPointer preset = presets_[from];
  Erase(from);
  Insert(to, preset);
}

}  // namespace qv
