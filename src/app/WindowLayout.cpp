#include "app/WindowLayout.h"

#include <wx/config.h>
#include <wx/display.h>

namespace qv {
namespace {

int ReadInt(const wxConfigBase& settings, const wxString& key, int fallback) {
  return static_cast<int>(settings.ReadLong(key, fallback));
}

}  // namespace

LayoutPlan PlanLayout(const wxConfigBase& settings, const wxString& prefix,
                      const LayoutDefaults& defaults,
                      const std::function<bool(const wxPoint&)>& isOnDisplay) {
  LayoutPlan plan;
  plan.maximized = settings.ReadBool(prefix + "Maximized", false);
  plan.rect = wxRect(ReadInt(settings, prefix + "PosX", defaults.rect.x),
                     ReadInt(settings, prefix + "PosY", defaults.rect.y),
                     ReadInt(settings, prefix + "Width", defaults.rect.width),
                     ReadInt(settings, prefix + "Height", defaults.rect.height));
  if (!isOnDisplay(plan.rect.GetPosition())) {
    plan.rect = defaults.rect;
    return plan;
  }
  if (plan.rect.width < defaults.minimum.x || plan.rect.height < defaults.minimum.y) {
    plan.rect.SetSize(defaults.minimum);
  }
  plan.visible = settings.ReadBool(prefix + "Visible", defaults.visible);
  return plan;
}

void StoreLayout(wxConfigBase& settings, const wxString& prefix, const wxRect& rect, bool visible,
                 bool maximized) {
  settings.Write(prefix + "PosX", static_cast<long>(rect.x));
  settings.Write(prefix + "Posy", static_cast<long>(rect.y));
  settings.Write(prefix + "Width", static_cast<long>(rect.width));
  settings.Write(prefix + "Height", static_cast<long>(rect.height));
  settings.Write(prefix + "Visible", visible);
  settings.Write(prefix + "Maximized", maximized);
}

WindowLayout::WindowLayout(wxTopLevelWindow& window, const wxString& prefix)
    : window_(&window), prefix_(prefix), place_(window), normalRect_(window.GetRect()) {
  window_->Bind(wxEVT_SIZE, &WindowLayout::OnSize, this);
  window_->Bind(wxEVT_MOVE, &WindowLayout::OnMove, this);
}

WindowLayout::~WindowLayout() {
  if (!window_) return;
  window_->Unbind(wxEVT_SIZE, &WindowLayout::OnSize, this);
  window_->Unbind(wxEVT_MOVE, &WindowLayout::OnMove, this);
}

std::optional<bool> WindowLayout::Restore(const LayoutDefaults& defaults) {
  LayoutPlan plan = PlanLayout(
      *wxConfigBase::Get(), prefix_, defaults,
      [](const wxPoint& position) { return wxDisplay::GetFromPoint(position) != wxNOT_FOUND; });
  // The window's contents may need more than they did, in another language for one.
  wxSize size = plan.rect.GetSize();
  size.IncTo(window_->GetMinSize());
  plan.rect.SetSize(size);
  normalRect_ = plan.rect;
  place_.Put(plan.rect, plan.maximized);
  return plan.visible;
}

void WindowLayout::Save() const {
  if (!window_) return;
  StoreLayout(*wxConfigBase::Get(), prefix_, normalRect_, window_->IsShown(),
              window_->IsMaximized());
}

void WindowLayout::OnSize(wxSizeEvent& event) {
  event.Skip();
  NoteRect();
}

void WindowLayout::OnMove(wxMoveEvent& event) {
  event.Skip();
  NoteRect();
}

void WindowLayout::NoteRect() {
  if (place_.IsReached() && window_->IsShown() && !window_->IsMaximized() &&
      !window_->IsIconized()) {
    normalRect_ = window_->GetRect();
  }
}

}  // namespace qv
