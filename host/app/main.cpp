#include <cstdlib>
#include <iostream>
#include <string>
#include <variant>
#include <vector>

#include "core/Log.h"
#include "host/app/Console.h"
#include "host/app/HostProgram.h"
#include "host/app/Options.h"
#include "platform/EndRequest.h"

namespace {

using namespace qv::host;

constexpr int kUsageError = 2;

int RunWith(const Options& options) {
  Console console(std::cout, std::cerr);
  qv::SetLogSink([&](qv::LogLevel level, const std::string& text) {
    if (level != qv::LogLevel::kInfo) console.Complain(text);
  });
  qv::platform::CatchEndRequests();
  HostProgram program(options, console, qv::platform::EndRequested);
  const int code = program.Run();
  if (program.leftThreadBehind()) std::_Exit(code);
  qv::SetLogSink({});
  return code;
}

}  // namespace

int main(int argc, char** argv) {
  const auto parsed = ParseOptions(std::vector<std::string>(argv + 1, argv + argc));
  if (std::holds_alternative<ShowHelp>(parsed)) {
    std::cout << HelpText();
    return 0;
  }
  if (std::holds_alternative<ShowVersion>(parsed)) {
    std::cout << "quorvane-host " QUORVANE_VERSION "\n";
    return 0;
  }
  if (const auto* error = std::get_if<UsageError>(&parsed)) {
    std::cerr << "quorvane-host: " << error->message
              << "\nTry \"quorvane-host --help\" for what it takes.\n";
    return kUsageError;
  }
  return RunWith(std::get<Options>(parsed));
}
