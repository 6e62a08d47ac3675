#pragma once

#include <vector>

#include "panels/ShowDialog.h"
#include "presets/LightEditor.h"
#include "presets/LightFrame.h"
#include "ui/LightPanelBase.h"

namespace qv {

// The window "Lighting/Image settings". It shows the values of an editor and passes on what the
// user does with its controls.
class LightPanel : public _LightPanel, private LightControls {
 public:
  // `frame` and `sets` are used as long as events come.
  LightPanel(wxWindow* parent, LightFrame& frame, std::vector<LightImageSettings>& sets,
             ShowDialog showDialog);
  ~LightPanel() override;

  // Shows what is in force.
  void ShowValues() { editor_.Refresh(); }

 private:
  void BindRow(const LightRange& range);
  void BindSets();

  const Fields& FieldsOf(LightControl control) const {
    return rows_[static_cast<std::size_t>(control)];
  }

  void SetSlider(LightControl control, int position) override;
  int Slider(LightControl control) const override;
  void SetText(LightControl control, const wxString& text) override;
  wxString Text(LightControl control) const override;
  void SetUseSkyColor(bool use) override { useSkyColor_->SetValue(use); }
  bool UseSkyColor() const override { return useSkyColor_->GetValue(); }
  void SetNames(const std::vector<wxString>& names) override;
  void SetName(const wxString& name) override;
  wxString Name() const override { return names_->GetValue(); }
  bool Confirm(const wxString& question) override;

  const ShowDialog showDialog_;
  LightEditor editor_;
};

}  // namespace qv
