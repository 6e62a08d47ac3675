#pragma once

#include <wx/confbase.h>

#include <vector>

#include "panels/ShowDialog.h"
#include "presets/PresetsEditor.h"
#include "presets/PresetsFrame.h"
#include "ui/PresetsPanelBase.h"

namespace qv {

// The window "Presets". It shows the list of an editor and passes on what the user does with it.
class PresetsPanel : public _PresetsPanel, private PresetRows, private PresetsPrompts {
 public:
  // `frame` and `settings` are used as long as events come.
  PresetsPanel(wxWindow* parent, PresetsFrame& frame, wxConfigBase& settings,
               ShowDialog showDialog);

  // Fetches the list from the host.
  void LoadPresets(std::span<const std::byte> block) { editor_.LoadPresets(block); }
  // After each frame: the camera as it is now, while recording.
  void RecordSample() { editor_.RecordSample(); }

 private:
  void BindCommands();
  void BindRules();
  void BindList();
  void OnListKey(wxListEvent& event);
  void OnContextMenu(wxContextMenuEvent& event);
  void OpenSelected();
  std::vector<int> Selected() const;

  void EndRename();
  void Clear() override;
  void InsertRow(int row, const wxString& name, PresetIcon icon) override;
  void RemoveRow(int row) override;
  void SetRowText(int row, const wxString& name) override;
  void SelectRow(int row) override;
  void FitColumn() override;
  void ShowRecording(bool recording) override { ShowRecordTool(recording); }

  std::optional<Name> AskName(const wxString& proposal, std::optional<bool> recordSun) override;
  std::optional<Path> AskPath(const wxString& proposal) override;
  std::optional<wxString> ChoosePathFile(const wxString& folder) override;
  void ShowMessage(const wxString& text) override;

  wxConfigBase& settings_;
  const ShowDialog showDialog_;
  PresetsEditor editor_;
};

}  // namespace qv
