// Shows the four quarters in the viewer that is named on the command line, and then waits to be
// ended; by itself only when nobody does.

#include <chrono>
#include <thread>

#include "e2e/support/Scenes.h"
#include "e2e/support/TestHost.h"

int main(int argc, char** argv) {
  if (argc != 3) return 2;
  qv::e2e::ViewerLog log(argv[2]);
  const auto host = qv::e2e::TestHost::Start(argv[1], log);
  if (!host || !qv::e2e::SendQuarters(host->link())) return 1;
  if (!host->link().SetCamera(qv::e2e::QuarterCamera(), true)) return 1;

  std::this_thread::sleep_for(std::chrono::minutes(5));
  return 0;
}
