#include "app/QVApp.h"

#include <wx/debug.h>
#include <wx/filename.h>
#include <wx/image.h>
#include <wx/log.h>
#include <wx/stdpaths.h>
#include <wx/utils.h>

#include "app/AppLog.h"
#include "app/CommandLine.h"
#include "app/MainFrame.h"
#include "app/NumericLocale.h"
#include "app/ProcessEntry.h"
#include "app/Translations.h"
#include "core/Log.h"

wxIMPLEMENT_APP_NO_MAIN(qv::QVApp);

namespace qv {
namespace {

// For a look at the windows in another language than the user's.
wxString LanguageAskedFor() {
  wxString language;
  wxGetEnv("QUORVANE_LANGUAGE", &language);
  return language;
}

}  // namespace

void PrepareProcess() {
  wxTheAssertHandler = nullptr;
  wxLog::SetLogLevel(wxLOG_Info);
  StartLog();
  RouteLibraryLog();
}

QVApp::QVApp() : locale_(wxLANGUAGE_DEFAULT, wxLOCALE_LOAD_DEFAULT) {}

bool QVApp::OnInit() {
  RouteLibraryLog();
  UseDecimalPoint();
  SetVendorName("Ostrand Inc");
  SetAppName("QuorvaneApp");

  const auto host = HostFromCommandLine(argc, argv);
  if (!host) return false;

  // Images and data files lie beside the program and are named relative to it.
  const wxString startDirectory = wxGetCwd();
  const wxFileName program(wxStandardPaths::Get().GetExecutablePath());
  const wxString folder = program.GetPath(wxPATH_GET_VOLUME);
  const wxString language = LoadTranslations(folder + "/locale", LanguageAskedFor());
  Log(LogLevel::kInfo, "texts are in: " + language.ToStdString());
  wxSetWorkingDirectory(folder);
  wxInitAllImageHandlers();
  auto* frame = new MainFrame(nullptr, host->window, host->process);
  SetTopWindow(frame);
  frame->ShowFirst();
  wxSetWorkingDirectory(startDirectory);
  return true;
}

int QVApp::OnExit() {
  return 0;
}

}  // namespace qv
