#include "panels/PresetsPanel.h"

#include <wx/filedlg.h>
#include <wx/msgdlg.h>

#include <algorithm>
#include <utility>

#include "panels/PresetCreationDialog.h"
#include "ui/CommandIds.h"

namespace qv {

PresetsPanel::PresetsPanel(wxWindow* parent, PresetsFrame& frame, wxConfigBase& settings,
                           ShowDialog showDialog)
    : _PresetsPanel(parent),
      settings_(settings),
      showDialog_(std::move(showDialog)),
      editor_(frame, *this, *this, settings) {
  BindCommands();
  BindRules();
  BindList();
}

void PresetsPanel::BindCommands() {
  // Tools and entries of the menu alike.
  const auto on = [this](int id, void (PresetsEditor::*act)()) {
    Bind(
        wxEVT_MENU, [this, act](wxCommandEvent&) { (editor_.*act)(); }, id);
  };
  on(kIdAddView, &PresetsEditor::AddView);
  on(kIdRecordPath, &PresetsEditor::ToggleRecording);
  on(kIdImportPages, &PresetsEditor::ImportPages);
  on(kIdImportPath, &PresetsEditor::ImportAnimatePath);

  const auto onSelected = [this](int id, void (PresetsEditor::*act)(PresetsEditor::Selection)) {
    Bind(
        wxEVT_MENU, [this, act](wxCommandEvent&) { (editor_.*act)(Selected()); }, id);
  };
  onSelected(kIdAddKeyframeAnimation, &PresetsEditor::AddKeyframeAnimation);
  onSelected(kIdAddTour, &PresetsEditor::AddTour);
  onSelected(kIdMovePresetUp, &PresetsEditor::MoveUp);
  onSelected(kIdMovePresetDown, &PresetsEditor::MoveDown);
  onSelected(kIdDeletePreset, &PresetsEditor::Delete);
  onSelected(kIdExplode, &PresetsEditor::Explode);
  onSelected(kIdUpdateView, &PresetsEditor::UpdateView);
  onSelected(kIdInsertView, &PresetsEditor::InsertView);
}

void PresetsPanel::BindRules() {
  using Enabled = PresetsEditor::Enabled;
  const auto rule = [this](int id, bool Enabled::*allowed) {
    Bind(
        wxEVT_UPDATE_UI,
        [this, allowed](wxUpdateUIEvent& event) {
          event.Enable(ContentsEnabled() && editor_.EnabledFor(Selected()).*allowed);
        },
        id);
  };
  rule(kIdAddView, &Enabled::addView);
  rule(kIdAddKeyframeAnimation, &Enabled::addAnimation);
  rule(kIdAddTour, &Enabled::addAnimation);
  rule(kIdMovePresetUp, &Enabled::moveUp);
  rule(kIdMovePresetDown, &Enabled::moveDown);
  rule(kIdDeletePreset, &Enabled::remove);
  rule(kIdImportPages, &Enabled::importPages);
  rule(kIdExplode, &Enabled::explode);
  rule(kIdUpdateView, &Enabled::updateView);
  rule(kIdInsertView, &Enabled::insertView);
  const auto always = [this](int id, bool enabled) {
    Bind(
        wxEVT_UPDATE_UI,
        [this, enabled](wxUpdateUIEvent& event) { event.Enable(ContentsEnabled() && enabled); },
        id);
  };
  always(kIdRecordPath, true);
  always(kIdImportPath, true);
  // The program writes no movies yet.
  always(kIdGenerateMovie, false);
}

void PresetsPanel::BindList() {
  // The control is done with its event before the camera moves, which takes its time.
  list_->Bind(wxEVT_LIST_ITEM_ACTIVATED,
              [this](wxListEvent&) { CallAfter([this] { OpenSelected(); }); });
  list_->Bind(wxEVT_LIST_KEY_DOWN, &PresetsPanel::OnListKey, this);
  list_->Bind(wxEVT_LIST_END_LABEL_EDIT, [this](wxListEvent& event) {
    if (event.IsEditCancelled()) return;
    event.Veto();  // the editor sets the text
    editor_.Rename(static_cast<int>(event.GetIndex()), event.GetLabel());
  });
  list_->Bind(wxEVT_CONTEXT_MENU, &PresetsPanel::OnContextMenu, this);
  list_->Bind(wxEVT_SIZE, [this](wxSizeEvent& event) {
    event.Skip();
    FitColumn();
  });
}

void PresetsPanel::OnListKey(wxListEvent& event) {
  const std::vector<int> selected = Selected();
  switch (event.GetKeyCode()) {
    case WXK_DELETE:
    case WXK_NUMPAD_DELETE:
      editor_.Delete(selected);
      break;
    case WXK_F2:
      if (!selected.empty()) list_->EditLabel(selected.front());
      break;
    default:
      event.Skip();
  }
}

void PresetsPanel::OnContextMenu(wxContextMenuEvent& event) {
  // The key of the menu has no place.
  const wxPoint at = event.GetPosition();
  PopupMenu(&ContextMenu(), at == wxDefaultPosition ? wxDefaultPosition : ScreenToClient(at));
}

void PresetsPanel::OpenSelected() {
  if (ContentsEnabled()) editor_.Open(Selected());
}

std::vector<int> PresetsPanel::Selected() const {
  std::vector<int> rows;
  for (long row = -1;
       (row = list_->GetNextItem(row, wxLIST_NEXT_ALL, wxLIST_STATE_SELECTED)) != wxNOT_FOUND;) {
    rows.push_back(static_cast<int>(row));
  }
  return rows;
}

// A name that is being written belongs to a row, whose number is about to be another's.
void PresetsPanel::EndRename() {
  list_->EndEditLabel(true);
}

void PresetsPanel::Clear() {
  EndRename();
  list_->DeleteAllItems();
}

void PresetsPanel::InsertRow(int row, const wxString& name, PresetIcon icon) {
  EndRename();
  list_->InsertItem(row, name, static_cast<int>(icon));
}

void PresetsPanel::RemoveRow(int row) {
  EndRename();
  list_->DeleteItem(row);
}

void PresetsPanel::SetRowText(int row, const wxString& name) {
  list_->SetItemText(row, name);
}

void PresetsPanel::SelectRow(int row) {
  list_->SetItemState(row, wxLIST_STATE_SELECTED | wxLIST_STATE_FOCUSED,
                      wxLIST_STATE_SELECTED | wxLIST_STATE_FOCUSED);
  list_->EnsureVisible(row);
}

// Wide enough for the longest name, and to be hit anywhere in the window.
void PresetsPanel::FitColumn() {
  list_->SetColumnWidth(0, wxLIST_AUTOSIZE);
  const int width = std::max(list_->GetColumnWidth(0), list_->GetClientSize().x);
  list_->SetColumnWidth(0, width);
}

std::optional<PresetsPrompts::Name> PresetsPanel::AskName(const wxString& proposal,
                                                          std::optional<bool> recordSun) {
  PresetCreationDialog dialog(this, proposal, recordSun);
  if (showDialog_(dialog) != wxID_OK) return std::nullopt;
  return dialog.Answer();
}

std::optional<PresetsPrompts::Path> PresetsPanel::AskPath(const wxString& proposal) {
  PresetCreationDialog1 dialog(this, proposal, settings_, showDialog_);
  if (showDialog_(dialog) != wxID_OK) return std::nullopt;
  return dialog.Answer();
}

std::optional<wxString> PresetsPanel::ChoosePathFile(const wxString& folder) {
  wxString filter = _("SU Animate camera path files (*.csv)|*.csv||");
  // The marks at its end would offer a filter without a name.
  while (filter.EndsWith("|", &filter)) {
  }
  wxFileDialog dialog(this, _("Choose a file to import"), folder, wxString(), filter,
                      wxFD_OPEN | wxFD_FILE_MUST_EXIST);
  if (showDialog_(dialog) != wxID_OK) return std::nullopt;
  return dialog.GetPath();
}

void PresetsPanel::ShowMessage(const wxString& text) {
  wxMessageDialog message(this, text, wxMessageBoxCaptionStr, wxOK);
  showDialog_(message);
}

}  // namespace qv
