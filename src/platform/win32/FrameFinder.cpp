#include "platform/win32/FrameFinder.h"

namespace qv::platform {

namespace {

struct Search {
  DWORD processId = 0;
  HWND found = nullptr;
};

BOOL CALLBACK Look(HWND window, LPARAM context) {
  auto* search = reinterpret_cast<Search*>(context);
  DWORD processId = 0;
  GetWindowThreadProcessId(window, &processId);
  const bool fits = processId == search->processId && IsWindowVisible(window) != 0 &&
                    GetWindow(window, GW_OWNER) == nullptr;
  if (fits) search->found = window;
  return fits ? FALSE : TRUE;
}

}  // namespace

HWND FindFrame(DWORD processId) {
  Search search{.processId = processId};
  EnumWindows(Look, reinterpret_cast<LPARAM>(&search));
  return search.found;
}

}  // namespace qv::platform
