#include "panels/LightPanel.h"

#include <wx/msgdlg.h>

#include <span>
#include <utility>

namespace qv {
namespace {

constexpr LightControl kFirstOfImage = LightControl::kBrightness;

// The rows from one control to before another.
std::vector<_LightPanel::Row> RowsOf(std::size_t begin, std::size_t end) {
  std::vector<_LightPanel::Row> rows;
  for (const LightRange& range : std::span(kLightRanges).subspan(begin, end - begin)) {
    rows.push_back({wxGetTranslation(range.label), range.start, range.minimum, range.maximum});
  }
  return rows;
}

constexpr auto kImageRows = static_cast<std::size_t>(kFirstOfImage);

}  // namespace

LightPanel::LightPanel(wxWindow* parent, LightFrame& frame, std::vector<LightImageSettings>& sets,
                       ShowDialog showDialog)
    : _LightPanel(parent, RowsOf(0, kImageRows), RowsOf(kImageRows, kLightRanges.size())),
      showDialog_(std::move(showDialog)),
      editor_(frame, *this, sets) {
  for (const LightRange& range : kLightRanges) BindRow(range);
  BindSets();
}

LightPanel::~LightPanel() {
  // A field that loses the keyboard by that still finds the editor.
  DestroyChildren();
}

void LightPanel::BindRow(const LightRange& range) {
  const LightControl control = range.control;
  const auto [slider, text] = FieldsOf(control);
  slider->Bind(wxEVT_SCROLL_THUMBTRACK,
               [this, control](wxScrollEvent&) { editor_.SliderDragged(control); });
  for (const auto& type :
       {wxEVT_SCROLL_THUMBRELEASE, wxEVT_SCROLL_CHANGED, wxEVT_SCROLL_LINEUP, wxEVT_SCROLL_LINEDOWN,
        wxEVT_SCROLL_PAGEUP, wxEVT_SCROLL_PAGEDOWN, wxEVT_SCROLL_TOP, wxEVT_SCROLL_BOTTOM}) {
    slider->Bind(type, [this, control](wxScrollEvent&) { editor_.SliderSet(control); });
  }
  text->Bind(wxEVT_TEXT_ENTER, [this, control](wxCommandEvent&) { editor_.TextEntered(control); });
  text->Bind(wxEVT_KILL_FOCUS, [this, control](wxFocusEvent& event) {
    editor_.TextLeft(control);
    event.Skip();
  });
  const auto rule = [this, control](wxUpdateUIEvent& event) {
    event.Enable(editor_.IsEnabled(control));
  };
  slider->Bind(wxEVT_UPDATE_UI, rule);
  text->Bind(wxEVT_UPDATE_UI, rule);
}

void LightPanel::BindSets() {
  useSkyColor_->Bind(wxEVT_CHECKBOX, [this](wxCommandEvent&) { editor_.UseSkyColorSet(); });
  resetAll_->Bind(wxEVT_BUTTON, [this](wxCommandEvent&) { editor_.ResetAll(); });
  names_->Bind(wxEVT_COMBOBOX,
               [this](wxCommandEvent& event) { editor_.ChooseSet(event.GetString()); });
  save_->Bind(wxEVT_BUTTON, [this](wxCommandEvent&) { editor_.SaveSet(); });
  delete_->Bind(wxEVT_BUTTON, [this](wxCommandEvent&) { editor_.DeleteSet(); });
}

void LightPanel::SetSlider(LightControl control, int position) {
  FieldsOf(control).slider->SetValue(position);
}

int LightPanel::Slider(LightControl control) const {
  return FieldsOf(control).slider->GetValue();
}

void LightPanel::SetText(LightControl control, const wxString& text) {
  FieldsOf(control).text->ChangeValue(text);
}

wxString LightPanel::Text(LightControl control) const {
  return FieldsOf(control).text->GetValue();
}

void LightPanel::SetNames(const std::vector<wxString>& names) {
  const wxString name = names_->GetValue();
  names_->Set(names);
  names_->SetValue(name);
}

void LightPanel::SetName(const wxString& name) {
  names_->SetValue(name);
}

bool LightPanel::Confirm(const wxString& question) {
  wxMessageDialog dialog(this, question, wxMessageBoxCaptionStr, wxOK | wxCANCEL | wxICON_QUESTION);
  return showDialog_(dialog) == wxID_OK;
}

}  // namespace qv
