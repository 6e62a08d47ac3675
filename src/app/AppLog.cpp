#include "app/AppLog.h"

#include <wx/log.h>
#include <wx/utils.h>

#include <cstdio>
#include <string>

#include "core/Log.h"
#include "platform/Clock.h"

namespace qv {
namespace {

class LogBridge : public wxLog {
 protected:
  void DoLogRecord(wxLogLevel level, const wxString& message, const wxLogRecordInfo&) override {
    const LogLevel ours = level <= wxLOG_Error     ? LogLevel::kError
                          : level == wxLOG_Warning ? LogLevel::kWarning
                                                   : LogLevel::kInfo;
    Log(ours, message.ToStdString(wxConvUTF8));
  }
};

LogLevel ThresholdFromEnvironment() {
  wxString text;
  wxGetEnv("QUORVANE_LOG", &text);
  if (text == "info") return LogLevel::kInfo;
  if (text == "error") return LogLevel::kError;
  return LogLevel::kWarning;
}

const char* NameOf(LogLevel level) {
  switch (level) {
    case LogLevel::kInfo:
      return "info";
    case LogLevel::kWarning:
      return "warning";
    case LogLevel::kError:
      return "error";
  }
  return "";
}

}  // namespace

void RouteLibraryLog() {
  delete wxLog::SetActiveTarget(new LogBridge);
}

void StartLog() {
  SetLogSink([threshold = ThresholdFromEnvironment(), start = platform::NowSeconds()](
                 LogLevel level, const std::string& text) {
    if (level < threshold) return;
    std::fprintf(stderr, "quorvane %9.3f %s: %s\n", platform::NowSeconds() - start, NameOf(level),
                 text.c_str());
  });
}

}  // namespace qv
