#include "app/EyeHeightPopUp.h"

#include <wx/display.h>

#include <algorithm>
#include <utility>

#include "navigation/EyeHeight.h"

namespace qv {
namespace {

// Between the pointer and the window.
constexpr int kGap = 6;

}  // namespace

EyeHeightPopUp::EyeHeightPopUp(wxWindow* parent, Access access)
    : _EyeHeightPopUp(parent), access_(std::move(access)) {}

void EyeHeightPopUp::ShowAbove(const wxPoint& point) {
  ShowHeight();
  const wxSize size = GetSize();
  wxPoint corner(point.x - size.x / 2, point.y - size.y - FromDIP(kGap));
  const int display = wxDisplay::GetFromPoint(point);
  if (display != wxNOT_FOUND) {
    const wxRect area = wxDisplay(static_cast<unsigned>(display)).GetClientArea();
    corner.x = std::clamp(corner.x, area.x, std::max(area.x, area.GetRight() - size.x));
    corner.y = std::max(corner.y, area.y);
  }
  Move(corner);
  Show();
  Raise();
  height_->SetFocus();
  height_->SelectAll();
}

void EyeHeightPopUp::ShowHeight() {
  height_->ChangeValue(wxString::Format("%.1f", access_.height()));
}

void EyeHeightPopUp::Take(float height) {
  access_.setHeight(height);
  ShowHeight();
}

void EyeHeightPopUp::TakeTyped() {
  double typed = 0;
  const wxString shown = wxString::Format("%.1f", access_.height());
  if (height_->GetValue() == shown || !height_->GetValue().ToCDouble(&typed)) return;
  Take(LimitEyeHeight(typed, access_.bounds()));
}

void EyeHeightPopUp::OnEnter(wxCommandEvent&) {
  TakeTyped();
  ShowHeight();
  height_->SelectAll();
}

void EyeHeightPopUp::OnUp(wxSpinEvent& event) {
  event.Veto();  // the button itself counts nothing
  TakeTyped();
  Take(RaisedEyeHeight(access_.height(), access_.bounds()));
}

void EyeHeightPopUp::OnDown(wxSpinEvent& event) {
  event.Veto();
  TakeTyped();
  Take(LoweredEyeHeight(access_.height()));
}

void EyeHeightPopUp::OnActivate(wxActivateEvent& event) {
  event.Skip();
  if (event.GetActive() || !IsShown()) return;
  TakeTyped();
  Hide();
}

void EyeHeightPopUp::OnCharHook(wxKeyEvent& event) {
  if (event.GetKeyCode() == WXK_ESCAPE) {
    ShowHeight();  // what was typed is not taken
    Hide();
    return;
  }
  event.Skip();
}

}  // namespace qv
