#pragma once

#include <memory>
#include <optional>
#include <span>
#include <vector>

#include "presets/CameraRecorder.h"
#include "presets/PresetBlock.h"
#include "presets/PresetsFrame.h"

class wxConfigBase;

namespace qv {

// The presets of the model, and what the panel does with them: which operation is possible, how
// presets are named and ordered, what is sent to the host. Entry i of the list is row i.
//
// Selected rows are given in rising order; rows that are not there are left alone. Every change is
// sent to the host at its end, but for a new name given in the row itself, which goes with the next
// change.
class PresetsEditor {
 public:
  using Selection = std::span<const int>;

  // What the selection allows.
  struct Enabled {
    bool addView = false, insertView = false, updateView = false;
    bool addAnimation = false;  // keyframe animation and tour
    bool movie = false;
    bool explode = false, remove = false;
    bool moveUp = false, moveDown = false;
    bool importPages = false;
  };

  PresetsEditor(PresetsFrame& frame, PresetRows& rows, PresetsPrompts& prompts,
                wxConfigBase& settings);

  const std::vector<PresetPointer>& presets() const { return presets_; }
  bool IsRecording() const { return recorder_.IsRecording(); }
  Enabled EnabledFor(Selection selected) const;

  // Fetches the list from the host.
  void LoadPresets(std::span<const std::byte> block);

  void AddView();
  void InsertView(Selection selected);  // behind the first selected row
  void UpdateView(Selection selected);
  void AddKeyframeAnimation(Selection selected);
  void AddTour(Selection selected);
  // Replaces an animation by the views that it was built from.
  void Explode(Selection selected);
  void MoveUp(Selection selected);
  void MoveDown(Selection selected);
  // Imported views too: only the tools refuse them.
  void Delete(Selection selected);
  // The row's text was edited; an empty one brings the old name back.
  void Rename(int row, const wxString& text);
  // Shows the first selected preset, which takes its time, and tells a linked host the sun's date.
  void Open(Selection selected);
  void ImportPages();
  void ImportAnimatePath();
  void ToggleRecording();
  // After each frame: the camera as it is now, while recording.
  void RecordSample();

  // The first name that is free of `base` with a number behind it, "Hall1", or "Hall (1)" if
  // `parenthesised`. Nothing if 9999 are taken.
  std::optional<wxString> ProposeName(const wxString& base, bool parenthesised) const;

 private:
  class Superseding;

  void SavePresets();
  void Insert(std::size_t row, PresetPointer preset);
  void Append(PresetPointer preset) { Insert(presets_.size(), std::move(preset)); }
  void Erase(std::size_t row);
  // Moves the preset of one row, so that it is found at the other afterwards.
  void Jump(std::size_t from, std::size_t to);

  bool HasName(const wxString& name) const;
  std::vector<std::size_t> Present(Selection selected) const;
  std::shared_ptr<ViewPreset> MakeView(const wxString& name) const;
  std::optional<std::vector<ViewPreset>> ChosenViews(Selection selected,
                                                     const wxString& withoutCamera) const;
  std::optional<PresetsPrompts::Name> AskPresetName(const wxString& base, bool offerSun);
  std::optional<PresetsPrompts::Path> AskPathName(const wxString& base);
  CameraRecorder::Sample Sample() const;

  PresetsFrame& frame_;
  PresetRows& rows_;
  PresetsPrompts& prompts_;
  wxConfigBase& settings_;
  std::vector<PresetPointer> presets_;
  CameraRecorder recorder_;
  int opened_ = 0;  // counts what was opened
};

}  // namespace qv
