#pragma once

#include <wx/arrstr.h>
#include <wx/confbase.h>

namespace qv {

// What the preferences dialog edits, as it is kept in the settings store.
struct Preferences {
  // The choices for antialiasing: samples for each marked pixel. Their indices are those of
  // RaytraceImpl::ResizeTargets.
  static wxArrayString AntialiasChoices();

  static Preferences Load(const wxConfigBase& settings);
  void Store(wxConfigBase& settings) const;

  int antialiasIndex = 0;
  bool showStatistics = true;
};

}  // namespace qv
