#include "ui/FloatingFrame.h"

namespace qv {
namespace {

// Nothing would bring it back when it was minimised.
constexpr long kStyle =
    (wxDEFAULT_FRAME_STYLE & ~wxMINIMIZE_BOX) | wxFRAME_FLOAT_ON_PARENT | wxFRAME_NO_TASKBAR;

}  // namespace

FloatingFrame::FloatingFrame(wxWindow* parent, const wxString& title)
    : wxFrame(parent, wxID_ANY, title, wxDefaultPosition, wxDefaultSize, kStyle) {
  if (const auto* top = wxDynamicCast(parent, wxTopLevelWindow)) SetIcons(top->GetIcons());
  SetExtraStyle(GetExtraStyle() | wxWS_EX_BLOCK_EVENTS);
  Bind(wxEVT_CLOSE_WINDOW, [this](wxCloseEvent& event) {
    if (!event.CanVeto()) {
      event.Skip();
      return;
    }
    event.Veto();
    Show(false);
  });
}

void FloatingFrame::EnableContents(bool enable) {
  contentsEnabled_ = enable;
  for (wxWindow* child : GetChildren()) {
    if (!child->IsTopLevel()) child->Enable(enable);
  }
}

}  // namespace qv
