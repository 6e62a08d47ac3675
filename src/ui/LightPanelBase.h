#pragma once

#include <wx/bmpbuttn.h>
#include <wx/button.h>
#include <wx/checkbox.h>
#include <wx/combobox.h>
#include <wx/slider.h>
#include <wx/textctrl.h>

#include <span>
#include <vector>

#include "ui/FloatingFrame.h"

namespace qv {

// Lays out the window of light intensities and image adjustments: named sets at the top, sliders
// with a field beside each. The derived window binds its events.
class _LightPanel : public FloatingFrame {  // NOLINT(bugprone-reserved-identifier)
 public:
  struct Row {
    wxString label;
    int position = 0;  // of the slider
    int minimum = 0;
    int maximum = 0;
  };

  // `lights` stand under the one heading, `image` under the other.
  _LightPanel(wxWindow* parent, std::span<const Row> lights, std::span<const Row> image);

 protected:
  struct Fields {
    wxSlider* slider;
    wxTextCtrl* text;
  };

  wxComboBox* names_;
  wxBitmapButton* save_;
  wxBitmapButton* delete_;
  std::vector<Fields> rows_;  // the lights, then those of the image
  wxCheckBox* useSkyColor_;
  wxButton* resetAll_;

 private:
  wxSizer* MakeNames(wxWindow* ground);
  // Rows of both headings have their columns in common.
  wxSizer* MakeRows(wxWindow* ground, std::span<const Row> rows, int labelWidth);
};

}  // namespace qv
