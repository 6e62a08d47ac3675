#pragma once

#include <wx/app.h>
#include <wx/intl.h>

namespace qv {

// The application. It refuses to start, without a window, unless the command line tells of a host.
class QVApp : public wxApp {
 public:
  QVApp();
  bool OnInit() override;
  int OnExit() override;

 private:
  wxLocale locale_;
};

}  // namespace qv
