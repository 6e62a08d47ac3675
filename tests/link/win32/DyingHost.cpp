#include "link/win32/RawHost.h"

// A host that is killed while the viewer waits for its answer.
//
//   link_dying_host RECORD UNTIL   as for the test viewer
int main(int count, char** words) {
  if (count != 3) return 2;
  qv::RawHost host(4096, words[1], words[2]);
  host.SetAnswer([](const qv::RawHost::Message&) -> LRESULT {
    TerminateProcess(GetCurrentProcess(), 9);
    return 0;
  });
  host.RingOrder("GetCamera");
  Sleep(60000);
  return 3;
}
