#include "host/app/CommandLine.h"

#include <cstdlib>
#include <variant>

#include "core/Log.h"
#include "host/app/Console.h"
#include "host/app/HostProgram.h"
#include "host/app/Options.h"
#include "platform/EndRequest.h"

namespace qv::host {
namespace {

constexpr int kUsageError = 2;

int RunWith(const Options& options, std::ostream& output, std::ostream& errors) {
  Console console(output, errors);
  SetLogSink([&](LogLevel level, const std::string& text) {
    if (level != LogLevel::kInfo) console.Complain(text);
  });
  platform::CatchEndRequests();
  HostProgram program(options, console, platform::EndRequested);
  const int code = program.Run();
  if (program.leftThreadBehind()) std::_Exit(code);
  SetLogSink({});
  return code;
}

}  // namespace

int RunCommandLine(const std::vector<std::string>& arguments, std::ostream& output,
                   std::ostream& errors) {
  const auto parsed = ParseOptions(arguments);
  if (std::holds_alternative<ShowHelp>(parsed)) {
    output << HelpText();
    return 0;
  }
  if (std::holds_alternative<ShowVersion>(parsed)) {
    output << "quorvane-host " QUORVANE_VERSION "\n";
    return 0;
  }
  if (const auto* error = std::get_if<UsageError>(&parsed)) {
    errors << "quorvane-host: " << error->message
           << "\nTry \"quorvane-host --help\" for what it takes.\n";
    return kUsageError;
  }
  return RunWith(std::get<Options>(parsed), output, errors);
}

}  // namespace qv::host
