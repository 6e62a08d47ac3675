#include "app/AppLog.h"

#include <wx/crt.h>
#include <wx/filefn.h>
#include <wx/log.h>
#include <wx/utils.h>

#include <cstdio>
#include <memory>
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

const char* NameOf(LogLevel level) {
  switch (level) {
    case LogLevel::kInfo:
      return "info";
    case LogLevel::kWarning:
      return "warning";
    case LogLevel::kError:
      break;
  }
  return "error";
}

LogLevel ThresholdFromEnvironment() {
  wxString text;
  wxGetEnv("QUORVANE_LOG", &text);
  if (text == "info") return LogLevel::kInfo;
  if (text == "error") return LogLevel::kError;
  return LogLevel::kWarning;
}

// Where the log goes instead of standard error, which a program without a console has not got.
std::shared_ptr<std::FILE> FileFromEnvironment() {
  wxString path;
  if (!wxGetEnv("QUORVANE_LOG_FILE", &path) || path.empty()) return nullptr;
  std::FILE* file = wxFopen(path, "a");
  return file ? std::shared_ptr<std::FILE>(file, std::fclose) : nullptr;
}

}  // namespace

void RouteLibraryLog() {
  delete wxLog::SetActiveTarget(new LogBridge);
}

void StartLog() {
  SetLogSink([threshold = ThresholdFromEnvironment(), file = FileFromEnvironment(),
              start = platform::NowSeconds()](LogLevel level, const std::string& text) {
    if (level < threshold) return;
    const double seconds = platform::NowSeconds() - start;
    std::FILE* to = file ? file.get() : stderr;
    std::fprintf(to, "quorvane %9.3f %s: %s\n", seconds, NameOf(level), text.c_str());
    std::fflush(to);
  });
}

}  // namespace qv
