// The main frame's floating panels: how they come up, are kept, and what they get of the frame.

#include <wx/config.h>

#include "app/LightSite.h"
#include "app/LogPanel.h"
#include "app/MainFrame.h"
#include "app/PresetsSite.h"
#include "app/WindowLayout.h"
#include "panels/LightPanel.h"
#include "panels/PresetsPanel.h"
#include "ui/CommandIds.h"

namespace qv {
namespace {

const wxRect kMainRect(0, 0, 640, 480);
const wxRect kPresetsRect(500, 100, 308, 289);
const wxRect kLightRect(500, 389, 279, 345);
const wxRect kLogRect(0, 0, 400, 300);

}  // namespace

void MainFrame::MakePanels() {
  PanelSite& site = *this;
  presetsSite_ = std::make_unique<PresetsSite>(site);
  lightSite_ = std::make_unique<LightSite>(site);
  lightSets_ = LoadLightImageSettings(*wxConfigBase::Get());
  const auto show = [this](wxDialog& dialog) { return ShowDialog(dialog); };
  presetsPanel_ = new PresetsPanel(this, *presetsSite_, *wxConfigBase::Get(), show);
  lightPanel_ = new LightPanel(this, *lightSite_, lightSets_, show);
  logPanel_ = new LogPanel(this);

  const auto restore = [this](wxTopLevelWindow& window, const char* prefix, const wxRect& rect) {
    auto layout = std::make_unique<WindowLayout>(window, prefix);
    const auto visible = layout->Restore(
        {wxRect(rect.GetPosition(), FromDIP(rect.GetSize())), GetMinSize(), &window == this});
    layouts_.push_back(std::move(layout));
    return visible.value_or(false);
  };
  restore(*this, "/Layouts/MainView/", kMainRect);
  // The frame is always shown; the log never.
  if (restore(*presetsPanel_, "/Layouts/PresetsPanel/", kPresetsRect)) {
    panelsAtStart_.push_back(presetsPanel_);
  }
  if (restore(*lightPanel_, "/Layouts/LightPanel/", kLightRect)) {
    panelsAtStart_.push_back(lightPanel_);
  }
  restore(*logPanel_, "/Layouts/LogPanel/", kLogRect);
}

// Once the frame is there, which keeps the keyboard.
void MainFrame::ShowPanelsOfLastTime() {
  CallAfter([this] {
    for (wxFrame* panel : std::exchange(panelsAtStart_, {})) {
      if (!closing_) panel->ShowWithoutActivating();
    }
  });
}

void MainFrame::DestroyPanels() {
  // What they use goes after them.
  delete std::exchange(presetsPanel_, nullptr);
  delete std::exchange(lightPanel_, nullptr);
}

void MainFrame::SaveLayouts() {
  for (const auto& layout : layouts_) layout->Save();
  SaveLightImageSettings(*wxConfigBase::Get(), lightSets_);
}

void MainFrame::HidePanels() {
  for (wxFrame* panel : {static_cast<wxFrame*>(presetsPanel_), static_cast<wxFrame*>(lightPanel_),
                         static_cast<wxFrame*>(logPanel_)}) {
    panel->Hide();
  }
}

void MainFrame::EnablePanels(bool enable) {
  presetsPanel_->EnableContents(enable);
  lightPanel_->EnableContents(enable);
}

void MainFrame::RefillPanels() {
  presetsPanel_->LoadPresets(storedPresets_);
  lightPanel_->ShowValues();
}

void MainFrame::BindPanelRules() {
  const auto follow = [this](int id, wxFrame* panel) {
    Bind(
        wxEVT_UPDATE_UI,
        [this, panel](wxUpdateUIEvent& event) {
          event.Enable(interactive_);
          event.Check(panel->IsShown());
        },
        id);
  };
  follow(kIdPresetsPanel, presetsPanel_);
  follow(kIdLightPanel, lightPanel_);
}

void MainFrame::OnPresetsPanel(wxCommandEvent& event) {
  presetsPanel_->Show(event.IsChecked());
}

void MainFrame::OnLightPanel(wxCommandEvent& event) {
  lightPanel_->Show(event.IsChecked());
}

RaytraceImpl* MainFrame::SceneRenderer() const {
  RaytraceImpl* renderer = renderer_.get();
  if (!renderer || !interactive_ || !sceneShown_ || waiting_ || receiving_ || closing_) {
    return nullptr;
  }
  return renderer->Offline() ? nullptr : renderer;
}

bool MainFrame::IsPlaying() const {
  return presetsSite_->IsPlaying();
}

void MainFrame::CameraStepped() {
  presetsPanel_->RecordSample();
}

void MainFrame::ShowAdjustedPicture() {
  const RaytraceImpl* renderer = renderer_.get();
  if (!renderer || !painter_.TakePicture(*renderer)) return;
  view_->Refresh(false);
  view_->Update();
}

}  // namespace qv
