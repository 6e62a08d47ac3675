#include "app/CommandLine.h"

#include <limits>

namespace qv {
namespace {

const wxCmdLineEntryDesc kOptions[] = {
    {wxCMD_LINE_OPTION, "h", "windowhandle", "message window handle of plugin(internal use only)",
     wxCMD_LINE_VAL_STRING, 0},
    {wxCMD_LINE_OPTION, "p", "processid", "process id of sketchup(internal use only)",
     wxCMD_LINE_VAL_STRING, 0},
    {wxCMD_LINE_PARAM, nullptr, nullptr, "dummy", wxCMD_LINE_VAL_STRING, wxCMD_LINE_PARAM_OPTIONAL},
    wxCMD_LINE_DESC_END};

std::optional<std::uint32_t> NumberOf(const wxCmdLineParser& parser, const wxString& option) {
  wxString text;
  unsigned long number = 0;
  if (!parser.Found(option, &text) || !text.ToULong(&number, 10)) return std::nullopt;
  if (number > std::numeric_limits<std::uint32_t>::max()) return std::nullopt;
  return static_cast<std::uint32_t>(number);
}

}  // namespace

std::optional<HostAddress> HostFromCommandLine(int argc, wxChar** argv) {
  wxCmdLineParser parser(kOptions, argc, argv);
  parser.Parse(true);
  const auto window = NumberOf(parser, "h");
  if (!window) return std::nullopt;
  const auto process = NumberOf(parser, "p");
  if (!process) return std::nullopt;
  return HostAddress{*window, *process};
}

}  // namespace qv
