#pragma once

#include <wx/listctrl.h>
#include <wx/menu.h>
#include <wx/toolbar.h>

#include <memory>

#include "ui/FloatingFrame.h"

namespace qv {

// Lays out the window of the presets: tools above a list. The derived window binds its events.
class _PresetsPanel : public FloatingFrame {  // NOLINT(bugprone-reserved-identifier)
 public:
  explicit _PresetsPanel(wxWindow* parent);

 protected:
  // The menu of the list, made when it is first asked for.
  wxMenu& ContextMenu();
  void ShowRecordTool(bool recording);

  wxToolBar* tools_;
  // One column without a header. Its pictures, by their numbers: an imported view, a view, an
  // animation.
  wxListCtrl* list_;

 private:
  void AddTools();

  wxBitmapBundle record_, recording_;
  std::unique_ptr<wxMenu> contextMenu_;
};

}  // namespace qv
