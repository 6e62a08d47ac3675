// The main frame's dialogs and update rules, and the tools that change how the picture is shaded.

#include <wx/config.h>
#include <wx/dialog.h>

#include "app/MainFrame.h"
#include "app/Preferences.h"
#include "app/PreferencesDialog.h"
#include "app/ToolRules.h"
#include "ui/CommandIds.h"

namespace qv {
namespace {

LightmapUse LightmapUseOf(const RaytraceImpl* renderer) {
  if (!renderer) return {};
  return {renderer->UseLightmap(), renderer->LightmapHasLEM()};
}

}  // namespace

void MainFrame::BindUpdateRules() {
  // Their keys work also while their menu is disabled.
  for (const int id : {kIdResetCameraRoll, kIdPreferences, kIdCameraLink, kIdSynchronizeCamera,
                       kIdBackground, kIdCapture, kIdReloadData}) {
    Bind(
        wxEVT_UPDATE_UI, [this](wxUpdateUIEvent& event) { event.Enable(interactive_); }, id);
  }
  const auto show = [](wxUpdateUIEvent& event, const ToolState& state) {
    event.Enable(state.enabled);
    event.Check(state.checked);
  };
  Bind(
      wxEVT_UPDATE_UI,
      [this, show](wxUpdateUIEvent& event) {
        const RaytraceImpl* renderer = renderer_.get();
        const bool used = renderer && renderer->UseAmbientOcclusion();
        show(event, AmbientOcclusionTool(interactive_, used, LightmapUseOf(renderer)));
      },
      kIdAmbientOcclusion);
  Bind(
      wxEVT_UPDATE_UI,
      [this, show](wxUpdateUIEvent& event) {
        const RaytraceImpl* renderer = renderer_.get();
        const bool used = renderer && renderer->UseLEM();
        show(event, LEMTool(interactive_, used, LightmapUseOf(renderer)));
      },
      kIdLEM);
  BindPanelRules();
}

int MainFrame::ShowDialog(wxDialog& dialog) {
  openDialogs_.push_back(&dialog);
  const int result = dialog.ShowModal();
  openDialogs_.pop_back();
  const bool leaves = closeAsked_ || closing_;
  CatchUpWithClose();
  return leaves ? wxID_CANCEL : result;
}

void MainFrame::OnPreferences(wxCommandEvent&) {
  if (!interactive_ || closing_ || waiting_) return;
  PreferencesDialog dialog(this);
  if (ShowDialog(dialog) != wxID_OK) return;
  const Preferences chosen = Preferences::Load(*wxConfigBase::Get());
  wxConfigBase::Get()->Flush();
  showStatistics_ = chosen.showStatistics;
  WithIdleRenderer([&](RaytraceImpl& renderer) {
    ResizeTargets(renderer, chosen.antialiasIndex);
    if (!receiving_) renderer.StartRenderSameCamera(ModeStill);
  });
  view_->Refresh(false);
}

void MainFrame::OnAmbientOcclusion(wxCommandEvent& event) {
  RaytraceImpl* renderer = renderer_.get();
  if (!renderer || receiving_) return;
  renderer->SetUseAmbientOcclusion(event.IsChecked());
  renderer->StartRenderSameCamera(ModeStill);
}

void MainFrame::OnLEM(wxCommandEvent& event) {
  RaytraceImpl* renderer = renderer_.get();
  if (!renderer || receiving_) return;
  renderer->SetUseLEM(event.IsChecked());
  renderer->StartRenderSameCamera(ModeStill);
}

}  // namespace qv
